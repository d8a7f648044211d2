#pragma once

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"
#include "ezBytes/SoundSize.h"

#include <cstdint>

/// How the chunks of a container are laid: what stands before the content of each, and what after it.
struct ChunkLayout {
    unsigned mNameRest;  ///< bytes of a name after its four characters
    unsigned mSizeBytes; ///< of the number after the name
    bool mfLittle;       ///< how that number stands
    bool mfWholeSize;    ///< it counts what stands before the content, too
    unsigned mAlignment; ///< of what it counts: stuffing fills up to a multiple
};

inline constexpr ChunkLayout kChunks_RIFF = {0, 4, true, false, 2};   ///< RIFF, RF64, BW64
inline constexpr ChunkLayout kChunks_IFF = {0, 4, false, false, 2};   ///< IFF ("FORM"), and RIFX
inline constexpr ChunkLayout kChunks_IFF64 = {0, 8, false, false, 2}; ///< DSDIFF ("FRM8")
inline constexpr ChunkLayout kChunks_CAF = {0, 8, false, false, 1};
inline constexpr ChunkLayout kChunks_W64 = {12, 8, true, true, 8}; ///< whose names are GUIDs

/// The chunks of a file, or of one that holds chunks, one after the other: of RIFF and IFF and what was made
/// of these.
///
/// The size of a chunk may lie: one that reaches beyond the end gives what there is. Writers forget the
/// stuffing after a content of odd size; then the next chunk is found where it stands. What has no name of
/// four printable characters, or of a GUID that begins with more than zeros, is not a chunk, and ends the
/// walk.
class ChunkWalk {
public:
    /// @param aReader  stands at the first chunk
    /// @param aBudget  borrowed, counts down the chunks of all walks
    ChunkWalk(const ByteReader& aReader, const ChunkLayout& aLayout, std::uint32_t& aBudget)
        : mReader(aReader), mContent(aReader), mLayout(aLayout), mBudget(aBudget) {}

    /// The next chunk, by the first four characters of its name, and a reader of its content. False after the
    /// last one, where no chunk stands, and when the budget is used up.
    bool Next(BoxType* aName, ByteReader* aContent);

    /// Bytes that the last chunk states to have, which may be more than there are.
    std::uint64_t GetStatedSize() const { return mStatedSize; }
    /// The same of a chunk of sound, whose writer may never have come to know it.
    /// @param afSizeKnown  the end is that of the file, and not only a bound
    SoundSize GetSoundSize(bool afSizeKnown) const;
    /// The content of the last chunk has so many bytes, whatever it states: what follows is looked for there,
    /// and at the end where that is before.
    void SetContentSize(std::uint64_t aSize) { EndContentAfter(aSize); }

private:
    void SkipStuffing();
    bool MayBeNamed(BoxType aName) const;
    bool IsChunkAt(ByteReader aReader) const;
    bool IsStuffingForgotten(const ByteReader& anAfter) const;
    std::uint64_t ReadSize(ByteReader& aReader) const;
    std::uint64_t GetHeadSize() const { return 4U + mLayout.mNameRest + mLayout.mSizeBytes; }

    void EndContentAfter(std::uint64_t aSize);

    ByteReader mReader;  ///< after the content of the last chunk
    ByteReader mContent; ///< at that content, up to the end
    ChunkLayout mLayout;
    std::uint32_t& mBudget;
    std::uint64_t mStatedSize = 0;
    unsigned mStuffing = 0; ///< bytes after the content
};
