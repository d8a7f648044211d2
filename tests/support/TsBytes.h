#pragma once

#include "support/NumberBytes.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Transport streams as bytes (ISO/IEC 13818-1, 2.4; ETSI EN 300 468).
namespace ts {

inline constexpr std::size_t kPacket = 188;
inline constexpr std::uint64_t kClockEnd = std::uint64_t{1} << 33;

/// A stamp of 33 bits in five bytes, marked.
inline std::string Stamp(unsigned aMark, std::uint64_t aTicks) {
    return Big(aMark << 4 | (aTicks >> 30 & 7) << 1 | 1, 1) + Big((aTicks >> 15 & 0x7FFF) << 1 | 1, 2) +
           Big((aTicks & 0x7FFF) << 1 | 1, 2);
}

inline constexpr std::uint64_t kNoStamp = UINT64_MAX;

/// A packet of a stream; one of video states no length.
inline std::string Pes(unsigned aStreamID, std::uint64_t aPTS, const std::string& aPayload,
                       unsigned aScrambling = 0) {
    const std::string stamp = aPTS == kNoStamp ? "" : Stamp(2, aPTS % kClockEnd);
    const std::string head =
        Big(0x80U | aScrambling << 4, 1) + Big(stamp.empty() ? 0 : 0x80, 1) + Big(stamp.size(), 1) + stamp;
    const bool fVideo = aStreamID >= 0xE0 && aStreamID <= 0xEF;
    return Big(1, 3) + Big(aStreamID, 1) + Big(fVideo ? 0 : head.size() + aPayload.size(), 2) + head +
           aPayload;
}

/// The sum of a section (annex A), bit by bit.
inline std::uint32_t CheckSum(const std::string& aBytes) {
    std::uint32_t sum = UINT32_MAX;
    for (const char byte : aBytes) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool fIn = (static_cast<unsigned char>(byte) >> bit & 1) != 0;
            const bool fOut = sum >> 31 != 0;
            sum = sum << 1 ^ (fIn != fOut ? 0x04C11DB7U : 0U);
        }
    }
    return sum;
}

inline std::string Section(unsigned aTable, unsigned anID, const std::string& aBody, unsigned aNumber = 0,
                           unsigned aVersion = 0) {
    const std::string rest =
        Big(anID, 2) + Big(0xC1U | aVersion << 1, 1) + Big(aNumber, 1) + Big(aNumber, 1) + aBody;
    const std::string section = Big(aTable, 1) + Big(0xB000U | (rest.size() + 4), 2) + rest;
    return section + Big(CheckSum(section), 4);
}

/// Programs by number and the PID of their map.
using Programs = std::vector<std::pair<unsigned, unsigned>>;
inline std::string Pat(const Programs& aPrograms = {{1, 0x100}}) {
    std::string body;
    for (const auto& program : aPrograms) {
        body += Big(program.first, 2) + Big(0xE000U | program.second, 2);
    }
    return Section(0, 1, body);
}

inline std::string Descriptor(unsigned aTag, const std::string& aContent) {
    return Big(aTag, 1) + Big(aContent.size(), 1) + aContent;
}
inline std::string Registration(const std::string& aFormat) {
    return Descriptor(5, aFormat);
}
inline std::string Language(const std::string& aCode) {
    return Descriptor(0x0A, aCode + std::string(1, '\0'));
}

struct Stream {
    unsigned mType;
    unsigned mPID;
    std::string mDescriptors = "";
};
inline std::string Pmt(const std::vector<Stream>& aStreams, const std::string& aDescriptors = "",
                       unsigned aProgram = 1, unsigned aClockPID = 0x101, unsigned aVersion = 0) {
    std::string body = Big(0xE000U | aClockPID, 2) + Big(0xF000U | aDescriptors.size(), 2) + aDescriptors;
    for (const Stream& stream : aStreams) {
        body += Big(stream.mType, 1) + Big(0xE000U | stream.mPID, 2) +
                Big(0xF000U | stream.mDescriptors.size(), 2) + stream.mDescriptors;
    }
    return Section(2, aProgram, body, 0, aVersion);
}

