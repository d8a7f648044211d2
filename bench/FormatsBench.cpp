#include "bench/Allocations.h"
#include "bench/Benches.h"
#include "bench/CountedSystem.h"
#include "bench/FormatFiles.h"
#include "bench/Hosts.h"
#include "bench/LongFiles.h"
#include "bench/Measure.h"
#include "bench/RecordedReads.h"

#include "ez/FileMediaParserStream.h"
#include "ezFormats/iso/ISOMediaParser.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/Folders.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kCopies = 100;                          ///< of each file of a family
constexpr double kAim = 2;                                    ///< of the time of the bare calls
constexpr std::size_t kLargestRead = std::size_t{512} * 1024; // the window of a film

/// A file on the disk, and where a parse of it reads.
struct ParsedFile {
    ezCString mPath;
    std::vector<RecordedRead> mReads;
};

void ParseAlone(ezMediaParser& aParser, const ezCString& aPath) {
    ezFileMediaParserStream stream(aPath);
    stream.Open();
    const std::unique_ptr<ezMediaInfo> info(aParser.Parse(stream));
    Require(info != nullptr, "the parser knows every file");
}

void ReadBare(const ParsedFile& aFile) {
    static std::array<char, kLargestRead> sBuffer;
    struct stat status = {};
    // A stream asks for the date of the media, which a record states.
    Require(stat(aFile.mPath.c_str(), &status) == 0, "stat");
    const int file = open(aFile.mPath.c_str(), O_RDONLY | O_CLOEXEC);
    Require(file >= 0 && fstat(file, &status) == 0, "open and fstat");
    for (const RecordedRead& read : aFile.mReads) {
        Require(pread(file, sBuffer.data(), read.mSize, read.mOffset) > 0, "read");
    }
    close(file);
}

/// Files, a host, and a parser without one.
class Shelf {
public:
    explicit Shelf(std::unique_ptr<ezMediaParser> aParser) : mParser(std::move(aParser)) {}

    void Add(const std::string& aPath) {
        ParsedFile file = {ezCString(aPath.c_str()), {}};
        const RecordedReads reads;
        mHost.Parse(file.mPath);
        file.mReads = reads.Get();
        Require(!file.mReads.empty() &&
                    std::all_of(file.mReads.begin(), file.mReads.end(),
                                [](const RecordedRead& aRead) { return aRead.mSize <= kLargestRead; }),
                "a parse reads, no more than 512 KiB at a time");
        mFiles.push_back(file);
    }

    void ParseByHost() const {
        for (const ParsedFile& file : mFiles) {
            mHost.Parse(file.mPath);
        }
    }
    void ParseByParser() const {
        for (const ParsedFile& file : mFiles) {
            ParseAlone(*mParser, file.mPath);
        }
    }
    void ReadAll() const {
        for (const ParsedFile& file : mFiles) {
            ReadBare(file);
        }
    }

    std::size_t GetCount() const { return mFiles.size(); }

private:
    BenchHost mHost{EZ_SAMPLES, BenchHost::Parsers::Formats};
    std::unique_ptr<ezMediaParser> mParser;
    std::vector<ParsedFile> mFiles;
};

using Pass = void (Shelf::*)() const;

/// Nanoseconds a file.
Side MakeSide(const std::string& aName, const std::shared_ptr<Shelf>& aShelf, Pass aPass,
              std::size_t aPasses) {
    return {aName,
            [aShelf, aPass, aPasses] {
                return TimeOf([&] {
                           for (std::size_t i = 0; i < aPasses; ++i) {
                               (*aShelf.*aPass)();
                           }
                       }) /
                       static_cast<double>(aPasses * aShelf->GetCount());
            },
            "files"};
}

Claim Ratio(const std::string& aText, std::size_t aSide, std::size_t anOther, double aBound) {
    return {aText, [=](const Costs& aCosts) { return aCosts[aSide] / aCosts[anOther]; }, aBound};
}

// The families

/// Copies of each file of a family in a folder of their own.
class FamilyShelf : private TemporaryFolder, public Shelf {
public:
    explicit FamilyShelf(const FormatFamily& aFamily) : Shelf(aFamily.mParser()) {
        std::size_t number = 1000;
        for (std::size_t i = 0; i < kCopies; ++i) {
            for (const FormatFile& file : aFamily.mFiles()) {
                Add(Write("file-" + std::to_string(++number) + "." + file.mExtension, file.mBytes));
            }
        }
    }
};

