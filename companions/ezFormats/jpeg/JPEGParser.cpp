#include "ezFormats/jpeg/JPEGParser.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/Exif.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/jpeg/JPEGFrame.h"
#include "ezFormats/jpeg/JPEGLimits.h"
#include "ezFormats/tags/ExifRecord.h"

#include "ezPlatform/media/MediaInfo.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::uint64_t kStartOfImage = 0xFFD8;
constexpr unsigned kAPP0 = 0xE0;
constexpr unsigned kAPP1 = 0xE1;
constexpr unsigned kAPP14 = 0xEE;
constexpr unsigned kLengthSize = 2; ///< it counts itself (T.81, B.1.1.4)

/// What a segment of an application begins with.
constexpr std::string_view kJFIFName("JFIF\0", 5);
constexpr std::string_view kExifName("Exif\0\0", 6);
constexpr std::string_view kAdobeName("Adobe");

/// What is made of a marker before the frame header.
enum class Kind {
    Frame,     ///< a frame header
    Segment,   ///< stepped over, or looked into
    Alone,     ///< without a segment, and without a meaning here
    Misplaced, ///< never before a frame header
    Foreign    ///< reserved, or of another standard
};

struct MarkerRange {
    unsigned mLast;
    Kind mKind;
};

/// All markers (T.81, table B.1), each range after the one before.
constexpr std::array<MarkerRange, 19> kMarkers = {{{0x01, Kind::Alone},     // TEM
                                                   {0xBF, Kind::Foreign},   // reserved
                                                   {0xC3, Kind::Frame},     // SOF0 to SOF3
                                                   {0xC4, Kind::Segment},   // DHT
                                                   {0xC7, Kind::Misplaced}, // SOF5 to SOF7: a second frame
                                                   {0xC8, Kind::Foreign},   // reserved
                                                   {0xCB, Kind::Frame},     // SOF9 to SOF11
                                                   {0xCC, Kind::Segment},   // DAC
                                                   {0xCF, Kind::Misplaced}, // SOF13 to SOF15: a second frame
                                                   {0xD7, Kind::Alone},     // RST0 to RST7
                                                   {0xDA, Kind::Misplaced}, // SOI, EOI, SOS
                                                   {0xDB, Kind::Segment},   // DQT
                                                   {0xDC, Kind::Misplaced}, // DNL
                                                   {0xDD, Kind::Segment},   // DRI
                                                   {0xDE, Kind::Frame},     // DHP
                                                   {0xDF, Kind::Misplaced}, // EXP
                                                   {0xEF, Kind::Segment},   // APP0 to APP15
                                                   {0xFD, Kind::Foreign},   // JPEG-LS and other extensions
                                                   {0xFF, Kind::Segment}}}; // COM

Kind KindOf(unsigned aMarker) {
    std::size_t i = 0;
    while (kMarkers[i].mLast < aMarker) {
        ++i;
    }
    return kMarkers[i].mKind;
}

/// The next marker (B.1.1.2); 0 after a failure of the reader, and where there was more than aJunkLeft
/// between segments: bytes that belong to none, and the fill bytes that may stand before a marker. What there
/// was it counts down.
unsigned NextMarker(ByteReader& aReader, std::uint32_t& aJunkLeft) {
    unsigned before = aReader.ReadByte();
    unsigned byte = aReader.ReadByte();
    while (before != 0xFF || byte == 0xFF || byte == 0) {
        if (aReader.HasFailed() || aJunkLeft == 0) {
            return 0;
        }
        --aJunkLeft;
        before = byte;
        byte = aReader.ReadByte();
    }
    return byte;
}

/// True when a segment begins with a name, which is then read.
bool BeginsWith(ByteReader& aSegment, std::string_view aName) {
    ByteReader name = aSegment.Take(aName.size());
    for (const char character : aName) {
        name.Require(name.ReadByte() == static_cast<unsigned char>(character));
    }
    return !name.HasFailed();
}

} // namespace

/// Where the walk over the segments stands.
struct JPEGParser::Walk {
    Walk(MediaBytes& aBytes, const ByteReader& aReader)
        : mBytes(aBytes), mReader(aReader), mContent(aReader) {}

    MediaBytes& mBytes;
    ByteReader mReader; ///< after the segment
    ByteReader mContent;
    unsigned mMarker = 0;
    std::uint32_t mJunkLeft = kJPEG_MaxJunk;
};

/// What the segments before the frame header told.
struct JPEGParser::Finds {
    JPEGColourHints mHints;
    bool mfExif = false;
    ExifFacts mFacts;

    void Take(unsigned aMarker, ByteReader aContent) {
        if (aMarker == kAPP0 && BeginsWith(aContent, kJFIFName)) {
            mHints.mfJFIF = true;
        } else if (aMarker == kAPP1 && !mfExif && BeginsWith(aContent, kExifName)) {
            mfExif = true; // a program that adds a second one has not understood the first
            mFacts = ReadExif(aContent);
        } else if (aMarker == kAPP14 && BeginsWith(aContent, kAdobeName)) {
            aContent.Skip(6); // version, flags 0 and flags 1
            const int transform = aContent.ReadByte();
            mHints.mAdobeTransform = aContent.HasFailed() ? mHints.mAdobeTransform : transform;
        }
    }
};

