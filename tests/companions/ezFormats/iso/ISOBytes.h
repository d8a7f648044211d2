#pragma once

#include "companions/ezFormats/PictureBytes.h"

#include "ezFormats/iso/ISOMediaParser.h"

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

/// ISO media files as bytes.
namespace iso {

using pictures::IsComplete;
using pictures::ValueOf;

/// A box: its size, four bytes in all, its type, its content.
inline std::string Box(const std::string& aType, const std::string& aContent) {
    return Big(aContent.size() + 8, 4) + aType + aContent;
}

/// The same with the size after the type, in eight bytes.
inline std::string LargeBox(const std::string& aType, const std::string& aContent) {
    return Big(1, 4) + aType + Big(aContent.size() + 16, 8) + aContent;
}

/// One with version and flags.
inline std::string FullBox(const std::string& aType, const std::string& aContent, unsigned aVersion = 0,
                           unsigned aFlags = 0) {
    return Box(aType, Big(aVersion, 1) + Big(aFlags, 3) + aContent);
}

inline std::string FileType(const std::string& aBrand = "isom", const std::string& aCompatible = "isomiso2") {
    return Box("ftyp", aBrand + Big(512, 4) + aCompatible);
}

// ---- descriptions of samples ----

/// A descriptor, its length in as many bytes as are asked for.
inline std::string Descriptor(unsigned aTag, const std::string& aContent, unsigned aLengthBytes = 1) {
    std::string length;
    for (unsigned i = aLengthBytes; i-- > 0;) {
        length += Big((aContent.size() >> 7 * i & 0x7F) | (i != 0 ? 0x80U : 0U), 1);
    }
    return Big(aTag, 1) + length + aContent;
}

/// A stream's descriptor: what it is, how its decoder is set up, and its rates.
inline std::string ESDS(unsigned anObjectType, const std::string& aConfig, std::uint32_t aMaximum = 0,
                        std::uint32_t anAverage = 0, unsigned aLengthBytes = 1) {
    const std::string config = aConfig.empty() ? "" : Descriptor(5, aConfig, aLengthBytes);
    const std::string decoder =
        Big(anObjectType, 1) + Big(0x15, 1) + Big(0, 3) + Big(aMaximum, 4) + Big(anAverage, 4) + config;
    return FullBox("esds",
                   Descriptor(3, Big(1, 2) + Big(0, 1) + Descriptor(4, decoder, aLengthBytes), aLengthBytes));
}

/// AAC of low complexity, 44.1 kHz, two channels: 00010 0100 0010 000.
inline const std::string kAACConfig = "\x12\x10";

inline std::string AudioEntry(const std::string& aFormat, const std::string& aBoxes, unsigned aChannels = 2,
                              unsigned aBits = 16, std::uint32_t aRate = 44100) {
    return Box(aFormat, Big(0, 6) + Big(1, 2) + Big(0, 8) + Big(aChannels, 2) + Big(aBits, 2) + Big(0, 4) +
                            Big(aRate, 2) + Big(0, 2) + aBoxes);
}

/// QuickTime's first and second version of it. Of the first: what the packets are (FFFE: they vary), and so
/// many samples in so many bytes of one.
inline std::string AudioEntry1(const std::string& aFormat, const std::string& aBoxes,
                               unsigned aCompression = 0xFFFE, std::uint32_t aSamples = 1024,
                               std::uint32_t aBytes = 0) {
    return Box(aFormat, Big(0, 6) + Big(1, 2) + Big(1, 2) + Big(0, 6) + Big(2, 2) + Big(16, 2) +
                            Big(aCompression, 2) + Big(0, 2) + Big(44100, 2) + Big(0, 2) + Big(aSamples, 4) +
                            Big(aBytes / 2, 4) + Big(aBytes, 4) + Big(0, 4) + aBoxes);
}
inline std::string AudioEntry2(const std::string& aFormat, std::uint64_t aRateBits, std::uint32_t aChannels,
                               std::uint32_t aBits, std::uint32_t aFlags) {
    return Box(aFormat, Big(0, 6) + Big(1, 2) + Big(2, 2) + Big(0, 6) + Big(3, 2) + Big(16, 2) +
                            Big(0xFFFE, 2) + Big(0, 2) + Big(1, 2) + Big(0, 2) + Big(72, 4) +
                            Big(aRateBits, 8) + Big(aChannels, 4) + Big(0x7F000000, 4) + Big(aBits, 4) +
                            Big(aFlags, 4) + Big(4, 4) + Big(1, 4));
}

inline std::string AAC(std::uint32_t aMaximum = 0, std::uint32_t anAverage = 0) {
    return AudioEntry("mp4a", ESDS(0x40, kAACConfig, aMaximum, anAverage));
}

inline std::string VideoEntry(const std::string& aFormat, const std::string& aBoxes, unsigned aWidth = 320,
                              unsigned aHeight = 240) {
    return Box(aFormat, Big(0, 6) + Big(1, 2) + Big(0, 16) + Big(aWidth, 2) + Big(aHeight, 2) +
                            Big(0x00480000, 4) + Big(0x00480000, 4) + Big(0, 4) + Big(1, 2) +
                            std::string(32, '\0') + Big(24, 2) + Big(0xFFFF, 2) + aBoxes);
}

// ---- tracks and movies ----

/// A matrix: what it makes of a step to the right and of one downwards, each in units of 1/65536.
inline std::string Matrix(std::int64_t aXOfX, std::int64_t aYOfX, std::int64_t aXOfY, std::int64_t aYOfY) {
    const auto number = [](std::int64_t aNumber) { return Big(static_cast<std::uint32_t>(aNumber), 4); };
    return number(aXOfX) + number(aYOfX) + Big(0, 4) + number(aXOfY) + number(aYOfY) + Big(0, 4) +
           number(std::int64_t{720} * 65536) + number(-9) + Big(0x40000000, 4);
}

/// The one that does nothing.
inline const std::string kNoMatrix = Matrix(65536, 0, 0, 65536);

struct Edit {
    std::uint64_t mDuration;
    std::int64_t mStart;
};

/// A track, by default of a second of AAC in ten samples of 100 bytes.
struct Track {
    std::uint32_t mID = 1;
    bool mfEnabled = true;
    std::string mHandler = "soun";
    std::uint32_t mTimescale = 1000;
    std::uint64_t mDuration = 1000;
    std::string mEntry = AAC();
    std::vector<std::uint32_t> mSizes = std::vector<std::uint32_t>(10, 100);
    std::uint32_t mSampleTicks = 100;
    std::vector<Edit> mEdits = {};
    unsigned mVersion = 0;      ///< of boxes with times
    std::string mSizeTable;     ///< in place of the one of mSizes
    unsigned mTableVersion = 0; ///< of the descriptions
    std::string mMatrix = kNoMatrix;
    unsigned mPackedLanguage = 0;
    std::string mLanguage; ///< of an "elng" box; empty: there is none
    std::string mMore;     ///< boxes before the media
    std::string mTimes;    ///< runs of samples, in place of one of all of them
    std::string mChunks;   ///< the table of chunk offsets, in place of one of none

