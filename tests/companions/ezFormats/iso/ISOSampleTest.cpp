#include "companions/ezFormats/iso/ISOBytes.h"

#include "companions/ezFormats/codecs/H264Bytes.h"
#include "companions/ezFormats/codecs/VC1Bytes.h"

#include <gtest/gtest.h>

using namespace iso;

namespace {

/// A file whose samples stand before the movie: the first one is this, of so many bytes as the tables say.
struct Sampled {
    std::string mEntry;
    std::string mSample;
    bool mf64 = false;
    std::uint32_t mSize = 0;           ///< as the table states it; 0: as it is
    std::uint64_t mPlace = UINT64_MAX; ///< likewise

    std::string Bytes() const {
        const std::string front = FileType();
        Track track = VideoTrack(mEntry);
        track.mSizes[0] = mSize != 0 ? mSize : static_cast<std::uint32_t>(mSample.size());
        const std::uint64_t place = mPlace != UINT64_MAX ? mPlace : front.size() + 8;
        track.mChunks = FullBox(mf64 ? "co64" : "stco", Big(1, 4) + Big(place, mf64 ? 8 : 4));
        return front + Box("mdat", mSample + std::string(480, '.')) + Movie({track});
    }
};

std::string Told(const Sampled& aFile, const Delivery& aDelivery = Delivery()) {
    return Values(Parsed(aFile.Bytes(), aDelivery), {"vc", "vp", "vl", "wi", "he", "pr", "cr"});
}

/// "avcC" of these sets, with sizes of four bytes before the units of samples.
std::string Config(const std::vector<std::string>& aSPSs, const std::vector<std::string>& aPPSs) {
    return Hex({1, 77, 0, 31, 0xFF, 0xE0 | static_cast<int>(aSPSs.size())}) + Sized(aSPSs, 2) +
           Hex({static_cast<int>(aPPSs.size())}) + Sized(aPPSs, 2);
}

h264::Stream264 Stream(bool afMayHaveFields, unsigned aField = 0) {
    h264::Stream264 stream;
    stream.mProfile = 77;
    stream.mLevel = 31;
    stream.mfFields = afMayHaveFields;
    stream.mHeight = afMayHaveFields ? 6 : 12;
    stream.mField = aField;
    return stream;
}

/// With the sets in "avcC", or in the sample.
Sampled H264File(const h264::Stream264& aStream, bool afSetsInSample = false,
                 const std::string& aBoxes = "") {
    const std::string pps = "\x68" + Escaped(h264::Stream264::PPS());
    const std::string sps = "\x67" + Escaped(aStream.SPS());
    const std::string config = afSetsInSample ? Config({}, {}) : Config({sps}, {pps});
    std::vector<std::string> units = afSetsInSample ? aStream.Sets() : std::vector<std::string>();
    for (const std::string& unit : aStream.Picture()) {
        units.push_back(unit);
    }
    return {VideoEntry(afSetsInSample ? "avc3" : "avc1", Box("avcC", config) + aBoxes), Sized(units, 4)};
}

const std::string kLayer =
    Hex({0, 0, 1, 0xB0, 0xF5, 0, 0, 1, 0x20, 0x00, 0x84, 0x40, 0x06, 0x70, 0xC2, 0xC1, 0x09, 0x06});
const std::string kLayerTold = "vc=\"MPEG4\" vp=\"AdvancedSimple\" vl=50";

std::string JPEG() {
    return Hex({0xFF, 0xD8, 0xFF, 0xE0, 0, 16, 'A', 'V', 'I', '1', 1, 0,    0, 0, 0,    0, 0, 0,    0, 0,
                0xFF, 0xC0, 0,    17,   8, 0,  120, 1,   64,  3,   1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1});
}

} // namespace

