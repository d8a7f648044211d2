#include "ezFormats/codecs/DVSound.h"

#include "companions/ezFormats/codecs/DVBytes.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

std::string Told(const std::string& aBytes) {
    const DVSound sound = DVSound_Read(Data(aBytes), aBytes.size());
    return std::to_string(sound.mTrackCount) + " " + sound.mFacts.mCodec.c_str() + " " +
           std::to_string(sound.mFacts.mSamplingRate) + " " + std::to_string(sound.mFacts.mChannels) + " " +
           std::to_string(sound.mFacts.mBitsPerSample);
}

constexpr const char* kNone = "0  0 0 0";

} // namespace

TEST(DVSound, IsThatOfItsSourceInWhicheverBlockThatStands) {
    struct Case {
        unsigned mTwoInBlock;
        unsigned mMode;
        unsigned mRate;
        unsigned mQuantisation;
        const char* mFacts;
    };
    constexpr Case kCases[] = {
        {0, 0, 0, 0, "1 LPCM 48000 2 16"},
        {0, 0, 1, 0, "1 LPCM 44100 2 16"},
        {1, 0, 2, 1, "2 LPCM 32000 2 16"},
        {0, 1, 0, 2, "1 LPCM 48000 2 20"},
        {0, 15, 0, 0, kNone},
        {0, 0, 3, 0, kNone},
        {0, 0, 0, 3, kNone},
    };
    for (const Case& test : kCases) {
        DVSequence sequence;
        sequence.mTwoInBlock = test.mTwoInBlock;
        sequence.mMode = test.mMode;
        sequence.mRate = test.mRate;
        sequence.mQuantisation = test.mQuantisation;
        for (std::size_t block = 0; block < 9; ++block) {
            sequence.mSoundBlock = block;
            EXPECT_EQ(Told(sequence.Bytes()), test.mFacts);
        }
    }
}

TEST(DVSound, NeedsItsPackAndAFrame) {
    const std::string whole = DVSequence().Bytes();
    EXPECT_EQ(Told(whole.substr(0, 6 * 80 + 7)), kNone);
    EXPECT_EQ(Told(whole.substr(0, 6 * 80 + 8)), Told(whole));
    EXPECT_EQ(Told("\x80" + whole.substr(1)), kNone);
    EXPECT_EQ(Told(""), kNone);
}
