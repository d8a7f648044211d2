#include "ezFormats/jpeg/JPEGParser.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

using namespace pictures;

namespace {

std::string Parsed(const std::string& aBytes, const Delivery& aDelivery = Delivery(),
                   AwkwardStream::Costs* aCosts = nullptr) {
    return pictures::Parsed<JPEGParser>(aBytes, aDelivery, aCosts);
}

std::string Refusal(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return pictures::Refusal<JPEGParser>(aBytes, aDelivery);
}

/// A segment that a parser steps over.
std::string Padding(std::size_t aSize) {
    return Segment(0xEF, std::string(aSize, '-'));
}

std::string Times(int aCount, const std::string& aText) {
    std::string text;
    for (int i = 0; i < aCount; ++i) {
        text += aText;
    }
    return text;
}

JPEGFrameHeader Factors(std::vector<unsigned> aFactors) {
    JPEGFrameHeader frame;
    frame.mFactors = std::move(aFactors);
    return frame;
}

std::string Colours(const JPEGFrameHeader& aFrame, const std::string& aBefore = "") {
    return ValueOf(Parsed(JPEG(aFrame, aBefore)), "cr");
}

/// The profile of a record; "" without one.
std::string ProfileOf(const std::string& aRecord) {
    const std::string field = ValueOf(aRecord, "dl");
    const std::string name = "\"DLNA.ORG_PN=";
    return field.rfind(name, 0) == 0 ? field.substr(name.size(), field.find(';') - name.size()) : "";
}

/// A directory of as many entries as there can be.
const std::string kEntries = Exif("MM" + Big(42, 2) + Big(8, 4) + Big(0xFFFF, 2) + std::string(65000, 'e'));

std::vector<std::string> UsualFiles() {
    return {ReadSample("pictures/harbour.jpg"), JPEG({}, JFIF() + Exif(Tiff(6)) + Adobe(1) + Padding(3)),
            JPEG(), JPEG({}, Exif(Tiff(3)) + Padding(9000)),
            JPEG({}, Padding(9000) + Exif(Tiff(3)) + Padding(9000) + Adobe(1))};
}

std::vector<std::string> CostlyFiles() {
    return {JPEG({}, std::string(4096, '-') + Times(20, kEntries) + Times(300, Padding(65533)))};
}

const FormatFiles kFiles("jpg", {192, 1U << 20}, {"wi", "cd", "cr", "pr"}, UsualFiles, CostlyFiles);

} // namespace

TEST(JPEGParser, RecordSaysWhatTheFrameHeaderSays) {
    EXPECT_EQ(Parsed(ReadSample("pictures/harbour.jpg")),
              "cd=8\n"
              "cn=\"item.imageItem\"\n"
              "cr=\"4:2:0\"\n"
              "dl=\"DLNA.ORG_PN=JPEG_SM;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=00D00000000000000000000000000000\"\n"
              "he=240\n"
              "mt=\"image/jpeg\"\n"
              "pr=\"baseline\"\n"
              "wi=320\n");
    const std::string conformance = Parsed(ReadSample("conformance/B-JPEG_S-1.jpg"));
    EXPECT_EQ(ValueOf(conformance, "wi"), "640");
    EXPECT_EQ(ValueOf(conformance, "he"), "480");
    EXPECT_EQ(ProfileOf(conformance), "JPEG_SM");
}

TEST(JPEGParser, ProfileIsGivenByBothSides) {
    const std::vector<std::pair<std::pair<unsigned, unsigned>, const char*>> cases = {
        {{640, 480}, "JPEG_SM"},   {{480, 480}, "JPEG_SM"},   {{480, 640}, "JPEG_MED"},
        {{641, 480}, "JPEG_MED"},  {{640, 481}, "JPEG_MED"},  {{1024, 768}, "JPEG_MED"},
        {{1025, 768}, "JPEG_LRG"}, {{768, 1024}, "JPEG_LRG"}, {{4096, 4096}, "JPEG_LRG"},
        {{4097, 1}, ""},           {{1, 4097}, ""},           {{65535, 65535}, ""}};
    for (const auto& test : cases) {
        JPEGFrameHeader frame;
        frame.mWidth = test.first.first;
        frame.mHeight = test.first.second;
        const std::string record = Parsed(JPEG(frame));
        EXPECT_EQ(ProfileOf(record), test.second) << record;
        EXPECT_EQ(ValueOf(record, "wi"), std::to_string(frame.mWidth));
        EXPECT_EQ(ValueOf(record, "he"), std::to_string(frame.mHeight));
    }
}

