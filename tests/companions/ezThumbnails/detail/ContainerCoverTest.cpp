#include "companions/ezThumbnails/CoverKit.h"

#include "ezThumbnails/detail/CoverLimits.h"

namespace {

const std::string kFront = Jpeg("front");
const Covers kFrontFound = {"image/jpeg " + kFront};

std::string FlacPicture(unsigned aType, const std::string& aPicture) {
    return FlacBlock(6, PictureOfFlac(aType, aPicture));
}

} // namespace

TEST(FLACCover, IsFoundAlsoAfterATag) {
    EXPECT_EQ(CoversOf(Flac(FlacPicture(3, kFront))), kFrontFound);
    EXPECT_EQ(CoversOf(ID3(4, 0, std::string(300, '\0')) + Flac(FlacPicture(3, kFront))), kFrontFound);
    // A tag with a footer is ten bytes longer than it says.
    EXPECT_EQ(
        CoversOf(ID3(4, 0x10, std::string(30, '\0')) + std::string(10, 'f') + Flac(FlacPicture(3, kFront))),
        kFrontFound);
    EXPECT_EQ(CoversOf(Flac(FlacBlock(6, PictureOfFlac(3, kFront, "", std::string(9000, 'd'))))),
              kFrontFound);
    EXPECT_EQ(CoversOf(Flac("")), Covers());
    EXPECT_EQ(CoversOf("fLaX" + FlacPicture(3, kFront)), Covers());
}

TEST(FLACCover, ItsOwnPictureComesBeforeTheOneOfTheTag) {
    const std::string tag = ID3(3, 0, Frame23("APIC", Apic(3, Png("tag"))));
    EXPECT_EQ(CoversOf(tag + Flac(FlacPicture(0, kFront))),
              (Covers{"image/jpeg " + kFront, "image/png " + Png("tag")}));
    EXPECT_EQ(CoversOf(tag + Flac("")), Covers{"image/png " + Png("tag")});
}

TEST(FLACCover, TagsBeforeItAreAsManyAsThereAre) {
    const std::string bare = ID3(3, 0, Frame23("TIT2", "\0Title"s));
    const std::string ape =
        "APETAGEX" + Little(2000) + Little(0) + Little(0) + Little(0xA0000000) + Little(0, 8);
    const std::string tagged = ID3(3, 0, Frame23("APIC", Apic(3, Png("tag"))));
    EXPECT_EQ(CoversOf(bare + ape + bare + Flac(FlacPicture(3, kFront))), kFrontFound);
    EXPECT_EQ(CoversOf(bare + ape + tagged + Flac("")), Covers{"image/png " + Png("tag")});
    EXPECT_EQ(CoversOf(bare + tagged + "frames"), Covers{"image/png " + Png("tag")});
}

TEST(FLACCover, IsFoundInCommentsAsThoseOfOggAre) {
    const std::string comment = PictureComment(PictureOfFlac(3, kFront));
    const std::string old = "COVERART=" + Base64(Png("old"));
    EXPECT_EQ(CoversOf(Flac(FlacBlock(4, Comments({"TITLE=x", comment})))), kFrontFound);
    EXPECT_EQ(CoversOf(Flac(FlacBlock(4, Comments({old})))), Covers{"image/png " + Png("old")});
    EXPECT_EQ(CoversOf(Flac(FlacBlock(4, Comments({old})) + FlacPicture(3, kFront))), kFrontFound);
    EXPECT_EQ(CoversOf(Flac(FlacPicture(0, Png("first")) + FlacBlock(4, Comments({old})))),
              Covers{"image/png " + Png("first")});
}

TEST(FLACCover, ALinkIsNoPicture) {
    EXPECT_EQ(CoversOf(Flac(FlacBlock(6, PictureOfFlac(3, "http://host/a.jpg", "-->")))), Covers());
}

TEST(FLACCover, NothingAfterTheLastBlockIsRead) {
    EXPECT_EQ(CoversOf("fLaC" + FlacBlock(0, std::string(34, 's'), true) + FlacPicture(3, kFront)), Covers());
}