/// Packets of 188 bytes, one after the other.
class Packets {
public:
    /// A section from a packet's start on.
    Packets& Table(unsigned aPID, const std::string& aSection) {
        return Unit(aPID, std::string(1, '\0') + aSection, '\xFF');
    }
    /// The packet of a stream; with a clock in its first packet.
    Packets& Add(unsigned aPID, const std::string& aPes, std::uint64_t aClock = kNoStamp) {
        return Unit(aPID, aPes, '\0', aClock);
    }
    /// So many packets of nothing.
    Packets& Null(std::size_t aCount) {
        for (std::size_t i = 0; i < aCount; ++i) {
            mBytes += '\x47' + Big(0x1FFF, 2) + "\x10" + std::string(184, '\xFF');
        }
        return *this;
    }
    /// A packet with a clock alone.
    Packets& Clock(unsigned aPID, std::uint64_t aClock, bool afDiscontinuity = false) {
        mBytes +=
            '\x47' + Big(aPID, 2) + Big(0x20U | mContinuity[aPID], 1) + Field(183, aClock, afDiscontinuity);
        return *this;
    }
    /// Bits that are set in the second and in the fourth byte of what comes from now on.
    Packets& Mark(unsigned aSecond, unsigned aFourth) {
        mSecond = aSecond;
        mFourth = aFourth;
        return *this;
    }

    const std::string& Bytes() const { return mBytes; }

private:
    /// An adaptation field of so many bytes after its length.
    static std::string Field(std::size_t aSize, std::uint64_t aClock, bool afDiscontinuity = false) {
        std::string field;
        if (aSize != 0) {
            const bool fClock = aClock != kNoStamp;
            field = Big((afDiscontinuity ? 0x80U : 0U) | (fClock ? 0x10U : 0U), 1);
            field += fClock ? Big((aClock % kClockEnd) << 15 | 0x7E00, 6) : "";
            field.resize(aSize, '\xFF');
        }
        return Big(aSize, 1) + field;
    }

    /// What begins a packet and goes over as many as it takes; the last is filled by an adaptation field, or
    /// after a section by what stands for none.
    Packets& Unit(unsigned aPID, const std::string& aUnit, char aFill, std::uint64_t aClock = kNoStamp) {
        for (std::size_t at = 0; at < aUnit.size();) {
            const bool fFirst = at == 0;
            const bool fClock = fFirst && aClock != kNoStamp;
            const std::size_t room = fClock ? 176 : 184;
            std::string payload = aUnit.substr(at, room);
            at += payload.size();
            if (aFill != '\0') {
                payload.resize(room, aFill);
            }
            const bool fField = fClock || payload.size() < 184;
            mBytes += '\x47' + Big(aPID | (fFirst ? 0x4000U : 0U) | mSecond << 8, 2) +
                      Big((fField ? 0x30U : 0x10U) | mFourth | mContinuity[aPID], 1);
            mContinuity[aPID] = (mContinuity[aPID] + 1) & 0xF;
            mBytes += (fField ? Field(183 - payload.size(), fClock ? aClock : kNoStamp) : "") + payload;
        }
        return *this;
    }

    std::string mBytes;
    std::map<unsigned, unsigned> mContinuity;
    unsigned mSecond = 0;
    unsigned mFourth = 0;
};

/// The same packets with a time stamp before each, which grows by so much.
inline std::string Stamped(const std::string& aPackets, std::uint32_t aStep, std::uint32_t aFirst = 0) {
    std::string stamped;
    std::uint32_t stamp = aFirst;
    for (std::size_t at = 0; at < aPackets.size(); at += kPacket, stamp += aStep) {
        stamped += Big(stamp, 4) + aPackets.substr(at, kPacket);
    }
    return stamped;
}
/// The same with parity after each.
inline std::string WithParity(const std::string& aPackets) {
    std::string packets;
    for (std::size_t at = 0; at < aPackets.size(); at += kPacket) {
        packets += aPackets.substr(at, kPacket) + std::string(16, 'p');
    }
    return packets;
}

/// A date and time in five bytes: a day of the modified Julian date, and digits.
inline std::string Time(unsigned aDay, unsigned aDigits) {
    return Big(aDay, 2) + Big(aDigits, 3);
}

/// An event, and the section that says that it is on, or that it follows.
inline std::string Event(const std::string& aTime, unsigned aLengthDigits, const std::string& aName) {
    const std::string name = Descriptor(0x4D, "eng" + Big(aName.size(), 1) + aName + std::string(1, '\0'));
    return Big(7, 2) + aTime + Big(aLengthDigits, 3) + Big(0x8000U | name.size(), 2) + name;
}
inline std::string Eit(const std::string& anEvents, unsigned aNumber = 0, unsigned aProgram = 1,
                       unsigned aNetwork = 0x233A) {
    return Section(0x4E, aProgram, Big(1, 2) + Big(aNetwork, 2) + "\1\x4E" + anEvents, aNumber);
}

} // namespace ts
