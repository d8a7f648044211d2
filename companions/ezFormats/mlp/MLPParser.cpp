#include "ezFormats/mlp/MLPParser.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/MLPFrames.h"
#include "ezFormats/codecs/MLPHeader.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ezBytes/ByteReader.h"

#include <array>

namespace {

constexpr std::uint64_t kHeadSize = 4; ///< of an access unit

/// The major sync of the access unit at a place. False for none.
bool ReadSyncAt(ByteReader aReader, ezMLPHeader* aHeader) {
    std::array<unsigned char, kMLPSyncSize> bytes = {};
    aReader.Skip(kHeadSize);
    return aReader.Read(bytes.data(), bytes.size()) && ezMLPHeader_Read(bytes.data(), *aHeader);
}

/// Bytes of the frame of AC-3 that stands there, if an access unit with a sync follows it; else 0.
std::uint32_t SizeOfAC3Before(ByteReader aReader) {
    std::array<unsigned char, kAC3HeaderSize> bytes = {};
    ByteReader next = aReader;
    ezAC3Header frame = {};
    ezMLPHeader header;
    if (!aReader.Read(bytes.data(), bytes.size()) || !ezAC3Header_Read(bytes.data(), frame)) {
        return 0;
    }
    next.Skip(frame.mFrameSize);
    return ReadSyncAt(next, &header) ? frame.mFrameSize : 0;
}

} // namespace

bool MLPParser::IsAt(ByteReader aBytes) {
    ezMLPHeader header;
    return ReadSyncAt(aBytes, &header) || SizeOfAC3Before(aBytes) != 0;
}

bool MLPParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    FrameFile file;
    const std::uint32_t before = SizeOfAC3Before(ByteReader(aBytes));
    if (!(before != 0 ? ReadFramesAt(aBytes, MLPFrames(), before, UINT64_MAX, file)
                      : ReadFrameFile(aBytes, MLPFrames(), "TrueHD", file))) {
        return false;
    }
    ByteReader reader(aBytes);
    reader.Skip(file.mFirst.mPosition);
    ezMLPHeader header;
    if (!ReadSyncAt(reader, &header)) {
        return RefuseCut(aBytes, "the first frame, once more");
    }
    file.mSound.mCodec = header.mfTrueHD ? "TrueHD" : "MLP";
    file.mSound.mBitsPerSample = header.mBitsPerSample;
    file.mSound.mMaxBitRate = header.mMaxBitRate;
    Store(file, anInfo);
    return true;
}