TEST(FLACCover, SizesThatLieAreRefused) {
    const std::string block = PictureOfFlac(3, kFront);
    const std::size_t mimeSize = 4;
    const std::size_t descriptionSize = 8 + 10;
    const std::size_t dataSize = block.size() - kFront.size() - 4;
    for (const std::size_t place : {mimeSize, descriptionSize, dataSize}) {
        for (const std::uint64_t size : {0x10000000ULL, 0x7FFFFFFFULL, 0xFFFFFFFFULL, 0xFFFFFFF0ULL}) {
            const std::string lie = std::string(block).replace(place, 4, Big(size, 4));
            EXPECT_EQ(CoversOf(Flac(FlacBlock(6, lie))), Covers()) << place << " " << size;
        }
    }
    // One byte more than the block holds, though the file does.
    const std::string lie = std::string(block).replace(dataSize, 4, Big(kFront.size() + 1, 4));
    EXPECT_EQ(CoversOf(Flac(FlacBlock(6, lie))), Covers());
    // What comes after is not lost by it.
    EXPECT_EQ(CoversOf(Flac(FlacBlock(6, lie) + FlacPicture(0, kFront))), kFrontFound);
}

TEST(ChunkCover, IsThatOfTheFirstTagWithOne) {
    const std::string tag = ID3(3, 0, Frame23("APIC", Apic(3, kFront)));
    const std::string bare = ID3(3, 0, Frame23("TIT2", "\0Title"s));
    const std::string other = ID3(3, 0, Frame23("APIC", Apic(3, Png("other"))));
    for (const char* const name : {"ID3 ", "id3 "}) {
        EXPECT_EQ(CoversOf(Wav(WavChunk("fmt ", "form") + WavChunk(name, tag) + WavChunk("data", "sound"))),
                  kFrontFound);
        EXPECT_EQ(CoversOf(Aiff(AiffChunk(name, tag) + AiffChunk("SSND", "sound"))), kFrontFound);
    }
    const std::string data = WavChunk("data", "sound");
    EXPECT_EQ(CoversOf(Wav(data + WavChunk("id3 ", bare) + WavChunk("id3 ", tag) + WavChunk("id3 ", other))),
              kFrontFound);
    EXPECT_EQ(CoversOf(Wav(data + WavChunk("LIST", "INFO" + tag))), Covers());
    EXPECT_EQ(CoversOf(Wav(WavChunk("data", WavChunk("id3 ", tag)))), Covers()) << "bytes of the sound";
    EXPECT_EQ(CoversOf("RIFF" + Little(4 + tag.size() + 8) + "AVI " + WavChunk("id3 ", tag)), Covers());
    EXPECT_EQ(CoversOf("FORM" + Big(4 + tag.size() + 8, 4) + "8SVX" + AiffChunk("ID3 ", tag)), Covers());
    // A tag before the file is the cover where its chunks have none.
    EXPECT_EQ(CoversOf(other + Wav(data)), Covers{"image/png " + Png("other")});
    for (std::uint32_t count = kCover_MaxChunks - 1; count <= kCover_MaxChunks; ++count) {
        std::string chunks;
        for (std::uint32_t i = 0; i < count; ++i) {
            chunks += WavChunk("junk", "");
        }
        EXPECT_EQ(CoversOf(Wav(chunks + WavChunk("id3 ", tag))),
                  count < kCover_MaxChunks ? kFrontFound : Covers());
    }
}

TEST(DSDCover, IsThatOfTheTag) {
    const std::string tag = ID3(3, 0, Frame23("APIC", Apic(3, kFront)));
    EXPECT_EQ(CoversOf(Dsdiff(DsdiffChunk("ID3 ", tag) + DsdiffChunk("DSD ", "sound"))), kFrontFound);
    EXPECT_EQ(CoversOf(Dsdiff(DsdiffChunk("DSD ", DsdiffChunk("ID3 ", tag)))), Covers())
        << "bytes of the sound";
    EXPECT_EQ(CoversOf("FRM8" + Big(4 + tag.size() + 12, 8) + "8SVX" + DsdiffChunk("ID3 ", tag)), Covers());
    EXPECT_EQ(CoversOf(Dsf(tag)), kFrontFound);
    EXPECT_EQ(CoversOf(Dsf("more" + tag, 101)), kFrontFound);
    for (const std::uint64_t place : {std::uint64_t{0}, std::uint64_t{27}, std::uint64_t{96},
                                      std::uint64_t{98}, std::uint64_t{1} << 40, UINT64_MAX}) {
        EXPECT_EQ(CoversOf(Dsf(tag, place)), Covers()) << place;
    }
    EXPECT_EQ(CoversOf(std::string(Dsf(tag)).replace(4, 1, 1, '\x1D')), Covers()) << "another head";
}

