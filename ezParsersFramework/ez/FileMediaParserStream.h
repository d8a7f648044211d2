#pragma once

#include "ez/MediaParserStream.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/files/PathName.h"

/// A local file as the input of parsers.
///
/// Construction looks up the modification time and opens nothing: the size is 0, not known, until Open or the
/// first read opens the file. A host therefore calls Open before it parses.
///
/// Seeks are lazy: without afSeekImmediate a seek only records the position, succeeds up to and including the
/// end that Open saw, and costs no system call. Open keeps Tell and the buffer of the start, but the file
/// itself is at its start: seek before reading on. On a file that is missing or unreadable the reads of the
/// source return 0 bytes, as at the end.
///
/// docs/parser-streams.md has the rest: refused and immediate seeks, reads after Close.
class EZPARSERS_API ezFileMediaParserStream : public ezMediaParserStream {
public:
    /// Takes the path of a file, which need not exist, with its extension and modification time. Opens
    /// nothing.
    /// @{
    explicit ezFileMediaParserStream(const ezPathName& aFilePath);
    explicit ezFileMediaParserStream(const ezCString& aFilePath);
    /// @}
    ~ezFileMediaParserStream() override;

    /// Takes path, extension and modification time from a path, and the size if the file is open.
    /// Called by the constructors.
    void Init(const char* aFilePath);

    /// Opens the file (again) for reading, which makes its size known. False when it cannot be opened or is
    /// not a regular file.
    bool Open() override;
    void Close() override;
    void CopyInfo(ezMediaInfo* anInfo) override;
    /// A regular file, found as Open finds this one: a link is followed.
    std::unique_ptr<ezMediaParserStream> OpenBeside(const ezCString& aName) override;

protected:
    bool MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) override;
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override;

    /// Makes the file stand where the next read must start. False when it cannot.
    bool FileSeek();

private:
    void InitFromPath(ezPathName aFilePath);

protected:
    ezFile mFile;         ///< open from Open, or the first read, to Close
    ezuint64 mSeekPos;    ///< where the next read must start
    ezuint64 mFilePos;    ///< where the file stands
    ezPathName mFilePath; ///< as it was given to the constructor or Init
};
