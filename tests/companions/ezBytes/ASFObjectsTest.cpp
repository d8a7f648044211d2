#include "ezBytes/ASFObjects.h"

#include "support/AsfBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Objects of ASF, and the lists in them.

namespace {

using Strings = std::vector<std::string>;
using namespace std::string_literals;

/// Bytes in memory, and a reader of them.
class Memory {
public:
    explicit Memory(std::string aText)
        : mText(std::move(aText)),
          mBytes(reinterpret_cast<const unsigned char*>(mText.data()), mText.size()) {}
    ByteReader Reader() { return ByteReader(mBytes); }
    /// After the head of an object.
    ByteReader Content() {
        ByteReader reader(mBytes);
        reader.Skip(24);
        return reader;
    }

private:
    std::string mText;
    BlockBytes mBytes;
};

std::string TextOf(ByteReader aReader) {
    return Str(aReader.ReadText(static_cast<std::size_t>(aReader.GetLeft())));
}

/// What the objects hold that a walk comes to.
template <typename Walk>
Strings ContentsOf(const std::string& aBytes, std::uint32_t aBudget = 100) {
    Memory bytes(aBytes);
    ByteReader content = bytes.Reader();
    Walk walk(content, aBudget);
    Strings found;
    for (ASFGuid kind; walk.Next(&kind, &content);) {
        found.push_back(TextOf(content));
    }
    return found;
}

} // namespace

TEST(ASFWalk, GivesEachObjectAndWhatThereIsOfTheLast) {
    const std::string two = asf::Object(asf::kPadding, "one") + asf::Object(asf::kIndex, "");
    EXPECT_EQ(ContentsOf<ASFWalk>(two), (Strings{"one", ""}));
    EXPECT_EQ(ContentsOf<ASFWalk>(two, 1), Strings{"one"});
    EXPECT_EQ(ContentsOf<ASFWalk>(two + std::string(23, 'x')), (Strings{"one", ""})) << "no head";
    for (const std::uint64_t size : {std::uint64_t{30}, std::uint64_t{1} << 63, UINT64_MAX}) {
        EXPECT_EQ(ContentsOf<ASFWalk>(two + asf::kPadding + Little(size, 8) + "cut"),
                  (Strings{"one", "", "cut"}))
            << size;
    }
    for (const std::uint64_t size : {0U, 1U, 23U}) {
        EXPECT_EQ(ContentsOf<ASFWalk>(asf::kPadding + Little(size, 8) + two), Strings()) << size;
    }
}

TEST(ASFHeaderWalk, ComesToTheObjectsOfTheExtensionAfterIt) {
    const std::string inside = asf::Object(asf::kPadding, "in") + asf::Object(asf::kPadding, "side");
    const std::string extension = asf::HeaderExtension(inside);
    const std::string all =
        asf::Object(asf::kIndex, "before") + extension + asf::Object(asf::kIndex, "after");
    EXPECT_EQ(ContentsOf<ASFHeaderWalk>(all),
              (Strings{"before", extension.substr(24), "in", "side", "after"}));
    EXPECT_EQ(ContentsOf<ASFHeaderWalk>(all, 3), (Strings{"before", extension.substr(24), "in"}));
    // What is within it is not looked into.
    const std::string nested = asf::HeaderExtension(extension);
    EXPECT_EQ(ContentsOf<ASFHeaderWalk>(nested), (Strings{nested.substr(24), extension.substr(24)}));
    EXPECT_EQ(ContentsOf<ASFHeaderWalk>(asf::Object(asf::kHeaderExtension, "short")), Strings{"short"});
}

TEST(ASFObjects, HeaderEndsWhereItSays) {
    const std::string objects = asf::Object(asf::kPadding, "one");
    Memory bytes(asf::Header(objects) + "rest");
    ByteReader reader = bytes.Reader();
    ByteReader inside = reader;
    EXPECT_TRUE(IsASFHeader(reader));
    ASSERT_TRUE(ReadASFHeader(reader, &inside));
    EXPECT_EQ(TextOf(inside), objects);
    EXPECT_EQ(TextOf(reader), "rest");
    for (const std::string& wrong : {asf::kData + Little(40, 8) + std::string(30, 'x'),
                                     asf::kHeader + Little(23, 8) + std::string(30, 'x'),
                                     asf::kHeader + Little(29, 8) + std::string(30, 'x'), asf::kHeader}) {
        Memory none(wrong);
        ByteReader start = none.Reader();
        EXPECT_FALSE(ReadASFHeader(start, &inside));
    }
}

