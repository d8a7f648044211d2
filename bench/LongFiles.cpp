#include "bench/LongFiles.h"

#include "bench/Require.h"
#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/ogg/OggBytes.h"
#include "support/EbmlBytes.h"
#include "support/Folders.h"
#include "support/NumberBytes.h"
#include "support/PsBytes.h"
#include "support/WholeFile.h"

#include <fstream>

namespace {

constexpr std::uint64_t kMega = 1000000;
/// One hole between these, in a file of so many bytes.
LongFile StartAndEnd(const std::string& aStart, const std::string& anEnd, std::uint64_t aSize) {
    return {{{0, aStart}, {aSize - anEnd.size(), anEnd}}};
}

constexpr std::uint64_t kBytesASecond = 176400; // of two channels of 16 bits at 44.1 kHz

LongFile WAV(std::uint64_t aSound) {
    constexpr unsigned kRate = 44100;
    constexpr std::uint64_t kLargest = 0xFFFFF000; // what 32 bits can say, less the other chunks
    const chunks::Fmt format = {1, 2, kRate, kBytesASecond, 4, 16, ""};
    // Silence at the start is looked through for a coded stream.
    const std::string sound = chunks::Sound(std::size_t{16} * 1024);
    const std::string end = chunks::Info({{"INAM", "Long"}, {"IART", "Somebody"}});
    const bool fLarge = aSound > kLargest;
    const std::string stated = fLarge ? "\xFF\xFF\xFF\xFF" : Little(aSound);
    const std::string sizes =
        fLarge ? chunks::Chunk("ds64", Little(aSound + end.size() + 80, 8) + Little(aSound, 8) +
                                           Little(aSound / format.mBlock, 8) + Little(0))
               : "";
    const std::string head = "WAVE" + sizes + chunks::Chunk("fmt ", format.Bytes()) + "data" + stated;
    const std::uint64_t size = head.size() + aSound + end.size();
    return StartAndEnd((fLarge ? "RF64\xFF\xFF\xFF\xFF" : "RIFF" + Little(size)) + head + sound, end,
                       8 + size);
}

LongFile Ogg(std::uint64_t aSound) {
    constexpr unsigned kSerial = 7;
    constexpr std::uint64_t kSamplesABytes = 3; // some 128 kbit/s
    const std::string start = ogg::Vorbis(ogg::Sounds(kSerial, 4000, 4000, 3), {"TITLE=Long"});
    const std::string end = ogg::Sounds(kSerial, aSound * kSamplesABytes, 4000, 20);
    return StartAndEnd(start, end, start.size() + aSound + end.size());
}

constexpr std::uint32_t kCluster = 0x1F43B675;
constexpr std::uint32_t kCues = 0x1C53BB6B;
constexpr std::uint32_t kTags = 0x1254C367;

/// What precedes the frame in a block of a track.
std::string BlockHead(unsigned aTrack) {
    return Big(0x80U | aTrack, 1) + Big(0, 2) + "\x80";
}

/// A cluster with a frame of each track.
std::string Cluster(std::uint64_t aTime) {
    const std::string key("\x10\x02\x00\x9D\x01\x2A\x00\x05\xD0\x02", 10); // 1280 x 720 (RFC 6386, 9.1)
    return ebml::Element(kCluster, ebml::Number(0xE7, aTime, 8) +
                                       ebml::Element(0xA3, BlockHead(1) + key + std::string(4000, 'p')) +
                                       ebml::Element(0xA3, BlockHead(2) + std::string(400, 's')));
}

/// A track of pictures and one of sound.
std::string Tracks() {
    const auto track = [](unsigned aNumber, const char* aCodec, const std::string& aRest) {
        return ebml::Element(0xAE, ebml::Number(0xD7, aNumber) + ebml::Number(0x73C5, aNumber) +
                                       ebml::Number(0x83, aNumber) + ebml::Element(0x86, aCodec) + aRest);
    };
    const std::string picture = ebml::Element(0xE0, ebml::Number(0xB0, 1280) + ebml::Number(0xBA, 720));
    const std::string sound =
        ebml::Element(0xE1, ebml::Float(0xB5, 48000) + ebml::Number(0x9F, 2) + ebml::Number(0x6264, 16));
    return ebml::Tracks(track(1, "V_VP8", ebml::Number(0x23E383, 40000000) + picture) +
                        track(2, "A_PCM/INT/LIT", sound));
}

/// A film of 8 Mbit/s: the first cluster, one of a single block in the hole, and the last, then where that
/// stands, and tags.
LongFile Matroska(std::uint64_t aMedia) {
    constexpr std::uint64_t kBytesAMillisecond = 1000;
    const std::uint64_t length = aMedia / kBytesAMillisecond;
    const auto front = [&](std::uint64_t aCues, std::uint64_t aTags) {
        const double milliseconds = static_cast<double>(length);
        return ebml::SeekHead(ebml::Seek(kCues, aCues) + ebml::Seek(kTags, aTags)) +
               ebml::Info(ebml::Number(0x2AD7B1, 1000000) + ebml::Float(0x4489, milliseconds)) + Tracks() +
               Cluster(0);
    };
    const std::string head = ebml::Number(0xE7, 1000, 8) + ebml::Id(0xA3) +
                             ebml::Size(BlockHead(1).size() + aMedia, 8) + BlockHead(1);
    const std::string between = ebml::Id(kCluster) + ebml::Size(head.size() + aMedia, 8) + head;
    const std::uint64_t last = front(0, 0).size() + between.size() + aMedia;
    const std::string place = ebml::Number(0xF7, 1) + ebml::Number(0xF1, last, 8);
    const std::string cues = ebml::Element(
        kCues, ebml::Element(0xBB, ebml::Number(0xB3, length - 1000) + ebml::Element(0xB7, place)));
    const std::string tags = ebml::Tags(ebml::Tag(50, {{"TITLE", "Long"}, {"GENRE", "Drama"}}));
    const std::string end = Cluster(length - 1000) + cues + tags;
    const std::uint64_t cuesAt = last + Cluster(0).size();
    const std::string start = ebml::Head() + ebml::Id(0x18538067) + ebml::Size(last + end.size(), 8) +
                              front(cuesAt, cuesAt + cues.size()) + between;
    return StartAndEnd(start, end, start.size() + aMedia + end.size());
}

/// A film of units of one size, each of the time that its number says: those at its start, in its middle and
/// at its end are written.
LongFile OfUnits(std::uint64_t aSize, std::size_t anUnitSize, std::string (*aMake)(std::uint64_t aNumber)) {
    constexpr std::uint64_t kWritten = 1024 * 1024;
    const std::uint64_t count = aSize / anUnitSize;
    const std::uint64_t written = kWritten / anUnitSize;
    LongFile film;
    for (const std::uint64_t first : {std::uint64_t{0}, (count - written) / 2, count - written}) {
        std::string units;
        for (std::uint64_t i = first; i < first + written; ++i) {
            units += aMake(i);
        }
        Require(units.size() == written * anUnitSize, "units have their size");
        film.mPieces.push_back({first * anUnitSize, units});
    }
    return film;
}

/// The start of a picture of MPEG-2 video, with its sequence.
std::string Picture() {
    static const std::string kVideo = ReadWholeFile(EZ_SAMPLES "/elementary/harbour-light.m2v");
    return kVideo.substr(0, 8000);
}

constexpr std::size_t kPSUnit = 32768;

/// 120 ms of a program stream: three pictures and five frames of sound.
std::string PSUnit(std::uint64_t aNumber) {
    constexpr std::uint64_t kTicks = 5 * ps::kLayerIITicks;
    const std::uint64_t clock = aNumber * kTicks;
    std::string unit = ps::Pack(clock);
    std::string sound;
    for (unsigned i = 0; i < 3; ++i) {
        unit += ps::Packet(0xE0, Picture(), clock + (i + 1) * kTicks / 3);
    }
    for (unsigned i = 0; i < 5; ++i) {
        sound += ps::LayerII();
    }
    unit += ps::Packet(0xC0, sound, clock + kTicks / 3);
    return unit + ps::Plain(0xBE, std::string(kPSUnit - unit.size() - 6, '\xFF'));
}

LongFile ProgramStream(std::uint64_t aMedia) {
    return OfUnits(aMedia, kPSUnit, PSUnit);
}

} // namespace

const std::vector<LongFiles>& LongFiles_All() {
    static const std::vector<LongFiles> kAll = {
        {"song.wav", "wav", "WAV", "wav", {4, 400, 4500}, WAV, 2, 16384},
        {"song.ogg", "ogg", "Ogg", "ogg", {1, 50, 500}, Ogg, 2, 131072},
        {"film.matroska", "mkv", "Matroska", "mkv", {4, 400, 4500}, Matroska, 2, 16384},
        {"film.ps", "mpg", "MPEG program stream", "mpg", {4, 400, 4500}, ProgramStream, 4, 524288}};
    return kAll;
}

std::string LongFiles_Write(const TemporaryFolder& aFolder, const LongFiles& aKind,
                            std::uint64_t aMegabytes) {
    const LongFile whole = aKind.mMake(aMegabytes * kMega);
    std::string path = aFolder.Write(std::string("long.") + aKind.mExtension, "");
    std::ofstream file(path, std::ios::binary | std::ios::in);
    for (const LongFile::Piece& piece : whole.mPieces) {
        file.seekp(static_cast<std::streamoff>(piece.mPlace));
        file << piece.mBytes;
    }
    file.close();
    Require(!file.fail(), "the disk holds files with holes");
    return path;
}