TEST(ISOSample, FieldsOfH264AreThoseOfTheFirstSample) {
    const std::string main = "vc=\"H264\" vp=\"Main\" vl=31 wi=320 he=192 ";
    EXPECT_EQ(Told(H264File(Stream(true, 1))), main + "pr=\"interlaced\" cr=\"4:2:0\"");
    EXPECT_EQ(Told(H264File(Stream(true, 0))), main + "pr=\"progressive\" cr=\"4:2:0\"");
    EXPECT_EQ(Told(H264File(Stream(false))), main + "pr=\"progressive\" cr=\"4:2:0\"");
    // what nobody could see is what the box says
    EXPECT_EQ(Told(H264File(Stream(true, 0), false, Box("fiel", Hex({2, 6})))),
              main + "pr=\"interlaced\" cr=\"4:2:0\"");
    EXPECT_EQ(Told(H264File(Stream(true, 1), false, Box("fiel", Hex({1, 0})))),
              main + "pr=\"interlaced\" cr=\"4:2:0\"");
}

TEST(ISOSample, SetsInTheFirstSampleTellThePicture) {
    Sampled file = H264File(Stream(true, 1), true);
    EXPECT_EQ(Told(file), "vc=\"H264\" vp=\"Main\" vl=31 wi=320 he=192 pr=\"interlaced\" cr=\"4:2:0\"");
    file.mSample = "broken";
    EXPECT_EQ(Told(file), "vc=\"H264\" vp=\"Main\" vl=31 wi=320 he=240");
}

TEST(ISOSample, FrameTellsWhatTheEntryLeavesOut) {
    EXPECT_EQ(Told({VideoEntry("XVID", ""), kLayer}).rfind(kLayerTold, 0), 0U);
    EXPECT_EQ(Told({VideoEntry("mp4v", ""), kLayer}).rfind(kLayerTold, 0), 0U);
    EXPECT_EQ(Told({VideoEntry("mp4v", ESDS(0x20, Hex({0, 0, 1, 0xB0, 0xF5}))), kLayer}).rfind(kLayerTold, 0),
              0U);
    EXPECT_EQ(Told({VideoEntry("mjpa", ""), JPEG()}),
              "vc=\"MJPEG\" wi=320 he=240 pr=\"interlaced\" cr=\"4:2:0\"");
    EXPECT_EQ(Told({VideoEntry("SVQ3", ""), JPEG()}), "vc=\"SVQ3\" wi=320 he=240");
    EXPECT_EQ(Told({VideoEntry("encv", ""), JPEG()}), "vc=\"encrypted:encv\" wi=320 he=240");
}

TEST(ISOSample, VC1IsDescribedByItsConfiguration) {
    const std::string head = Hex({0xC4, 0x40, 0x04, 0, 0, 0x61, 0xA8}); // the advanced profile
    const std::string sequence = vc1::Sequence().Bytes();
    const std::string main = Hex({0x44, 0x4E, 0x29, 0x1A, 0x01});
    const std::string profile = "vc=\"VC1\" vp=\"Advanced\" vl=20 ";
    const std::string whole = profile + "wi=1280 he=720 pr=\"progressive\" cr=\"4:2:0\"";
    const std::string simple = "vc=\"WMV3\" vp=\"Main\" vl=20 wi=320 he=240 pr=\"progressive\" cr=\"4:2:0\"";
    const auto entries = [](const std::string& aConfig) {
        return std::vector<std::string>{VideoEntry("vc-1", Box("dvc1", aConfig)),
                                        VideoEntry("mp4v", ESDS(0xA3, aConfig))};
    };
    for (const std::string& entry : entries(head + sequence)) {
        EXPECT_EQ(Told({entry, "a frame"}), whole);
    }
    for (const std::string& entry : entries(head)) {
        EXPECT_EQ(Told({entry, sequence}), whole) << "the sequence header stands in the sample alone";
        EXPECT_EQ(Told({entry, "a frame"}), profile + "wi=320 he=240 cr=\"4:2:0\"");
    }
    for (const std::string& entry : entries(main)) {
        EXPECT_EQ(Told({entry, sequence}), simple) << "of this profile no start code stands in a sample";
    }
    for (const std::string& entry : entries(Hex({0x10}))) {
        EXPECT_EQ(Told({entry, sequence}), whole) << "no such record";
    }
    EXPECT_EQ(Told({VideoEntry("encv", Box("sinf", Box("frma", "vc-1")) + Box("dvc1", main)), "a frame"})
                  .rfind("vc=\"encrypted:WMV3\"", 0),
              0U);
}

