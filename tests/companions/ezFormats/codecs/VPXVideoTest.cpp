#include "ezFormats/codecs/VPXVideo.h"

#include "companions/ezFormats/codecs/VideoFactsText.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

std::string VP8(const std::string& aFrame) {
    return Text(VP8Video_Read(Data(aFrame), aFrame.size()));
}

std::string VP9(const std::string& aFrame) {
    return Text(VP9Video_Read(Data(aFrame), aFrame.size()));
}

std::string Config(std::initializer_list<int> aBytes) {
    const std::string bytes = Hex(aBytes);
    return Text(VP9Video_ReadConfig(Data(bytes), bytes.size()));
}

std::string Features(std::initializer_list<int> aBytes) {
    const std::string bytes = Hex(aBytes);
    return Text(VP9Video_ReadFeatures(Data(bytes), bytes.size()));
}

/// The header of a key frame of VP9 of 854x480.
struct Frame {
    unsigned mProfile = 0;
    unsigned mOther = 0; ///< 2: an existing one is shown; 1: no key frame
    unsigned mSync = 0x498342;
    unsigned mDepth = 0; ///< ten_or_twelve_bit
    unsigned mSpace = 2;
    unsigned mSampling = 0; ///< subsampling_x and _y

    std::string Bytes() const {
        Bits bits;
        bits.Put(2, 2)
            .Put(mProfile & 1U, 1)
            .Put(mProfile >> 1, 1)
            .Put(0, mProfile == 3 ? 1 : 0)
            .Put(mOther, 2);
        bits.Put(2, 2).Put(mSync, 24).Put(mDepth, mProfile >= 2 ? 1 : 0).Put(mSpace, 3);
        bits.Put(0, mSpace != 7 ? 1 : 0);
        if (mProfile % 2 == 1) {
            bits.Put(mSampling, mSpace != 7 ? 2 : 0).Put(0, 1);
        }
        return bits.Put(853, 16).Put(479, 16).Bytes();
    }
};

template <typename Change>
std::string VP9With(Change aChange) {
    Frame frame;
    aChange(frame);
    return VP9(frame.Bytes());
}

} // namespace

TEST(VP8Video, TellsTheSizeOfAKeyFrame) {
    const std::string frame = Hex({0x10, 0x02, 0x00, 0x9D, 0x01, 0x2A, 0x80, 0x42, 0xE0, 0x81});
    EXPECT_EQ(VP8(frame), "VP8 640x480 progressive cd=8 4:2:0") << "scaled when it is shown";
    for (std::size_t size = 0; size < frame.size(); ++size) {
        EXPECT_EQ(VP8(frame.substr(0, size)), "nothing") << size;
    }
    const auto with = [&](std::size_t anAt, int aByte) {
        std::string bytes = frame;
        bytes[anAt] = static_cast<char>(aByte);
        return VP8(bytes);
    };
    EXPECT_EQ(with(0, 0x11), "nothing") << "no key frame";
    EXPECT_NE(with(0, 0x16), "nothing");
    EXPECT_EQ(with(0, 0x18), "nothing") << "a version that is none";
    EXPECT_EQ(with(4, 0x00), "nothing");
    EXPECT_EQ(VP8(Hex({0x10, 0x02, 0x00, 0x9D, 0x01, 0x2A, 0x00, 0xC0, 0xE0, 0x01})), "nothing")
        << "no width";
    EXPECT_EQ(VP8(Hex({0x10, 0x02, 0x00, 0x9D, 0x01, 0x2A, 0x80, 0x02, 0x00, 0x40})), "nothing")
        << "no height";
}