TEST(ASFObjects, FilePropertiesTellWhatPlays) {
    const auto read = [](const asf::File& aFile) {
        Memory bytes(aFile.Bytes());
        ASFFileProperties file;
        EXPECT_TRUE(ReadASFFileProperties(bytes.Content(), &file));
        return file;
    };
    const asf::File usual = {542, 2028260000, 1579, 2, 7462, 160639, 0, 2013590000};
    const ASFFileProperties file = read(usual);
    EXPECT_EQ(file.mPackets, 542U);
    EXPECT_EQ(file.mPlayDuration, 2028260000U);
    EXPECT_EQ(file.mPreroll, 1579U);
    EXPECT_FALSE(file.mfBroadcast);
    EXPECT_EQ(file.mPacketSize, 7462U);
    EXPECT_EQ(file.mMaxBitRate, 160639U);
    EXPECT_EQ(file.GetMilliseconds(), 201247U);
    asf::File other = usual;
    other.mFlags = 3;
    other.mMaxPacketSize = 9000;
    EXPECT_TRUE(read(other).mfBroadcast);
    EXPECT_EQ(read(other).GetMilliseconds(), 0U);
    EXPECT_EQ(read(other).mPacketSize, 0U);
    other = usual;
    other.mPlay = 15790000;
    EXPECT_EQ(read(other).GetMilliseconds(), 0U);
    other.mPlay = 15800000;
    EXPECT_EQ(read(other).GetMilliseconds(), 1U);
    Memory cut(usual.Bytes().substr(0, 103));
    ASFFileProperties none;
    EXPECT_FALSE(ReadASFFileProperties(cut.Content(), &none));
}

TEST(ASFObjects, StreamPropertiesTellTheKindAndTheFormat) {
    const auto read = [](const std::string& anObject) {
        Memory bytes(anObject);
        const std::optional<ASFStream> stream = ReadASFStream(bytes.Content());
        if (!stream) {
            return "none"s;
        }
        const char* const kind = stream->mKind == ASFStreamKind::Sound   ? "sound "
                                 : stream->mKind == ASFStreamKind::Video ? "video "
                                                                         : "other ";
        return kind + std::to_string(stream->mNumber) + (stream->mfEncrypted ? " encrypted " : " ") +
               (stream->mForm == ASFForm::Unknown ? "unknown " : "") +
               (stream->mFormat.HasFailed() ? "-" : TextOf(stream->mFormat));
    };
    EXPECT_EQ(read(asf::Stream(1, asf::kAudioMedia, "format")), "sound 1 format");
    EXPECT_EQ(read(asf::Stream(127, asf::kVideoMedia, "format", 0x8000)), "video 127 encrypted format");
    EXPECT_EQ(read(asf::Stream(2, asf::kCommandMedia, "", 0x7F80)), "other 2 ");
    const std::string sound = asf::Hex("6175647300001000800000AA00389B71");
    const std::string video = asf::Hex("7669647300001000800000AA00389B71");
    const std::string wave = asf::Hex("819F580556C3CE11BF0100AA0055595A");
    EXPECT_EQ(read(asf::Binary(sound, wave, "format", 3)), "sound 3 format");
    EXPECT_EQ(read(asf::Binary(sound, std::string(16, 'f'), "format", 3)), "sound 3 unknown format");
    EXPECT_EQ(read(asf::Binary(video, std::string(16, 'f'), "format", 3)), "video 3 unknown format");
    EXPECT_EQ(read(asf::Binary(wave, wave, "format", 3)), "other 3 format");
    EXPECT_EQ(read(asf::Stream(1, asf::kAudioMedia, "format").substr(0, 24 + 54 + 3)), "sound 1 for");
    EXPECT_EQ(read(asf::Stream(1, asf::kAudioMedia, "").substr(0, 24 + 53)), "none");
}

TEST(ASFObjects, ExtendedStreamLeadsToWhatStandsAfterItsLists) {
    Memory bytes(asf::ExtendedStream(5, 64000, "objects", {"name", ""}, {"data", ""}));
    const std::optional<ASFExtendedStream> stream = ReadASFExtendedStream(bytes.Content());
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->mNumber, 5U);
    EXPECT_EQ(stream->mBitRate, 64000U);
    EXPECT_EQ(stream->mFrameTime, 3689348814740704323U);
    EXPECT_EQ(TextOf(stream->mObjects), "objects");
    std::string lying = asf::ExtendedStream(5, 64000, "objects", {"name"});
    lying.replace(84, 2, "\xFF\xFF"); // so many names
    Memory damaged(lying);
    const std::optional<ASFExtendedStream> other = ReadASFExtendedStream(damaged.Content());
    ASSERT_TRUE(other);
    EXPECT_EQ(other->mObjects.GetLeft(), 0U);
    Memory cut(lying.substr(0, 87));
    EXPECT_FALSE(ReadASFExtendedStream(cut.Content()));
}

TEST(ASFObjects, BitRatesAreThoseOfTheStreamsThatTheyName) {
    const auto read = [](const std::string& anObject) {
        Memory bytes(anObject);
        ASFBitRates rates(bytes.Content());
        Strings found;
        for (ASFBitRate rate; rates.Next(&rate);) {
            found.push_back(std::to_string(rate.mNumber) + ":" + std::to_string(rate.mBitRate));
        }
        return found;
    };
    const std::string rates = asf::BitRates({{1, 64000}, {0xFF82, UINT32_MAX}});
    EXPECT_EQ(read(rates), (Strings{"1:64000", "2:4294967295"}));
    EXPECT_EQ(read(rates.substr(0, rates.size() - 1)), Strings{"1:64000"});
    EXPECT_EQ(read(asf::BitRates({})), Strings());
    EXPECT_EQ(read(asf::Object(asf::kStreamBitRates, Little(UINT16_MAX, 2) + Little(3, 2) + Little(7))),
              Strings{"3:7"});
}
