#pragma once

#include "ez/StreamMediaParserStream.h"

#include "support/StreamReads.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
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
