#pragma once

#include "ezFormats/avi/AVIHeader.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ChunkWalk.h"

#include <cstdint>
#include <optional>
#include <string>

class CodePage;
class MediaBytes;

/// @name Bytes of the parts of a file
/// @{
inline constexpr std::uint64_t kAVI_ChunkHeadSize = 8; ///< of the name and the size of a chunk
inline constexpr std::uint64_t kAVI_ListKindSize = 4;  ///< of a list, before its first chunk
inline constexpr std::uint64_t kAVI_IndexEntrySize = 16;
/// @}

/// The chunks of a file, as far as they tell anything.
class AVIFile {
public:
    /// All borrowed. aBudget counts down the chunks of all walks.
    AVIFile(MediaBytes& aBytes, const CodePage& aCodePage, std::uint32_t& aBudget)
        : mBytes(aBytes), mCodePage(aCodePage), mBudget(aBudget) {}

    /// Reads those before the frames. False where the file does not begin as one of the format does.
    bool ReadHead();
    /// Reads those after the frames of the first part.
    void ReadTail();

    const AVIHeader& GetHeader() const { return mHeader; }
    const MusicTexts& GetTexts() const { return mTexts; }
    /// Those of the sound, in the order of its streams, as kezInfo_Languages has them.
    const std::string& GetLanguages() const { return mLanguages; }

    /// The frames of the first part ("movi"); where its size cannot be, all up to the end. Not set without a
    /// part.
    const std::optional<ByteReader>& GetFrames() const { return mFrames; }
    /// The index of them ("idx1").
    const std::optional<ByteReader>& GetIndex() const { return mIndex; }
    /// Whether there are further parts ("RIFF" "AVIX").
    bool HasParts() const { return mfParts; }

    /// Bytes of the whole, those that are missing of a file that was cut included; none where they are not
    /// known.
    std::optional<std::uint64_t> GetSize() const;

private:
    void Take(BoxType aName, const ByteReader& aContent);
    void TakeHeaderList(BoxType aKind, const ByteReader& aContent);
    void TakeFrames(const ByteReader& aContent, ByteReader aList);
    void TakeInfo(const ByteReader& aList);

    MediaBytes& mBytes;
    const CodePage& mCodePage;
    std::uint32_t& mBudget;
    std::optional<ChunkWalk> mWalk;
    AVIHeader mHeader;
    std::optional<ByteReader> mFrames;
    std::optional<ByteReader> mIndex;
    bool mfFramesOpen = false; ///< nothing but the file tells where they end
    bool mfParts = false;
    std::uint64_t mStatedEnd = 0; ///< position that the first part reaches to, as it states
    MusicTexts mTexts;
    std::string mLanguages;
};

/// Whether what begins there is of the format: the head of its first part. aReader stands after it then.
/// @param aStated  set to the size that the part states
bool ReadAVIHead(ByteReader& aReader, std::uint32_t* aStated);