/// The start of a picture, and the marker of a segment or a frame header (ITU-T T.81, B.2.1).
bool JPEGParser::IsAt(ByteReader aBytes) {
    const std::uint32_t word = aBytes.ReadBig32();
    const std::uint32_t marker = word & 0xFF;
    const bool fEmpty = marker >= 0xD0 && marker <= 0xD9; // those without a segment
    return word >> 8 == 0xFFD8FF && marker >= 0xC0 && marker != 0xFF && !fEmpty;
}

bool JPEGParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    ByteReader reader(aBytes);
    const auto start = static_cast<unsigned>(reader.ReadBig(2));
    if (start != kStartOfImage) {
        return Refuse(Cause::Malformed, "begins with %04X", start);
    }
    Walk walk(aBytes, reader);
    Finds finds;
    for (std::uint32_t i = 0; i < kJPEG_MaxSegments; ++i) {
        if (!NextSegment(walk)) {
            return false;
        }
        if (KindOf(walk.mMarker) == Kind::Frame) {
            return ReadFrame(walk, finds, anInfo);
        }
        finds.Take(walk.mMarker, walk.mContent);
    }
    return Refuse(Cause::Limit, "more than %u segments before the frame header", kJPEG_MaxSegments);
}

/// Goes to the next segment; one without content for a marker that stands alone.
bool JPEGParser::NextSegment(Walk& aWalk) const {
    aWalk.mMarker = NextMarker(aWalk.mReader, aWalk.mJunkLeft);
    if (aWalk.mMarker == 0 && !aWalk.mReader.HasFailed()) {
        return Refuse(Cause::Limit, "more than %u bytes between segments", kJPEG_MaxJunk);
    }
    const Kind kind = KindOf(aWalk.mMarker);
    if (kind == Kind::Misplaced) {
        return Refuse(Cause::Malformed, "marker %02X before the frame header", aWalk.mMarker);
    }
    if (kind == Kind::Foreign) {
        return Refuse(Cause::Unsupported, "marker %02X", aWalk.mMarker);
    }
    const std::uint64_t length = kind == Kind::Alone ? kLengthSize : aWalk.mReader.ReadBig(kLengthSize);
    if (length < kLengthSize && !aWalk.mReader.HasFailed()) {
        return Refuse(Cause::Malformed, "marker %02X with length %u", aWalk.mMarker,
                      static_cast<unsigned>(length));
    }
    aWalk.mContent = aWalk.mReader.Take(length - kLengthSize);
    return !aWalk.mReader.HasFailed() || RefuseCut(aWalk.mBytes, "the frame header");
}

/// Reads the frame header that the walk has come to (B.2.2).
bool JPEGParser::ReadFrame(Walk& aWalk, const Finds& aFinds, ezMediaInfo& anInfo) const {
    unsigned precisions = 0;
    const char* const process = JPEGProcessOf(aWalk.mMarker, &precisions);
    const unsigned precision = aWalk.mContent.ReadByte();
    const auto height = static_cast<unsigned>(aWalk.mContent.ReadBig(2));
    const auto width = static_cast<unsigned>(aWalk.mContent.ReadBig(2));
    JPEGComponents components;
    if (!ReadComponents(aWalk, &components)) {
        return false;
    }
    if (precision > 16 || (precisions >> precision & 1U) == 0) {
        return Refuse(Cause::Malformed, "%u bits in a %s frame", precision, process);
    }
    if (width == 0) {
        return Refuse(Cause::Malformed, "width 0");
    }
    anInfo.Set(kezInfo_PictureWidth, width, true);
    if (height != 0) { // else DNL states it after the first scan (B.2.5)
        anInfo.Set(kezInfo_PictureHeight, height, true);
    }
    anInfo.Set(kezInfo_PictureProcess, process, true);
    anInfo.Set(kezInfo_PictureBitDepth, precision, true);
    anInfo.Set(kezInfo_PictureColours, JPEGColoursOf(components, aFinds.mHints), true);
    StoreExif(aFinds.mFacts, anInfo);
    return true;
}

/// The component specifications of a frame header (B.2.2, table B.2).
bool JPEGParser::ReadComponents(Walk& aWalk, JPEGComponents* aComponents) const {
    ByteReader& frame = aWalk.mContent;
    const unsigned count = frame.ReadByte();
    if (frame.HasFailed()) {
        return RefuseCut(aWalk.mBytes, "the components of the frame header");
    }
    const std::uint64_t left = frame.GetLeft();
    for (std::size_t i = 0; i < count && i < kJPEG_MaxComponents; ++i) {
        const unsigned id = frame.ReadByte();
        const unsigned factors = frame.ReadByte();
        frame.Skip(1); // Tq, its quantisation table
        aComponents->mItems[i] = {id, factors >> 4, factors & 15U};
        aComponents->mCount = i + 1;
    }
    if (left != std::uint64_t{3} * count || count == 0) {
        return Refuse(Cause::Malformed, "frame header of %u components in %u bytes", count,
                      static_cast<unsigned>(left));
    }
    if (count > kJPEG_MaxComponents) {
        return Refuse(Cause::Unsupported, "%u components", count);
    }
    if (frame.HasFailed()) {
        return RefuseCut(aWalk.mBytes, "the picture");
    }
    for (std::size_t i = 0; i < aComponents->mCount; ++i) {
        const JPEGComponent& component = aComponents->mItems[i];
        if (component.mAcross - 1 > 3 || component.mDown - 1 > 3) { // 0 is beyond, too
            return Refuse(Cause::Malformed, "sampling factors %ux%u", component.mAcross, component.mDown);
        }
    }
    return true;
}
