#include "companions/ezThumbnails/CoverKit.h"

#include "support/AsfBytes.h"
#include "support/EbmlBytes.h"
#include "support/ZlibBytes.h"

// What holds of every finder of covers.

namespace {

struct Sample {
    const char* mName;
    CoverFinder mFinder;
    std::string mBytes;
};

/// One file for each way that a cover is stored, its last byte that of the cover or of what has to be whole.
std::vector<Sample> Samples() {
    const std::string picture = Jpeg("front");
    const std::string back = Png("back");
    const std::string block = PictureOfFlac(3, Jpeg(std::string(200, 'x')));
    const std::string tag = ID3(3, 0, Frame23("APIC", Apic(3, picture)));
    std::string pages = VorbisHead(7);
    for (const std::string& page : PagesOfOgg(7, "\x03vorbis" + Comments({PictureComment(block)}), 255)) {
        pages += page;
    }
    std::string blocks = PageOfOgg(7, 2,
                                   "\x7F"
                                   "FLAC\1\0\0\1fLaC"s,
                                   true) +
                         PageOfOgg(7, 0, FlacBlock(4, Comments({})), true);
    for (const std::string& page : PagesOfOgg(7, FlacBlock(6, block, true), 255)) {
        blocks += page;
    }
    return {
        {"ID3 2.2", FindID3Cover, ID3(2, 0, Frame22("PIC", "\0JPG\3\0"s + picture))},
        {"ID3 2.3", FindID3Cover,
         ID3(3, 0x40,
             Big(6, 4) + std::string(6, '\0') + Frame23("APIC", Apic(4, back)) +
                 Frame23("APIC", Apic(3, picture)))},
        {"ID3 2.3, unsynchronised", FindID3Cover,
         ID3(3, 0x80, Unsynchronised(Frame23("APIC", Apic(3, picture))))},
        {"ID3 2.4", FindID3Cover,
         ID3(4, 0x40,
             Syncsafe(6) + "\1\0"s +
                 Frame24("APIC",
                         "g" + Syncsafe(30) + Unsynchronised("\1image/jpeg\0\3\xFF\xFE\0\0"s + picture),
                         0x43))},
#ifdef EZ_HAS_ZLIB
        {"ID3 2.3, compressed and unsynchronised", FindID3Cover,
         ID3(3, 0x80,
             Unsynchronised(
                 Frame23("APIC", Big(Apic(3, picture).size(), 4) + ZlibData(Apic(3, picture)), 0x80)))},
        {"ID3 2.4, compressed", FindID3Cover,
         ID3(4, 0, Frame24("APIC", Syncsafe(Apic(3, picture).size()) + ZlibData(Apic(3, picture)), 0x09))},
#endif
        {"FLAC", FindFLACCover,
         ID3(4, 0, "") + "fLaC" + FlacBlock(0, std::string(34, 's')) +
             FlacBlock(6, PictureOfFlac(3, picture))},
        {"FLAC in comments", FindFLACCover,
         "fLaC" + FlacBlock(4, Comments({PictureComment(PictureOfFlac(3, picture))}))},
        {"MP4", FindMP4Cover, Ftyp() + LongBox("mdat", "samples") + Moov(DataBox(13, picture))},
        {"Ogg on one page", FindOggCover,
         VorbisHead(7) +
             PageOfOgg(7, 0, "\x03vorbis" + Comments({PictureComment(PictureOfFlac(3, picture))}), true)},
        {"Ogg across pages", FindOggCover, pages},
        {"Ogg in a block of FLAC", FindOggCover, blocks},
        {"WAV", FindWAVCover, Wav(WavChunk("data", "sound") + WavChunk("id3 ", tag))},
        {"RF64", FindWAVCover,
         "RF64" + Little(0xFFFFFFFF) + "WAVE" +
             WavChunk("ds64", Little(0, 8) + Little(6, 8) + Little(0, 8) + Little(0)) + "data" +
             Little(0xFFFFFFFF) + "sounds" + WavChunk("ID3 ", tag)},
        {"WAV after a tag", FindWAVCover, ID3(3, 0, std::string(30, '\0')) + Wav(WavChunk("id3 ", tag))},
        {"AIFF", FindAIFFCover, Aiff(AiffChunk("SSND", "sound") + AiffChunk("ID3 ", tag))},
        {"APE 1", FindAPECover, "sound" + APE1(ApePicture(picture))},
        {"APE 2", FindAPECover,
         "sound" +
             APE2(APEItem("Title", "Song") + ApePicture(back, "Cover Art (Back)") + ApePicture(picture))},
        {"DSF", FindDSFCover, Dsf(tag)},
        {"DSDIFF", FindDSDIFFCover, Dsdiff(DsdiffChunk("DSD ", "sound") + DsdiffChunk("ID3 ", tag))},
        {"ASF", FindASFCover,
         asf::Header(asf::Object(asf::kPadding, "room") +
                     asf::ExtendedContent({asf::Text("Title", "Title"), asf::PictureAttribute(3, picture)}))},
        {"ASF, in the extension", FindASFCover,
         asf::Header(asf::HeaderExtension(asf::Library({asf::PictureAttribute(3, picture)})))},
        {"ASF, the second of two lists", FindASFCover,
         asf::Header(asf::HeaderExtension(asf::Library({asf::PictureAttribute(1, back)}, asf::kMetadata) +
                                          asf::Library({asf::PictureAttribute(3, picture)})))},
        {"Matroska", FindMatroskaCover,
         ebml::Head() +
             ebml::Segment(ebml::Info("") +
                           ebml::Attachments(ebml::AttachedFile("font.ttf", "font/ttf", "font") +
                                             ebml::AttachedFile("cover.jpg", "image/jpeg", picture)))},
        {"Matroska, after the clusters", FindMatroskaCover,
         ebml::Head("webm") +
             ebml::Unknown(0x18538067,
                           ebml::SeekHead(ebml::Seek(0x1941A469, 37)) + ebml::Element(0x1F43B675, "frames") +
                               ebml::Attachments(ebml::AttachedFile("cover.png", "image/png", back)))},
        {"Matroska, a track of video", FindMatroskaCover,
         ebml::Head() +
             ebml::Segment(
                 ebml::Tracks(ebml::Element(0xAE, ebml::Number(0xD7, 1) + ebml::Number(0x83, 2)) +
                              ebml::Element(0xAE, ebml::Number(0xD7, 2) + ebml::Number(0x83, 1) +
                                                      ebml::Element(0x86, "V_MJPEG"))) +
                 ebml::Element(0x1F43B675, ebml::Element(0xA3, std::string("\x82\0\0\0", 4) + picture)))},
    };
}

/// What holds for every cover, whatever the bytes.
void ExpectWithin(const Cover& aCover, std::size_t aFileSize) {
    if (!aCover.IsFound()) {
        return;
    }
    ASSERT_FALSE(aCover.mPieces.empty());
    for (const BytePiece& piece : aCover.mPieces) {
        ASSERT_GT(piece.mSize, 0U);
        ASSERT_LE(piece.mOffset, aFileSize);
        ASSERT_LE(piece.mSize, aFileSize - piece.mOffset);
    }
}

} // namespace

