#include "ezFormats/codecs/MPEGVideo.h"

#include "companions/ezFormats/codecs/MPEGVideoBytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

#include <gtest/gtest.h>

using namespace mpegvideo;

namespace {

std::string Told(const std::string& aBytes) {
    return Text(MPEGVideo_Read(Data(aBytes), aBytes.size()));
}

/// What is told of a sequence with a change, and a picture that is not of whole frames.
template <typename Change>
std::string ToldWith(Change aChange) {
    Sequence sequence;
    aChange(sequence);
    Picture picture;
    picture.mfProgressive = false;
    picture.mfExtension = sequence.mfExtension;
    return Told(sequence.Bytes() + Group() + picture.Bytes());
}

std::string MPEG1(unsigned aWidth, unsigned aHeight, unsigned anAspect, unsigned aRate) {
    return ToldWith([&](Sequence& s) {
        s.mWidth = aWidth;
        s.mHeight = aHeight;
        s.mAspect = anAspect;
        s.mRate = aRate;
        s.mBitRate = 2875;
        s.mfExtension = false;
    });
}

/// The shape of a pixel, alone.
std::string PixelOf(unsigned aWidth, unsigned aHeight, unsigned anAspect, const std::string& aDisplay = "") {
    Sequence sequence;
    sequence.mWidth = aWidth;
    sequence.mHeight = aHeight;
    sequence.mAspect = anAspect;
    const std::string bytes = sequence.Bytes() + aDisplay + Picture().Bytes();
    const std::optional<VideoFacts> facts = MPEGVideo_Read(Data(bytes), bytes.size());
    return facts.has_value() ? facts->mPixelAspect.GetText().c_str() : "nothing";
}

std::string ScanOf(bool afProgressiveSequence, const std::vector<Picture>& aPictures) {
    Sequence sequence;
    sequence.mfProgressive = afProgressiveSequence;
    std::string bytes = sequence.Bytes();
    for (const Picture& picture : aPictures) {
        bytes += picture.Bytes();
    }
    const std::optional<VideoFacts> facts = MPEGVideo_Read(Data(bytes), bytes.size());
    return facts.has_value() ? facts->mScan : "nothing";
}

} // namespace

TEST(MPEGVideo, TellsADVDAndAVideoCD) {
    EXPECT_EQ(ToldWith([](Sequence&) {}),
              "MPEG2 Main@20 720x576 64:45 fr=25000 interlaced cd=8 4:2:0 vr=6000000");
    EXPECT_EQ(MPEG1(352, 288, 8, 3), "MPEG1 352x288 12:11 fr=25000 progressive cd=8 4:2:0 vr=1150000");
    EXPECT_EQ(MPEG1(352, 240, 12, 4), "MPEG1 352x240 10:11 fr=29970 progressive cd=8 4:2:0 vr=1150000");
}

TEST(MPEGVideo, ProfilesAndLevelsHaveTheWordsAndNumbersOfTheRules) {
    const auto profile = [](unsigned aCode) {
        const std::string told = ToldWith([&](Sequence& s) { s.mProfile = aCode; });
        const std::size_t start = told.find(' ') + 1;
        return told.substr(start, told.find(' ', start) - start);
    };
    EXPECT_EQ(profile(0x58), "Simple@20");
    EXPECT_EQ(profile(0x4A), "Main@10");
    EXPECT_EQ(profile(0x46), "Main@30");
    EXPECT_EQ(profile(0x44), "Main@40");
    EXPECT_EQ(profile(0x42), "Main@?") << "above High";
    EXPECT_EQ(profile(0x38), "SNR@20");
    EXPECT_EQ(profile(0x26), "Spatial@30");
    EXPECT_EQ(profile(0x14), "High@40");
    EXPECT_EQ(profile(0x85), "4:2:2@20");
    EXPECT_EQ(profile(0x82), "4:2:2@40");
    EXPECT_EQ(profile(0x8D), "Multiview@20");
    EXPECT_EQ(profile(0x92), "720x576") << "legal, and not named";
}

