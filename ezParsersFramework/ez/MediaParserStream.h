#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/DateTime.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/text/CString.h"

#include <memory>

class ezMediaInfo;

/// The input of every parser: a position over a file or another source of bytes, and a buffer that mirrors
/// its first 8 KiB, so that the many small reads of format probing cost one read of the source. A concrete
/// stream supplies MediaSeek and MediaRead.
///
// clang-format off
/// What a read gives (of a size other than 0):
///
/// | read             | before the end      | across the end                      | at the end       | source error                        |
/// |------------------|---------------------|-------------------------------------|------------------|-------------------------------------|
/// | exact, direct    | true, position+size | false, position + what was read     | false, unchanged | false, unchanged                    |
/// | exact, filling   | true, position+size | false, position = end of the buffer | the same         | false, position = 0                 |
/// | up-to, direct    | true, count = size  | true, count = what is left          | true, count 0    | false, count and position unchanged |
/// | up-to, filling   | true, count = size  | true, count = what is left          | true, count 0    | false, count and position unchanged |
///
/// "Filling" is the one read that fills the buffer; reads that the buffer answers are always before the end. A
/// ReadFromEnd is the read of the same form at GetMediaSize() - size, and false while the size is unknown (0); its
/// exact form is false too for a file smaller than the request, while the up-to form then reads the whole media.
/// What a Seek to or after the end gives is up to the concrete stream; one that fails leaves the position.
///
// clang-format on
/// A stream belongs to one parse at a time and is not locked. docs/parser-streams.md says when the buffer is
/// filled, and what a position near 2^64 gives.
class EZPARSERS_API ezMediaParserStream {
public:
    static constexpr int SeekFromStart = 0; ///< a mode of Seek: the offset counts from the start of the media
    static constexpr int SeekFromCurrent = 1; ///< a mode of Seek: it counts from the position

    ezMediaParserStream() = default;
    virtual ~ezMediaParserStream();

    ezMediaParserStream(const ezMediaParserStream&) = delete;
    ezMediaParserStream& operator=(const ezMediaParserStream&) = delete;

    /// Makes the media readable and its size known. False on failure. The base has nothing to open and
    /// succeeds.
    virtual bool Open();
    /// Gives the source back. The base does nothing.
    virtual void Close();

    /// Adds what the stream knows to a record: modification time and full path always, "fs" unless the record
    /// holds a size other than 0, "fe" (lower case) unless the record holds one. Null is ignored.
    virtual void CopyInfo(ezMediaInfo* anInfo);

protected:
    /// Moves the source to an offset: now with afSeekImmediate, else at the latest by the next MediaRead.
    /// False when the offset cannot be reached. The base refuses.
    virtual bool MediaSeek(const ezuint64& anOffset, bool afSeekImmediate);

    /// Reads at most aSize bytes where the source stands: the count, 0 at the end, -1 on an error. The base
    /// fails.
    virtual ezFileOffset MediaRead(void* aBuffer, std::size_t aSize);

public:
    /// Opens another file of the folder that the media lies in: what goes with a film on its disc. Null where
    /// there is none of that name, and for all media but a local file, which is what the base says.
    /// @param aName  of the file, without a folder
    virtual std::unique_ptr<ezMediaParserStream> OpenBeside(const ezCString& aName);

    /// Exact read: true only if all aSize bytes were read. 0 bytes always succeed. aBuffer takes aSize bytes.
    bool Read(std::size_t aSize, void* aBuffer);

    /// Read of up to *aSize bytes; *aSize receives the count, 0 at the end. A null aSize is the assertion
    /// "aSize != NULL".
    bool Read(std::size_t* aSize, void* aBuffer);

    /// A seek from the start and the read of the same form; not read when the seek fails.
    /// @{
    bool ReadFrom(ezuint64 aPos, std::size_t aSize, char* aBuffer);
    bool ReadFrom(ezuint64 aPos, std::size_t* aSize, char* aBuffer);
    /// @}

    /// Exact read of the last aSize bytes.
    bool ReadFromEnd(std::size_t aSize, char* aBuffer);
    /// Read of up to the last *aSize bytes; *aSize receives the count. A null aSize is the assertion
    /// "aSize != NULL".
    bool ReadFromEnd(std::size_t* aSize, char* aBuffer);

    /// Moves the position. From the current position only forward: offsets are unsigned. A mode other than
    /// the two is the assertion "(aSeekMode == SeekFromCurrent) || (aSeekMode == SeekFromStart)".
    bool Seek(ezuint64 anOffset, int aSeekMode, bool afSeekImmediate);

    /// Where the next read begins, in bytes from the start of the media.
    ezuint64 Tell() const { return mMediaPos; }

    /// Path or URI of the media.
    ezCString GetFullPath() const { return mMediaFullPath; }
    /// Sets what GetFullPath and a record tell. An ezFileMediaParserStream opens this path at its next Open.
    void SetFullPath(const ezCString& aFullPath) { mMediaFullPath = aFullPath; }

    /// Bytes; 0 when not known.
    ezuint64 GetMediaSize() const { return mMediaSize; }

    /// Lower case, without the dot.
    ezCString GetExtension() const { return mMediaExtension; }
    /// Sets the extension by which parsers are picked; put into lower case here. Give it without the dot.
    void SetExtension(const ezCString& anExtension) { mMediaExtension = anExtension.Lower(); }

protected:
    ezCString mMediaFullPath;         ///< what GetFullPath tells
    ezuint64 mMediaSize;              ///< what GetMediaSize tells; set by a concrete stream that knows it
    ezuint64 mMediaPos;               ///< what Tell tells; Read and Seek move it, a concrete stream does not
    ezCString mMediaExtension;        ///< what GetExtension tells
    ezDateTime mLastModificationTime; ///< what CopyInfo tells; not set until a concrete stream sets it

    /// Where a read of aSize bytes would end; 2^64-1 when it would pass that.
    std::uint64_t EndOfRead(std::size_t aSize) const;
    /// Whether a read that ends there fills the buffer, from wherever the source stands.
    bool IsToBeBuffered(std::uint64_t anEnd) const;

private:
    std::uint64_t BufferedEnd() const;
    bool IsBuffered(std::uint64_t anEnd) const;
    /// False when the source failed; the buffer then counts as filled, with nothing.
    bool FillBuffer();
    void TakeFromBuffer(std::size_t aSize, void* aBuffer);
    /// What the source claims to have read, or -1. The position has moved by it, at most by aSize.
    ezFileOffset ReadDirectly(std::size_t aSize, void* aBuffer);

    char mBuffer[kezMediaParserStreamBufferSize]; // not cleared: only the first mBufferLength bytes are ever
                                                  // read
    bool mfBufferFilled = false;
    ezFileOffset mBufferLength = 0; ///< valid bytes in mBuffer: 0 to kezMediaParserStreamBufferSize
};