TEST(EveryCoverFinder, HasAFileOfItsOwnAndAFormat) {
    const std::vector<Sample> samples = Samples();
    for (const FormatCoverFinder& finder : kCoverFinders) {
        ASSERT_GT(finder.mFormats.size(), 0U);
        EXPECT_TRUE(std::any_of(samples.begin(), samples.end(),
                                [&](const Sample& aSample) { return aSample.mFinder == finder.mFind; }))
            << "a finder of " << *finder.mFormats.begin();
    }
}

TEST(EveryCoverFinder, WhatIsWholeHasACoverAndWhatIsCutAnywhereHasNone) {
    for (const Sample& sample : Samples()) {
        EXPECT_TRUE(FindCover(sample.mFinder, sample.mBytes).IsFound()) << sample.mName;
        for (std::size_t length = 0; length < sample.mBytes.size(); ++length) {
            EXPECT_FALSE(FindCover(sample.mFinder, sample.mBytes.substr(0, length)).IsFound())
                << sample.mName << " " << length;
        }
    }
}

TEST(EveryCoverFinder, EveryBitFlippedLeavesTheCoverWithinTheFile) {
    for (const Sample& sample : Samples()) {
        for (std::size_t bit = 0; bit < sample.mBytes.size() * 8; ++bit) {
            std::string bytes = sample.mBytes;
            bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8);
            SCOPED_TRACE(sample.mName + " bit "s + std::to_string(bit));
            ExpectWithin(FindCover(sample.mFinder, bytes), bytes.size());
        }
    }
}

TEST(EveryCoverFinder, EveryByteFlippedIsReadToAnEnd) {
    for (const Sample& sample : Samples()) {
        for (std::size_t i = 0; i < sample.mBytes.size(); ++i) {
            std::string bytes = sample.mBytes;
            bytes[i] = static_cast<char>(~bytes[i]);
            SCOPED_TRACE(sample.mName + " byte "s + std::to_string(i));
            ExpectWithin(FindCover(sample.mFinder, bytes), bytes.size());
            for (const std::string& cover : CoversOf(bytes)) {
                EXPECT_LE(cover.size(), bytes.size() + 100);
                EXPECT_EQ(cover.find("<error>"), std::string::npos);
            }
        }
    }
}