TEST(MP4Cover, IsFoundWhereverTheBoxOfTheFilmLies) {
    const std::string moov = Moov(DataBox(13, kFront));
    EXPECT_EQ(CoversOf(Ftyp() + moov + Box("mdat", "samples")), kFrontFound);
    EXPECT_EQ(CoversOf(Ftyp() + Box("mdat", "samples") + moov), kFrontFound);
    EXPECT_EQ(CoversOf(Ftyp() + LongBox("mdat", "samples") + moov), kFrontFound);
    EXPECT_EQ(CoversOf(Ftyp() + LongBox("moov", moov.substr(8))), kFrontFound);
    EXPECT_EQ(CoversOf(Ftyp() + Big(0, 4) + moov.substr(4)), kFrontFound); // up to the end
    EXPECT_EQ(CoversOf(moov), Covers());                                   // not the start of such a file
    EXPECT_EQ(CoversOf(Ftyp() + Box("mdat", moov)), Covers());             // bytes of a sample
}

TEST(MP4Cover, TheBoxOfMetadataMayBeThatOfQuickTime) {
    const std::string list = Box("ilst", Box("covr", DataBox(13, kFront)));
    const std::string meta = Box("meta", Box("hdlr", std::string(25, '\0')) + list);
    EXPECT_EQ(CoversOf(Ftyp() + Box("moov", Box("udta", meta))), kFrontFound);
}

TEST(MP4Cover, TheFirstPictureIsTheCover) {
    EXPECT_EQ(CoversOf(Ftyp() + Moov(DataBox(13, kFront) + DataBox(14, Png("second")))), kFrontFound);
    EXPECT_EQ(CoversOf(Ftyp() + Moov(Box("name", "n") + DataBox(13, "") + DataBox(0, kFront))), kFrontFound);
    EXPECT_EQ(CoversOf(Ftyp() + Moov(DataBox(13, Png("stated wrongly")))),
              Covers{"image/png " + Png("stated wrongly")});
    EXPECT_EQ(CoversOf(Ftyp() + Moov(DataBox(1, "a text"))), Covers());
    EXPECT_EQ(CoversOf(Ftyp() + Moov("")), Covers());
}

TEST(MP4Cover, SizesThatLieAreRefused) {
    const std::string good = Ftyp() + Moov(DataBox(13, kFront));
    ASSERT_EQ(CoversOf(good), kFrontFound);
    // Each of the boxes that lead there: longer than what it lies in, shorter than its own head.
    for (const char* const type : {"moov", "udta", "meta", "ilst", "covr", "data"}) {
        const std::size_t place = good.rfind(type) - 4;
        for (const std::uint64_t size : {good.size() - place + 1, std::size_t{7}, std::size_t{0xFFFFFFFF}}) {
            EXPECT_EQ(CoversOf(std::string(good).replace(place, 4, Big(size, 4))), Covers())
                << type << " " << size;
        }
    }
    // Sizes of 64 bits that would wrap.
    for (const std::uint64_t size : {UINT64_MAX, UINT64_MAX - 7, std::uint64_t{1} << 63, std::uint64_t{15}}) {
        EXPECT_EQ(CoversOf(Ftyp() + Big(1, 4) + "mdat" + Big(size, 8) + Moov(DataBox(13, kFront))), Covers());
    }
    // A box that reaches out of its parent, into bytes that the file has.
    const std::size_t data = good.rfind("data") - 4;
    EXPECT_EQ(CoversOf(std::string(good).replace(data, 4, Big(good.size() - data + 5, 4)) + "behind"),
              Covers());
}

TEST(MP4Cover, BoxesAreCountedAndDepthIsNoRecursion) {
    std::string boxes;
    for (std::uint32_t i = 0; i < kCover_MaxBoxes; ++i) {
        boxes += Box("free", "");
    }
    const std::string moov = Moov(DataBox(13, kFront));
    EXPECT_FALSE(FindCover(FindMP4Cover, Ftyp() + boxes + moov).IsFound());
    EXPECT_TRUE(FindCover(FindMP4Cover, Ftyp() + boxes.substr(0, boxes.size() / 2) + moov).IsFound());
    std::string deep;
    for (int i = 0; i < 20000; ++i) {
        deep = Big(0, 4) + "moov" + deep;
    }
    EXPECT_FALSE(FindCover(FindMP4Cover, Ftyp() + deep).IsFound());
}

