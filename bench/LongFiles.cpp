#include "bench/LongFiles.h"

#include "bench/Require.h"
#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/avi/AVIBytes.h"
#include "companions/ezFormats/ogg/OggBytes.h"
#include "support/AsfBytes.h"
#include "support/EbmlBytes.h"
#include "support/FlvBytes.h"
#include "support/Folders.h"
#include "support/NumberBytes.h"
#include "support/PsBytes.h"
#include "support/WholeFile.h"

#include <algorithm>
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

/// A film of Theora: its first seconds, and its last.
LongFile OggFilm(std::uint64_t aMedia) {
    constexpr unsigned kVideo = 9;
    constexpr unsigned kSound = 7;
    constexpr std::uint64_t kKeyShift = 6;
    const auto pages = [](std::uint64_t aFirst) { // a page of each a second
        std::string bytes;
        for (std::uint64_t second = aFirst; second < aFirst + 5; ++second) {
            bytes += ogg::Page(kVideo, 0, (second * 25) << kKeyShift | 25,
                               ogg::Packets(25, std::string(400, 'p')));
            bytes += ogg::Sound(kSound, (second + 1) * 44100);
        }
        return bytes;
    };
    const std::string start = ogg::Page(kVideo, ogg::kFirst, 0, {ogg::Theora()}) +
                              ogg::Page(kSound, ogg::kFirst, 0, {ogg::VorbisHead()}) +
                              ogg::Page(kVideo, 0, 0, {"\x81theora" + Comments({"TITLE=Long"}), "tables"}) +
                              ogg::Page(kSound, 0, 0, {"\x03vorbis" + Comments({}), "setup"}) + pages(0);
    constexpr std::uint64_t kHour = 3600;
    return StartAndEnd(start, pages(kHour - 5), start.size() + aMedia);
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
    constexpr std::uint64_t kWritten = 1 << 20;
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

constexpr std::size_t kTSPacket = 188;
constexpr unsigned kTSSync = 0x47;
constexpr std::size_t kTSUnit = 174 * kTSPacket;

/// A table of programs, with its length and check sum (ISO/IEC 13818-1, 2.4.4).
std::string Section(unsigned aTable, unsigned anId, const std::string& aContent) {
    const std::string section = Big(aTable, 1) + Big(0xB000 | (aContent.size() + 9), 2) + Big(anId, 2) +
                                "\xC1" + Big(0, 2) + aContent;
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : section) {
        sum ^= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << 24;
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum << 1 ^ ((sum & 0x80000000U) != 0 ? 0x04C11DB7U : 0U);
        }
    }
    return Big(0, 1) + section + Big(sum, 4);
}

/// The packets of a payload, the first of them with the clock where there is one (2.4.3).
/// @param aCounter  of the first
std::string TSPackets(unsigned aPid, const std::string& aPayload, std::uint64_t aCounter,
                      std::optional<std::uint64_t> aClock = std::nullopt) {
    constexpr std::size_t kRoom = kTSPacket - 4;
    std::string packets;
    for (std::size_t place = 0; place < aPayload.size(); ++aCounter) {
        const bool fFirst = place == 0;
        std::string field = fFirst && aClock ? "\x10" + Big(*aClock << 15, 6) : "";
        const std::string part = aPayload.substr(place, kRoom - (field.empty() ? 0 : field.size() + 1));
        const std::size_t fieldSize = kRoom - part.size(); // its own length among it
        if (fieldSize > 1 && field.empty()) {
            field.push_back('\0'); // no flags, and stuffing
        }
        field.resize(fieldSize - (fieldSize != 0 ? 1 : 0), '\xFF');
        packets += Big(kTSSync, 1) + Big((fFirst ? 0x4000U : 0U) | aPid, 2) +
                   Big((fieldSize != 0 ? 0x30U : 0x10U) | (aCounter & 0xF), 1);
        if (fieldSize != 0) {
            packets += Big(field.size(), 1);
        }
        packets += field;
        packets += part;
        place += part.size();
    }
    return packets;
}

/// 120 ms of a transport stream: its tables, a picture and five frames of sound.
std::string TSUnit(std::uint64_t aNumber) {
    constexpr unsigned kProgram = 0x100;
    constexpr unsigned kVideo = 0x101;
    constexpr unsigned kSound = 0x102;
    constexpr std::uint64_t kTicks = 5 * ps::kLayerIITicks;
    const std::uint64_t clock = aNumber * kTicks;
    const auto stream = [](unsigned aType, unsigned aPid) {
        return Big(aType, 1) + Big(0xE000 | aPid, 2) + Big(0xF000, 2);
    };
    const std::string tables =
        TSPackets(0, Section(0, 1, Big(1, 2) + Big(0xE000 | kProgram, 2)), aNumber) +
        TSPackets(
            kProgram,
            Section(2, 1, Big(0xE000 | kVideo, 2) + Big(0xF000, 2) + stream(2, kVideo) + stream(3, kSound)),
            aNumber);
    std::string frames;
    for (unsigned i = 0; i < 5; ++i) {
        frames += ps::LayerII();
    }
    const std::string picture = ps::Packet(0xE0, Picture(), clock + kTicks / 3);
    const std::string sound = ps::Packet(0xC0, frames, clock + kTicks / 3);
    std::string unit =
        tables + TSPackets(kVideo, picture, aNumber * 44, clock) + TSPackets(kSound, sound, aNumber * 16);
    while (unit.size() < kTSUnit) {
        unit += "\x47\x1F\xFF\x10" + std::string(kTSPacket - 4, '\xFF');
    }
    return unit;
}

