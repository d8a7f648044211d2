#include "companions/ezThumbnails/CoverKit.h"

#include "ezBytes/InflatedBytes.h"
#include "ezThumbnails/detail/GatheredCoverSource.h"

#include "support/ZlibBytes.h"

#ifdef EZ_HAS_ZLIB
#include <zlib.h>
#endif

namespace {

const std::size_t kHeadSize = Apic(3, "").size();
const std::string kFront = Jpeg("front");
const std::string kBack = Png("back");
const Covers kFrontFound = {"image/jpeg " + kFront};
const Covers kBackFound = {"image/png " + kBack};

/// @name A compressed frame of a body that is in zlib data, and that states a size
/// @{
std::string Packed23(const std::string& aData, std::uint64_t aSize, const std::string& aGroup = "") {
    return Frame23("APIC", Big(aSize, 4) + aGroup + aData, aGroup.empty() ? 0x80 : 0xA0);
}
std::string Packed24(const std::string& aData, std::uint64_t aSize) {
    return Frame24("APIC", Syncsafe(aSize) + aData, 0x09);
}
/// @}

std::string Packed23(const std::string& aBody) {
    return Packed23(ZlibData(aBody), aBody.size());
}

} // namespace

TEST(ID3CompressedCover, IsGivenOutWhereThereIsZlib) {
    const std::string body = Apic(3, kFront);
    const std::string data = ZlibData(body);
    const std::string stuffed = Unsynchronised(data);
    const struct {
        const char* mName;
        std::string mTag;
    } cases[] = {
        {"2.3", ID3(3, 0, Packed23(body))},
        {"2.3, in a group", ID3(3, 0, Packed23(data, body.size(), "g"))},
        {"2.3, unsynchronised", ID3(3, 0x80, Unsynchronised(Packed23(body)))},
        {"2.3, its size counts the stuffing",
         ID3(3, 0x80, Frame23("APIC", Big(body.size(), 4) + stuffed, 0x80) + Frame23("PRIV", "own"))},
        {"2.4", ID3(4, 0, Packed24(data, body.size()))},
        {"2.4, no size is stated", ID3(4, 0, Frame24("APIC", data, 0x08))},
        {"2.4, in a group", ID3(4, 0, Frame24("APIC", "g" + Syncsafe(body.size()) + data, 0x49))},
        {"2.4, unsynchronised", ID3(4, 0, Frame24("APIC", Syncsafe(body.size()) + stuffed, 0x0B))},
        {"2.4, unsynchronised without a size", ID3(4, 0, Frame24("APIC", stuffed, 0x0A))},
        {"2.4, unsynchronised as a whole", ID3(4, 0x80, Packed24(stuffed, body.size()))},
        {"more after the zlib data", ID3(3, 0, Packed23(data + "more", body.size()))},
        {"a size above the true one", ID3(3, 0, Packed23(data, body.size() + 100))},
    };
    ASSERT_NE(stuffed, data);
    for (const auto& one : cases) {
        EXPECT_EQ(CoversOf(one.mTag), InflatedBytes::IsAvailable() ? kFrontFound : Covers()) << one.mName;
    }
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", Big(body.size(), 4) + data, 0xC0))), Covers())
        << "encrypted as well";
}

TEST(ID3CompressedCover, AFrontComesBeforeAPlainPictureWhereverItStands) {
    const std::string front = Packed23(Apic(3, kFront));
    const std::string back = Frame23("APIC", Apic(4, kBack));
    const Covers found = InflatedBytes::IsAvailable() ? kFrontFound : kBackFound;
    EXPECT_EQ(CoversOf(ID3(3, 0, back + front)), found);
    EXPECT_EQ(CoversOf(ID3(3, 0, front + back)), found);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(Apic(4, kBack)) + Frame23("APIC", Apic(3, kFront)))), kFrontFound);
}

#ifdef EZ_HAS_ZLIB

namespace {

std::string Deflated(const std::string& aBytes) {
    uLongf size = compressBound(static_cast<uLong>(aBytes.size()));
    std::string data(size, '\0');
    EXPECT_EQ(compress(reinterpret_cast<Bytef*>(data.data()), &size,
                       reinterpret_cast<const Bytef*>(aBytes.data()), static_cast<uLong>(aBytes.size())),
              Z_OK);
    return data.substr(0, size);
}

/// A body of so many bytes.
std::string BodyOf(std::size_t aSize) {
    return Apic(3, "\xFF\xD8\xFF" + std::string(aSize - kHeadSize - 3, 'x'));
}

Cover Found(const std::string& aFrames) {
    return FindCover(FindID3Cover, ID3(3, 0, aFrames));
}

} // namespace

