#pragma once

#include "ezFormats/flv/FLVTag.h"

#include <cstdint>
#include <optional>

class FLVStart;
class MediaBytes;

/// How long a file plays.
struct FLVLength {
    std::uint64_t mMicroseconds = 0; ///< 0: not known
    const char* mMethod = "header";
};

/// The last tags of a file.
class FLVEnd {
public:
    /// Looks for them, from the end backward.
    /// @param aBytes  borrowed; of known size
    /// @param aTags   where the first tag stands
    FLVEnd(MediaBytes& aBytes, std::uint64_t aTags);

    /// Whether a frame of the kind is among them.
    bool Has(FLVKind aKind) const { return Of(aKind).mLast.has_value(); }

    /// Microseconds from a first time to where the last frame begins, and to where the last frames end; 0
    /// where it cannot be told.
    struct Span {
        std::uint64_t mStart = 0;
        std::uint64_t mEnd = 0;
    };
    /// @param aFirst      milliseconds
    /// @param aFrameTime  microseconds that a picture lasts, where only one is among the tags; 0: not known
    Span GetSpan(std::uint32_t aFirst, std::uint64_t aFrameTime) const;

private:
    /// When the last frames of a track stand.
    struct Times {
        std::optional<std::uint32_t> mLast; ///< milliseconds
        std::optional<std::uint32_t> mBefore;

        void Take(std::uint32_t aTime);
        std::uint64_t GetEnd(std::uint64_t aFrameTime) const;
    };

    const Times& Of(FLVKind aKind) const { return aKind == FLVKind::Video ? mVideo : mSound; }
    bool ReadTag(std::uint64_t aPosition, FLVTag* aTag) const;
    std::uint32_t ReadTrailer(std::uint64_t anEnd) const;
    bool IsTagAt(std::uint64_t aPosition) const;
    bool WalkFrom(std::uint64_t aStart, std::uint64_t anEnd);
    bool WalkFromLast();
    void Walk(std::uint64_t aPosition);

    MediaBytes& mBytes;
    std::uint64_t mTags;
    std::uint64_t mEnd;
    Times mVideo;
    Times mSound;
};

/// What the metadata state where the last tags agree; else what these say, up to the end of the last frame:
/// of what was cut, or goes on, the metadata tell another length. Where more files stand after the bytes that
/// they say the file has, an estimate by how much longer it is.
/// @param anEnd       null where the end cannot be read: then all that there is is stated
/// @param aFrameTime  microseconds that a picture lasts; 0: not known
FLVLength MeasureFLV(MediaBytes& aBytes, const FLVStart& aStart, const FLVEnd* anEnd,
                     std::uint64_t aFrameTime);