void AddFamily(const FormatFamily& aFamily) {
    const std::string name = aFamily.mName;
    AddComparison("Formats/" + name,
                  [aFamily] {
                      const auto shelf = std::make_shared<FamilyShelf>(aFamily);
                      return std::vector<Side>{MakeSide("bare", shelf, &Shelf::ReadAll, 4),
                                               MakeSide("host", shelf, &Shelf::ParseByHost, 2),
                                               MakeSide("parser", shelf, &Shelf::ParseByParser, 2)};
                  },
                  {Ratio(name + " by a host / bare calls, the same reads", 1, 0, kAim),
                   Ratio(name + " by its parser alone / the same", 2, 0, kAim)});
}

/// Notes what a file costs in the mean.
void CountFiles(const FormatFamily& aFamily, const Shelf& aShelf, Pass aPass) {
    (aShelf.*aPass)(); // lists that serve all requests have their memory after the first
    const CountedSystem system;
    const std::size_t before = Allocations_Count();
    (aShelf.*aPass)();
    const std::size_t allocations = Allocations_Count() - before;
    const CountedSystem::Counts& counts = system.GetCounts();
    const auto note = [&](const char* aWhat, std::size_t aCount, double aBound) {
        NoteCount(aFamily.mName + ", " + aWhat + " a file",
                  static_cast<double>(aCount) / static_cast<double>(aShelf.GetCount()), aBound);
    };
    note("stat, open, fstat, close", counts.mStat + counts.mOpen + counts.mFStat + counts.mClose, 4);
    note("read", counts.mRead, aFamily.mReads);
    note("bytes read", counts.mReadBytes, aFamily.mBytes);
    note("seeks", counts.mSeek, aFamily.mSeeks);
    note("other system calls", counts.mOther, 0);
    note("allocations", allocations, aFamily.mAllocations);
}

void CountFamilies() {
    for (const FormatFamily& family : FormatFiles_Families()) {
        const FamilyShelf shelf(family);
        CountFiles(family, shelf, &Shelf::ParseByHost);
    }
}

// Films

/// 4 MB, 400 MB and 4 GB, and more than 32 bits can say.
constexpr std::array<std::uint64_t, 3> kFilmSizes = {4000000, 400000000, 4500000000};
constexpr std::array<const char*, 3> kFilmNames = {"4 MB", "400 MB", "4.5 GB"};
/// The tables of sizes of the second are read whole for its rates, up to 256 KiB each; those of the third are
/// longer.
constexpr std::array<double, 3> kFilmReads = {2, 15, 8};
constexpr std::size_t kFilmPasses = 200;
/// Seconds that the tables tell where they are the same at every size.
constexpr std::uint64_t kSameTables = 7;

/// A film whose media take no place on the disk.
class FilmShelf : private TemporaryFolder, public Shelf {
public:
    explicit FilmShelf(const Film& aFilm) : Shelf(std::make_unique<ISOMediaParser>()) {
        Add(FormatFiles_Write(*this, aFilm));
    }
};

/// For each size a film with the same tables, one with its own, and what each reads.
std::vector<Side> FilmSides() {
    std::vector<Side> sides;
    for (std::size_t i = 0; i < kFilmSizes.size(); ++i) {
        const std::string name = kFilmNames[i];
        const std::uint64_t size = kFilmSizes[i];
        const auto same = std::make_shared<FilmShelf>(FormatFiles_Film(size, kSameTables));
        const auto own = std::make_shared<FilmShelf>(FormatFiles_Film(size, FormatFiles_SecondsOf(size)));
        sides.push_back(MakeSide(name + " same", same, &Shelf::ParseByHost, kFilmPasses));
        sides.push_back(MakeSide(name + " own", own, &Shelf::ParseByHost, kFilmPasses));
        sides.push_back(MakeSide(name + " bare", own, &Shelf::ReadAll, kFilmPasses));
    }
    return sides;
}