TEST(OggCover, IsFoundInEveryKindOfSound) {
    const std::string picture = PictureComment(PictureOfFlac(3, kFront));
    EXPECT_EQ(CoversOf(Vorbis({"TITLE=x", picture})), kFrontFound);
    EXPECT_EQ(CoversOf(PageOfOgg(1, 2, "OpusHead" + std::string(11, 'i'), true) +
                       PageOfOgg(1, 0, "OpusTags" + Comments({picture}), true)),
              kFrontFound);
    EXPECT_EQ(CoversOf(Vorbis({"METADATA_BLOCK_PICTURES=" + picture.substr(23), "TITLE=x"})), Covers());
    EXPECT_EQ(CoversOf(PageOfOgg(1, 2, "Speex   ", true) + PageOfOgg(1, 0, Comments({picture}), true)),
              kFrontFound);
    const std::string flac = PageOfOgg(1, 2,
                                       "\x7F"
                                       "FLAC\1\0\0\1fLaC"s,
                                       true);
    EXPECT_EQ(CoversOf(flac + PageOfOgg(1, 0, FlacBlock(4, Comments({picture})), true)), kFrontFound);
    EXPECT_EQ(CoversOf(flac + PageOfOgg(1, 0, FlacBlock(1, Comments({picture})), true)), Covers());
    EXPECT_EQ(CoversOf(PageOfOgg(1, 2, "kate", true) + PageOfOgg(1, 0, Comments({picture}), true)), Covers());
    // Of an older form, the picture alone.
    EXPECT_EQ(CoversOf(Vorbis({"coverart=" + Base64(kFront)})), kFrontFound);
    EXPECT_EQ(CoversOf(Vorbis({"coverart=" + Base64("no picture")})), Covers());
}

TEST(OggCover, OnOnePageItIsAFilePartAndAcrossPagesItIsGathered) {
    for (std::size_t size = 0; size < 40; ++size) {
        const std::string picture = Jpeg(std::string(600 + size, 'x'));
        const std::vector<std::string> comments = {"A=b", PictureComment(PictureOfFlac(3, picture))};
        const Covers found = {"image/jpeg " + picture};
        EXPECT_TRUE(FindCover(FindOggCover, Vorbis(comments)).IsFilePart());
        EXPECT_EQ(CoversOf(Vorbis(comments)), found);
        EXPECT_GE(FindCover(FindOggCover, Vorbis(comments, 255)).mPieces.size(), 4U);
        EXPECT_EQ(CoversOf(Vorbis(comments, 255)), found);
        EXPECT_EQ(CoversOf(Vorbis(comments, 510)), found);
    }
}

TEST(OggCover, IsFoundInBlocksOfFLACOnPagesOfTheirOwn) {
    const auto file = [](const std::vector<std::string>& aPackets, std::size_t aPageSize) {
        std::string pages = PageOfOgg(7, 2,
                                      "\x7F"
                                      "FLAC\1\0\0\1fLaC"s,
                                      true);
        for (const std::string& packet : aPackets) {
            for (const std::string& page : PagesOfOgg(7, packet, aPageSize)) {
                pages += page + PageOfOgg(9, 0, "other", true);
            }
        }
        return pages + PageOfOgg(7, 0, "\xFF\xF8 frame", true);
    };
    const std::string comments = FlacBlock(4, Comments({"TITLE=x"}));
    const std::string padding = FlacBlock(1, std::string(600, '\0'));
    const std::string front = Jpeg(std::string(700, 'f'));
    const std::string back = FlacBlock(6, PictureOfFlac(4, Png("back")));
    const std::string block = FlacBlock(6, PictureOfFlac(3, front), true);
    for (const std::size_t size : {255U, 510U, 65025U}) {
        EXPECT_EQ(CoversOf(file({comments, padding, back, block}, size)), Covers{"image/jpeg " + front})
            << size;
        EXPECT_EQ(CoversOf(file({comments, back}, size)), Covers{"image/png " + Png("back")});
        EXPECT_EQ(CoversOf(file({comments + std::string(1, '\0'), back}, size)),
                  Covers{"image/png " + Png("back")});
    }
    EXPECT_EQ(CoversOf(file({FlacBlock(4, Comments({}), true), back}, 255)), Covers())
        << "after the last block";
    const std::string whole = file({comments, block}, 255);
    EXPECT_EQ(CoversOf(whole.substr(0, whole.find("f\xFF\0"s))), Covers()) << "the end is missing";
}