TEST(ID3CompressedCover, ItsHeadIsReadLikeThatOfAPlainOne) {
    const auto covers = [](const std::string& aBody) { return CoversOf(ID3(3, 0, Packed23(aBody))); };
    EXPECT_EQ(covers(Apic(0, Png("x"), "")), Covers{"image/png " + Png("x")});
    EXPECT_EQ(covers("\1image/jpeg\0\3\xFF\xFE\0\0"s + kFront), kFrontFound);
    EXPECT_EQ(covers(Apic(1, kFront)), Covers()) << "an icon";
    EXPECT_EQ(covers(Apic(3, "http://host/a.jpg", "-->")), Covers()) << "a link";
    EXPECT_EQ(covers(Apic(3, "")), Covers()) << "no picture";
    EXPECT_EQ(covers("\4" + Apic(3, kFront).substr(1)), Covers()) << "no encoding";
    EXPECT_EQ(covers(""), Covers());
}

TEST(ID3CompressedCover, TheLongestTextsBeforeThePictureAreInflated) {
    const auto body = [](std::size_t aMimeSize, std::size_t aDescriptionSize) {
        return "\2" + std::string(aMimeSize, 'm') + "\0\3"s + std::string(aDescriptionSize, 'd') + "\0\0"s +
               "RIFF....WEBP";
    };
    const std::string longest = body(kCover_MaxText - 1, kCover_MaxText);
    EXPECT_EQ(longest.size(), kCover_MaxInflatedHead);
    const Covers found = {"image/webp RIFF....WEBP"};
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(longest))), found);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(longest + "."))), Covers{found[0] + "."});
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(body(kCover_MaxText, kCover_MaxText)))), Covers());
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(body(kCover_MaxText - 1, kCover_MaxText + 2)))), Covers());
}

TEST(ID3CompressedCover, DamageInTheHeadLeavesItToTheNextPicture) {
    const std::string body = Apic(3, kFront);
    const std::string data = ZlibData(body);
    const std::string next = Frame23("APIC", Apic(4, kBack));
    ASSERT_EQ(CoversOf(ID3(3, 0, Packed23(data, body.size()) + next)), kFrontFound);
    for (std::size_t size = 0; size < data.size(); ++size) {
        EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(data.substr(0, size), body.size()) + next)), kBackFound)
            << size;
    }
    std::string sum = data;
    sum.back() = static_cast<char>(~sum.back());
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(sum, body.size()) + next)), kBackFound);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23("no zlib data", body.size()) + next)), kBackFound);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(data, body.size() - 1) + next)), kBackFound)
        << "more than is stated";
    EXPECT_EQ(
        CoversOf(ID3(4, 0, Frame24("APIC", Big(0x80, 4) + data, 0x09) + Frame24("APIC", Apic(4, kBack)))),
        kBackFound)
        << "no size of seven bits";
}

TEST(ID3CompressedCover, DamageAfterTheHeadGivesNoStream) {
    const std::string body = BodyOf(100000);
    const std::string data = ZlibData(body);
    const Covers refused = {"image/jpeg <null>"};
    std::string flipped = data;
    flipped[90000] = static_cast<char>(~flipped[90000]);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(data, body.size()))),
              Covers{"image/jpeg " + body.substr(kHeadSize)});
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(data.substr(0, 90000), body.size()))), refused);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(data.substr(0, data.size() - 1), body.size()))), refused);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(flipped, body.size()))), refused);
    EXPECT_EQ(CoversOf(ID3(3, 0, Packed23(data, body.size() - 1))), refused) << "more than is stated";
}

TEST(ID3CompressedCover, WhatItInflatesToIsBounded) {
    const auto streamOf = [](const std::string& aTag) { return CoversOf(aTag).at(0).substr(11, 6); };
    const std::string body = BodyOf(kCover_MaxInflatedSize);
    const std::string data = Deflated(body);
    const std::string bomb = Deflated(BodyOf(kCover_MaxInflatedSize + 1));
    ASSERT_LT(bomb.size(), 10000U);
    // As stated.
    EXPECT_TRUE(Found(Packed23(data, kCover_MaxInflatedSize)).IsFound());
    EXPECT_FALSE(Found(Packed23(bomb, kCover_MaxInflatedSize + 1)).IsFound());
    EXPECT_FALSE(Found(Packed23(bomb, 0xFFFFFFFF)).IsFound());
    // As it is, whether stated or not.
    EXPECT_EQ(streamOf(ID3(3, 0, Packed23(data, kCover_MaxInflatedSize))), "\xFF\xD8\xFFxxx");
    EXPECT_EQ(streamOf(ID3(3, 0, Packed23(bomb, kCover_MaxInflatedSize))), "<null>");
    EXPECT_EQ(streamOf(ID3(4, 0, Frame24("APIC", data, 0x08))), "\xFF\xD8\xFFxxx");
    EXPECT_EQ(streamOf(ID3(4, 0, Frame24("APIC", bomb, 0x08))), "<null>");
    // What states little is not inflated beyond that.
    EXPECT_FALSE(Found(Packed23(bomb, 100)).IsFound());
}