std::vector<Claim> FilmClaims() {
    std::vector<Claim> claims;
    for (std::size_t i = 0; i < kFilmSizes.size(); ++i) {
        const std::string name = std::string("film of ") + kFilmNames[i];
        if (i != 0) {
            claims.push_back(Ratio(name + " / of 4 MB, the same tables", 3 * i, 0, 1.2));
            claims.push_back(Ratio(name + " / of 4 MB, the tables of its length", 3 * i + 1, 1, 0));
        }
        claims.push_back(Ratio(name + " / bare calls, the same reads", 3 * i + 1, 3 * i + 2, kAim));
    }
    return claims;
}

void CountFilms() {
    for (std::size_t i = 0; i < kFilmSizes.size(); ++i) {
        const std::uint64_t size = kFilmSizes[i];
        const FilmShelf same(FormatFiles_Film(size, kSameTables));
        const FilmShelf own(FormatFiles_Film(size, FormatFiles_SecondsOf(size)));
        const CountedSystem system;
        same.ParseByHost();
        const std::size_t reads = system.GetCounts().mRead;
        own.ParseByHost();
        const std::string name = std::string("film of ") + kFilmNames[i];
        NoteCount(name + ", short tables, reads", static_cast<double>(reads), 2);
        NoteCount(name + ", reads", static_cast<double>(system.GetCounts().mRead - reads), kFilmReads[i]);
    }
}

// Long files

/// A song or film whose media take no place on the disk.
class LongShelf : private TemporaryFolder, public Shelf {
public:
    LongShelf(const FormatFamily& aFamily, const LongFiles& aKind, std::uint64_t aMegabytes)
        : Shelf(aFamily.mParser()) {
        Add(LongFiles_Write(*this, aKind, aMegabytes));
    }
};

const FormatFamily& FamilyOf(const LongFiles& aKind) {
    const std::vector<FormatFamily>& families = FormatFiles_Families();
    const auto family = std::find_if(families.begin(), families.end(), [&](const FormatFamily& aFamily) {
        return aFamily.mKey == aKind.mFamily;
    });
    Require(family != families.end(), "a long file is of a format");
    return *family;
}

std::string NameOf(const LongFiles& aKind, std::uint64_t aMegabytes) {
    return std::string(aKind.mName) + " of " + std::to_string(aMegabytes) + " MB";
}

void AddLongFiles(const LongFiles& aKind) {
    std::vector<Claim> claims;
    for (std::size_t i = 0; i < aKind.mMegabytes.size(); ++i) {
        const std::string name = NameOf(aKind, aKind.mMegabytes[i]);
        if (i != 0) {
            claims.push_back(
                Ratio(name + " / of " + std::to_string(aKind.mMegabytes[0]) + " MB", 2 * i, 0, 1.2));
        }
        claims.push_back(Ratio(name + " / bare calls, the same reads", 2 * i, 2 * i + 1, kAim));
    }
    const auto sides = [aKind] {
        std::vector<Side> all;
        for (const std::uint64_t size : aKind.mMegabytes) {
            const auto shelf = std::make_shared<LongShelf>(FamilyOf(aKind), aKind, size);
            const std::string name = std::to_string(size) + " MB";
            all.push_back(MakeSide(name, shelf, &Shelf::ParseByHost, kFilmPasses));
            all.push_back(MakeSide(name + " bare", shelf, &Shelf::ReadAll, kFilmPasses));
        }
        return all;
    };
    AddComparison(std::string("Formats/Long ") + aKind.mName, sides, claims);
}

void CountLongFiles() {
    for (const LongFiles& kind : LongFiles_All()) {
        for (const std::uint64_t size : kind.mMegabytes) {
            const LongShelf shelf(FamilyOf(kind), kind, size);
            const CountedSystem system;
            shelf.ParseByHost();
            NoteCount(NameOf(kind, size) + ", reads", static_cast<double>(system.GetCounts().mRead),
                      kind.mReads);
            NoteCount(NameOf(kind, size) + ", bytes read", static_cast<double>(system.GetCounts().mReadBytes),
                      kind.mBytes);
        }
    }
}

} // namespace

void AddFormatsBenches() {
    for (const FormatFamily& family : FormatFiles_Families()) {
        AddFamily(family);
    }
    AddCounting("Formats/Counts", CountFamilies);
    AddComparison("Formats/Film", FilmSides, FilmClaims());
    AddCounting("Formats/FilmCounts", CountFilms);
    for (const LongFiles& kind : LongFiles_All()) {
        AddLongFiles(kind);
    }
    AddCounting("Formats/LongCounts", CountLongFiles);
}
