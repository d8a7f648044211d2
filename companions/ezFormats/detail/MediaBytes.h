#pragma once

#include "ezBytes/BudgetedBytes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

class ezMediaParserStream;
struct BesideMedia;

/// The bytes of a parser's stream, read within a budget. The first read is that of the start, which the
/// stream keeps for the next parser; bytes after it are read as far as they are asked for, in blocks that
/// grow while the asking goes straight on. Reading back by a little stays within the block. The size may be
/// known from the first read on only.
class MediaBytes : public BudgetedBytes {
public:
    /// aStream is borrowed.
    MediaBytes(ezMediaParserStream& aStream, std::uint32_t aMaxReads, std::uint64_t aMaxBytes);
    ~MediaBytes() override;

    /// Reads the block of the next Borrow from a position on: for a tail of which all bytes are going to be
    /// asked for, in any order. At most 64 KiB. Those that are buffered are not read again. False when there
    /// are none.
    bool Load(std::uint64_t aPosition, std::size_t aSize);

    /// The same of at most 512 KiB, for media whose facts stand anywhere within so many bytes: the block is
    /// all of it.
    bool LoadWindow(std::uint64_t aPosition, std::size_t aSize);

    /// What stands last in the path or URI of the media, after the last slash of either kind.
    std::string GetFileName() const;
    /// Opens a file that lies beside the media (ezMediaParserStream::OpenBeside). What may be read of it is
    /// taken off this budget at once. Null where there is none, and where the budget has not so much left.
    /// @param aName  of the file, without a folder
    std::unique_ptr<BesideMedia> OpenBeside(const std::string& aName, std::uint32_t aMaxReads,
                                            std::uint64_t aMaxBytes);

    /// True when bytes that the file has could not be read: without a known size, its end fails as any other
    /// read does.
    bool HasLostBytes() const { return HasReadFailed() && GetSize().has_value(); }

    /// Raises what the parse may cost by the whole file, of known size, once: its bytes, and two reads for
    /// each 64 KiB of them.
    void AllowWholeMedia();

protected:
    void Bring(std::uint64_t aPosition) override;
    std::size_t ReadAt(std::uint64_t aPosition, unsigned char* aPlace, std::size_t aSize,
                       bool* afFailed) override;

private:
    bool ReadStart(std::uint64_t aPosition);
    bool LoadBlock(std::uint64_t aPosition, std::size_t aSize);
    void TakeSize();

    ezMediaParserStream& mStream;
    std::size_t mLastSize = 0; ///< of the block, after the last read
    bool mfStarted = false;
};

/// A file beside the media of a parser, open.
struct BesideMedia {
    BesideMedia(std::unique_ptr<ezMediaParserStream> aStream, std::uint32_t aMaxReads,
                std::uint64_t aMaxBytes);
    ~BesideMedia();

    std::unique_ptr<ezMediaParserStream> mStream;
    MediaBytes mBytes; ///< of the stream
};