TEST(MPEGVideo, FrameRatesAreThoseOfTheCodeAndItsExtension) {
    const auto rate = [](unsigned aCode, unsigned aMore) {
        Sequence sequence;
        sequence.mRate = aCode;
        sequence.mRateMore = aMore;
        const std::string bytes = sequence.Bytes();
        return MPEGVideo_Read(Data(bytes), bytes.size()).value_or(VideoFacts()).mFrameRate;
    };
    const std::vector<std::uint32_t> rates = {23976, 24000, 25000, 29970, 30000, 50000, 59940, 60000};
    for (unsigned code = 1; code <= rates.size(); ++code) {
        EXPECT_EQ(rate(code, 0), rates[code - 1]) << code;
    }
    EXPECT_EQ(rate(3, 1U << 5), 50000U) << "twice";
    EXPECT_EQ(rate(8, 3), 15000U) << "a fourth";
    EXPECT_EQ(rate(1, 3U << 5 | 31U), 2997U);
}

TEST(MPEGVideo, ShapeOfAPixelFollowsFromThatOfTheDisplay) {
    EXPECT_EQ(PixelOf(720, 480, 3), "32:27");
    EXPECT_EQ(PixelOf(720, 480, 2), "8:9");
    EXPECT_EQ(PixelOf(704, 480, 3), "40:33");
    EXPECT_EQ(PixelOf(480, 576, 2), "8:5");
    EXPECT_EQ(PixelOf(1440, 1080, 3), "4:3");
    EXPECT_EQ(PixelOf(640, 480, 1), "1:1");
    EXPECT_EQ(PixelOf(442, 200, 4), "1:1") << "2.21:1";
    // What fills the display is a part of the picture, or is more than it has.
    EXPECT_EQ(PixelOf(720, 480, 2, Display(540, 480)), "32:27") << "the middle of a wide picture";
    EXPECT_EQ(PixelOf(704, 576, 2, Display(720, 576, true)), "16:15");
    EXPECT_EQ(PixelOf(720, 576, 2, Display(0, 576)), "16:15") << "no size";
}

TEST(MPEGVideo, ShapesOfMPEG1HaveTheirOwnTable) {
    const std::vector<std::string> shapes = {"1:1",       "2000:1347", "64:45",   "2000:1523", "2000:1611",
                                             "32:27",     "2000:1787", "12:11",   "2000:1963", "2000:2051",
                                             "2000:2139", "10:11",     "400:463", "2000:2403"};
    for (unsigned code = 1; code <= shapes.size(); ++code) {
        const std::string told = MPEG1(100, 100, code, 3);
        EXPECT_NE(told.find(" " + shapes[code - 1] + " "), std::string::npos) << code << ": " << told;
    }
}

TEST(MPEGVideo, LinesThatRoundWholeBlocksUpAreNotCounted) {
    const auto size = [](unsigned aWidth, unsigned aHeight, bool afMPEG2) {
        return ToldWith([&](Sequence& s) {
            s.mWidth = aWidth;
            s.mHeight = aHeight;
            s.mProfile = 0x44;
            s.mfExtension = afMPEG2;
            s.mAspect = 3;
        });
    };
    EXPECT_NE(size(1920, 1088, true).find(" 1920x1080 1:1 "), std::string::npos);
    EXPECT_NE(size(1440, 1088, true).find(" 1440x1080 4:3 "), std::string::npos);
    EXPECT_NE(size(1920, 1087, true).find(" 1920x1087 "), std::string::npos);
    EXPECT_NE(size(1920, 1088, false).find(" 1920x1088 "), std::string::npos) << "MPEG-1 has no such size";
    EXPECT_NE(size(4096 + 64, 1152, true).find(" 4160x1152 "), std::string::npos) << "of 14 bits";
}

TEST(MPEGVideo, OnePictureThatIsNoProgressiveFrameMakesItInterlaced) {
    const Picture frame;
    Picture fields;
    fields.mfProgressive = false;
    Picture field = fields;
    field.mStructure = 1;
    Picture film; // with pulldown
    film.mfRepeated = true;
    Picture cut;
    cut.mfExtension = false;
    EXPECT_EQ(ScanOf(true, {}), "progressive");
    EXPECT_EQ(ScanOf(false, {}), "interlaced") << "no picture says otherwise";
    EXPECT_EQ(ScanOf(false, {cut}), "interlaced");
    EXPECT_EQ(ScanOf(false, {frame}), "progressive");
    EXPECT_EQ(ScanOf(false, {frame, film, frame, film}), "progressive");
    EXPECT_EQ(ScanOf(false, {frame, frame, fields, frame}), "interlaced");
    EXPECT_EQ(ScanOf(false, {fields, frame}), "interlaced");
    EXPECT_EQ(ScanOf(false, {field, field}), "interlaced");
}