TEST(OggCover, ThatOfTheSoundComesBeforeThatOfTheVideo) {
    const auto film = [](const std::vector<std::string>& aSound, const std::vector<std::string>& aVideo) {
        return PageOfOgg(5, 2, "\x80theora", true) + VorbisHead(7) +
               PageOfOgg(5, 0, "\x81theora" + Comments(aVideo), true) +
               PageOfOgg(7, 0, "\x03vorbis" + Comments(aSound), true);
    };
    const std::string other = PictureComment(PictureOfFlac(4, Png("other")));
    const std::string front = PictureComment(PictureOfFlac(3, kFront));
    EXPECT_EQ(CoversOf(film({other}, {other})), Covers{"image/png " + Png("other")});
    EXPECT_EQ(CoversOf(film({front}, {other})), kFrontFound);
    EXPECT_EQ(CoversOf(film({other}, {front})), kFrontFound);
    EXPECT_EQ(CoversOf(film({}, {front})), kFrontFound);
    EXPECT_EQ(CoversOf(PageOfOgg(5, 2, "\x80theora", true) +
                       PageOfOgg(5, 0, "\x81theora" + Comments({front}), true)),
              kFrontFound);
}

TEST(OggCover, PagesOfOtherStreamsInBetweenAreSteppedOver) {
    const std::string packet =
        "\x03vorbis" + Comments({PictureComment(PictureOfFlac(3, Jpeg(std::string(900, 'x'))))});
    std::string file = PageOfOgg(5, 2, "\x80theora", true) + VorbisHead(7);
    for (const std::string& page : PagesOfOgg(7, packet, 255)) {
        file += PageOfOgg(5, 0, "\x81theora", true);
        file += page;
    }
    EXPECT_EQ(CoversOf(file), Covers{"image/jpeg " + Jpeg(std::string(900, 'x'))});
}

TEST(OggCover, APacketWithAMissingPageHasNoCover) {
    const std::string packet =
        "\x03vorbis" + Comments({PictureComment(PictureOfFlac(3, Jpeg(std::string(900, 'x'))))});
    const std::vector<std::string> pages = PagesOfOgg(7, packet, 255);
    ASSERT_GE(pages.size(), 4U);
    std::string withoutFirst = VorbisHead(7);
    std::string withoutLast = VorbisHead(7);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        withoutFirst += i == 0 ? "" : pages[i];
        withoutLast += i + 1 == pages.size() ? PageOfOgg(7, 0, "audio", true) : pages[i];
    }
    EXPECT_EQ(CoversOf(withoutFirst), Covers());
    // The second page begins a packet anew, where the first has left one open.
    std::string anew = VorbisHead(7);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        anew += i == 1 ? std::string(pages[i]).replace(5, 1, 1, '\0') : pages[i];
    }
    EXPECT_EQ(CoversOf(anew), Covers());
    EXPECT_EQ(CoversOf(withoutLast), Covers());
}

TEST(OggCover, SizesThatLieAreRefused) {
    const std::string block = PictureOfFlac(3, kFront);
    const std::size_t dataSize = block.size() - kFront.size() - 4;
    for (const std::size_t place : {std::size_t{4}, std::size_t{18}, dataSize}) {
        for (const std::uint64_t size : {0x10000ULL, 0x7FFFFFFFULL, 0xFFFFFFFFULL, 0xFFFFFFF0ULL}) {
            const std::string lie = std::string(block).replace(place, 4, Big(size, 4));
            EXPECT_EQ(CoversOf(Vorbis({PictureComment(lie)})), Covers()) << place << " " << size;
        }
    }
    EXPECT_EQ(CoversOf(Vorbis({PictureComment(PictureOfFlac(3, ""))})), Covers());
    // Lengths of the comments, of their number, and of the writer's name.
    const std::string comment = PictureComment(block);
    const std::string good = Comments({comment});
    const auto file = [](const std::string& aComments) {
        return VorbisHead(7) + PageOfOgg(7, 0, "\x03vorbis" + aComments, true);
    };
    ASSERT_EQ(CoversOf(file(good)), kFrontFound);
    EXPECT_EQ(CoversOf(file(std::string(good).replace(0, 4, Little(0xFFFFFFFF)))), Covers());
    EXPECT_EQ(CoversOf(file(std::string(good).replace(14, 4, Little(comment.size() + 1)))), Covers());
    EXPECT_EQ(CoversOf(file(std::string(good).replace(14, 4, Little(0xFFFFFFFF)))), Covers());
    EXPECT_EQ(CoversOf(file(std::string(good).replace(10, 4, Little(0)))), Covers());
    // An absurd number ends with the packet.
    EXPECT_EQ(CoversOf(file(std::string(good).replace(10, 4, Little(0xFFFFFFFF)))), kFrontFound);
}

