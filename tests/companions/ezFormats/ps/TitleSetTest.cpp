#include "ezFormats/ps/TitleSet.h"

#include "companions/ezFormats/ps/PSKit.h"

#include "ezBytes/ByteSource.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/ps/PSLimits.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

using namespace ps;
using namespace std::string_literals;

namespace {

/// A cell of a program chain: its time in BCD, and the sectors that it lies in.
struct Cell {
    std::uint32_t mTime;
    std::uint32_t mFirst;
    std::uint32_t mLast;
    std::uint32_t mCategory = 0x02000000;
};
using Chain = std::vector<Cell>;

std::string ChainBytes(const Chain& aChain) {
    std::string bytes = Big(0, 2) + Big(1, 1) + Big(aChain.size(), 1);
    bytes.resize(0xE8, '\0');
    bytes += Big(0xF0, 2);
    bytes.resize(0xF0, '\0');
    for (const Cell& cell : aChain) {
        bytes += Big(cell.mCategory, 4) + Big(cell.mTime, 4) + Big(cell.mFirst, 4) + Big(0, 8) +
                 Big(cell.mLast, 4);
    }
    return bytes;
}

/// The information of a title set: German and French sound, and English subtitles.
std::string Information(const std::vector<Chain>& aChains) {
    std::string bytes = "DVDVIDEO-VTS";
    bytes.resize(4096, '\0');
    bytes.replace(0xCC, 4, Big(2, 4));
    bytes.replace(0x202, 2 + 16, Big(2, 2) + "\x04\xC0"s + "de" + Big(0, 4) + "\x04\xC0"s + "fr" + Big(0, 4));
    bytes.replace(0x254, 2 + 6, Big(1, 2) + "\1\0"s + "en" + Big(0, 2));
    std::string entries;
    std::string chains;
    for (const Chain& chain : aChains) {
        entries += Big(0x81000000, 4) + Big(8 + 8 * aChains.size() + chains.size(), 4);
        chains += ChainBytes(chain);
    }
    return bytes + Big(aChains.size(), 2) + Big(0, 6) + entries + chains;
}

/// A file of a disc, and the other files of its folder.
class DiscStream : public AwkwardStream {
public:
    DiscStream(std::map<std::string, std::string> aFiles, const std::string& aName)
        : AwkwardStream(aFiles[aName], Delivery(), ("/media/dvd/" + aName).c_str()),
          mFiles(std::move(aFiles)) {}

    std::unique_ptr<ezMediaParserStream> OpenBeside(const ezCString& aName) override {
        const auto file = mFiles.find(std::string(aName.View()));
        return file != mFiles.end() ? std::make_unique<AwkwardStream>(file->second) : nullptr;
    }

private:
    std::map<std::string, std::string> mFiles;
};

std::string Values(std::map<std::string, std::string> aFiles, const std::string& aName,
                   const std::vector<const char*>& aKeys) {
    DiscStream stream(std::move(aFiles), aName);
    PSParser parser;
    const std::string record = DumpRecord(Record(parser.Parse(stream)).get());
    std::string values;
    for (const char* const key : aKeys) {
        values += chunks::ValueOf(record, key) + "|";
    }
    return values;
}

/// So many sectors of a film.
std::string Sectors(std::size_t aCount) {
    std::string film = Film().Bytes();
    film.resize(aCount * 2048, '\0');
    return film;
}

TitleSet Read(const std::string& aBytes, bool* afRead) {
    BlockBytes bytes(reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size());
    TitleSet set;
    *afRead = set.Read(bytes);
    return set;
}

constexpr std::uint32_t kHour = 0x01000040;
constexpr std::uint32_t kTwoHours = 0x02000040;

} // namespace

TEST(TitleSet, TimesAreInBCDWithTheRateOfTheirFrames) {
    struct Case {
        std::uint32_t mTime;
        std::uint64_t mMicroseconds;
    };
    for (const Case& test : std::vector<Case>{{0x00000840, 8000000},
                                              {0x01023964, 3759960000},
                                              {0x000008C0, 8008000}, // thirty frames are a little more
                                              {0x000000C1, 33366},
                                              {0x99595940 + 0x24, 359999960000},
                                              {0x00000800, 0}, // no rate
                                              {0x00000880, 0}, // a rate that is none
                                              {0x00000865, 0}, // frame 25 of 25
                                              {0x00006040, 0}, // sixty seconds
                                              {0x00600040, 0}, // sixty minutes
                                              {0x0A000040, 0}, // not BCD
                                              {0x00000F40, 0},
                                              {0xFFFFFFFF, 0},
                                              {0, 0}}) {
        EXPECT_EQ(DVDTime_Microseconds(test.mTime), test.mMicroseconds) << std::hex << test.mTime;
    }
}

