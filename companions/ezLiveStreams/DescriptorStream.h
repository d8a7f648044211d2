#pragma once

#include "ezLiveStreams/FeedStream.h"

#include <cstdint>

/// A media stream that is read from a file descriptor: standard input, a pipe, a socket, a terminal, or a
/// file.
///
/// What comes through a pipe has no size before its end, and can be sought back in only as far as the window
/// reaches. A regular file is the media from the descriptor's file offset on; it knows its size at once and
/// can be sought in anywhere, and its offset is left as it is. One that states no bytes is read as a pipe is:
/// the files of /proc have bytes all the same.
///
/// The descriptor is borrowed until the destruction, which returns at once also while nothing comes. Nobody
/// else may read from it meanwhile.
class EZLIVESTREAMS_API ezDescriptorStream : public ezFeedStream {
public:
    /// @param aName  gives the URI and, by its last component, the extension; may be empty
    ezDescriptorStream(int aDescriptor, const ezCString& aName, const ezFeedOptions& anOptions);

    ezCString GetExtension() const override;
    ezCString GetURI() const override { return mName; }

protected:
    ~ezDescriptorStream() override;
    void Feed(ezFeedBuffer& aBuffer) override;
    void Interrupt() override;

private:
    enum class Outcome { Data, End, Failure, Interrupted };

    void FindSize();
    Outcome WaitForData();
    Outcome ReadSome(std::uint64_t aPosition, unsigned char* aData, std::size_t* aSize);
    /// Brings in bytes from a place to the end, a failure or an interruption.
    void FeedFrom(std::uint64_t aPosition, ezFeedBuffer& aBuffer);

    const int mDescriptor;
    const ezCString mName;
    bool mfFile = false;
    std::int64_t mFileOffset = 0; ///< where in the file the media begins
    int mWakeRead = -1;           ///< of the pipe that ends a wait for the descriptor
    int mWakeWrite = -1;
};
