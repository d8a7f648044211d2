#include "bench/LongSongs.h"

#include "bench/Require.h"
#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/ogg/OggBytes.h"
#include "support/NumberBytes.h"

#include <fstream>

namespace {

constexpr std::uint64_t kMega = 1000000;
constexpr std::uint64_t kBytesASecond = 176400; // of two channels of 16 bits at 44.1 kHz

LongSong WAV(std::uint64_t aSound) {
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
    return {(fLarge ? "RF64\xFF\xFF\xFF\xFF" : "RIFF" + Little(size)) + head + sound, end, 8 + size};
}

LongSong Ogg(std::uint64_t aSound) {
    constexpr unsigned kSerial = 7;
    constexpr std::uint64_t kSamplesABytes = 3; // some 128 kbit/s
    const std::string start = ogg::Vorbis(ogg::Sounds(kSerial, 4000, 4000, 3), {"TITLE=Long"});
    const std::string end = ogg::Sounds(kSerial, aSound * kSamplesABytes, 4000, 20);
    return {start, end, start.size() + aSound + end.size()};
}

} // namespace

const std::array<LongSongs, 2>& LongSongs_All() {
    static const std::array<LongSongs, 2> kAll = {
        {{"wav", "WAV", "wav", {4, 400, 4500}, WAV, 2}, {"ogg", "Ogg", "ogg", {1, 50, 500}, Ogg, 2}}};
    return kAll;
}

std::string LongSongs_Write(const TemporaryFolder& aFolder, const LongSongs& aKind,
                            std::uint64_t aMegabytes) {
    const LongSong song = aKind.mMake(aMegabytes * kMega);
    std::string path = aFolder.Write(std::string("song.") + aKind.mExtension, song.mStart);
    std::ofstream file(path, std::ios::binary | std::ios::in);
    file.seekp(static_cast<std::streamoff>(song.mSize - song.mEnd.size()));
    file << song.mEnd;
    file.close();
    Require(!file.fail(), "the disk holds files with holes");
    return path;
}