TEST(JPEGParser, ProcessIsThatOfTheMarkerAndBaselineAloneKeepsAProfile) {
    const std::vector<std::pair<unsigned, std::string>> cases = {
        {0xC0, "baseline"},   {0xC1, "extended"},   {0xC2, "progressive"}, {0xC3, "lossless"},
        {0xC9, "arithmetic"}, {0xCA, "arithmetic"}, {0xCB, "arithmetic"},  {0xDE, "hierarchical"}};
    for (const auto& test : cases) {
        JPEGFrameHeader frame;
        frame.mMarker = test.first;
        const std::string record = Parsed(JPEG(frame));
        EXPECT_EQ(ValueOf(record, "pr"), "\"" + test.second + "\"");
        EXPECT_EQ(ProfileOf(record), test.second == "baseline" ? "JPEG_SM" : "") << test.second;
    }
}

TEST(JPEGParser, PrecisionGoesWithTheProcess) {
    const auto allows = [](unsigned aMarker, unsigned aPrecision) {
        JPEGFrameHeader frame;
        frame.mMarker = aMarker;
        frame.mPrecision = aPrecision;
        const std::string record = Parsed(JPEG(frame));
        EXPECT_EQ(ValueOf(record, "cd"), record == "null\n" ? "" : std::to_string(aPrecision));
        return record != "null\n";
    };
    for (unsigned precision = 0; precision < 256; ++precision) {
        const bool f8 = precision == 8;
        const bool f8Or12 = f8 || precision == 12;
        const bool f2To16 = precision >= 2 && precision <= 16;
        EXPECT_EQ(allows(0xC0, precision), f8) << precision;
        EXPECT_EQ(allows(0xC1, precision), f8Or12) << precision;
        EXPECT_EQ(allows(0xC2, precision), f8Or12) << precision;
        EXPECT_EQ(allows(0xC3, precision), f2To16) << precision;
        EXPECT_EQ(allows(0xC9, precision), f8Or12) << precision;
        EXPECT_EQ(allows(0xCB, precision), f2To16) << precision;
    }
    JPEGFrameHeader frame;
    frame.mPrecision = 12;
    EXPECT_EQ(Refusal(JPEG(frame)), "JPEGParser: malformed: 12 bits in a baseline frame");
}

TEST(JPEGParser, SamplingIsTheRatioOfBrightnessToColour) {
    EXPECT_EQ(Colours(Factors({0x22, 0x11, 0x11})), "\"4:2:0\"");
    EXPECT_EQ(Colours(Factors({0x21, 0x11, 0x11})), "\"4:2:2\"");
    EXPECT_EQ(Colours(Factors({0x22, 0x12, 0x12})), "\"4:2:2\"");
    EXPECT_EQ(Colours(Factors({0x11, 0x11, 0x11})), "\"4:4:4\"");
    EXPECT_EQ(Colours(Factors({0x22, 0x22, 0x22})), "\"4:4:4\"");
    EXPECT_EQ(Colours(Factors({0x12, 0x11, 0x11})), "\"4:4:0\"");
    EXPECT_EQ(Colours(Factors({0x41, 0x11, 0x11})), "\"4:1:1\"");
    EXPECT_EQ(Colours(Factors({0x42, 0x11, 0x11})), "\"4:1:0\"");
    EXPECT_EQ(Colours(Factors({0x21, 0x12, 0x11})), "\"2x1,1x2,1x1\"");
    EXPECT_EQ(Colours(Factors({0x11, 0x22, 0x22})), "\"1x1,2x2,2x2\"");
    EXPECT_EQ(Colours(Factors({0x44, 0x33, 0x33})), "\"4x4,3x3,3x3\"");
    EXPECT_EQ(Colours(Factors({0x11, 0x11})), "\"1x1,1x1\"");
    EXPECT_EQ(ProfileOf(Parsed(JPEG(Factors({0x21, 0x11, 0x11})))), "JPEG_SM");
    EXPECT_EQ(ProfileOf(Parsed(JPEG(Factors({0x11, 0x11, 0x11})))), "");
}

