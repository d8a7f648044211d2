#include "companions/ezFormats/rules/FilmTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

// The limits of the names of films before H.264, stated once more: each is kept at its edge, and given up one
// beyond. A measured rate may lie a thousandth above what is stated.

namespace {

/// The most that pictures may be at a time.
struct Picture {
    unsigned mWidth;
    unsigned mHeight;
    unsigned mRate; ///< in 1000 seconds
};

struct Heard {
    std::vector<std::string> mCodecs;
    std::vector<unsigned>
        mSamplingRates; ///< the lowest, the highest, and what lies between where not all does
    unsigned mChannels;
    unsigned mLeastBits; ///< a second
    unsigned mMostBits;
};

struct Limits {
    std::string mName;
    std::string mStart;            ///< type, codec and profile
    std::vector<unsigned> mLevels; ///< ten times each; empty: not asked for
    std::vector<Picture> mPictures;
    unsigned mBits; ///< a second, of the video
    Heard mSound;
    unsigned mWholeBits = 0; ///< 0: no limit
};

constexpr unsigned kAllLevels[] = {0, 9, 10, 20, 30, 39, 40, 50, 60};

const std::string kMP4 = "mt=video/mp4 vc=MPEG4 vp=Simple";
const std::string kMP4Advanced = "mt=video/mp4 vc=MPEG4 vp=AdvancedSimple";
const std::string kTS = "mt=video/mp2t ct=TS vc=MPEG4 vp=Simple";
const std::string kTSCore = "mt=video/mp2t ct=TS vc=MPEG4 vp=Core";
const std::string kTSAdvanced = "mt=video/mp2t ct=TS vc=MPEG4 vp=AdvancedSimple";
const std::string kASF = "mt=video/x-ms-asf vc=MPEG4 vp=Simple";
const std::string k3GP = "mt=video/3gpp vc=MPEG4 vp=Simple";
const std::string kH263 = "mt=video/3gpp vc=H263 vp=0";
const std::string kWMVSimple = "mt=video/x-ms-wmv vc=WMV3 vp=Simple";
const std::string kWMVMain = "mt=video/x-ms-wmv vc=WMV3 vp=Main";
const std::string kVC1 = "mt=video/x-ms-asf vc=VC1 vp=Advanced";

const std::vector<Picture> kCIF = {{352, 288, 30000}};
const std::vector<Picture> kL2 = {{352, 288, 15000}, {176, 144, 30000}};
const std::vector<Picture> kQCIF = {{176, 144, 15000}};
const std::vector<Picture> kVGA = {{640, 480, 30000}};
const std::vector<Picture> kSD = {{720, 576, 30000}};
const std::vector<Picture> kHalf = {{352, 576, 30000}};
const std::vector<Picture> kHD = {{1280, 720, 30000}};
const std::vector<Picture> kMedium = {{720, 576, 25000}, {720, 480, 30000}};
const std::vector<Picture> kHigh = {{1920, 1080, 30000}};
const std::vector<Picture> kSecond = {{1280, 720, 30000}, {720, 480, 60000}};

Heard AAC(unsigned aMostBits, const char* aCodec = "AAC", unsigned aChannels = 2) {
    return {{aCodec}, {8000, 48000}, aChannels, 1, aMostBits};
}
/// In a transport stream, where 24 kHz may be the core of HE-AAC.
Heard SureAAC(unsigned aMostBits) {
    return {{"AAC"}, {32000, 48000}, 2, 1, aMostBits};
}
const Heard kAMR = {{"AMR"}, {8000}, 1, 4750, 12200};
const Heard kAMRPlus = {{"AMR-WB+"}, {8000, 48000}, 2, 5200, 48000};
const Heard kG726 = {{"G726"}, {8000}, 1, 32000, 32000};
const Heard kAC3 = {{"AC3"}, {32000, 44100, 48000}, 6, 64000, 640000};
const Heard kMP3 = {{"MP3"}, {32000, 44100, 48000}, 2, 32000, 320000};
const Heard kMP2 = {{"MP1", "MP2"}, {32000, 44100, 48000}, 2, 32000, 384000};
const Heard kBase = {{"WMA1", "WMA2"}, {8000, 48000}, 2, 1, 192999};
const Heard kFull = {{"WMA1", "WMA2"}, {8000, 48000}, 2, 1, 385000};
const Heard kPro = {{"WMA-Pro"}, {8000, 96000}, 8, 1, 1500000};

/// The three rules of the simple profile up to level 3: bits by the level.
void AddByLevel(std::vector<Limits>& aRows, const Limits& aRow) {
    const std::vector<std::pair<std::vector<unsigned>, unsigned>> levels = {
        {{0, 10}, 64000}, {{9, 20}, 128000}, {{30}, 384000}};
    for (const auto& [numbers, bits] : levels) {
        aRows.push_back(aRow);
        aRows.back().mLevels = numbers;
        aRows.back().mBits = bits;
    }
}

std::vector<Limits> SimpleRows() {
    std::vector<Limits> rows = {
        {"MPEG4_P2_MP4_SP_L2_AAC", kMP4, {0, 9, 10, 20}, kL2, 128000, AAC(128000)},
        {"MPEG4_P2_MP4_SP_L2_AMR", kMP4, {0, 9, 10, 20}, kL2, 128000, kAMR},
        {"MPEG4_P2_MP4_SP_VGA_AAC", kMP4, {0, 9, 10, 20, 30}, kVGA, 3000000, AAC(256000)},
        {"MPEG4_P2_MP4_SP_VGA_HEAAC", kMP4, {0, 9, 10, 20, 30}, kVGA, 3000000, AAC(256000, "HE-AAC")},
        {"MPEG4_P2_MP4_SP_L5_AAC", kMP4, {50}, kSD, 8000000, AAC(256000)},
        {"MPEG4_P2_MP4_SP_L6_AAC", kMP4, {40}, kHD, 4000000, AAC(256000)},
        {"MPEG4_P2_MP4_SP_L6_AAC", kMP4, {50}, kHD, 8000000, AAC(256000)},
        {"MPEG4_P2_MP4_SP_L6_AAC", kMP4, {60}, kHD, 12000000, AAC(256000)},
        {"MPEG4_P2_3GPP_SP_L0B_AAC", k3GP, {0, 9}, kQCIF, 128000, AAC(128000)},
        {"MPEG4_P2_3GPP_SP_L0B_AMR", k3GP, {0, 9}, kQCIF, 128000, kAMR},
    };
    AddByLevel(rows, {"MPEG4_P2_MP4_SP_AAC", kMP4, {}, kCIF, 0, AAC(216000), 600000});
    AddByLevel(rows, {"MPEG4_P2_MP4_SP_AAC_LTP", kMP4, {}, kCIF, 0, AAC(216000, "AAC-LTP"), 600000});
    AddByLevel(rows, {"MPEG4_P2_MP4_SP_HEAAC", kMP4, {}, kCIF, 0, AAC(216000, "HE-AAC"), 600000});
    AddByLevel(rows, {"MPEG4_P2_MP4_SP_L5_AAC", kMP4, {}, kSD, 0, AAC(256000)});
    AddByLevel(rows, {"MPEG4_P2_MP4_SP_L6_AAC", kMP4, {}, kHD, 0, AAC(256000)});
    AddByLevel(rows, {"MPEG4_P2_ASF_SP_G726", kASF, {}, kCIF, 0, kG726});
    AddByLevel(rows, {"MPEG4_P2_TS_SP_AAC_ISO", kTS, {}, kCIF, 0, SureAAC(216000), 600000});
    AddByLevel(rows, {"MPEG4_P2_TS_SP_AC3_ISO", kTS, {}, kCIF, 0, kAC3});
    AddByLevel(rows, {"MPEG4_P2_TS_SP_MPEG1_L3_ISO", kTS, {}, kCIF, 0, kMP3});
    AddByLevel(rows, {"MPEG4_P2_TS_SP_MPEG2_L2_ISO", kTS, {}, kCIF, 0, kMP2});
    return rows;
}

/// Of several levels, those that a narrower name does not take.
std::vector<Limits> AdvancedRows() {
    const std::vector<unsigned> to4 = {0, 9, 10, 20, 30, 39, 40};
    const std::vector<unsigned> to5 = {0, 9, 10, 20, 30, 39, 40, 50};
    const Heard he = AAC(256000, "HE-AAC");
    const Heard he5 = AAC(1440000, "HE-AAC", 6);
    return {{"MPEG4_P2_MP4_ASP_L4_SO_AAC", kMP4, {0, 9, 10, 20, 30, 39}, kHalf, 2000000, AAC(256000)},
            {"MPEG4_P2_MP4_ASP_L4_SO_HEAAC", kMP4, to4, kHalf, 2000000, he},
            {"MPEG4_P2_MP4_ASP_L4_SO_HEAAC_MULT5", kMP4, to4, kHalf, 2000000, he5},
            {"MPEG4_P2_MP4_ASP_L5_SO_AAC", kMP4, to4, kSD, 8000000, AAC(256000)},
            {"MPEG4_P2_MP4_ASP_L5_SO_HEAAC", kMP4, to5, kSD, 8000000, he},
            {"MPEG4_P2_MP4_ASP_L5_SO_HEAAC_MULT5", kMP4, to5, kSD, 8000000, he5},
            {"MPEG4_P2_MP4_ASP_AAC", kMP4Advanced, to5, kSD, 8000000, AAC(256000)},
            {"MPEG4_P2_MP4_ASP_HEAAC", kMP4Advanced, to5, kSD, 8000000, he},
            {"MPEG4_P2_MP4_ASP_HEAAC_MULT5", kMP4Advanced, to5, kSD, 8000000, he5},
            {"MPEG4_P2_ASF_ASP_L4_SO_G726", kASF, to4, kHalf, 2000000, kG726},
            {"MPEG4_P2_ASF_ASP_L5_SO_G726", kASF, to5, kSD, 8000000, kG726},
            {"MPEG4_P2_TS_CO_AC3_ISO", kTSCore, {10, 20}, kCIF, 2000000, kAC3},
            {"MPEG4_P2_TS_CO_MPEG2_L2_ISO", kTSCore, {10, 20}, kCIF, 2000000, kMP2},
            {"MPEG4_P2_TS_ASP_AAC_ISO", kTSAdvanced, to5, kSD, 8000000, SureAAC(256000)},
            {"MPEG4_P2_TS_ASP_AC3_ISO", kTSAdvanced, to5, kSD, 8000000, kAC3},
            {"MPEG4_P2_TS_ASP_MPEG1_L3_ISO", kTSAdvanced, to5, kSD, 8000000, kMP3},
            {"MPEG4_P2_TS_ASP_MPEG2_L2_ISO", kTSAdvanced, to5, kSD, 8000000, kMP2}};
}

std::vector<Limits> H263Rows() {
    const std::string third = "mt=video/3gpp vc=H263 vp=3";
    return {
        {"MPEG4_H263_MP4_P0_L10_AAC", kH263, {10}, kQCIF, 64000, AAC(86000), 150000},
        {"MPEG4_H263_MP4_P0_L10_AAC_LTP", kH263, {10}, kQCIF, 64000, AAC(86000, "AAC-LTP"), 150000},
        {"MPEG4_H263_3GPP_P0_L10_AMR_WBplus", kH263, {10}, kQCIF, 64000, kAMRPlus, 150000},
        {"MPEG4_H263_3GPP_P3_L10_AMR", third, {10}, kQCIF, 64000, kAMR, 150000},
    };
}

std::vector<Limits> WindowsRows() {
    const std::vector<Picture> small = {{240, 176, 30000}, {352, 288, 15000}};
    return {{"WMVSPLL_BASE", kWMVSimple, {}, kQCIF, 96000, kBase},
            {"WMVSPML_BASE", kWMVSimple, {}, small, 384000, kBase},
            {"WMVSPML_MP3", kWMVSimple, {}, small, 384000, kMP3},
            {"WMVMED_BASE", kWMVMain, {}, kMedium, 10000000, kBase},
            {"WMVMED_FULL", kWMVMain, {}, kMedium, 10000000, kFull},
            {"WMVMED_PRO", kWMVMain, {}, kMedium, 10000000, kPro},
            {"WMVHIGH_FULL", kWMVMain, {}, kHigh, 20000000, kFull},
            {"WMVHIGH_PRO", kWMVMain, {}, kHigh, 20000000, kPro},
            {"VC1_ASF_AP_L1_WMA", kVC1, {0, 9, 10}, kMedium, 10000000, kFull},
            {"VC1_ASF_AP_L2_WMA", kVC1, {0, 9, 10, 20}, kSecond, 20000000, kFull}};
}

std::string Fact(const char* aKey, unsigned aNumber) {
    return std::string(" ") + aKey + "=" + std::to_string(aNumber);
}
/// What a measured rate may be at the most.
unsigned Measured(unsigned aStated) {
    return aStated + aStated / 1000;
}

class Edges {
public:
    Edges(const FilmTable& aTable, const std::vector<Limits>& aRows) : mTable(aTable), mRows(aRows) {}

