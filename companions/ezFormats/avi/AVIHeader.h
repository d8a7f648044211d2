#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <vector>

enum class AVIKind {
    Video,
    Sound,
    Both, ///< frames of DV that hold their sound
    Subtitles,
    Other,
};

/// What the header of a stream tells ("LIST" "strl"). What is 0 or empty is not told.
struct AVIStream {
    AVIKind mKind = AVIKind::Other;
    bool mfDisabled = false;
    std::uint32_t mScale = 0;           ///< units of time take so many ticks
    std::uint32_t mRate = 0;            ///< ticks a second
    std::uint32_t mStart = 0;           ///< units before the first frame
    std::uint32_t mLength = 0;          ///< units
    std::uint32_t mUnitSize = 0;        ///< bytes, where all units of sound have as many; 0: each is a frame
    std::uint64_t mIndexed = 0;         ///< units, by the index of all parts of the file
    std::vector<unsigned char> mFormat; ///< what "strf" holds, as much of it as is looked at
    VideoRatio mDisplayAspect;
    std::uint32_t mFields = 0; ///< in a frame

    /// Microseconds of so many units.
    std::uint64_t GetMicroseconds(std::uint64_t aUnits) const;
    /// Microseconds to the end of so many units, with what passes before the first one.
    std::uint64_t GetEnd(std::uint64_t aUnits) const;
    /// Pictures in 1000 seconds.
    std::uint32_t GetFrameRate() const;
    bool HasVideo() const { return mKind == AVIKind::Video || mKind == AVIKind::Both; }
    bool HasSound() const { return mKind == AVIKind::Sound || mKind == AVIKind::Both; }
};

/// What the headers of a file tell: the chunks of "hdrl", and of the lists in it. Each is taken wherever it
/// stands, as the sizes of these lists may lie.
class AVIHeader {
public:
    /// Takes a chunk; those of no interest too. What describes a stream belongs to the last one that began.
    void Take(BoxType aName, ByteReader aContent);
    void BeginStream();

    const std::vector<AVIStream>& GetStreams() const { return mStreams; }
    /// The stream that plays first: that of the lowest number, which is not disabled where there is one. Null
    /// where there is none; of pictures also where all of them are one beside sound.
    const AVIStream* FindVideo() const;
    const AVIStream* FindSound() const;
    std::uint32_t GetNumber(const AVIStream& aStream) const;

    std::uint32_t mMicrosecondsPerFrame = 0;
    std::uint32_t mFrames = 0;    ///< of the first part of the file
    std::uint32_t mAllFrames = 0; ///< of all parts
    std::uint32_t mWidth = 0;
    std::uint32_t mHeight = 0;
    std::uint64_t mIndexedEnd = 0; ///< position that what the indexes name reaches to
    ezCString mDate;               ///< as CleanDate has it

private:
    void TakeMain(ByteReader aContent);
    void TakeStream(ByteReader aContent);
    void TakeFormat(ByteReader aContent);
    void TakeProperties(ByteReader aContent);
    void TakeIndex(ByteReader aContent);

    std::vector<AVIStream> mStreams;
    bool mfStream = false; ///< what comes now describes the last one of these
};