TEST(JPEGParser, ColoursAreKnownByTheComponentsAndTheSegmentsOfJFIFAndAdobe) {
    EXPECT_EQ(Colours(Factors({0x22})), "\"grey\"");
    EXPECT_EQ(ProfileOf(Parsed(JPEG(Factors({0x11})))), "JPEG_SM");
    const JPEGFrameHeader four = Factors({0x11, 0x11, 0x11, 0x11});
    EXPECT_EQ(Colours(four), "\"CMYK\"");
    EXPECT_EQ(Colours(four, Adobe(0)), "\"CMYK\"");
    EXPECT_EQ(Colours(four, Adobe(2)), "\"YCCK\"");
    EXPECT_EQ(ProfileOf(Parsed(JPEG(four))), "");
    JPEGFrameHeader three = Factors({0x11, 0x11, 0x11});
    EXPECT_EQ(Colours(three, Adobe(0)), "\"RGB\"");
    EXPECT_EQ(Colours(three, Adobe(1)), "\"4:4:4\"");
    EXPECT_EQ(Colours(three, JFIF() + Adobe(0)), "\"4:4:4\"");              // JFIF knows YCbCr alone
    EXPECT_EQ(Colours(three, Segment(0xEE, "Adobe12345")), "\"4:4:4\"");    // cut
    EXPECT_EQ(Colours(three, Segment(0xE0, "JFXX") + Adobe(0)), "\"RGB\""); // not JFIF
    EXPECT_EQ(Colours(three, Segment(0xED, "Adobe_CM12345")), "\"4:4:4\""); // another segment of theirs
    three.mIDs = "RGB";
    EXPECT_EQ(Colours(three), "\"RGB\"");
    EXPECT_EQ(Colours(three, JFIF()), "\"4:4:4\"");
    EXPECT_EQ(Colours(three, Adobe(1)), "\"4:4:4\"");
}

TEST(JPEGParser, FrameHeaderThatNoJPEGHasIsRefusedAndTheLogNamesTheValue) {
    JPEGFrameHeader frame;
    frame.mWidth = 0;
    EXPECT_EQ(Refusal(JPEG(frame)), "JPEGParser: malformed: width 0");
    EXPECT_EQ(Refusal(JPEG(Factors({}))), "JPEGParser: malformed: frame header of 0 components in 0 bytes");
    EXPECT_EQ(Refusal(JPEG(Factors({0x11, 0x11, 0x11, 0x11, 0x11}))),
              "JPEGParser: unsupported: 5 components");
    EXPECT_EQ(Refusal(JPEG(Factors({0x22, 0x01, 0x11}))), "JPEGParser: malformed: sampling factors 0x1");
    EXPECT_EQ(Refusal(JPEG(Factors({0x22, 0x11, 0x15}))), "JPEGParser: malformed: sampling factors 1x5");
    const std::string content = Big(8, 1) + Big(240, 2) + Big(320, 2) + Big(3, 1);
    EXPECT_EQ(Refusal("\xFF\xD8" + Segment(0xC0, content + "\1\x22\1\2\x11\1")),
              "JPEGParser: malformed: frame header of 3 components in 6 bytes");
    const std::string cut = "JPEGParser: malformed: ends before the components of the frame header";
    EXPECT_EQ(Refusal("\xFF\xD8" + Segment(0xC0, "\10")), cut);
    Delivery unknown;
    unknown.mfSizeKnown = false;
    const std::string whole = JPEG();
    for (const std::size_t length : {std::size_t{6}, std::size_t{11}}) { // the length, the count
        EXPECT_EQ(Refusal(whole.substr(0, length), unknown), cut) << length;
    }
    EXPECT_EQ(Refusal("\xFF\xD8\xFF\xC0" + Big(1, 2)), "JPEGParser: malformed: marker C0 with length 1");
}

TEST(JPEGParser, HeightThatIsStatedAfterThePictureIsLeftOut) {
    JPEGFrameHeader frame;
    frame.mHeight = 0;
    const std::string record = Parsed(JPEG(frame));
    EXPECT_EQ(ValueOf(record, "wi"), "320");
    EXPECT_EQ(ValueOf(record, "he"), "");
    EXPECT_EQ(ValueOf(record, "dl"), "\"DLNA.ORG_OP=01\""); // no profile without a height
}

