#pragma once

#include "ezPlatform/base/Owned.h"

#include <cstddef>
#include <cstdint>
#include <optional>

class MediaBytes;

/// The bytes of a program stream or of a system stream, in parts: as the file has them, or, of a file of a
/// video CD (RIFF of the form CDXA), those that its sectors carry. Places are those of the file.
class PSBytes {
public:
    /// @param aBytes  borrowed; its start has been read
    explicit PSBytes(MediaBytes& aBytes);

    /// Whether it is a file of a video CD.
    bool IsOfDisc() const { return mfDisc; }
    /// Bytes of the file; without a value when that is not known.
    std::optional<std::uint64_t> GetFileSize() const;
    /// Bytes of the stream in so many of the file.
    std::uint64_t GetStreamSize(std::uint64_t aFileSize) const;

    /// Where the stream begins in the file.
    std::uint64_t GetStart() const;
    /// Bytes of the file that are a window: whole sectors of a disc.
    std::size_t GetWindowSize() const;

    /// Reads a part, of the stream's bytes in up to so many of the file, which are GetWindowSize() at the
    /// most. They are borrowed until the next call, and while nothing else reads the file.
    /// @param aPlace  in the file, not before GetStart(); a part begins with the sector that it lies in
    /// @return how many bytes there are
    std::size_t Read(std::uint64_t aPlace, std::size_t aSize, const unsigned char** aPart);

    MediaBytes& GetFile() { return mBytes; }

private:
    std::size_t Unpack(const unsigned char** aPart, std::size_t aCount);

    MediaBytes& mBytes;
    bool mfDisc;
    ezFreed<unsigned char> mPart; ///< what sectors carry, in one piece
};
