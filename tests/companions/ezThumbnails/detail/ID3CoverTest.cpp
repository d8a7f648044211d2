#include "companions/ezThumbnails/CoverKit.h"

namespace {

const std::string kFront = Jpeg("front");
const Covers kFrontFound = {"image/jpeg " + kFront};

} // namespace

TEST(ID3Cover, IsFoundInEveryVersionOfTheTag) {
    const std::string title = "title of the song";
    EXPECT_EQ(CoversOf(ID3(2, 0, Frame22("TT2", title) + Frame22("PIC", "\0JPG\3text\0"s + kFront))),
              kFrontFound);
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("TIT2", title) + Frame23("APIC", Apic(3, kFront)))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("TIT2", title) + Frame24("APIC", Apic(3, kFront)))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(5, 0, Frame24("APIC", Apic(3, kFront)))), Covers());
    EXPECT_EQ(CoversOf(ID3(1, 0, Frame22("PIC", "\0JPG\3text\0"s + kFront))), Covers());
}

TEST(ID3Cover, SizesAboveOneByteAreReadTheWayOfTheVersion) {
    // 300 is 01 2C, and syncsafe 02 2C.
    const std::string picture = Jpeg(std::string(300, 'x'));
    const Covers found = {"image/jpeg " + picture};
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", Apic(3, picture)))), found);
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", Apic(3, picture)))), found);
}

TEST(ID3Cover, UnsynchronisationIsTakenBack) {
    // Of the tag as a whole: the size of a frame is the one without stuffing, that of the tag the one with
    // it.
    EXPECT_EQ(CoversOf(ID3(2, 0x80, Unsynchronised(Frame22("PIC", "\0JPG\3text\0"s + kFront)))), kFrontFound);
    EXPECT_EQ(
        CoversOf(
            ID3(3, 0x80, Unsynchronised(Frame23("PRIV", "\xFF\xFF\xFF") + Frame23("APIC", Apic(3, kFront))))),
        kFrontFound);
    // Of a frame: its size is the one with stuffing.
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", Unsynchronised(Apic(3, kFront)), 0x02))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0x80, Frame24("APIC", Unsynchronised(Apic(3, kFront)), 0x02))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0x80, Frame24("APIC", Unsynchronised(Apic(3, kFront))))), kFrontFound);
    // With the size that it has without.
    const std::string body = Apic(3, kFront);
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", Syncsafe(body.size()) + Unsynchronised(body), 0x03))),
              kFrontFound);
}

TEST(ID3Cover, FramesAfterAnUnsynchronisedOneAreFound) {
    const std::string other = Frame23("PRIV", "\xFF\0\xFF"s); // ends in 0xFF: its stuffing belongs to it
    EXPECT_EQ(CoversOf(ID3(3, 0x80, Unsynchronised(other + Frame23("APIC", Apic(3, kFront)) + other))),
              kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0,
                           Frame24("APIC", Unsynchronised(Apic(4, Jpeg("back"))), 0x02) +
                               Frame24("APIC", Apic(3, kFront)))),
              kFrontFound);
}

TEST(ID3Cover, ExtendedHeadersAreSteppedOver) {
    // 2.3: the size does not count itself.
    EXPECT_EQ(CoversOf(ID3(3, 0x40, Big(6, 4) + std::string(6, '\0') + Frame23("APIC", Apic(3, kFront)))),
              kFrontFound);
    // 2.4: it does.
    EXPECT_EQ(CoversOf(ID3(4, 0x40, Syncsafe(6) + "\1\0"s + Frame24("APIC", Apic(3, kFront)))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0x40, Syncsafe(5) + "\1\0"s + Frame24("APIC", Apic(3, kFront)))), Covers());
    // 2.2: all is compressed.
    EXPECT_EQ(CoversOf(ID3(2, 0x40, Frame22("PIC", "\0JPG\3text\0"s + kFront))), Covers());
}

TEST(ID3Cover, FrameFlagsAreHonoured) {
    const std::string front = Apic(3, kFront);
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", "g" + front, 0x20))), kFrontFound); // in a group
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", front, 0x80))), Covers());          // no zlib data
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", front, 0x40))), Covers());          // encrypted
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", "g" + front, 0x40))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", front, 0x08))), Covers());
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", front, 0x04))), Covers());
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", "g" + Syncsafe(front.size()) + front, 0x41))), kFrontFound);
    // The next frame takes its place.
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", front, 0x80) + Frame23("APIC", Apic(0, Png("other"))))),
              Covers{"image/png " + Png("other")});
}

TEST(ID3Cover, DescriptionsEndTheWayOfTheirEncoding) {
    const auto tag = [](const std::string& anEncoding, const std::string& aDescription) {
        return ID3(3, 0, Frame23("APIC", anEncoding + "image/jpeg\0\3"s + aDescription + kFront));
    };
    EXPECT_EQ(CoversOf(tag("\0"s, "\0"s)), kFrontFound);
    EXPECT_EQ(CoversOf(tag("\3", "\xC3\xBC\0"s)), kFrontFound);
    EXPECT_EQ(CoversOf(tag("\1", "\xFF\xFE\0\0"s)), kFrontFound);
    // U+0100 U+0001: two zeros in a row, but not at an even place.
    EXPECT_EQ(CoversOf(tag("\2", "\1\0\0\1\0\0"s)), kFrontFound);
    EXPECT_EQ(CoversOf(tag("\4", "\0"s)), Covers());
    // Bounded, whether it ends or not.
    EXPECT_EQ(CoversOf(tag("\0"s, std::string(5000, 'd') + "\0"s)), Covers());
    EXPECT_EQ(CoversOf(tag("\1", std::string(5000, 'd') + "\0\0"s)), Covers());
}