LongFile TransportStream(std::uint64_t aMedia) {
    return OfUnits(aMedia, kTSUnit, TSUnit);
}

/// An hour of Flash video: its first second and its last are written, the rest is a hole.
LongFile FlashVideo(std::uint64_t aMedia) {
    constexpr std::uint32_t kSecond = 1000;
    constexpr std::uint32_t kSeconds = 3600;
    const std::string start =
        flv::Header() + flv::MetaData(flv::Number("duration", kSeconds)) + flv::Frames(kSecond, 0, 2000);
    return StartAndEnd(start, flv::Frames(kSecond, (kSeconds - 1) * kSecond, 2000), start.size() + aMedia);
}

/// A film of 800 kbit/s of Windows Media: nothing but the header is looked at.
LongFile ASF(std::uint64_t aMedia) {
    constexpr std::uint64_t kPacketSize = 8000; // of 80 ms
    constexpr std::uint64_t kTicks = 800000;    // 100 ns
    constexpr std::uint64_t kPreroll = 3000;    // ms
    const std::uint64_t count = aMedia / kPacketSize;
    const std::string header = asf::Header(
        asf::File{count, count * kTicks + kPreroll * 10000, kPreroll, 2, kPacketSize, 900000, 0, 0}.Bytes() +
        asf::HeaderExtension(asf::Languages({"en"}) +
                             asf::ExtendedStream(2, 900000, "", {}, {}, kTicks / 2)) +
        asf::Sound(asf::Wave()) + asf::Video("WMV3", 2, std::string("\x4E\x39\x0A\x01")) +
        asf::Description(asf::Utf16("Long"), asf::Utf16("Somebody")));
    const std::string data =
        asf::kData + Little(50 + count * kPacketSize, 8) + std::string(16, 'i') + Little(count, 8) + "\1\1";
    const std::string start = header + data;
    return StartAndEnd(start, std::string(kPacketSize, '\x11'), start.size() + count * kPacketSize);
}

/// A film of 8 Mbit/s. What is more than a part may have stands in a second one, and its frames are counted
/// for both.
LongFile AVI(std::uint64_t aMedia) {
    constexpr std::uint64_t kBytesAFrame = 40000;
    const std::uint64_t first = std::min(aMedia, 1000 * kMega);
    const std::uint64_t second = aMedia - first;
    avi::Film film;
    film.mFrames = static_cast<std::uint32_t>(first / kBytesAFrame);
    film.mStreams[0].mLength = film.mFrames;
    film.mStreams[0].mFormat = avi::Bitmap("XVID");
    film.mHead = avi::List("odml", chunks::Chunk("dmlh", Little(aMedia / kBytesAFrame)));
    film.mMovi = "";
    const std::string header = "AVI " + film.Header() + "LIST" + Little(4 + first) + "movi";
    const std::string after =
        chunks::Chunk("idx1", avi::Entries(1000)) + chunks::Info({{"INAM", "Long"}, {"IART", "Somebody"}});
    const std::uint64_t size = header.size() + first + after.size();
    const std::string start = "RIFF" + Little(size) + header + avi::Frames(2, kBytesAFrame);
    if (second == 0) {
        return StartAndEnd(start, after, 8 + size);
    }
    const std::string next =
        chunks::Lying("RIFF", 16 + second, "AVIX") + chunks::Lying("LIST", 4 + second, "movi");
    const std::string last = avi::Frames(1, kBytesAFrame);
    return {{{0, start},
             {8 + header.size() + first, after + next},
             {8 + size + next.size() + second - last.size(), last}}};
}

/// MPEG video without a container, of a constant rate: its first pictures and its last.
LongFile ConstantVideo(std::uint64_t aMedia) {
    static const std::string kVideo = ReadWholeFile(EZ_SAMPLES "/formats/constant.m2v");
    return StartAndEnd(kVideo, kVideo, kVideo.size() + aMedia);
}

} // namespace

const std::vector<LongFiles>& LongFiles_All() {
    static const std::vector<LongFiles> kAll = {
        {"song.wav", "wav", "WAV", "wav", {4, 400, 4500}, WAV, 2, 16384},
        {"song.ogg", "ogg", "Ogg", "ogg", {1, 50, 500}, Ogg, 2, 131072},
        {"film.ogg", "ogg", "Ogg with video", "ogv", {4, 400, 4500}, OggFilm, 3, 131072},
        {"film.matroska", "mkv", "Matroska", "mkv", {4, 400, 4500}, Matroska, 2, 16384},
        {"film.avi", "avi", "AVI", "avi", {4, 400, 4500}, AVI, 3, 16384},
        {"film.flv", "flv", "Flash video", "flv", {4, 400, 4500}, FlashVideo, 2, 65536},
        {"film.asf", "wma", "ASF: Windows Media", "wmv", {4, 400, 4500}, ASF, 1, 8192},
        {"film.ps", "mpg", "MPEG program stream", "mpg", {4, 400, 4500}, ProgramStream, 4, 524288},
        {"film.m2v", "h264", "MPEG video", "m2v", {4, 400, 4500}, ConstantVideo, 3, 262144},
        {"film.ts", "ts", "MPEG transport stream", "ts", {4, 400, 4500}, TransportStream, 4, 524288}};
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
