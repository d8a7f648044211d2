#include "ezFormats/mpegsystem/StreamCodec.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/ADTSHeader.h"
#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/codecs/EAC3Header.h"
#include "ezFormats/codecs/MPEGAudioHeader.h"
#include "ezFormats/mpegsystem/LOASFrames.h"

namespace {

struct CodecFacts {
    StreamCodec mCodec;
    StreamKind mKind;
    const char* mName;
};

constexpr CodecFacts kCodecs[] = {
    {StreamCodec::MPEGVideo, StreamKind::Video, ""},
    {StreamCodec::MPEG4Visual, StreamKind::Video, "MPEG4"},
    {StreamCodec::H264, StreamKind::Video, "H264"},
    {StreamCodec::H265, StreamKind::Video, "H265"},
    {StreamCodec::H266, StreamKind::Video, "H266"},
    {StreamCodec::VC1, StreamKind::Video, "VC1"},
    {StreamCodec::AVS, StreamKind::Video, "AVS"},
    {StreamCodec::AVS2, StreamKind::Video, "AVS2"},
    {StreamCodec::AVS3, StreamKind::Video, "AVS3"},
    {StreamCodec::AV1, StreamKind::Video, "AV1"},
    {StreamCodec::JPEG2000, StreamKind::Video, "JPEG2000"},
    {StreamCodec::MPEGAudio, StreamKind::Audio, ""},
    {StreamCodec::ADTS, StreamKind::Audio, ""},
    {StreamCodec::LATM, StreamKind::Audio, ""},
    {StreamCodec::RawAAC, StreamKind::Audio, "AAC"},
    {StreamCodec::AC3, StreamKind::Audio, ""},
    {StreamCodec::DTS, StreamKind::Audio, ""},
    {StreamCodec::TrueHD, StreamKind::Audio, "TrueHD"},
    {StreamCodec::AC4, StreamKind::Audio, "AC4"},
    {StreamCodec::MPEGH, StreamKind::Audio, "MPEG-H"},
    {StreamCodec::Opus, StreamKind::Audio, "Opus"},
    {StreamCodec::LPCMOfDisc, StreamKind::Audio, "LPCM"},
    {StreamCodec::LPCMOfDVD, StreamKind::Audio, "LPCM"},
    {StreamCodec::S302M, StreamKind::Audio, "S302M"},
    {StreamCodec::OtherSound, StreamKind::Audio, ""},
    {StreamCodec::Subtitle, StreamKind::Subtitle, ""},
    {StreamCodec::Teletext, StreamKind::Subtitle, ""},
    {StreamCodec::Data, StreamKind::Data, ""},
};

const CodecFacts* FactsOf(StreamCodec aCodec) {
    for (const CodecFacts& facts : kCodecs) {
        if (facts.mCodec == aCodec) {
            return &facts;
        }
    }
    return nullptr;
}

struct TypedCodec {
    std::uint8_t mType;
    StreamCodec mCodec;
};

constexpr TypedCodec kTypes[] = {
    {0x01, StreamCodec::MPEGVideo}, {0x02, StreamCodec::MPEGVideo},
    {0x03, StreamCodec::MPEGAudio}, {0x04, StreamCodec::MPEGAudio},
    {0x05, StreamCodec::Data}, // private sections
    {0x08, StreamCodec::Data}, // DSM-CC
    {0x0A, StreamCodec::Data},      {0x0B, StreamCodec::Data},
    {0x0C, StreamCodec::Data},      {0x0D, StreamCodec::Data},
    {0x0E, StreamCodec::Data}, // auxiliary
    {0x0F, StreamCodec::ADTS},      {0x10, StreamCodec::MPEG4Visual},
    {0x11, StreamCodec::LATM},      {0x15, StreamCodec::Data}, // metadata
    {0x16, StreamCodec::Data},      {0x1B, StreamCodec::H264},
    {0x1C, StreamCodec::RawAAC},    {0x1D, StreamCodec::Subtitle}, // text of ISO/IEC 14496-17
    {0x1E, StreamCodec::Data},                                     // auxiliary video: depth
    {0x1F, StreamCodec::Data}, // more of a picture that H.264 has without it: SVC
    {0x20, StreamCodec::Data}, // the other eye: MVC
    {0x21, StreamCodec::JPEG2000},  {0x22, StreamCodec::Data}, // the other eye, of MPEG-2
    {0x23, StreamCodec::Data},      {0x24, StreamCodec::H265},
    {0x25, StreamCodec::Data}, // a part of H.265 in time
    {0x28, StreamCodec::Data},      {0x29, StreamCodec::Data},
    {0x2A, StreamCodec::Data},      {0x2B, StreamCodec::Data},
    {0x2D, StreamCodec::MPEGH},     {0x2E, StreamCodec::MPEGH},
    {0x33, StreamCodec::H266},      {0x42, StreamCodec::AVS},
    {0xD2, StreamCodec::AVS2},      {0xD4, StreamCodec::AVS3},
    {0xEA, StreamCodec::VC1},
};

std::uint32_t Big32(const unsigned char* aBytes) {
    return std::uint32_t{aBytes[0]} << 24 | std::uint32_t{aBytes[1]} << 16 | std::uint32_t{aBytes[2]} << 8 |
           aBytes[3];
}

/// Video by its first start code.
StreamCodec OfStartCode(const unsigned char* aBytes) {
    if (Big32(aBytes) == 1) { // four bytes: of a NAL unit
        return StreamCodec::Unknown;
    }
    switch (Big32(aBytes)) {
    case 0x000001B3: // sequence_header_code
        return StreamCodec::MPEGVideo;
    case 0x000001B0: // visual_object_sequence_start_code
        return StreamCodec::MPEG4Visual;
    case 0x0000010F: // sequence start code
        return StreamCodec::VC1;
    default:
        return StreamCodec::Unknown;
    }
}

/// The NAL unit after a start code of four bytes: an access unit delimiter or a parameter set (ITU-T H.264,
/// table 7-1; ITU-T H.265, table 7-1). Slices 9 and 39 of MPEG video have the same codes, so the bits after
/// these are looked at too; the other codes are of slices that no picture of a film is high enough for.
StreamCodec OfUnit(const unsigned char* aBytes) {
    const unsigned unit = aBytes[4];
    const bool fDelimiter = unit == 0x09 && (aBytes[5] & 0x1FU) == 0x10; // primary_pic_type, and the stop bit
    const bool fParameters = unit == 0x27 && (aBytes[6] & 3U) == 0 && aBytes[7] >= 9 && aBytes[7] <= 62;
    if (fDelimiter || fParameters || unit == 0x67 || unit == 0x47) {
        return StreamCodec::H264;
    }
    const bool fH265 = (unit == 0x46 || unit == 0x40 || unit == 0x42) && aBytes[5] == 1;
    return fH265 ? StreamCodec::H265 : StreamCodec::Unknown;
}

} // namespace