TEST(JPEGParser, OrientationIsThatOfTheFirstExifSegment) {
    for (unsigned orientation = 2; orientation <= 8; ++orientation) {
        for (const bool fLittle : {false, true}) {
            const std::string exif = Exif(Tiff(orientation, fLittle));
            EXPECT_EQ(ValueOf(Parsed(JPEG({}, exif)), "ud"), std::to_string(orientation));
            EXPECT_EQ(ValueOf(Parsed(JPEG({}, JFIF() + exif + Exif(Tiff(1)))), "ud"),
                      std::to_string(orientation));
        }
    }
    for (const unsigned none : {0U, 1U, 9U, 65535U}) {
        EXPECT_EQ(ValueOf(Parsed(JPEG({}, Exif(Tiff(none)) + Exif(Tiff(6)))), "ud"), "") << none;
    }
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, Exif(Tiff(5, false, 0, 1024)))), "ud"), "5") << "of so many entries";
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, Exif(Tiff(5, false, 0, 1025)))), "ud"), "");
    const std::string metadata = Segment(0xE1, std::string("http://ns.adobe.com/xap/1.0/\0<x/>", 33));
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, metadata + Exif(Tiff(5)))), "ud"), "5");
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, Segment(0xE2, std::string("Exif\0\0", 6) + Tiff(5)))), "ud"), "");
}

TEST(JPEGParser, DateIsWhenThePhotoWasTaken) {
    const std::string date("1999:12:31 23:59:58\0", 20);
    const std::string zone("+02:00\0", 7);
    const auto of = [](const std::string& aTiff) {
        const std::string record = Parsed(JPEG({}, Exif(aTiff)));
        EXPECT_EQ(ValueOf(record, "wi"), "320");
        return ValueOf(record, "da");
    };
    const auto ofDate = [&](const std::string& aText) { return of(PhotoTiff({{0x9003, aText}})); };
    for (const bool fLittle : {false, true}) {
        EXPECT_EQ(of(PhotoTiff({{0x9003, date}}, fLittle)), "\"1999-12-31T23:59:58\"");
        EXPECT_EQ(of(PhotoTiff({{0x9000, "0232"}, {0x9003, date}, {0x9011, zone}}, fLittle)),
                  "\"1999-12-31T23:59:58+02:00\"");
    }
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, Exif(PhotoTiff({{0x9003, date}})))), "ud"), "6");
    EXPECT_EQ(of(PhotoTiff({{0x9003, date}, {0x9011, std::string("   :  \0", 7)}})),
              "\"1999-12-31T23:59:58\"");
    EXPECT_EQ(of(PhotoTiff({{0x9003, date}, {0x9011, std::string("Z\0", 2)}})), "\"1999-12-31T23:59:58Z\"");
    EXPECT_EQ(of(PhotoTiff({{0x9003, date}, {0x9011, "+99:00"}})), "\"1999-12-31T23:59:58\"");
    EXPECT_EQ(of(PhotoTiff({{0x9011, zone}})), "");
    EXPECT_EQ(of(PhotoTiff({{0x9004, date}})), "") << "made into a file";
    EXPECT_EQ(of(PhotoTiff({})), "");
    EXPECT_EQ(of(PhotoTiff({{0x9003, date, 7}})), "") << "no text";
    EXPECT_EQ(ofDate(std::string("1999:12:31 23:59:58")), "\"1999-12-31T23:59:58\"") << "without its NUL";
    EXPECT_EQ(ofDate(std::string("1999:12:31 23:59:58\0 and more\0", 30)), "\"1999-12-31T23:59:58\"");
    EXPECT_EQ(ofDate("1999"), "\"1999\"");
    EXPECT_EQ(ofDate(std::string("0000:00:00 00:00:00\0", 20)), "");
    EXPECT_EQ(ofDate(std::string("    :  :     :  :  \0", 20)), "");
    EXPECT_EQ(ofDate(std::string("2024:13:45 00:00:00\0", 20)), "");
    EXPECT_EQ(ofDate(date + std::string(12, '\0')), "\"1999-12-31T23:59:58\"") << "32 bytes";
    EXPECT_EQ(ofDate(date + std::string(13, '\0')), "");
    EXPECT_EQ(ofDate(""), "");
    // Cut anywhere, and a directory that is its own: nothing but the date is lost.
    const std::string whole = PhotoTiff({{0x9003, date}});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(of(whole.substr(0, size)), "") << size;
    }
    std::string loop = whole;
    loop.replace(8 + 2 + 12 + 8, 4, Big(8, 4));
    EXPECT_EQ(of(loop), "");
    loop.replace(8 + 2 + 12 + 8, 4, Big(0xFFFFFFFF, 4));
    EXPECT_EQ(of(loop), "");
}

