#include "bench/FormatFiles.h"

#include "support/WholeFile.h"

#include "ez/FileMediaParserStream.h"

#include "bench/Require.h"
#include "companions/ezFormats/FormatNotesOf.h"
#include "companions/ezFormats/iso/ISOBytes.h"
#include "ezFormats/detail/Formats.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/Folders.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <type_traits>

namespace {

constexpr std::uint64_t kBytesASecond = 575000;
constexpr std::size_t kAudioFramesASecond = 47; // of 1024 samples at 48 kHz
constexpr std::size_t kPicturesASecond = 25;

FormatFile SampleFile(const std::string& aName, const std::string& anExtension) {
    FormatFile sample = {aName, anExtension, ReadWholeFile(EZ_SAMPLES "/" + aName)};
    Require(!sample.mBytes.empty(), "the samples are there");
    return sample;
}

std::string Repeated(const std::string& aText, std::size_t aCount) {
    std::string all;
    for (std::size_t i = 0; i < aCount; ++i) {
        all += aText;
    }
    return all;
}

std::vector<FormatFile> MPEGAudioFiles() {
    FormatFile uncounted = SampleFile("elementary/slow-clock.mp2", "mp2");
    uncounted.mName = "song without a count";
    uncounted.mBytes = Repeated(uncounted.mBytes, 20);
    return {SampleFile("music/morning-walk.mp3", "mp3"), SampleFile("music/uneven-road-vbr.mp3", "mp3"),
            SampleFile("music/night-ferry.mp3", "mp3"), uncounted};
}

std::vector<FormatFile> JPEGFiles() {
    // As of a camera: 20 KB of Exif, its own thumbnail among it, before the frame.
    const std::string head = pictures::Exif(pictures::Tiff(6) + std::string(20000, '.'));
    pictures::JPEGFrameHeader frame;
    frame.mWidth = 4000;
    frame.mHeight = 3000;
    return {SampleFile("pictures/harbour.jpg", "jpg"),
            SampleFile("conformance/B-JPEG_S-1.jpg", "jpg"),
            {"photo", "jpg", pictures::JPEG(frame, head) + std::string(100000, '.')}};
}

std::vector<FormatFile> PNGFiles() {
    // As of a picture editor: 3 KB of colour profile and 12 KB of its own notes before the picture.
    const std::string before =
        pictures::Chunk("iCCP", std::string(3000, '.')) + pictures::Chunk("iTXt", std::string(12000, '.'));
    return {SampleFile("pictures/harbour.png", "png"),
            SampleFile("conformance/B-PNG_L-1.png", "png"),
            {"edited picture", "png", pictures::PNG(pictures::PNGHeader(), before, std::string(50000, '.'))}};
}

std::vector<FormatFile> ISOMediaFiles() {
    const Film film = FormatFiles_Film(1 << 18, 2);
    const std::string hole(static_cast<std::size_t>(film.mSize) - film.mStart.size() - film.mMovie.size(),
                           '\0');
    return {SampleFile("music/evening-train.m4a", "m4a"),
            SampleFile("video/kite-day.mp4", "mp4"),
            SampleFile("conformance/B-AVC_MP4_BL_CIF15_AAC_520-1.mp4", "mp4"),
            {"film, movie last", "mp4", film.mStart + hole + film.mMovie}};
}

/// The samples that a parser knows under the extensions of its format.
std::vector<FormatFile> SamplesOf(const FormatDescription& aFormat, ezMediaParser& aParser) {
    std::vector<FormatFile> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(EZ_SAMPLES)) {
        const std::string extension = entry.path().extension().string();
        const bool fListed = std::any_of(
            aFormat.mLines.begin(), aFormat.mLines.end(), [&extension](const MediaTypesLine& aLine) {
                return std::any_of(
                    aLine.mExtensions.begin(), aLine.mExtensions.end(),
                    [&extension](const char* aListed) { return extension == std::string(".") + aListed; });
            });
        ezFileMediaParserStream stream(ezCString(entry.path().c_str()));
        if (fListed && stream.Open() && std::unique_ptr<ezMediaInfo>(aParser.Parse(stream)) != nullptr) {
            const std::string name = entry.path().lexically_relative(EZ_SAMPLES).string();
            files.push_back(SampleFile(name, extension.substr(1)));
        }
    }
    Require(!files.empty(), "a format has a sample");
    return files;
}

/// Files of a format as homes have them: of the samples, and some that are larger than samples can be; and
/// bounds of its own.
struct KnownFamily {
    const char* mType;
    const char* mKey;
    const char* mName;
    std::vector<FormatFile> (*mFiles)();
    double mReads;
    double mBytes;
    double mSeeks;
    double mAllocations;
};
constexpr double kSongAllocations = 22.25; ///< of a song with all of its texts, whatever its format