TEST(TitleSet, FileIsPartOfATitleSetByItsName) {
    const auto names = [](const std::string& aName) {
        TitleSetPart part;
        if (!part.Read(aName)) {
            return "-"s;
        }
        std::string text = std::to_string(part.mPart) + " " + part.GetPartName(1);
        for (const std::string& name : part.GetInformationNames()) {
            text += " " + name;
        }
        return text;
    };
    EXPECT_EQ(names("VTS_01_1.VOB"), "1 VTS_01_1.VOB VTS_01_0.IFO VTS_01_0.IFO VTS_01_0.ifo");
    EXPECT_EQ(names("vts_23_9.vob"), "9 vts_23_1.vob vts_23_0.ifo vts_23_0.IFO vts_23_0.ifo");
    EXPECT_EQ(names("Vts_01_2.Vob"), "2 Vts_01_1.Vob Vts_01_0.Ifo Vts_01_0.IFO Vts_01_0.ifo");
    for (const char* const name :
         {"VTS_01_0.VOB", "VIDEO_TS.VOB", "VTS_01_1.IFO", "VTS_0A_1.VOB", "VTS_01_1.VOBX", "XTS_01_1.VOB",
          "VTS_01_A.VOB", "VTS-01_1.VOB", "", "film.vob"}) {
        EXPECT_EQ(names(name), "-") << name;
    }
}

TEST(TitleSet, CellsCountOnceAndByTheirShare) {
    bool fRead = false;
    // Two titles, and one that plays both; and of a scene with two angles the first.
    const Chain first = {{kHour, 0, 99}, {kHour, 100, 299}};
    const Chain second = {{kTwoHours, 300, 399, 0x50000000}, {kTwoHours, 300, 399, 0xD0000000}};
    const TitleSet set = Read(Information({first, second, {first[0], first[1], second[0]}}), &fRead);
    ASSERT_TRUE(fRead);
    constexpr std::uint64_t kSector = 2048;
    constexpr std::uint64_t kMinute = 60000000;
    EXPECT_EQ(set.GetMicroseconds(0, 400 * kSector), 240 * kMinute);
    EXPECT_EQ(set.GetMicroseconds(0, 200 * kSector), 90 * kMinute);
    EXPECT_EQ(set.GetMicroseconds(200 * kSector, UINT64_MAX), 150 * kMinute);
    EXPECT_EQ(set.GetMicroseconds(400 * kSector, UINT64_MAX), 0U);
    EXPECT_EQ(set.GetMicroseconds(UINT64_MAX, 0), 0U);
    EXPECT_EQ(set.GetCovered(0, UINT64_MAX), 400 * kSector);
    EXPECT_TRUE(set.HasWholeCells(0, 300 * kSector));
    EXPECT_FALSE(set.HasWholeCells(0, 301 * kSector));
    EXPECT_EQ(set.GetSoundLanguages(), "de,fr");
    EXPECT_EQ(set.GetSubtitleLanguages(), "en");
}

TEST(TitleSet, DamageIsNotBelieved) {
    const std::string whole = Information({{{kHour, 0, 99}}});
    bool fRead = true;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Read(whole.substr(0, size), &fRead);
        EXPECT_FALSE(fRead) << size;
    }
    Read(whole, &fRead);
    EXPECT_TRUE(fRead);
    const auto with = [&whole](std::size_t aPlace, const std::string& aBytes) {
        std::string bytes = whole;
        return bytes.replace(aPlace, aBytes.size(), aBytes);
    };
    constexpr std::size_t kTable = 4096;
    constexpr std::size_t kChain = kTable + 16;
    for (const std::string& damaged :
         {with(0, "DVDVIDEO-VMG"), with(0xCC, Big(UINT32_MAX, 4)), with(0xCC, Big(0, 4)),
          with(kTable, Big(0, 2)), with(kTable + 12, Big(UINT32_MAX, 4)), with(kChain + 3, Big(0, 1)),
          with(kChain + 0xE8, Big(0xFFFF, 2)), with(kChain + 0xF0 + 4, Big(0, 4)),
          with(kChain + 0xF0 + 8, Big(100, 4))}) {
        Read(damaged, &fRead);
        EXPECT_FALSE(fRead);
    }
    Read(with(kTable, Big(UINT16_MAX, 2)), &fRead);
    EXPECT_TRUE(fRead) << "the entries that are there";
}

TEST(TitleSet, ChainsAndCellsBeyondTheLimitsAreLeft) {
    bool fRead = false;
    const auto seconds = [&fRead](std::uint32_t aChains, std::uint32_t aCells) {
        std::vector<Chain> chains(aChains);
        for (std::uint32_t i = 0; i < aChains * aCells; ++i) {
            chains[i / aCells].push_back({0x00000140, i, i});
        }
        return Read(Information(chains), &fRead).GetMicroseconds(0, UINT64_MAX) / 1000000;
    };
    EXPECT_EQ(seconds(kIFO_MaxChains, 1), kIFO_MaxChains);
    EXPECT_EQ(seconds(kIFO_MaxChains + 1, 1), kIFO_MaxChains);
    EXPECT_EQ(seconds(16, kIFO_MaxCells / 16), kIFO_MaxCells);
    EXPECT_EQ(seconds(17, kIFO_MaxCells / 16), kIFO_MaxCells);
}

// ---- beside a film ----

