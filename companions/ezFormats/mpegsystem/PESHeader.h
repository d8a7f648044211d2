#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// @name stream_id (ISO/IEC 13818-1, table 2-22), the byte after 00 00 01; those below are of video
/// @{
inline constexpr std::uint8_t kStreamID_End = 0xB9; ///< MPEG_program_end_code
inline constexpr std::uint8_t kStreamID_Pack = 0xBA;
inline constexpr std::uint8_t kStreamID_Map = 0xBC;
inline constexpr std::uint8_t kStreamID_Private1 = 0xBD;
inline constexpr std::uint8_t kStreamID_Padding = 0xBE;
inline constexpr std::uint8_t kStreamID_Private2 = 0xBF;
inline constexpr std::uint8_t kStreamID_FirstAudio = 0xC0;
inline constexpr std::uint8_t kStreamID_LastAudio = 0xDF;
inline constexpr std::uint8_t kStreamID_FirstVideo = 0xE0;
inline constexpr std::uint8_t kStreamID_LastVideo = 0xEF;
inline constexpr std::uint8_t kStreamID_Extended = 0xFD; ///< PESHeader::mExtension tells what it is
/// @}

constexpr bool StreamID_IsAudio(std::uint8_t aStreamID) {
    return aStreamID >= kStreamID_FirstAudio && aStreamID <= kStreamID_LastAudio;
}
constexpr bool StreamID_IsVideo(std::uint8_t aStreamID) {
    return aStreamID >= kStreamID_FirstVideo && aStreamID <= kStreamID_LastVideo;
}

/// Bytes up to the length of a packet.
inline constexpr std::size_t kPESHeader_StartSize = 6;

/// What the header of a packet of an elementary stream tells, of MPEG-2 (ISO/IEC 13818-1, 2.4.3.6) and of
/// MPEG-1 (ISO/IEC 11172-1, 2.4.3.3).
struct PESHeader {
    std::uint8_t mStreamID = 0;
    bool mfMPEG1 = false;              ///< of the older syntax
    bool mfScrambled = false;          ///< PES_scrambling_control
    std::uint8_t mExtension = 0;       ///< stream_id_extension of kStreamID_Extended; 0 where there is none
    std::uint32_t mPacketSize = 0;     ///< bytes from 00 00 01 to the packet's end; 0: not stated
    std::uint32_t mHeaderSize = 0;     ///< bytes from 00 00 01 to the payload
    std::optional<std::uint64_t> mPTS; ///< ticks of kStreamClock_Rate
    std::optional<std::uint64_t> mDTS;

    /// Bytes of the payload, which all streams' packets but those of video in transport streams state.
    /// 0: not stated.
    std::uint32_t GetPayloadSize() const { return mPacketSize != 0 ? mPacketSize - mHeaderSize : 0; }
};

/// Reads one from its 00 00 01 on. False for bytes that are none, and where they end within it. A stamp
/// without its marker bits is left out.
bool ReadPESHeader(const unsigned char* aBytes, std::size_t aSize, PESHeader* aHeader);

/// A stamp in five bytes, of which the first four bits are aMark; without a value where its bits are not as
/// they must be.
std::optional<std::uint64_t> ReadPESStamp(const unsigned char* aBytes, unsigned aMark);