/// Of films: frames of two tracks are copied out of their packets, and stamps and tables of all are kept.
struct FilmAllocations {
    const char* mType;
    double mCount;
};
/// Of video alone all parsers of pictures race, each with its parameter sets.
constexpr std::array<FilmAllocations, 5> kFilmAllocations = {
    {{"mkv", 50}, {"ts", 80}, {"mpg", 62}, {"flv", 26}, {"h264", 50}}};

double AllocationsOf(const std::string& aType) {
    const auto* const film =
        std::find_if(kFilmAllocations.begin(), kFilmAllocations.end(),
                     [&aType](const FilmAllocations& aFilm) { return aFilm.mType == aType; });
    return film != kFilmAllocations.end() ? film->mCount : kSongAllocations;
}

constexpr std::array<KnownFamily, 4> kKnown = {
    {{"mp3", "mpeg-audio", "MPEG audio", MPEGAudioFiles, 2.25, 26624, 1, kSongAllocations},
     {"jpg", "jpeg", "JPEG", JPEGFiles, 1.34, 10240, 0.34, 16},
     {"png", "png", "PNG", PNGFiles, 1.34, 8192, 0.34, 16},
     {"mp4", "iso-media", "ISO media", ISOMediaFiles, 1.25, 9216, 0.25, 23}}};

/// Of a format without a row of its own the samples are measured. What they may cost is what its parser calls
/// usual.
template <typename Parser>
FormatFamily FamilyOf() {
    const std::string type = Parser::kDescription.mType;
    const auto parser = [] { return std::make_unique<Parser>(); };
    const auto* const known = std::find_if(
        kKnown.begin(), kKnown.end(), [&type](const KnownFamily& aFamily) { return aFamily.mType == type; });
    if (known != kKnown.end()) {
        return {known->mKey,   known->mName,  known->mFiles, parser,
                known->mReads, known->mBytes, known->mSeeks, known->mAllocations};
    }
    const auto files = [] {
        Parser own;
        return SamplesOf(Parser::kDescription, own);
    };
    const FormatNotes* const notes = FormatNotesOf<Parser>::Get();
    Require(notes != nullptr, "every parser has its kNotes");
    const double reads = notes->mUsual.mReads;
    return {type,      notes->mTitle,      files, parser, reads, static_cast<double>(notes->mUsual.mBytes),
            reads - 1, AllocationsOf(type)};
}

} // namespace

const std::vector<FormatFamily>& FormatFiles_Families() {
    static const std::vector<FormatFamily> kFamilies = [] {
        std::vector<FormatFamily> families;
        AllFormats::ForEach([&families](auto* aNull) {
            families.push_back(FamilyOf<std::remove_pointer_t<decltype(aNull)>>());
        });
        return families;
    }();
    return kFamilies;
}

std::uint64_t FormatFiles_SecondsOf(std::uint64_t aSize) {
    return aSize / kBytesASecond + 1;
}

Film FormatFiles_Film(std::uint64_t aSize, std::uint64_t aTableSeconds) {
    const std::uint64_t milliseconds = FormatFiles_SecondsOf(aSize) * 1000;
    const auto seconds = static_cast<std::size_t>(aTableSeconds);
    iso::Track audio;
    audio.mDuration = milliseconds;
    audio.mSizes.assign(seconds * kAudioFramesASecond, 300);
    iso::Track video = iso::VideoTrack();
    video.mDuration = milliseconds;
    video.mSizes.assign(seconds * kPicturesASecond, 20000);
    Film film;
    film.mMovie = iso::Movie({video, audio}, iso::Items(iso::Item("\xA9nam", "Film")),
                             iso::MovieHead(1000, milliseconds));
    film.mStart = iso::FileType() + Big(1, 4) + "mdat" + Big(aSize, 8);
    film.mSize = iso::FileType().size() + aSize + film.mMovie.size();
    return film;
}

std::string FormatFiles_Write(const TemporaryFolder& aFolder, const Film& aFilm) {
    std::string path = aFolder.Write("film.mp4", aFilm.mStart);
    const std::uint64_t place = aFilm.mSize - aFilm.mMovie.size();
    std::ofstream file(path, std::ios::binary | std::ios::in);
    file.seekp(static_cast<std::streamoff>(place));
    file << aFilm.mMovie;
    file.close();
    Require(!file.fail(), "the disk holds files with holes");
    return path;
}
