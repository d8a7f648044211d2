#pragma once

#include "ezPlatform/streams/Stream.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

/// The bytes of a file in which no stretch looks like another.
inline std::string MediaBytes(std::size_t aSize) {
    std::string bytes(aSize, '\0');
    for (std::size_t i = 0; i < aSize; ++i) {
        bytes[i] = static_cast<char>((i + 1) * UINT64_C(0x9E3779B97F4A7C15) >> 56);
    }
    return bytes;
}

/// What a read gave.
struct ReadResult {
    ezStreamingStatus mStatus = ezStreamingStatus_NoError;
    std::string mBytes;

    friend bool operator==(const ReadResult& aLeft, const ReadResult& aRight) {
        return aLeft.mStatus == aRight.mStatus && aLeft.mBytes == aRight.mBytes;
    }
    friend std::ostream& operator<<(std::ostream& aStream, const ReadResult& aResult) {
        return aStream << "status " << aResult.mStatus << ", " << aResult.mBytes.size() << " bytes \""
                       << aResult.mBytes.substr(0, 40) << "\"";
    }
};

/// One read of anything that reads as ezStream does. A count above what was asked is a failure of the test.
template <typename Source>
ReadResult ReadOnce(Source& aSource, std::size_t aSize, int aFlag = ezStreamReadFlag_Whole) {
    ReadResult result;
    std::string bytes(aSize, '\x5E');
    std::size_t count = aSize;
    result.mStatus = aSource.Read(bytes.data(), &count, aFlag);
    EXPECT_LE(count, aSize);
    result.mBytes = bytes.substr(0, count);
    return result;
}

inline ReadResult Got(const std::string& aBytes) {
    return {ezStreamingStatus_NoError, aBytes};
}
inline ReadResult Nothing() {
    return {ezStreamingStatus_NoError, ""};
}
inline ReadResult AtEnd(const std::string& aBytes) {
    return {ezStreamingStatus_EOS, aBytes};
}
inline ReadResult Failed(ezStreamingStatus aStatus) {
    return {aStatus, ""};
}
