#pragma once

#include <cstddef>
#include <cstdint>

/// What an elementary stream in a transport or program stream holds.
enum class StreamCodec {
    Unknown,
    // pictures
    MPEGVideo, ///< MPEG-1 or MPEG-2, as its headers say
    MPEG4Visual,
    H264,
    H265,
    H266,
    VC1,
    AVS,
    AVS2,
    AVS3,
    AV1,
    JPEG2000,
    // sound
    MPEGAudio, ///< of any layer
    ADTS,
    LATM, ///< AAC and others in LOAS
    RawAAC,
    AC3, ///< E-AC-3 too: a frame says which
    DTS, ///< DTS-HD too
    TrueHD,
    AC4,
    MPEGH,
    Opus,
    LPCMOfDisc, ///< as HDMV has it
    LPCMOfDVD,
    S302M,
    OtherSound,
    // what is read
    Subtitle,
    Teletext,
    // what is none of these, and known to be so: tables, data, other views of the pictures
    Data,
};

enum class StreamKind { Unknown, Video, Audio, Subtitle, Data };

StreamKind StreamCodec_GetKind(StreamCodec aCodec);

/// The codec's name for a record, where it follows from this alone; "" for one that the stream itself has to
/// tell.
const char* StreamCodec_GetName(StreamCodec aCodec);

/// By stream_type (ISO/IEC 13818-1, table 2-34), which the tables of both kinds of streams have. Those that
/// differ by who made the stream, 0x80 and above, are Unknown but for those that do not.
StreamCodec StreamCodec_OfType(std::uint8_t aStreamType);

/// By the first bytes of a packet's payload, of a stream of which nothing else tells; Unknown for what shows
/// nothing unmistakable.
StreamCodec StreamCodec_OfPayload(const unsigned char* aBytes, std::size_t aSize);
