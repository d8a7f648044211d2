#pragma once

#include "ezFormats/ts/TSParser.h"

#include "companions/ezFormats/ChunkBytes.h"

#include "support/Samples.h"
#include "support/TsBytes.h"

#include <string>
#include <vector>

/// Recordings as bytes, and what the parser of transport streams says to them.
namespace ts {

inline constexpr unsigned kMap = 0x100;
inline constexpr unsigned kVideo = 0x101;
inline constexpr unsigned kSound = 0x102;
inline constexpr unsigned kOther = 0x103;
inline constexpr std::uint64_t kSecond = 90000;

/// Texts and numbers of the record, "-" for one that it has not.
inline std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                          const Delivery& aDelivery = Delivery()) {
    std::string values;
    for (const char* const key : aKeys) {
        const std::string value = chunks::Values<TSParser>(aBytes, {key}, aDelivery);
        const bool fText = value.size() > 1 && value.front() == '"';
        values += values.empty() ? "" : " ";
        values += value.empty() ? "-" : fText ? value.substr(1, value.size() - 2) : value;
    }
    return values;
}
inline std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<TSParser>(aBytes);
}
inline std::string Length(const std::string& aBytes) {
    return Values(aBytes, {"dm", "md"});
}

/// The headers of a sequence of MPEG-2, 352x288 at 25, and the start of its first picture.
inline const std::string& Picture() {
    static const std::string sPicture = ReadSample("elementary/harbour-light.m2v").substr(0, 300);
    return sPicture;
}
/// A frame of AC-3, mono at 44100 Hz and 32 kbit/s, of 1536 samples.
inline const std::string& Frame() {
    static const std::string sFrame = ReadSample("formats/44-khz.ac3").substr(0, 138);
    return sFrame;
}

inline const std::vector<Stream> kStreams = {{0x02, kVideo}, {0x81, kSound, Language("deu")}};

/// A recording: tables, then a picture every 40 ms, each with a clock, and sound.
struct Film {
    std::vector<Stream> mStreams = kStreams;
    std::uint64_t mStart = 5 * kSecond; ///< of the pictures
    unsigned mPictures = 4;
    bool mfClock = true;
    std::size_t mNulls = 0; ///< packets after each picture

    Packets Add(Packets aPackets) const {
        for (unsigned i = 0; i < mPictures; ++i) {
            const std::uint64_t stamp = mStart + i * kSecond / 25;
            aPackets.Add(kVideo, Pes(0xE0, stamp, Picture()), mfClock ? stamp - kSecond / 5 : kNoStamp);
            aPackets.Add(kSound, Pes(0xBD, stamp, Frame()));
            aPackets.Null(mNulls);
        }
        return aPackets;
    }
    std::string Bytes() const { return Add(Packets().Table(0, Pat()).Table(kMap, Pmt(mStreams))).Bytes(); }
};

/// One of pictures and sound in which the second stream is described so, with that payload.
inline std::string Second(const Stream& aStream, const std::string& aPayload, unsigned aStreamID = 0xBD,
                          const std::string& aDescriptors = "") {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt({{0x02, kVideo}, aStream}, aDescriptors));
    for (unsigned i = 0; i < 4; ++i) {
        packets.Add(kVideo, Pes(0xE0, kSecond + i * 3600, Picture()), i * 3600);
        packets.Add(aStream.mPID, Pes(aStreamID, kSecond + i * 3600, aPayload));
    }
    return packets.Bytes();
}

} // namespace ts