TEST(OggCover, CommentsAfterTooManyPagesAreNotReached) {
    for (const std::uint32_t pages : {kCover_MaxPages, kCover_MaxPages + 1}) {
        std::string file = VorbisHead(7);
        for (std::uint32_t page = 2; page < pages; ++page) {
            file += PageOfOgg(5, 0, "\x81theora", true);
        }
        file += PageOfOgg(7, 0, "\x03vorbis" + Comments({PictureComment(PictureOfFlac(3, kFront))}), true);
        EXPECT_EQ(CoversOf(file), pages <= kCover_MaxPages ? kFrontFound : Covers()) << pages;
    }
}

TEST(OggCover, APictureLargerThanWhatIsHeldIsNone) {
    const std::size_t around = PictureOfFlac(3, "").size();
    for (const std::size_t size : {kCover_MaxHeldSize / 4 * 3, kCover_MaxHeldSize / 4 * 3 + 3}) {
        std::string picture = kFront;
        picture.resize(size - around, 'x');
        const std::string comment = PictureComment(PictureOfFlac(3, picture));
        const bool fFits = comment.size() - comment.find('=') - 1 == kCover_MaxHeldSize;
        EXPECT_EQ(fFits, size == kCover_MaxHeldSize / 4 * 3);
        const std::string file = Vorbis({comment});
        EXPECT_EQ(FindCover(FindOggCover, file).IsFound(), fFits);
        EXPECT_TRUE(CoversOf(file) == (fFits ? Covers{"image/jpeg " + picture} : Covers())) << size;
    }
}

TEST(OggCover, ADescriptionBeyondWhatIsDecodedAheadHasNoCover) {
    EXPECT_EQ(
        CoversOf(Vorbis({PictureComment(PictureOfFlac(3, kFront, "image/jpeg", std::string(2900, 'd')))})),
        kFrontFound);
    EXPECT_EQ(
        CoversOf(Vorbis({PictureComment(PictureOfFlac(3, kFront, "image/jpeg", std::string(4000, 'd')))})),
        Covers());
}

TEST(APECover, IsFoundAtTheEndOfAnyFileAndBeforeWhatFollowsTheTag) {
    const std::string tag = APE2(APEItem("Title", "Song") + ApePicture(kFront));
    const std::string old = ID3v1("Song", "", "", 255);
    const std::string lyrics = "LYRICSBEGINwordsLYRICSEND";
    for (const std::string& file :
         {"sound" + tag, tag, "sound" + tag + old, "sound" + tag + lyrics + old,
          "sound" + APE1(ApePicture(kFront)) + old, std::string(99999, 's') + tag}) {
        EXPECT_EQ(CoversOf(file), kFrontFound);
    }
    EXPECT_EQ(CoversOf(tag + "sound"), Covers());
    // The tag at the start is asked before.
    EXPECT_EQ(CoversOf(ID3(3, 0, Frame23("APIC", Apic(3, Png("tag")))) + "sound" + tag),
              (Covers{"image/png " + Png("tag"), "image/jpeg " + kFront}));
}

TEST(APECover, IsABinaryItemWithAPictureThatIsKnown) {
    EXPECT_EQ(CoversOf("sound" + APE2(APEItem("Cover Art (Front)", kFront, 2))), kFrontFound) << "no name";
    EXPECT_EQ(CoversOf("sound" + APE2(APEItem("Cover Art (Front)", "BM.jpg\0"s + kFront, 2))), kFrontFound)
        << "a name that begins as a picture does";
    EXPECT_EQ(CoversOf("sound" + APE2(ApePicture(std::string(100000, 'x')) + ApePicture(kFront))),
              kFrontFound);
    for (const std::string& none :
         {ApePicture("no picture"), ApePicture(""), ApePicture(kFront, "Cover Art (Front)", 0),
          ApePicture(kFront, "Cover Art (Front)", 4), ApePicture(kFront, "Picture"),
          APEItem("Cover Art (Front)", "", 2)}) {
        EXPECT_EQ(CoversOf("sound" + APE2(none)), Covers()) << none;
    }
    const std::size_t most = kCover_MaxText - 1;
    const auto named = [](std::size_t aSize) {
        return "sound" + APE2(APEItem("Cover Art (Front)", std::string(aSize, 'n') + "\0"s + kFront, 2));
    };
    EXPECT_EQ(CoversOf(named(most)), kFrontFound);
    EXPECT_EQ(CoversOf(named(most + 1)), Covers());
}
