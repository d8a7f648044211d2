#include "ezFormats/tta/TTAParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/TailBytes.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

/// A header, and so many bytes of sound.
struct Tta {
    std::uint32_t mChannels = 2;
    std::uint32_t mBits = 16;
    std::uint32_t mRate = 44100;
    std::uint32_t mSamples = 44100;
    std::size_t mThere = 60000;
    std::string mMagic = "TTA1";

    std::string Bytes() const {
        return mMagic + Little(1, 2) + Little(mChannels, 2) + Little(mBits, 2) + Little(mRate) +
               Little(mSamples) + Little(0) + Sound(mThere);
    }
};

std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<TTAParser>(aBytes);
}
std::string Length(const Tta& aFile) {
    return Values<TTAParser>(aFile.Bytes(), {"dm", "md"});
}
std::string Texts(const std::string& aBytes) {
    return Values<TTAParser>(aBytes, {"title", "creator", "cm"});
}

const std::string kPicture = "\xFF\xD8\xFF\xE0" + std::string(16, 'j');

std::vector<std::string> UsualFiles() {
    Tta small;
    small.mThere = 300;
    small.mSamples = 4410;
    return {small.Bytes(), TagWithCover() + small.Bytes() + ID3v1("t", "a", "", 17),
            small.Bytes() +
                APE2(APEItem("Title", "Song") + APEItem("Cover Art (Front)", "c.jpg\0"s + kPicture, 2))};
}

std::vector<std::string> CostlyFiles() {
    std::string frames;
    std::string items;
    for (int i = 0; i < 50; ++i) {
        frames += Frame23("PRIV", Sound(70000)) + Frame23("APIC", Apic(0, Sound(70000)));
        items += APEItem("Cover Art (Back)", "c.jpg\0"s + kPicture + Sound(70000), 2);
    }
    const std::string small = Tta().Bytes();
    return {ID3(3, 0, frames) + small + APE2(items), small + APE2(items) + ID3v1("t", "", "", 1),
            ID3(3, 0x80, std::string(300000, '\xFF')) + small};
}

const FormatFiles kFiles("tta", {16, 256U << 10}, {"ca", "sf", "ac", "bs"}, UsualFiles, CostlyFiles);

} // namespace

TEST(TTAParser, RecordSaysWhatTheHeaderAndTheTagsSay) {
    EXPECT_EQ(pictures::Parsed<TTAParser>(TagWithCover() + Tta().Bytes()), "ac=2\n"
                                                                           "ar=4294967295\n"
                                                                           "bs=16\n"
                                                                           "ca=\"TTA\"\n"
                                                                           "cm=\"image/jpeg\"\n"
                                                                           "cn=\"item.audioItem\"\n"
                                                                           "cs=20\n"
                                                                           "dl=\"DLNA.ORG_OP=01\"\n"
                                                                           "dm=1000\n"
                                                                           "du=1\n"
                                                                           "ea=480000\n"
                                                                           "md=\"header\"\n"
                                                                           "mt=\"audio/x-tta\"\n"
                                                                           "sf=44100\n"
                                                                           "ta=1\n"
                                                                           "title=\"Tagged\"\n"
                                                                           "creator=\"Tagger\"\n");
}

TEST(TTAParser, LengthIsThatOfTheCountIfTheSoundCanBeThatLong) {
    struct Row {
        std::uint32_t mSamples;
        std::size_t mThere;
        const char* mLength;
    };
    constexpr Row kRows[] = {{44100, 60000, "1000|\"header\""},
                             {0, 60000, "|"},
                             {UINT32_MAX, 60000, "|"},
                             {UINT32_MAX - 1, 60000, "|"},          // five bits a second
                             {44100 * 60, 750, "60000|\"header\""}, // a hundred bits a second
                             {44100 * 60, 749, "|"},
                             {44100, 0, "|"}};
    for (const Row& row : kRows) {
        Tta file;
        file.mSamples = row.mSamples;
        file.mThere = row.mThere;
        EXPECT_EQ(Length(file), row.mLength) << row.mSamples << " " << row.mThere;
    }
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Values<TTAParser>(Tta().Bytes() + ID3v1("t", "", "", 1), {"dm", "title", "ea"}, unknown),
              "1000||")
        << "of unknown size, no end is looked for";
}

