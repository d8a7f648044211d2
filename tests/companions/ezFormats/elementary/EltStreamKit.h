#pragma once

#include "ezFormats/EltStreamCandidates.h"

#include "ez/ElementaryStreamParser.h"

#include "support/Catchers.h"
#include "support/Record.h"
#include "support/Samples.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// A text of these bytes.
inline std::string Hex(std::initializer_list<int> aBytes) {
    std::string bytes;
    for (const int byte : aBytes) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

/// Content that looks like nothing: no sync word, no start code.
inline std::string Content(std::size_t aSize, char aByte = '\x35') {
    return std::string(aSize, aByte);
}

inline const unsigned char* Data(const std::string& aBytes) {
    return reinterpret_cast<const unsigned char*>(aBytes.data());
}

/// Bytes of a generator that is the same everywhere.
inline std::string RandomBytes(std::size_t aSize, std::uint64_t aSeed) {
    std::string bytes(aSize, '\0');
    std::uint64_t state = aSeed * UINT64_C(0x9E3779B97F4A7C15) + 1;
    for (char& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        byte = static_cast<char>(state >> 32);
    }
    return bytes;
}

/// Writes bits, first bit of a byte first.
class Bits {
public:
    Bits& Put(std::uint64_t aValue, unsigned aCount) {
        for (unsigned i = aCount; i > 0; --i) {
            if (mCount % 8 == 0) {
                mBytes += '\0';
            }
            const auto bit = static_cast<unsigned>(aValue >> (i - 1) & 1U);
            mBytes.back() =
                static_cast<char>(static_cast<unsigned char>(mBytes.back()) | bit << (7 - mCount % 8));
            ++mCount;
        }
        return *this;
    }
    Bits& UE(std::uint64_t aValue) {
        unsigned length = 0;
        while ((aValue + 1) >> (length + 1) != 0) {
            ++length;
        }
        return Put(0, length).Put(aValue + 1, length + 1);
    }
    Bits& SE(std::int64_t aValue) {
        return UE(static_cast<std::uint64_t>(aValue > 0 ? 2 * aValue - 1 : -2 * aValue));
    }
    /// The bit that ends a parameter set; the rest of the byte is zero.
    Bits& Stop() { return Put(1, 1); }
    const std::string& Bytes() const { return mBytes; }

private:
    std::string mBytes;
    unsigned mCount = 0;
};

/// How a parse went.
struct Outcome {
    int mStatus = 0;
    std::string mRecord;
    std::string mCandidates;           ///< of a race, after the last packet
    std::vector<std::string> mLeaving; ///< of a race, the lines that tell who left

    bool operator==(const Outcome& anOther) const {
        return mStatus == anOther.mStatus && mRecord == anOther.mRecord &&
               mCandidates == anOther.mCandidates && mLeaving == anOther.mLeaving;
    }
};

inline std::ostream& operator<<(std::ostream& aStream, const Outcome& anOutcome) {
    aStream << "status " << anOutcome.mStatus << ", " << anOutcome.mCandidates << ", " << anOutcome.mRecord;
    for (const std::string& line : anOutcome.mLeaving) {
        aStream << line;
    }
    return aStream;
}

/// Pushes bytes in packets whose sizes are taken from the list again and again; 0 in the list is an empty
/// one.
inline int Push(ezElementaryStreamParser& aParser, const std::string& aBytes,
                const std::vector<uint32>& aSizes) {
    int status = aParser.GetParserStatus();
    std::size_t at = 0;
    for (std::size_t i = 0; at < aBytes.size() && status == ezElementaryStreamParser::MSS_IN_PROGRESS; ++i) {
        const auto size =
            static_cast<uint32>(std::min<std::size_t>(aSizes[i % aSizes.size()], aBytes.size() - at));
        status = aParser.AddPacket(aBytes.data() + at, size, false);
        at += size;
    }
    return status;
}

template <typename Parser>
Outcome Parse(const std::string& aBytes, const std::vector<uint32>& aSizes) {
    Parser parser(nullptr, new ezMediaInfo);
    parser.Open();
    Outcome outcome;
    outcome.mStatus = Push(parser, aBytes, aSizes);
    outcome.mRecord = DumpRecord(Record(parser.Close()).get());
    return outcome;
}

inline Outcome Race(const std::string& aBytes, const std::vector<uint32>& aSizes) {
    const LogCatcher log;
    ezUndeterminedEltStreamParser race(nullptr, new ezMediaInfo);
    AddEltStreamCandidates(race);
    race.Open();
    Outcome outcome;
    outcome.mStatus = Push(race, aBytes, aSizes);
    outcome.mCandidates = race.GetCandidateList().c_str();
    outcome.mRecord = DumpRecord(Record(race.Close()).get());
    for (const std::string& text : log.Texts()) {
        if (text.find("remove candidate") != std::string::npos ||
            text.find("remaining") != std::string::npos) {
            outcome.mLeaving.push_back(text);
        }
    }
    return outcome;
}

/// Packets as a network, a disk and a mean test cut them; the last is the whole.
inline std::vector<std::vector<uint32>> Deliveries() {
    return {{1}, {188}, {1316}, {7, 0, 1, 64, 3}, {UINT32_MAX}};
}

/// The least number of bytes of a stream that decide, and whether they all are needed in any cut.
template <typename Parser>
std::size_t DecidingSize(const std::string& aBytes) {
    Parser parser;
    parser.Open();
    for (std::size_t i = 0; i < aBytes.size(); ++i) {
        if (parser.AddPacket(&aBytes[i], 1, false) != ezElementaryStreamParser::MSS_IN_PROGRESS) {
            return i + 1;
        }
    }
    return aBytes.size() + 1;
}