    void Expect() const {
        for (const Limits& row : mRows) {
            for (const Picture& picture : row.mPictures) {
                for (const std::string& codec : row.mSound.mCodecs) {
                    ExpectOf(row, picture, codec);
                }
            }
        }
    }

private:
    void ExpectOf(const Limits& aRow, const Picture& aPicture, const std::string& aCodec) const {
        const Heard& sound = aRow.mSound;
        const std::string edge = aRow.mStart + Fact("wi", aPicture.mWidth) + Fact("he", aPicture.mHeight) +
                                 Fact("fr", Measured(aPicture.mRate)) + Fact("vr", Measured(aRow.mBits)) +
                                 Fact("br", aRow.mWholeBits != 0 ? Measured(aRow.mWholeBits) : 999999999) +
                                 " ca=" + aCodec + Fact("ac", sound.mChannels) +
                                 Fact("ar", Measured(sound.mMostBits)) +
                                 Fact("sf", sound.mSamplingRates.back()) +
                                 (aRow.mLevels.empty() ? "" : Fact("vl", aRow.mLevels.front()));
        std::vector<std::string> kept = {"", Fact("ac", 1), Fact("fr", 1000)};
        if (sound.mLeastBits > 1) { // else a narrower name may have it
            kept.push_back(Fact("ar", sound.mLeastBits));
        }
        std::vector<std::string> lost = {Fact("wi", aPicture.mWidth + 1),
                                         Fact("he", aPicture.mHeight + 1),
                                         Fact("fr", Measured(aPicture.mRate) + 1),
                                         Fact("vr", Measured(aRow.mBits) + 1),
                                         Fact("ac", sound.mChannels + 1),
                                         Fact("ar", Measured(sound.mMostBits) + 1),
                                         Fact("ar", sound.mLeastBits - 1),
                                         Fact("sf", sound.mSamplingRates.front() - 1),
                                         Fact("sf", sound.mSamplingRates.back() + 1)};
        if (aRow.mWholeBits != 0) {
            lost.push_back(Fact("br", Measured(aRow.mWholeBits) + 1));
        }
        for (const unsigned rate : sound.mSamplingRates) {
            kept.push_back(Fact("sf", rate));
        }
        for (const unsigned level : kAllLevels) {
            if (!aRow.mLevels.empty()) {
                (Allows(aRow, level) ? kept : lost).push_back(Fact("vl", level));
            }
        }
        ExpectNames(aRow.mName, edge, kept, lost);
    }

