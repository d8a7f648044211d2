#pragma once

#include "ez/MediaParserStream.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

// The reads of a media stream, and what they do to the caller's buffer.

/// What a read finds in a buffer that was not written to.
inline constexpr char kUntouched = '\x5E';

/// What one read gave.
struct ReadOutcome {
    bool mfResult;
    std::size_t mCount;  ///< up-to forms: what the count says; exact forms: what was asked for
    std::string mBuffer; ///< the caller's whole buffer
    std::string Bytes() const { return mBuffer.substr(0, mCount); }
    bool IsUntouched() const { return mBuffer.find_first_not_of(kUntouched) == std::string::npos; }
};

inline ReadOutcome Exact(ezMediaParserStream& aStream, std::size_t aSize) {
    ReadOutcome outcome{false, aSize, std::string(aSize, kUntouched)};
    outcome.mfResult = aStream.Read(aSize, &outcome.mBuffer[0]);
    return outcome;
}

inline ReadOutcome UpTo(ezMediaParserStream& aStream, std::size_t aSize) {
    ReadOutcome outcome{false, aSize, std::string(aSize, kUntouched)};
    outcome.mfResult = aStream.Read(&outcome.mCount, &outcome.mBuffer[0]);
    return outcome;
}

inline std::uint64_t At(const ezMediaParserStream& aStream) {
    return aStream.Tell().ToUInt64();
}

/// Bytes of which no stretch looks like another.
inline std::string RandomMedia(std::size_t aSize) {
    std::mt19937 random(8192);
    std::string bytes(aSize, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random() & 0xFFU);
    }
    return bytes;
}
