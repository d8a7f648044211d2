#pragma once

#include "ez/MediaParserStream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <utility>

/// A file of any size whose bytes are made when they are read: some at some positions, zeros elsewhere.
class SparseStream : public ezMediaParserStream {
public:
    SparseStream(std::uint64_t aSize, std::map<std::uint64_t, std::string> aParts)
        : mParts(std::move(aParts)) {
        mMediaSize = ezuint64(aSize);
    }
    std::size_t mReads = 0;
    std::uint64_t mBytes = 0;

protected:
    bool MediaSeek(const ezuint64& anOffset, bool /*afSeekImmediate*/) override {
        mPlace = anOffset.ToUInt64();
        return true;
    }
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        const std::uint64_t size = mMediaSize.ToUInt64();
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(aSize, size - std::min(size, mPlace)));
        auto* const bytes = static_cast<char*>(aBuffer);
        std::memset(bytes, 0, count);
        for (const auto& [start, part] : mParts) {
            for (std::size_t i = 0; i < part.size(); ++i) {
                if (start + i >= mPlace && start + i - mPlace < count) {
                    bytes[start + i - mPlace] = part[i];
                }
            }
        }
        ++mReads;
        mBytes += count;
        mPlace += count;
        return static_cast<ezFileOffset>(count);
    }

private:
    std::map<std::uint64_t, std::string> mParts;
    std::uint64_t mPlace = 0;
};