TEST(ID3Cover, ThePictureItselfTellsItsTypeBeforeTheTag) {
    const auto type = [](const std::string& aStated, const std::string& aPicture) {
        const Cover cover = FindCover(FindID3Cover, ID3(3, 0, Frame23("APIC", Apic(3, aPicture, aStated))));
        return Str(cover.mMimeType);
    };
    EXPECT_EQ(type("image/jpeg", Png("x")), "image/png");
    EXPECT_EQ(type("", kFront), "image/jpeg");
    EXPECT_EQ(type("image/png", "GIF89a"), "image/gif");
    EXPECT_EQ(type("image/png", "RIFF....WEBP"), "image/webp");
    EXPECT_EQ(type("image/jpg", "odd"), "image/jpeg");
    EXPECT_EQ(type("PNG", "odd"), "image/png");
    EXPECT_EQ(type("Image/X-Odd", "odd"), "image/x-odd");
    EXPECT_EQ(type("", "odd"), "");
    EXPECT_EQ(type("image/", "odd"), "");
    EXPECT_EQ(type("text/plain", "odd"), "");
    EXPECT_EQ(type("-->", "http://host/a.jpg"), "");
    EXPECT_EQ(type("image/jpeg", ""), "");
}

TEST(ID3Cover, PicturesInsideOfOtherFramesAreNotTaken) {
    const std::string inner = Frame23("APIC", Apic(3, Jpeg("chapter")));
    const std::string chapter = Frame23("CHAP", "id\0"s + std::string(16, '\0') + inner);
    EXPECT_EQ(CoversOf(ID3(3, 0, chapter)), Covers());
    EXPECT_EQ(CoversOf(ID3(3, 0, chapter + Frame23("APIC", Apic(0, kFront)))), kFrontFound);
    // A tag within a frame, and one within the tag.
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("PRIV", ID3(3, 0, inner)))), Covers());
    EXPECT_EQ(CoversOf(ID3(3, 0, ID3(3, 0, inner))), Covers());
}

TEST(ID3Cover, SizesThatLieAreRefused) {
    const std::string frame = Frame23("APIC", Apic(3, kFront));
    const std::string good = ID3(3, 0, frame);
    ASSERT_EQ(CoversOf(good), kFrontFound);
    // The tag: longer than the file, shorter than the frame, not syncsafe.
    for (const std::string& size :
         {Syncsafe(frame.size() + 1), Syncsafe(0xFFFFFFF), Syncsafe(frame.size() - 1), Syncsafe(0),
          "\x80\0\0\0"s + Syncsafe(frame.size()), "\0\0\0\x80"s}) {
        EXPECT_EQ(CoversOf(std::string(good).replace(6, 4, size.substr(0, 4))), Covers());
    }
    // The frame: longer than the tag, in 2.4 not syncsafe.
    const std::size_t place = 10 + 4;
    for (const std::uint64_t size : {frame.size() - 9, std::size_t{0x7FFFFFFF}, std::size_t{0xFFFFFFFF}}) {
        EXPECT_EQ(CoversOf(std::string(good).replace(place, 4, Big(size, 4)) + std::string(500, 'x')),
                  Covers());
    }
    EXPECT_EQ(CoversOf(std::string(good).replace(3, 1, "\4").replace(place, 4, Big(0x80, 4)) +
                       std::string(500, 'x')),
              Covers());
    // The size without stuffing is above the one with it.
    const std::string body = Apic(3, kFront);
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", Syncsafe(body.size() + 1) + body, 0x01))), Covers());
    EXPECT_EQ(CoversOf(ID3(4, 0, Frame24("APIC", Syncsafe(body.size()) + body, 0x01))), kFrontFound);
}

TEST(ID3Cover, WhatWasFoundBeforeTheDamageCounts) {
    const std::string frames = Frame23("APIC", Apic(0, kFront)) + "APIC\x7F\xFF\xFF\xFF\0\0junk"s;
    EXPECT_EQ(CoversOf(ID3(3, 0, frames)), kFrontFound);
}

TEST(ID3Cover, PicturesOverTheBoundAreNoCover) {
    const auto cover = [](std::size_t aSize, unsigned aVersion, unsigned aFlags) {
        const std::string body = Apic(3, "\xFF\xD8\xFE" + std::string(aSize - 3, 'x'));
        return FindCover(FindID3Cover, ID3(aVersion, 0, Frame24("APIC", body, aFlags))).IsFound();
    };
    EXPECT_TRUE(cover(kCover_MaxSize, 4, 0));
    EXPECT_FALSE(cover(kCover_MaxSize + 1, 4, 0));
    EXPECT_TRUE(cover(kCover_MaxHeldSize, 4, 0x02));
    EXPECT_FALSE(cover(kCover_MaxHeldSize + 1, 4, 0x02));
}

TEST(ID3Cover, ATagOfTinyFramesEndsWithTheTag) {
    std::string frames;
    for (int i = 0; i < 100000; ++i) {
        frames += Frame23("TXXX", "");
    }
    EXPECT_TRUE(FindCover(FindID3Cover, ID3(3, 0, frames + Frame23("APIC", Apic(3, kFront)))).IsFound());
}