TEST(PSParserOfDiscs, LengthIsThatOfTheCellsInTheFile) {
    const std::vector<const char*> keys = {"dm", "md", "la", "sl"};
    const std::string information = Information({{{kHour, 0, 99}}, {{kHour, 100, 149}}});
    EXPECT_EQ(Values({{"VTS_01_1.VOB", Sectors(150)}, {"VTS_01_0.IFO", information}}, "VTS_01_1.VOB", keys),
              "7200000|\"header\"|\"de,fr\"|\"en\"|");
    EXPECT_EQ(Values({{"vts_01_1.vob", Sectors(150)}, {"vts_01_0.ifo", information}}, "vts_01_1.vob", keys),
              "7200000|\"header\"|\"de,fr\"|\"en\"|");
    EXPECT_EQ(Values({{"vts_01_1.vob", Sectors(150)}, {"vts_01_0.IFO", information}}, "vts_01_1.vob", keys),
              "7200000|\"header\"|\"de,fr\"|\"en\"|");
    // Of the parts of a title each has its own time, and its share of a cell that goes on in the next.
    const std::map<std::string, std::string> parts = {{"VTS_01_1.VOB", Sectors(100)},
                                                      {"VTS_01_2.VOB", Sectors(25)},
                                                      {"VTS_01_3.VOB", Sectors(25)},
                                                      {"VTS_01_0.IFO", information}};
    EXPECT_EQ(Values(parts, "VTS_01_1.VOB", {"dm", "md"}), "3600000|\"header\"|");
    const std::string share = "1800000|\"estimate: share of the cells of a title\"|";
    EXPECT_EQ(Values(parts, "VTS_01_2.VOB", {"dm", "md"}), share);
    EXPECT_EQ(Values(parts, "VTS_01_3.VOB", {"dm", "md"}), share);
    // What lies in no cell is played with the file: here 10 sectors of 160.
    EXPECT_EQ(
        Values({{"VTS_01_1.VOB", Sectors(160)}, {"VTS_01_0.IFO", information}}, "VTS_01_1.VOB", {"dm", "md"}),
        "7680000|\"estimate: share of the cells of a title\"|");
}

TEST(PSParserOfDiscs, InformationThatIsNotOfTheFileIsNotBelieved) {
    const std::vector<const char*> keys = {"dm", "md", "la"};
    const std::string own = "1008|\"last frame\"||";
    const std::string film = Film().Bytes();
    const std::string information = Information({{{kHour, 0, 9}}}); // of 20 KiB
    EXPECT_EQ(Values({{"VTS_01_1.VOB", film}, {"VTS_01_0.IFO", information}}, "VTS_01_1.VOB", keys), own);
    EXPECT_EQ(Values({{"VTS_01_1.VOB", film}, {"VTS_01_0.IFO", "damaged"}}, "VTS_01_1.VOB", keys), own);
    EXPECT_EQ(Values({{"VTS_01_1.VOB", film}, {"VTS_01_0.IFO", ""}}, "VTS_01_1.VOB", keys), own);
    EXPECT_EQ(Values({{"VTS_01_1.VOB", film}}, "VTS_01_1.VOB", keys), own);
    const std::string large = Information({{{kHour, 0, 999}}});
    EXPECT_EQ(Values({{"VTS_01_2.VOB", film}, {"VTS_01_0.IFO", large}}, "VTS_01_2.VOB", keys), own)
        << "where it begins among the parts is not known";
    EXPECT_EQ(Values({{"film.vob", film}, {"VTS_01_0.IFO", large}}, "film.vob", keys), own);
    EXPECT_EQ(ps::Values(film, keys), own.substr(0, own.size() - 1)) << "no local file";
}

TEST(PSParserOfDiscs, CostOfTheInformationIsOfTheBudget) {
    std::string information = Information({{{kHour, 0, 149}}});
    DiscStream stream({{"VTS_01_1.VOB", Sectors(150)}, {"VTS_01_0.IFO", information}}, "VTS_01_1.VOB");
    MediaBytes bytes(stream, kIFO_MaxReads + 1, kIFO_MaxBytes + 8192);
    const unsigned char* start = nullptr;
    EXPECT_NE(bytes.Borrow(0, &start), 0U);
    EXPECT_EQ(bytes.OpenBeside("VTS_01_0.IFO", kIFO_MaxReads + 1, 0), nullptr);
    EXPECT_EQ(bytes.OpenBeside("VTS_01_0.IFO", 0, kIFO_MaxBytes + 1), nullptr);
    EXPECT_NE(bytes.OpenBeside("VTS_01_0.IFO", kIFO_MaxReads, kIFO_MaxBytes), nullptr);
    EXPECT_EQ(bytes.OpenBeside("VTS_01_0.IFO", 1, 1), nullptr);
    EXPECT_NE(bytes.OpenBeside("VTS_01_0.IFO", 0, 0), nullptr);
    EXPECT_EQ(bytes.OpenBeside("VTS_02_0.IFO", 0, 0), nullptr);
    EXPECT_EQ(bytes.GetFileName(), "VTS_01_1.VOB");
}