TEST(EveryCoverFinder, TheSameBytesInEveryFinderAreOnlyOnesCover) {
    for (const Sample& sample : Samples()) {
        for (const FormatCoverFinder& finder : kCoverFinders) {
            EXPECT_EQ(FindCover(finder.mFind, sample.mBytes).IsFound(), finder.mFind == sample.mFinder)
                << sample.mName;
        }
    }
}

TEST(EveryCoverFinder, FrontComesFirstAndIconsNeverCount) {
    const auto picture = [](unsigned aType) { return Jpeg("type " + std::to_string(aType)); };
    // MP4 has no types: its first picture is the cover.
    const std::vector<std::string (*)(unsigned, const std::string&)> parts = {
        [](unsigned aType, const std::string& aPicture) { return Frame23("APIC", Apic(aType, aPicture)); },
        [](unsigned aType, const std::string& aPicture) {
            return FlacBlock(6, PictureOfFlac(aType, aPicture));
        },
        [](unsigned aType, const std::string& aPicture) {
            const std::string comment = PictureComment(PictureOfFlac(aType, aPicture));
            return Little(comment.size()) + comment;
        },
        [](unsigned aType, const std::string& aPicture) {
            const char* const key = aType == 3   ? "COVER ART (FRONT)"
                                    : aType == 1 ? "Cover Art (Icon)"
                                    : aType == 2 ? "cover art (other icon)"
                                                 : "Cover Art (of another type)";
            return ApePicture(aPicture, key);
        },
        [](unsigned aType, const std::string& aPicture) {
            return asf::PictureAttribute(aType, aPicture).Content();
        }};
    const auto file = [](std::size_t aKind, const std::string& aParts, std::size_t aCount) {
        const std::string comments = Little(6) + "writer" + Little(aCount) + aParts;
        return aKind == 0   ? ID3(3, 0, aParts + std::string(20, '\0'))
               : aKind == 1 ? Flac(aParts)
               : aKind == 3 ? "sound" + APE2(aParts)
               : aKind == 2 ? VorbisHead(7) + PageOfOgg(7, 0, "\x03vorbis" + comments, true)
                            : asf::Header(asf::Object(asf::kExtendedContent, Little(aCount, 2) + aParts));
    };
    // The types of the pictures, and that of the cover; 1, an icon, for none.
    const std::vector<std::pair<std::vector<unsigned>, unsigned>> cases = {
        {{4, 3}, 3},       {{3, 4}, 3}, {{1, 4, 3}, 3}, {{1, 4, 3, 0}, 3}, {{2, 4}, 4}, {{2, 5, 0}, 5},
        {{1, 2, 8, 0}, 8}, {{0, 8}, 0}, {{255}, 255},   {{1}, 1},          {{1, 2}, 1}};
    for (std::size_t kind = 0; kind < parts.size(); ++kind) {
        for (const auto& [types, found] : cases) {
            std::string all;
            for (const unsigned type : types) {
                all += parts[kind](type, picture(type));
            }
            EXPECT_EQ(CoversOf(file(kind, all, types.size())),
                      found == 1 ? Covers() : Covers{"image/jpeg " + picture(found)})
                << kind << " " << found;
        }
    }
}

TEST(EveryCoverFinder, AStreamThatIsNotOpenHasNoCover) {
    for (const FormatCoverFinder& finder : kCoverFinders) {
        const ezStreamOwner stream = MemoryFile("");
        EXPECT_FALSE(finder.mFind(*stream).IsFound());
    }
}

TEST(EveryCoverFinder, LookingReadsABoundedPartOfTheFile) {
    // Unsynchronisation makes every byte be read: a frame of more than that is not stepped over.
    const std::string frame = Frame23("APIC", Apic(3, Jpeg("front")));
    const std::string small = Frame23("PRIV", std::string(std::size_t{1} << 20, 'p'));
    const std::string large = Frame23("PRIV", std::string(std::size_t{20} << 20, 'p'));
    EXPECT_TRUE(FindCover(FindID3Cover, ID3(3, 0x80, small + Unsynchronised(frame))).IsFound());
    EXPECT_FALSE(FindCover(FindID3Cover, ID3(3, 0x80, large + Unsynchronised(frame))).IsFound());
    EXPECT_TRUE(FindCover(FindID3Cover, ID3(3, 0, large + frame)).IsFound());
}