TEST(VP9Video, TellsWhatAKeyFrameSays) {
    EXPECT_EQ(VP9With([](Frame&) {}), "VP9 0@? 854x480 progressive cd=8 4:2:0");
    EXPECT_EQ(VP9With([](Frame& f) { f.mProfile = 2; }), "VP9 2@? 854x480 progressive cd=10 4:2:0");
    EXPECT_EQ(VP9With([](Frame& f) {
                  f.mProfile = 3;
                  f.mDepth = 1;
                  f.mSampling = 2;
              }),
              "VP9 3@? 854x480 progressive cd=12 4:2:2");
    EXPECT_EQ(VP9With([](Frame& f) { f.mProfile = 1; }), "VP9 1@? 854x480 progressive cd=8 4:4:4");
    EXPECT_EQ(VP9With([](Frame& f) {
                  f.mProfile = 1;
                  f.mSampling = 1;
              }),
              "VP9 1@? 854x480 progressive cd=8 4:4:0");
    EXPECT_EQ(VP9With([](Frame& f) {
                  f.mProfile = 1;
                  f.mSpace = 7;
              }),
              "VP9 1@? 854x480 progressive cd=8 RGB");
}

TEST(VP9Video, WhatIsNoKeyFrameTellsNothing) {
    EXPECT_EQ(VP9With([](Frame& f) { f.mOther = 2; }), "nothing");
    EXPECT_EQ(VP9With([](Frame& f) { f.mOther = 1; }), "nothing");
    EXPECT_EQ(VP9With([](Frame& f) { f.mSync = 0x498343; }), "nothing");
    EXPECT_EQ(VP9With([](Frame& f) { f.mSpace = 7; }), "nothing") << "RGB needs a profile for it";
    EXPECT_EQ(VP9(Hex({0x49, 0x83, 0x42, 0, 0, 0, 0, 0, 0, 0, 0})), "nothing") << "no marker";
    const std::string frame = Frame().Bytes();
    for (std::size_t size = 0; size < frame.size(); ++size) {
        EXPECT_EQ(VP9(frame.substr(0, size)), "nothing") << size;
    }
}

TEST(VP9Video, ConfigurationTellsLevelAndDynamicRange) {
    EXPECT_EQ(Config({1, 0, 0, 0, 0, 31, 0x82, 1, 1, 1, 0, 0}), "VP9 0@31 progressive cd=8 4:2:0");
    EXPECT_EQ(Config({1, 0, 0, 0, 2, 51, 0xA2, 9, 16, 9, 0, 0}), "VP9 2@51 progressive cd=10 4:2:0 PQ");
    EXPECT_EQ(Config({1, 0, 0, 0, 3, 0, 0xC6, 9, 18, 9, 0, 0}), "VP9 3@? progressive cd=12 4:4:4 HLG");
    EXPECT_EQ(Config({1, 0, 0, 0, 1, 63, 0x84, 1, 1, 1, 0, 0}), "VP9 1@? progressive cd=8 4:2:2");
    EXPECT_EQ(Config({0, 0, 0, 0, 0, 31, 0x82, 1, 1, 1, 0, 0}), "nothing") << "an older version";
    EXPECT_EQ(Config({1, 0, 0, 0, 4, 31, 0x82, 1, 1}), "nothing");
    EXPECT_EQ(Config({1, 0, 0, 0, 0, 31, 0x92, 1, 1}), "nothing") << "9 bits";
    EXPECT_EQ(Config({1, 0, 0, 0, 0, 31, 0x88, 1, 1}), "nothing") << "a reserved sampling";
    EXPECT_EQ(Config({1, 0, 0, 0, 0, 31, 0x82, 1}), "nothing") << "cut";
}

TEST(VP9Video, FeaturesTellWhatIsThere) {
    EXPECT_EQ(Features({1, 1, 2, 2, 1, 51, 3, 1, 10, 4, 1, 1}), "VP9 2@51 progressive cd=10 4:2:0");
    EXPECT_EQ(Features({2, 1, 20, 9, 1, 7}), "VP9 @20 progressive") << "and one that is not known";
    EXPECT_EQ(Features({1, 1, 4, 2, 1, 9, 3, 1, 9, 4, 1, 4}), "VP9 progressive") << "none of them legal";
    EXPECT_EQ(Features({1, 1, 0, 2, 2, 0, 31}), "VP9 0@? progressive") << "of another size";
    EXPECT_EQ(Features({1, 1}), "nothing");
    EXPECT_EQ(Features({}), "nothing");
}