StreamKind StreamCodec_GetKind(StreamCodec aCodec) {
    const CodecFacts* const facts = FactsOf(aCodec);
    return facts != nullptr ? facts->mKind : StreamKind::Unknown;
}

const char* StreamCodec_GetName(StreamCodec aCodec) {
    const CodecFacts* const facts = FactsOf(aCodec);
    return facts != nullptr ? facts->mName : "";
}

StreamCodec StreamCodec_OfType(std::uint8_t aStreamType) {
    for (const TypedCodec& type : kTypes) {
        if (type.mType == aStreamType) {
            return type.mCodec;
        }
    }
    return StreamCodec::Unknown;
}

StreamCodec StreamCodec_OfPayload(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::size_t kEnough = kDTSHeaderSize;
    if (aSize < kEnough) {
        return StreamCodec::Unknown;
    }
    ezAC3Header ac3 = {};
    ezEAC3Header eac3 = {};
    if (ezAC3Header_Read(aBytes, ac3) || ezEAC3Header_Read(aBytes, eac3)) {
        return StreamCodec::AC3;
    }
    if (ezDTSForm_Of(Big32(aBytes)) != nullptr) {
        return StreamCodec::DTS;
    }
    ezADTSHeader adts = {};
    if (ezADTSHeader_Read(aBytes, adts)) {
        return StreamCodec::ADTS;
    }
    ezMPEGAudioHeader mpeg = {};
    if (ezMPEGAudioHeader_Read(Big32(aBytes), mpeg)) {
        return StreamCodec::MPEGAudio;
    }
    const std::uint32_t loas = LOASFrameSize(aBytes);
    if (loas != 0 && loas + kLOASHeadSize <= aSize && LOASFrameSize(aBytes + loas) != 0) {
        return StreamCodec::LATM;
    }
    if (Big32(aBytes + 4) == 0xF8726FBA) { // format_sync of TrueHD
        return StreamCodec::TrueHD;
    }
    const StreamCodec video = OfStartCode(aBytes);
    return video == StreamCodec::Unknown && Big32(aBytes) == 1 ? OfUnit(aBytes) : video;
}