TEST(ISOSample, FirstSampleStandsWhereTheTablesSay) {
    Sampled file = {VideoEntry("XVID", ""), kLayer};
    const std::string whole = Told(file);
    const std::string none = "vc=\"MPEG4\" wi=320 he=240";
    file.mf64 = true;
    EXPECT_EQ(Told(file), whole);
    for (const std::uint64_t place :
         {std::uint64_t{0}, std::uint64_t{1} << 20, UINT64_MAX - 1, UINT64_MAX - 100}) {
        file.mPlace = place;
        EXPECT_EQ(Told(file), none) << place;
    }
    file.mPlace = UINT64_MAX;
    file.mSize = 5; // up to the profile
    EXPECT_EQ(Told(file), kLayerTold + " wi=320 he=240");
    file.mSize = UINT32_MAX;
    EXPECT_EQ(Told(file), whole);
    file.mSize = 0;
    Delivery stream;
    stream.mfSizeKnown = false;
    EXPECT_EQ(Told(file, stream), whole);
}

TEST(ISOSample, SoMuchOfTheFirstSampleIsLookedAt) {
    const auto told = [](std::size_t aBefore) {
        return Told({VideoEntry("XVID", ""), std::string(aBefore, 'x') + Hex({0, 0, 1, 0xB0, 0xF5})});
    };
    EXPECT_EQ(told(kISO_MaxSample - 5), kLayerTold + " wi=320 he=240");
    EXPECT_EQ(told(kISO_MaxSample - 4), "vc=\"MPEG4\" wi=320 he=240");
}

TEST(ISOSample, FirstRunOfFragmentsTellsItsPlace) {
    const std::string entry = VideoEntry("XVID", "");
    const auto told = [&](std::uint32_t aHeadFlags, bool afSizes, std::int64_t aShift) {
        Track track = VideoTrack(entry, 1);
        track.mDuration = 0;
        track.mSizes.clear();
        const std::string front = FileType() + Movie({track}, Extends("", 100, 500));
        const auto fragment = [&](std::uint64_t anOffset, std::uint64_t aBase) {
            const std::string base = (aHeadFlags & 1U) != 0 ? Big(aBase, 8) : "";
            const std::string run =
                Big(1, 4) + Big(static_cast<std::uint32_t>(anOffset), 4) + (afSizes ? Big(500, 4) : "");
            return Box("moof", FullBox("mfhd", Big(1, 4)) +
                                   Box("traf", FullBox("tfhd", Big(1, 4) + base, 0, aHeadFlags) +
                                                   FullBox("trun", run, 0, afSizes ? 0x201 : 0x1)));
        };
        const std::uint64_t size = fragment(0, 0).size();
        const bool fBase = (aHeadFlags & 1U) != 0;
        const std::uint64_t offset = (fBase ? 0 : size + 8) + static_cast<std::uint64_t>(aShift);
        return Values(Parsed(front + fragment(offset, front.size() + size + 8) +
                             Box("mdat", kLayer + std::string(482, '.'))),
                      {"vc", "vp", "vl"});
    };
    EXPECT_EQ(told(0, true, 0), kLayerTold);
    EXPECT_EQ(told(0, false, 0), kLayerTold);
    EXPECT_EQ(told(0x20000, true, 0), kLayerTold);
    EXPECT_EQ(told(1, true, 0), kLayerTold);
    EXPECT_EQ(told(1, true, -8), kLayerTold) << "a head in front does not matter";
    EXPECT_EQ(told(0, true, 8), "vc=\"MPEG4\"");
    EXPECT_EQ(told(0, true, INT32_MIN), "vc=\"MPEG4\"");
}

TEST(ISOSample, CostsOneReadAndOnlyWhereItIsWanted) {
    const auto reads = [](const std::string& anEntry) {
        Sampled file = {anEntry, kLayer + std::string(100'000, '.')};
        const std::string bytes = file.Bytes();
        AwkwardStream::Costs costs;
        Parsed(bytes + Box("free", std::string(200'000, '.')), Delivery(), &costs);
        return costs.mReads;
    };
    const std::string told = VideoEntry("mp4v", ESDS(0x20, kLayer));
    EXPECT_LE(reads(VideoEntry("XVID", "")), reads(VideoEntry("SVQ3", "")) + 1);
    EXPECT_EQ(reads(told), reads(VideoEntry("SVQ3", "")));
}