    std::string Times() const {
        const std::size_t size = mVersion == 1 ? 8 : 4;
        return Big(0, 2 * size) + Big(mTimescale, 4) + Big(mDuration, size) + Big(mPackedLanguage, 2) +
               Big(0, 2);
    }
    std::string EditList() const {
        const std::size_t size = mVersion == 1 ? 8 : 4;
        std::string list = Big(mEdits.size(), 4);
        for (const Edit& edit : mEdits) {
            list += Big(edit.mDuration, size) + Big(static_cast<std::uint64_t>(edit.mStart), size) +
                    Big(0x00010000, 4);
        }
        return mEdits.empty() ? "" : Box("edts", FullBox("elst", list, mVersion));
    }
    std::string Tables() const {
        std::string sizes = Big(0, 4) + Big(mSizes.size(), 4);
        for (const std::uint32_t size : mSizes) {
            sizes += Big(size, 4);
        }
        const std::string times = !mTimes.empty()  ? Big(mTimes.size() / 8, 4) + mTimes
                                  : mSizes.empty() ? Big(0, 4)
                                                   : Big(1, 4) + Big(mSizes.size(), 4) + Big(mSampleTicks, 4);
        return FullBox("stsd", Big(1, 4) + mEntry, mTableVersion) + FullBox("stts", times) +
               FullBox("stsc", Big(0, 4)) + (mSizeTable.empty() ? FullBox("stsz", sizes) : mSizeTable) +
               (mChunks.empty() ? FullBox("stco", Big(0, 4)) : mChunks);
    }
    std::string Bytes() const {
        const std::size_t size = mVersion == 1 ? 8 : 4;
        const std::string head = Big(0, 2 * size) + Big(mID, 4) + Big(0, 4) + Big(mDuration, size);
        const std::string handler = Big(0, 4) + mHandler + Big(0, 12);
        const std::string language = mLanguage.empty() ? "" : FullBox("elng", mLanguage + '\0');
        return Box("trak",
                   FullBox("tkhd", head + Big(0, 16) + mMatrix + Big(0, 8), mVersion, mfEnabled ? 7 : 6) +
                       EditList() + mMore +
                       Box("mdia", FullBox("mdhd", Times(), mVersion) + language + FullBox("hdlr", handler) +
                                       Box("minf", FullBox("smhd", Big(0, 4)) + Box("stbl", Tables()))));
    }
};

/// Video: a second of 25 pictures of 20 bytes.
inline Track VideoTrack(const std::string& anEntry = VideoEntry("avc1", ""), std::uint32_t anID = 2) {
    Track track;
    track.mID = anID;
    track.mHandler = "vide";
    track.mEntry = anEntry;
    track.mSizes.assign(25, 20);
    track.mSampleTicks = 40;
    return track;
}

inline std::string MovieHead(std::uint32_t aTimescale, std::uint64_t aDuration, unsigned aVersion = 0,
                             const std::string& aMatrix = kNoMatrix) {
    const std::size_t size = aVersion == 1 ? 8 : 4;
    return FullBox("mvhd",
                   Big(0, 2 * size) + Big(aTimescale, 4) + Big(aDuration, size) + Big(0, 16) + aMatrix +
                       Big(0, 28),
                   aVersion);
}

inline std::string Movie(const std::vector<Track>& aTracks, const std::string& aMore = "",
                         const std::string& aHead = MovieHead(1000, 0)) {
    std::string tracks;
    for (const Track& track : aTracks) {
        tracks += track.Bytes();
    }
    return Box("moov", aHead + tracks + aMore);
}

inline std::string File(const std::vector<Track>& aTracks, const std::string& aMore = "",
                        const std::string& aHead = MovieHead(1000, 0)) {
    return FileType() + Movie(aTracks, aMore, aHead) + Box("mdat", std::string(1500, '.'));
}

inline std::string AudioFile(const std::string& anEntry) {
    Track track;
    track.mEntry = anEntry;
    return File({track});
}

inline std::string VideoFile(const std::string& anEntry) {
    return File({VideoTrack(anEntry)});
}

// ---- fragments ----

/// A run of samples in a fragment of one track, of 100 ticks and 500 bytes each; aTime after 2^63 is not
/// stated.
inline std::string Fragment(std::uint32_t anID, std::uint32_t aSamples, std::uint64_t aTime = UINT64_MAX) {
    const std::string time = aTime == UINT64_MAX ? "" : FullBox("tfdt", Big(aTime, 8), 1);
    std::string run = Big(aSamples, 4);
    for (std::uint32_t i = 0; i < aSamples; ++i) {
        run += Big(100, 4) + Big(500, 4);
    }
    return Box("moof", FullBox("mfhd", Big(1, 4)) + Box("traf", FullBox("tfhd", Big(anID, 4)) + time +
                                                                    FullBox("trun", run, 0, 0x300)));
}

inline Track EmptyTrack() {
    Track track;
    track.mDuration = 0;
    track.mSizes.clear();
    return track;
}

inline std::string Extends(const std::string& aMore = "", std::uint32_t aTicks = 0, std::uint32_t aSize = 0) {
    return Box("mvex",
               aMore + FullBox("trex", Big(1, 4) + Big(1, 4) + Big(aTicks, 4) + Big(aSize, 4) + Big(0, 4)));
}

// ---- tags ----

inline std::string Item(const std::string& aType, const std::string& aText, unsigned aKind = 1) {
    return Box(aType, Box("data", Big(aKind, 4) + Big(0, 4) + aText));
}

inline std::string Items(const std::string& anItems) {
    const std::string handler = Big(0, 4) + "mdirappl" + Big(0, 9);
    return Box("udta", FullBox("meta", FullBox("hdlr", handler) + Box("ilst", anItems)));
}

// ---- parsing ----

inline std::string Parsed(const std::string& aBytes, const Delivery& aDelivery = Delivery(),
                          AwkwardStream::Costs* aCosts = nullptr) {
    return pictures::Parsed<ISOMediaParser>(aBytes, aDelivery, aCosts);
}

inline std::string Refusal(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return pictures::Refusal<ISOMediaParser>(aBytes, aDelivery);
}

/// Some values of a record, "ca=... sf=...", those that are there.
inline std::string Values(const std::string& aRecord, const std::vector<const char*>& aKeys) {
    std::string values;
    for (const char* key : aKeys) {
        const std::string value = ValueOf(aRecord, key);
        if (!value.empty()) {
            values += (values.empty() ? "" : " ") + std::string(key) + "=" + value;
        }
    }
    return values;
}

} // namespace iso