TEST(ID3CompressedCover, WhatIsStoredOfItIsBounded) {
    const std::string body = Apic(3, kFront);
    const std::string data = ZlibData(body);
    const auto padded = [&](std::size_t aSize) {
        return Packed23(data + std::string(aSize - data.size(), '\0'), body.size());
    };
    EXPECT_TRUE(Found(padded(kCover_MaxHeldSize)).IsFound());
    EXPECT_FALSE(Found(padded(kCover_MaxHeldSize + 1)).IsFound());
}

TEST(ID3CompressedCover, SoManyOfATagAreLookedAt) {
    std::string others;
    for (std::uint32_t i = 1; i < kCover_MaxCompressedPictures; ++i) {
        others += Packed23(Apic(1, kBack));
    }
    const std::string front = Packed23(Apic(3, kFront));
    const std::string plain = Frame23("APIC", Apic(4, kBack));
    EXPECT_EQ(CoversOf(ID3(3, 0, others + front)), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(3, 0, others + Packed23("damaged", 9) + front + plain)), kBackFound);
}

TEST(ID3CompressedCover, IsDeliveredInPiecesOfAnySizeFromAnyPlace) {
    const std::string picture = Jpeg(std::string(1000, 'x') + "middle");
    const TemporaryFolder folder;
    const std::string tag = ID3(3, 0x80, Unsynchronised(Packed23(Apic(3, picture))));
    const ezPathName path = ezPathName::MakeFilePath(Bytes(folder.Write("media", tag)));
    const GatheredCoverSource source(path, FindCover(FindID3Cover, tag));
    for (const std::size_t piece : {1U, 7U, 500U, 5000U}) {
        const ezStreamOwner stream(source.GetStream());
        ASSERT_NE(stream, nullptr);
        EXPECT_EQ(stream->GetSize().ToUInt64(), picture.size());
        std::string text;
        ezStreamingStatus status = ezStreamingStatus_NoError;
        while (status == ezStreamingStatus_NoError) {
            std::string buffer(piece, '\0');
            std::size_t size = piece;
            status = stream->Read(buffer.data(), &size, ezStreamReadFlag_Whole);
            text += buffer.substr(0, size);
        }
        EXPECT_EQ(status, ezStreamingStatus_EOS) << piece;
        EXPECT_EQ(text, picture) << piece;
        ASSERT_EQ(stream->Seek(std::uint64_t{4 + 1000}), ezStreamingStatus_NoError);
        std::string buffer(6, '\0');
        std::size_t size = buffer.size();
        stream->Read(buffer.data(), &size, ezStreamReadFlag_Whole);
        EXPECT_EQ(buffer, "middle") << piece;
    }
}

TEST(GatheredCoverSource, InflatesWhatLiesInPiecesFromItsOffsetOn) {
    const std::string data = ZlibData("head|picture");
    const TemporaryFolder folder;
    const ezPathName path = ezPathName::MakeFilePath(
        Bytes(folder.Write("media", data.substr(0, 9) + "between" + data.substr(9))));
    Cover cover;
    cover.mMimeType = "image/jpeg";
    cover.mPieces = {{0, 9}, {16, data.size() - 9}};
    cover.mfDeflated = true;
    cover.mMaxInflated = 12;
    cover.mEncodedOffset = 5;
    EXPECT_FALSE(cover.IsFilePart());
    const auto text = [&] { return ReadAll(GatheredCoverSource(path, cover).GetStream()); };
    EXPECT_EQ(text(), "picture");
    cover.mEncodedOffset = 12;
    EXPECT_EQ(text(), "");
    cover.mEncodedOffset = 13;
    EXPECT_EQ(text(), "<null>");
    cover.mEncodedOffset = 5;
    cover.mMaxInflated = 11;
    EXPECT_EQ(text(), "<null>");
}

TEST(GatheredCoverSource, InflatesNoMoreThanItsOwnBoundWhateverTheCoverSays) {
    const auto text = [](std::size_t aSize) {
        const std::string data = Deflated(std::string(aSize, 'x'));
        const TemporaryFolder folder;
        Cover cover;
        cover.mMimeType = "image/jpeg";
        cover.mPieces = {{0, data.size()}};
        cover.mfDeflated = true;
        cover.mMaxInflated = UINT32_MAX;
        cover.mEncodedOffset = static_cast<std::uint32_t>(aSize - 2);
        return ReadAll(
            GatheredCoverSource(ezPathName::MakeFilePath(Bytes(folder.Write("media", data))), cover)
                .GetStream());
    };
    EXPECT_EQ(text(kCover_MaxInflatedSize), "xx");
    EXPECT_EQ(text(kCover_MaxInflatedSize + 1), "<null>");
}

#endif