TEST(JPEGParser, ThumbnailWithinASegmentIsNotThePicture) {
    JPEGFrameHeader small;
    small.mMarker = 0xC2;
    small.mWidth = 160;
    small.mHeight = 120;
    const std::string thumbnail = JPEG(small);
    const std::string before = Exif(Tiff(6) + thumbnail) +
                               Segment(0xE0, std::string("JFXX\0\x10", 6) + thumbnail) +
                               Segment(0xE2, "MPF" + thumbnail) + Segment(0xFE, thumbnail);
    const std::string record = Parsed(JPEG({}, before));
    EXPECT_EQ(ValueOf(record, "wi"), "320");
    EXPECT_EQ(ValueOf(record, "pr"), "\"baseline\"");
    EXPECT_EQ(ValueOf(record, "ud"), "6");
}

TEST(JPEGParser, DirectoryFarBackInALongExifSegmentIsFound) {
    const std::string exif = Exif(Tiff(7, true, 60000));
    AwkwardStream::Costs costs;
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, exif), {}, &costs), "ud"), "7");
    EXPECT_LE(costs.mReads, 2U);
    EXPECT_LE(costs.mBytes, 16U << 10);
}

TEST(JPEGParser, DamagedExifSegmentCostsTheOrientationAlone) {
    const std::string whole = Tiff(6);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string record = Parsed(JPEG({}, Exif(whole.substr(0, size))));
        EXPECT_EQ(ValueOf(record, "wi"), "320") << size;
        EXPECT_EQ(ValueOf(record, "ud"), size >= 32 ? "6" : "") << size; // the value's last byte is the 32nd
    }
}

TEST(JPEGParser, FillAndJunkBetweenSegmentsAreReadOver) {
    const std::string junk = std::string("ab\0\xFF\0c", 6);
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, std::string(9, '\xFF') + JFIF() + junk + Padding(3) + "\xFF")), "wi"),
              "320");
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, std::string("\xFF\x01\xFF\xD3", 4))), "wi"), "320"); // stand alone
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, std::string(4096, 'j'))), "wi"), "320");
    EXPECT_EQ(Refusal(JPEG({}, std::string(4097, 'j'))),
              "JPEGParser: limit: more than 4096 bytes between segments");
    for (const char byte : {'j', '\xFF', '\0'}) {
        EXPECT_EQ(Refusal(JPEG({}, JFIF() + std::string(5000, byte))),
                  "JPEGParser: limit: more than 4096 bytes between segments");
    }
}

TEST(JPEGParser, MarkersThatStandBeforeNoFrameHeaderAreRefused) {
    for (const unsigned marker : {0xC5U, 0xC6U, 0xC7U, 0xCDU, 0xCFU, 0xD8U, 0xD9U, 0xDAU, 0xDCU, 0xDFU}) {
        const std::string refusal = Refusal(JPEG({}, JFIF() + Segment(marker, "content")));
        EXPECT_EQ(
            refusal,
            ezCString::Format("JPEGParser: malformed: marker %02X before the frame header", marker).c_str());
    }
    for (const unsigned marker : {0x02U, 0x4FU, 0xBFU, 0xC8U, 0xF0U, 0xF7U, 0xFDU}) { // F7: JPEG-LS
        const std::string refusal = Refusal(JPEG({}, Segment(marker, "content")));
        EXPECT_EQ(refusal, ezCString::Format("JPEGParser: unsupported: marker %02X", marker).c_str());
    }
    for (const unsigned marker : {0xC4U, 0xCCU, 0xDBU, 0xDDU, 0xE0U, 0xEFU, 0xFEU}) {
        EXPECT_EQ(ValueOf(Parsed(JPEG({}, Segment(marker, "content"))), "wi"), "320") << marker;
    }
}

