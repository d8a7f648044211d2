#pragma once

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/Stream.h"

/// A part of a file as a media stream: aSize bytes from anOffset of the file on, as far as the file goes,
/// which is the length that it had when it was opened.
///
/// A file that did not open makes a stream that is not open, of size 0, whose seeks and reads are
/// ezStreamingStatus_InvalidState. It lends nothing. A record receives the MIME type, where it has none.
class EZPLATFORM_API ezFilePartStream : public ezStream {
public:
    /// @param aFile  opened for reading; owned from now on. Null is a file that did not open.
    /// @param aPath  the name of the stream; its extension is the stream's
    ezFilePartStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath,
                     const ezuint64& anOffset, const ezuint64& aSize);

    ezCString GetExtension() const override;
    ezCString GetURI() const override { return mPath; }
    ezuint64 GetSize() override { return mSize; }
    bool IsOpened() override;
    ezStreamingStatus Seek(const ezuint64& aPosition) override;
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override;
    void CopyInfo(ezMediaInfo* anInfo) override;

protected:
    ~ezFilePartStream() override;

private:
    std::unique_ptr<ezFile> mFile;
    ezCString mMimeType;
    ezCString mPath;
    std::uint64_t mOffset; ///< of the part in the file
    std::uint64_t mSize;   ///< of the part; 0 where the file does not reach mOffset
    std::uint64_t mPosition = 0;
};

/// A whole file as a media stream. Everything else is as for a part of a file.
class EZPLATFORM_API ezFileStream : public ezFilePartStream {
public:
    /// The parameters are those of a part of a file, from 0 to the length that the file had when it was
    /// opened.
    ezFileStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath);
};

/// A new stream over a file, given back with Release. The stream takes aFile, opened for reading.
EZPLATFORM_API ezStream* ezFileGetStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath);
/// The same over aSize bytes of the file from anOffset on.
EZPLATFORM_API ezStream* ezFilePartGetStream(ezFile* aFile, const ezCString& aMimeType,
                                             const ezCString& aPath, const ezuint64& anOffset,
                                             const ezuint64& aSize);
