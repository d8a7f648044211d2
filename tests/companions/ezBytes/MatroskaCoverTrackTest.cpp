#include "ezBytes/MatroskaCoverTrack.h"

#include "ezBytes/Limits.h"

#include "support/EbmlBytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// Covers that stand as a track of video.

namespace {

using ebml::Element;
using ebml::Number;

const std::string kJpeg = "\xFF\xD8\xFF\xE0 a picture of pixels";
constexpr std::uint32_t kCluster = 0x1F43B675;

std::string Track(unsigned aNumber, unsigned aType, const char* aCodecId) {
    return Element(0xAE, Number(0xD7, aNumber) + Number(0x83, aType) + Element(0x86, aCodecId));
}
std::string Block(unsigned aTrack, const std::string& aFrame = "sound", unsigned aFlags = 0) {
    return Element(0xA3, ebml::Size(aTrack) + Big(0, 2) + Big(aFlags, 1) + aFrame);
}

const std::string kStill = Track(1, 1, "V_MJPEG");
const std::string kSound = Track(2, 2, "A_FLAC");

std::string FileOf(const std::string& aTracks, const std::string& aBlocks) {
    return ebml::Head() + ebml::Segment(ebml::Tracks(aTracks) + Element(kCluster, Number(0xE7, 0) + aBlocks));
}

/// Bytes of the picture; -1 where there is no such cover.
int SizeIn(const std::string& aText) {
    BlockBytes bytes(reinterpret_cast<const unsigned char*>(aText.data()), aText.size());
    std::uint32_t budget = 1000;
    MatroskaSegment segment(bytes, budget);
    std::vector<MatroskaTrackHead> heads;
    if (!segment.Open() || !ReadMatroskaTrackHeads(segment, budget, &heads)) {
        return -1;
    }
    const std::optional<ByteReader> picture = FindCoverTrack(segment, budget, heads);
    return picture ? static_cast<int>(picture->GetLeft()) : -1;
}
int SizeOf(const std::string& aTracks, const std::string& aBlocks) {
    return SizeIn(FileOf(aTracks, aBlocks));
}

const int kSize = static_cast<int>(kJpeg.size());

} // namespace

TEST(MatroskaCoverTrack, IsOfOnePictureBesideSound) {
    const std::string one = Block(2) + Block(1, kJpeg) + Block(2);
    EXPECT_EQ(SizeOf(kStill + kSound, one), kSize);
    EXPECT_EQ(SizeOf(kStill + kSound, Block(1, "\x89PNG\r\n\x1A\n of pixels")), 18);
    EXPECT_EQ(SizeOf(Track(1, 1, "v_png") + kSound, one), kSize);
    EXPECT_EQ(SizeOf(kStill, one), -1) << "no sound";
    EXPECT_EQ(SizeOf(kStill + kSound, one + Block(1, kJpeg)), -1) << "two pictures";
    EXPECT_EQ(SizeOf(kStill + kSound, Block(1, "\1" + kJpeg + kJpeg, 4)), -1) << "two in one block";
    EXPECT_EQ(SizeOf(Track(1, 1, "V_VP8") + kSound, one), -1) << "a film";
    EXPECT_EQ(SizeOf(kStill + Track(3, 1, "V_VP8") + kSound, one), -1) << "a film and its cover";
    EXPECT_EQ(SizeOf(kStill + Track(3, 1, "V_PNG") + kSound, one + Block(3, kJpeg + "2")), kSize)
        << "two covers";
    EXPECT_EQ(SizeOf(kStill + Track(3, 1, "V_PNG") + kSound, one + Block(3, "") + Block(3, "")), -1);
}

TEST(MatroskaCoverTrack, PictureThatCannotBeToldHasNoBytes) {
    EXPECT_EQ(SizeOf(kStill + kSound, ""), 0);
    EXPECT_EQ(SizeOf(kStill + kSound, Block(1, "wrapped in something")), 0);
    const std::string whole = FileOf(kStill + kSound, Block(2) + Block(1, kJpeg));
    EXPECT_EQ(SizeIn(whole), kSize);
    EXPECT_EQ(SizeIn(whole.substr(0, whole.size() - 1)), 0) << "cut";
}

TEST(MatroskaCoverTrack, PictureTellsWhatAnIdDoesNot) {
    for (const char* const id : {"V_MS/VFW/FOURCC", "V_QUICKTIME"}) {
        EXPECT_EQ(SizeOf(Track(1, 1, id) + kSound, Block(1, kJpeg)), kSize);
        EXPECT_EQ(SizeOf(Track(1, 1, id) + kSound, Block(1, "a frame of a film")), -1);
        EXPECT_EQ(SizeOf(Track(1, 1, id) + kSound, Block(2)), -1);
    }
}

TEST(MatroskaCoverTrack, IsSearchedWithinTheFirstBlocksAndTracks) {
    std::string sounds;
    for (std::uint32_t i = 1; i < kMatroska_MaxFirstBlocks; ++i) {
        sounds += Block(2);
    }
    EXPECT_EQ(SizeOf(kStill + kSound, sounds + Block(1, kJpeg)), kSize);
    EXPECT_EQ(SizeOf(kStill + kSound, sounds + Block(2) + Block(1, kJpeg)), 0);
    std::string tracks;
    for (std::size_t i = 2; i < kMatroska_MaxTracks; ++i) {
        tracks += Track(3, 17, "S_TEXT/UTF8");
    }
    EXPECT_EQ(SizeOf(kStill + tracks + kSound, Block(1, kJpeg)), kSize);
    EXPECT_EQ(SizeOf(kStill + tracks + Track(4, 17, "") + kSound, Block(1, kJpeg)), -1);
}