TEST(JPEGParser, OtherFilesAreRefused) {
    EXPECT_EQ(Refusal(kPNGSignature), "JPEGParser: malformed: begins with 8950");
    EXPECT_EQ(Refusal("\xFF"), "JPEGParser: malformed: begins with 0000");
    EXPECT_EQ(Refusal("\xFF\xD8"), "JPEGParser: malformed: ends before the frame header");
    EXPECT_EQ(Refusal("\xFF\xD8\xFF\xE0"), "JPEGParser: malformed: ends before the frame header");
    const std::string endless = "\xFF\xD8" + JFIF().substr(0, 9);
    EXPECT_EQ(Refusal(endless), "JPEGParser: malformed: ends before the frame header");
    Delivery unknownSize;
    unknownSize.mfSizeKnown = false;
    for (const std::string& cut : {JPEG().substr(0, 10), "\xFF\xD8" + JFIF()}) {
        EXPECT_EQ(Parsed(cut, unknownSize), "null\n");
    }
    EXPECT_EQ(Refusal("\xFF\xD8" + JPEGFrameHeader().Bytes().substr(0, 14), unknownSize),
              "JPEGParser: malformed: ends before the picture");
}

TEST(JPEGParser, ParseCostsOneReadOfTheStart) {
    AwkwardStream::Costs costs;
    Parsed(ReadSample("conformance/B-JPEG_S-1.jpg"), {}, &costs);
    EXPECT_EQ(costs.mReads, 1U);
    EXPECT_EQ(costs.mBytes, 8192U);
    EXPECT_EQ(costs.mSeeks, 2U); // the stream goes back to the start itself
}

TEST(JPEGParser, FiveMebibytesOfSegmentsAreSteppedOverBySeeking) {
    AwkwardStream::Costs costs;
    const std::string record = Parsed(JPEG({}, Exif(Tiff(8)) + Times(80, Padding(65533))), {}, &costs);
    EXPECT_EQ(ValueOf(record, "ud"), "8");
    EXPECT_EQ(ProfileOf(record), "JPEG_SM");
    EXPECT_LE(costs.mReads, 81U);
    EXPECT_LE(costs.mBytes, 81U * 4096 + 4096);
}

TEST(JPEGParser, DirectoryOfManyEntriesCostsLittleAndManySegmentsTheBudget) {
    const std::string worst = CostlyFiles().front();
    EXPECT_EQ(Refusal(worst), "JPEGParser: limit: budget used up before the frame header");
    AwkwardStream::Costs costs;
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, kEntries), {}, &costs), "wi"), "320");
    EXPECT_LE(costs.mBytes, 40U << 10);
}

TEST(JPEGParser, SegmentsAreCounted) {
    EXPECT_EQ(ValueOf(Parsed(JPEG({}, Times(511, Padding(0)))), "wi"), "320");
    EXPECT_EQ(Refusal(JPEG({}, Times(512, Padding(0)))),
              "JPEGParser: limit: more than 512 segments before the frame header");
    EXPECT_EQ(Refusal(JPEG({}, Times(1000, "\xFF\xD0"))),
              "JPEGParser: limit: more than 512 segments before the frame header");
}

TEST(JPEGParser, SourceThatCannotMoveIsRefusedWhereASegmentIsToBeSteppedOver) {
    Delivery unseekable;
    unseekable.mfSeekable = false;
    EXPECT_EQ(Refusal(UsualFiles().back(), unseekable), "JPEGParser: read error: before the frame header");
}

TEST(JPEGParser, FileThatIsCutIsReadFromTheEndOfItsFrameHeaderOn) {
    for (const std::string& whole : {UsualFiles()[0], UsualFiles()[1]}) {
        const std::size_t frame = whole.find("\xFF\xC0") + 2 + 17;
        for (std::size_t at = 0; at < whole.size(); ++at) {
            EXPECT_EQ(Parsed(whole.substr(0, at)) == "null\n", at < frame) << at;
        }
    }
}

TEST(JPEGParser, SaysWhatItMayAnnounce) {
    EXPECT_EQ(JPEGParser().GetDLNAInfo(), "image/jpeg:DLNA.ORG_PN=JPEG_SM,image/jpeg:DLNA.ORG_PN=JPEG_MED,"
                                          "image/jpeg:DLNA.ORG_PN=JPEG_LRG,image/jpeg:*");
    EXPECT_EQ(JPEGParser().GetType(), "jpg");
}