TEST(TTAParser, TagsAreNoSound) {
    for (const std::string& tag :
         {""s, ID3v1("t", "", "", 1), APE2(APEItem("Title", std::string(9000, 't')))}) {
        EXPECT_EQ(Values<TTAParser>(TagWithCover() + Tta().Bytes() + tag, {"dm", "ea"}), "1000|480000");
    }
}

TEST(TTAParser, TextsAreThoseOfTheTagBeforeThenOfThoseAfter) {
    const std::string file = Tta().Bytes();
    const std::string before = ID3(3, 0, Frame23("TIT2", "\0Before"s));
    const std::string cover = APEItem("Cover Art (Front)", "c.jpg\0"s + kPicture, 2);
    const std::string after = APE2(APEItem("Title", "After") + APEItem("Artist", "Singer") + cover);
    EXPECT_EQ(Texts(file), "||");
    EXPECT_EQ(Texts(before + file), "\"Before\"||");
    EXPECT_EQ(Texts(file + after), "\"After\"|\"Singer\"|\"image/jpeg\"");
    EXPECT_EQ(Texts(before + file + after), "\"Before\"|\"Singer\"|\"image/jpeg\"");
    EXPECT_EQ(Texts(file + after + ID3v1("Last", "", "", 1)), "\"After\"|\"Singer\"|\"image/jpeg\"");
    EXPECT_EQ(Texts(file + ID3v1("Last", "Least", "", 1)), "\"Last\"|\"Least\"|");
}

TEST(TTAParser, WhatIsNotOneIsRefused) {
    Tta other;
    other.mMagic = "TTA2";
    EXPECT_EQ(Refusal(other.Bytes()), "TTAParser: malformed: begins with 54544132");
    other.mMagic = "TTA\1";
    EXPECT_EQ(Refusal(TagWithCover() + other.Bytes()), "TTAParser: malformed: begins with 54544101");
    EXPECT_EQ(Refusal(Tta().Bytes().substr(0, 21)),
              "TTAParser: malformed: ends before the end of the header");
    EXPECT_EQ(Values<TTAParser>(Tta().Bytes().substr(0, 22), {"sf", "dm"}), "44100|") << "without any sound";
    const auto refusal = [](std::uint32_t aChannels, std::uint32_t aBits, std::uint32_t aRate) {
        return Refusal(Tta{aChannels, aBits, aRate, 9, 60, "TTA1"}.Bytes());
    };
    EXPECT_EQ(refusal(0, 16, 44100), "TTAParser: malformed: 0 channels of 16 bits at 44100 Hz");
    EXPECT_EQ(refusal(2, 0, 44100), "TTAParser: malformed: 2 channels of 0 bits at 44100 Hz");
    EXPECT_EQ(refusal(2, 33, 44100), "TTAParser: malformed: 2 channels of 33 bits at 44100 Hz");
    EXPECT_EQ(refusal(2, 16, 0), "TTAParser: malformed: 2 channels of 16 bits at 0 Hz");
}

TEST(TTAParser, EndThatCannotBeReadRefusesTheFile) {
    const std::string file = Tta().Bytes();
    Delivery failing;
    failing.mFailingOffset = file.size() - 100;
    EXPECT_EQ(pictures::Refusal<TTAParser>(file, failing),
              "TTAParser: read error: before the end of the tags");
}

TEST(TTAParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint64_t sound : {std::uint64_t{40000}, std::uint64_t{3} << 30}) {
        Tta file;
        file.mThere = 0;
        file.mSamples = static_cast<std::uint32_t>(sound);
        const std::string head = TagWithCover() + file.Bytes();
        const std::string tail = APE2(APEItem("Album", "Songs"));
        SparseStream stream(head.size() + sound + tail.size(), {{0, head}, {head.size() + sound, tail}});
        EXPECT_EQ(SparseValue<TTAParser>(stream, "album"), "\"Songs\"");
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, 16384U);
    }
}
