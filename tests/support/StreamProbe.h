#pragma once

#include "ez/StreamMediaParserStream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <random>
#include <string>

/// The network adapter with its inner side turned out.
class StreamProbe : public ezStreamMediaParserStream {
public:
    using ezStreamMediaParserStream::ezStreamMediaParserStream;
    using ezStreamMediaParserStream::MediaRead;
    using ezStreamMediaParserStream::MediaSeek;
    using ezStreamMediaParserStream::StreamSeek;

    std::uint64_t At() const { return Tell().ToUInt64(); }
    std::uint64_t Size() const { return GetMediaSize().ToUInt64(); }
    std::uint64_t SeekPos() const { return mSeekPos.ToUInt64(); }
    std::uint64_t StreamPos() const { return mStreamPos.ToUInt64(); }
    ezStream* Stream() const { return mStream; }
    bool Owns() const { return mfOwnStream; }

    bool SeekLazily(const ezuint64& aPosition) { return Seek(aPosition, SeekFromStart, false); }
    bool SeekNow(const ezuint64& aPosition) { return Seek(aPosition, SeekFromStart, true); }

    bool FieldsAreInOrder() const {
        const void* const fields[] = {
            &mLastModificationTime, &mStream, &mSeekPos, &mStreamPos, &mCondition, &mfOwnStream};
        return std::is_sorted(std::begin(fields), std::end(fields), std::less<const void*>());
    }
};

/// What the reads below find in a buffer that was not written to.
inline constexpr char kUntouched = '\x5E';

/// The bytes of an exact read; empty when it failed.
inline std::string ReadExactly(ezMediaParserStream& aStream, std::size_t aSize) {
    std::string buffer(aSize, kUntouched);
    return aStream.Read(aSize, &buffer[0]) ? buffer : "";
}

/// The bytes of an up-to read; "<error>" when it failed.
inline std::string ReadUpTo(ezMediaParserStream& aStream, std::size_t aSize) {
    std::string buffer(aSize, kUntouched);
    std::size_t count = aSize;
    return aStream.Read(&count, &buffer[0]) ? buffer.substr(0, count) : "<error>";
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
