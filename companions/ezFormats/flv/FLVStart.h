#pragma once

#include "ezFormats/flv/FLVCodecs.h"
#include "ezFormats/flv/FLVMetadata.h"
#include "ezFormats/flv/FLVTag.h"

#include "ezBytes/ByteReader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

class CodePage;
class MediaBytes;

/// Whether a header of the format is there (E.2).
bool FLVHeader_IsAt(ByteReader aBytes);

/// What the tags at the start of a file tell of its tracks, and what its metadata state.
class FLVStart {
public:
    /// @param aBytes  borrowed
    FLVStart(MediaBytes& aBytes, const CodePage& aCodePage);

    /// Walks over the tags until the tracks are told that the header promises. A track that it does not
    /// promise is told where the bytes that were read for the others hold it.
    void Read();
    /// Walks on for a track that the end of the file has, if there is none yet.
    void ReadOn(FLVKind aKind);

    const FLVTrack& GetVideo() const { return mVideo; }
    const FLVTrack& GetSound() const { return mSound; }
    const FLVMetadata& GetMetadata() const { return mMetadata; }
    /// Milliseconds at which the first frame stands; none where there is no frame.
    const std::optional<std::uint32_t>& GetFirstTime() const { return mFirstTime; }
    /// Where the first tag stands.
    std::uint64_t GetTags() const { return mTags; }

private:
    bool Wants(FLVKind aKind) const;
    void Walk();
    bool Load(std::uint64_t aPosition, std::size_t aSize);
    void TakeMetadata(const FLVTag& aTag);
    void TakeMedia(const FLVTag& aTag);
    std::vector<unsigned char> ReadBody(const ByteReader& aBody, std::size_t aMost);

    MediaBytes& mBytes;
    const CodePage& mCodePage;
    FLVTrack mVideo;
    FLVTrack mSound;
    FLVMetadata mMetadata;
    std::optional<std::uint32_t> mFirstTime;
    bool mfVideoPromised = false;
    bool mfSoundPromised = false;
    std::uint64_t mTags = 0;
    std::uint64_t mNext = 0; ///< the next tag
    std::uint32_t mCount = 0;
    std::size_t mWindows = 0; ///< that were read
};
