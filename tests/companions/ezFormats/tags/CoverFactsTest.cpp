#include "ezFormats/tags/CoverFacts.h"

#include "ezFormats/tags/CommentTexts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteSource.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/CommentBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

// Covers in tags, and comments that hold them.

namespace {

const std::string kPng = "\x89PNG\r\n\x1A\n ours";

std::string Stored(const CoverFacts& aCover) {
    ezMediaInfo info;
    aCover.Store(info);
    return Str(info.GetCString(kezInfo_CoverMimeType, "-")) + " " +
           Str(info.GetCString(kezInfo_CoverSize, "-"));
}

/// What comments tell: title, creator, cover.
std::string Told(const std::vector<std::string>& aComments) {
    const std::string bytes = Comments(aComments);
    BlockBytes block(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    MusicTexts texts;
    CoverFacts cover;
    ReadCommentTexts(ByteReader(block), CodePage(), texts, cover);
    return Str(texts.mTitle) + "|" + Str(texts.mCreator) + "|" + Stored(cover);
}

/// The cover that is told of one APE item.
std::string ToldOfAPE(const std::string& aKey, const std::string& aValue) {
    BlockBytes block(reinterpret_cast<const unsigned char*>(aValue.data()), aValue.size());
    CoverFacts cover;
    cover.OfferAPEItem(ezCString(aKey.c_str()), ByteReader(block));
    return Stored(cover);
}

} // namespace

TEST(CoverFacts, FrontCoverCountsBeforeTheFirstOfAnotherType) {
    CoverFacts cover;
    EXPECT_EQ(Stored(cover), "- -");
    EXPECT_FALSE(cover.IsFound());
    cover.Offer(kPictureType_FileIcon, "image/png", 1);
    cover.Offer(0, "", 2);          // no picture
    cover.Offer(0, "image/gif", 0); // none either
    EXPECT_FALSE(cover.IsFound());
    cover.Offer(5, "image/gif", 3);
    cover.Offer(4, "image/bmp", 4);
    EXPECT_EQ(Stored(cover), "image/gif 3");
    EXPECT_FALSE(cover.IsFinal());
    cover.Offer(kPictureType_FrontCover, "image/jpeg", UINT64_C(5000000000));
    cover.Offer(kPictureType_FrontCover, "image/png", 6);
    EXPECT_EQ(Stored(cover), "image/jpeg 5000000000");
    EXPECT_TRUE(cover.IsFinal());
}

TEST(CoverFacts, AnotherSourceTellsWhatThisOneDoesNot) {
    CoverFacts cover;
    CoverFacts other;
    other.Offer(4, "image/png", 7);
    cover.Complete(other);
    EXPECT_EQ(Stored(cover), "image/png 7");
    other.Offer(kPictureType_FrontCover, "image/jpeg", 8);
    cover.Complete(other);
    EXPECT_EQ(Stored(cover), "image/png 7");
}

TEST(CommentTexts, PicturesOfEitherFormAreCovers) {
    const std::string block = PictureComment(PictureOfFlac(3, kPng, "image/x"));
    EXPECT_EQ(Told({block, "title=T", "artist=A"}), "T|A|image/png 13");
    // An older form tells no type, and as many bytes as its text makes.
    for (const std::size_t more : {0U, 1U, 2U}) {
        const std::string old = "coverart=" + Base64(kPng + std::string(more, 'x'));
        EXPECT_EQ(Told({old}), "||image/png " + std::to_string(13 + more));
        EXPECT_EQ(Told({old, block}), "||image/png 13");
        EXPECT_EQ(Told({block, old}), "||image/png 13");
    }
}

TEST(CommentTexts, WhatIsNoPictureIsPassedOver) {
    for (const std::string& comment :
         {std::string("COVERART="), std::string("COVERART=abc"), "COVERART=" + Base64("no picture at all"),
          std::string("METADATA_BLOCK_PICTURE="), PictureComment(PictureOfFlac(3, "")),
          PictureComment(PictureOfFlac(3, "http://h/x.jpg", "-->")), PictureComment(PictureOfFlac(1, kPng)),
          PictureComment(PictureOfFlac(3, kPng, std::string(300, 'm'))),
          PictureComment(PictureOfFlac(3, kPng).substr(0, 30)),
          PictureComment(Big(3, 4) + Big(0, 4) + Big(0, 4) + std::string(16, '\0') + Big(0xFFFFFFFF, 4) +
                         kPng)}) {
        EXPECT_EQ(Told({comment, "title=T"}), "T||- -") << comment;
    }
    EXPECT_EQ(Told({PictureComment(PictureOfFlac(3, kPng, std::string(256, 'm')))}), "||image/png 13");
}

TEST(CommentTexts, WhatFollowsTheFrontCoverIsLeftOnceATitleIsKnown) {
    const std::string front = PictureComment(PictureOfFlac(3, kPng));
    const std::string back = PictureComment(PictureOfFlac(4, kPng));
    EXPECT_EQ(Told({"title=T", front, "artist=A"}), "T||image/png 13");
    EXPECT_EQ(Told({front, "title=T", "artist=A"}), "T|A|image/png 13");
    EXPECT_EQ(Told({"title=T", back, "artist=A"}), "T|A|image/png 13");
}

TEST(CommentTexts, KeysAreOfAnyCaseAndValuesAreUtf8) {
    EXPECT_EQ(Told({"TiTlE=Gr\xC3\xBCn", "ARTIST=", "Artist=One", "artist=Two=2", "x"}),
              "Gr\xC3\xBCn|One, Two=2|- -");
    EXPECT_EQ(Told({"performer=P"}), "|P|- -");
    EXPECT_EQ(Told({"performer=P", "artist=A"}), "|A|- -"); // more to the point
}

TEST(CoverFacts, OfAnAPEItemThePictureAfterItsNameIsToldAndNoIcon) {
    const std::string named = std::string("name.png") + '\0' + kPng;
    EXPECT_EQ(ToldOfAPE("Cover Art (Front)", named), "image/png 13");
    EXPECT_EQ(ToldOfAPE("cover art (artist)", named), "image/png 13");
    EXPECT_EQ(ToldOfAPE("Cover Art (Front)", kPng), "image/png 13");
    EXPECT_EQ(ToldOfAPE("Cover Art (Icon)", named), "- -");
    EXPECT_EQ(ToldOfAPE("Cover Art (Other Icon)", named), "- -");
    EXPECT_EQ(ToldOfAPE("Cover", named), "- -");
    EXPECT_EQ(ToldOfAPE("Cover Art (Front)", std::string("name.png") + '\0' + "ours"), "- -");
}