    /// Whether any row of the name has the level with as many bits.
    bool Allows(const Limits& aRow, unsigned aLevel) const {
        return std::any_of(mRows.begin(), mRows.end(), [&](const Limits& aOther) {
            const std::vector<unsigned>& levels = aOther.mLevels;
            return aOther.mName == aRow.mName && aOther.mBits >= aRow.mBits &&
                   std::find(levels.begin(), levels.end(), aLevel) != levels.end();
        });
    }

    void ExpectNames(const std::string& aName, const std::string& anEdge,
                     const std::vector<std::string>& aKept, const std::vector<std::string>& aLost) const {
        for (const std::string& fact : aKept) {
            EXPECT_EQ(NameOf(anEdge + fact), aName) << anEdge << fact;
        }
        for (const std::string& fact : aLost) {
            EXPECT_NE(NameOf(anEdge + fact), aName) << anEdge << fact;
        }
    }

    std::string NameOf(const std::string& aRecord) const {
        const std::string announced = mTable.Announced(aRecord);
        return announced.substr(0, announced.find(' '));
    }

    const FilmTable& mTable;
    const std::vector<Limits>& mRows;
};

} // namespace

TEST(OlderFilmLimits, EachIsKeptAtItsEdgeAndGivenUpOneBeyond) {
    const FilmTable table;
    for (const std::vector<Limits>& rows : {SimpleRows(), AdvancedRows(), H263Rows(), WindowsRows()}) {
        Edges(table, rows).Expect();
    }
}

TEST(OlderFilmLimits, InferredSoundOfVC1IsThatOfWMAPro) {
    const FilmTable table("", true);
    const std::vector<Limits> rows = {{"VC1_ASF_AP_L1_WMA", kVC1, {0, 9, 10}, kMedium, 10000000, kPro},
                                      {"VC1_ASF_AP_L2_WMA", kVC1, {0, 9, 10, 20}, kSecond, 20000000, kPro}};
    Edges(table, rows).Expect();
}