TEST(MPEGVideo, FilmWithRepeatedFieldsKeepsTheRateAtWhichItIsShown) {
    Sequence sequence;
    sequence.mHeight = 480;
    sequence.mRate = 4;
    Picture longer;
    longer.mfRepeated = true;
    const std::string bytes =
        sequence.Bytes() + longer.Bytes() + Picture().Bytes() + longer.Bytes() + Picture().Bytes();
    EXPECT_EQ(Told(bytes), "MPEG2 Main@20 720x480 32:27 fr=29970 progressive cd=8 4:2:0 vr=6000000");
}

TEST(MPEGVideo, RateIsTheMostWherePicturesSayThatItVaries) {
    const auto rates = [](const Sequence& aSequence, unsigned aDelay) {
        Picture picture;
        picture.mDelay = aDelay;
        picture.mfExtension = aSequence.mfExtension;
        const std::string told = Told(aSequence.Bytes() + picture.Bytes());
        return told.substr(told.find("4:2:0") + 5);
    };
    Sequence sequence;
    EXPECT_EQ(rates(sequence, 0xFFFE), " vr=6000000");
    EXPECT_EQ(rates(sequence, 0xFFFF), " mv=6000000");
    sequence.mBitRate = 0x3FFFF;
    EXPECT_EQ(rates(sequence, 0xFFFF), "");
    sequence.mfExtension = false;
    EXPECT_EQ(rates(sequence, 1000), "");
    sequence.mBitRate = 15000;
    EXPECT_EQ(rates(sequence, 0xFFFF), " vr=6000000") << "in MPEG-1 many leave the delay out";
}

TEST(MPEGVideo, StreamThatBeginsAnywhereIsToldByItsFirstGoodSequence) {
    const std::string rest = Content(100) + Picture().Bytes() + Code(5) + Content(30);
    const std::string good = Sequence().Bytes() + Picture().Bytes();
    const std::string told = Told(good);
    EXPECT_EQ(Told(rest + good), told);
    // Of the pictures before it nothing is known.
    Picture fields;
    fields.mfProgressive = false;
    EXPECT_EQ(Told(fields.Bytes() + good), told);
    // A damaged header, or a damaged extension, is passed over; a later sequence does not count.
    Sequence bad;
    bad.mAspect = 0;
    EXPECT_EQ(Told(bad.Bytes() + good), told);
    bad.mAspect = 3;
    bad.mProfile = 0x08;
    EXPECT_EQ(Told(bad.Bytes() + Picture().Bytes() + good), told);
    Sequence other;
    other.mWidth = 352;
    EXPECT_EQ(Told(good + other.Bytes() + Display(400, 400)), told);
}

TEST(MPEGVideo, WhatTheCodecIsFollowsFromWhatComesAfterTheHeader) {
    const Sequence sequence;
    EXPECT_EQ(Told(sequence.Header()), "720x576 fr=25000 cd=8 4:2:0 mv=6000000") << "it ends there";
    EXPECT_EQ(Told(sequence.Header() + sequence.Header()), "720x576 fr=25000 cd=8 4:2:0 mv=6000000");
    EXPECT_EQ(Told(sequence.Header() + Code(0xB2) + "text"),
              "MPEG1 720x576 64:45 fr=25000 progressive cd=8 4:2:0 mv=6000000");
    EXPECT_EQ(Told(sequence.Header() + Group()),
              "MPEG1 720x576 64:45 fr=25000 progressive cd=8 4:2:0 mv=6000000");
    EXPECT_EQ(Told(sequence.Bytes()),
              "MPEG2 Main@20 720x576 64:45 fr=25000 interlaced cd=8 4:2:0 mv=6000000");
    // MPEG-1 knows more shapes than MPEG-2.
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mAspect = 5; }), "nothing");
}

TEST(MPEGVideo, CutAnywhereTellsTheSameOrLess) {
    const std::string stream = Sequence().Bytes() + Display(720, 576) + Group() + Picture().Bytes();
    const std::string whole = Told(stream);
    for (std::size_t size = 0; size <= stream.size(); ++size) {
        const std::string told = Told(stream.substr(0, size));
        EXPECT_TRUE(size >= 12 || told == "nothing") << size << told;
        EXPECT_TRUE(size < 22 || told.substr(0, 20) == whole.substr(0, 20)) << size << told;
    }
    EXPECT_EQ(Told(""), "nothing");
    EXPECT_EQ(Told(Code(0xB3)), "nothing");
    EXPECT_EQ(Told(std::string(1000, '\0') + Code(0)), "nothing");
}
