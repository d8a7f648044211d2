#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <cstring>
#include <string>

unsigned char ByteReader::Next() {
    unsigned char byte = 0;
    // A source that has failed is not asked again: a live one may wait each time.
    if (mfFailed || !Require(mPosition < mEnd && mBytes->Get(mPosition, &byte))) {
        return 0;
    }
    ++mPosition;
    if (mfUnsynchronised && byte == 0xFF) {
        SkipStuffing();
    }
    return byte;
}

void ByteReader::SkipStuffing() {
    unsigned char byte = 0;
    if (mPosition < mEnd && mBytes->Get(mPosition, &byte) && byte == 0) {
        ++mPosition;
    }
}

const unsigned char* ByteReader::TakeBuffered(std::size_t aCount) {
    const unsigned char* bytes = nullptr;
    if (mfUnsynchronised || aCount == 0 || aCount > GetLeft()) {
        return nullptr;
    }
    if (mBytes->BorrowBuffered(mPosition, &bytes) < aCount) {
        const std::size_t count = mBytes->Borrow(mPosition, &bytes);
        if (!Require(count != 0) || count < aCount) {
            return nullptr;
        }
    }
    mPosition += aCount;
    return bytes;
}

std::uint64_t ByteReader::ReadBigAcross(unsigned aByteCount) {
    std::uint64_t value = 0;
    if (const unsigned char* const bytes = TakeBuffered(aByteCount)) {
        for (unsigned i = 0; i < aByteCount; ++i) {
            value = value << 8 | bytes[i];
        }
        return value;
    }
    for (unsigned i = 0; i < aByteCount; ++i) {
        value = value << 8 | Next();
    }
    return mfFailed ? 0 : value;
}

std::uint64_t ByteReader::ReadLittle(unsigned aByteCount) {
    std::uint64_t value = 0;
    for (unsigned i = 0; i < aByteCount; ++i) {
        value |= static_cast<std::uint64_t>(Next()) << 8 * i;
    }
    return mfFailed ? 0 : value;
}

std::uint32_t ByteReader::ReadSyncsafe32() {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned char byte = Next();
        Require(byte < 0x80);
        value = value << 7 | byte;
    }
    return mfFailed ? 0 : value;
}

bool ByteReader::Read(unsigned char* aBlock, std::size_t aCount) {
    Require(aCount <= GetLeft());
    std::size_t done = 0;
    while (done < aCount && !mfFailed) {
        if (mfUnsynchronised) {
            aBlock[done++] = Next();
            continue;
        }
        const unsigned char* bytes = nullptr;
        const std::size_t count = std::min(mBytes->Borrow(mPosition, &bytes), aCount - done);
        if (Require(count != 0)) {
            std::memcpy(aBlock + done, bytes, count);
            mPosition += count;
            done += count;
        }
    }
    return !mfFailed;
}

ezCString ByteReader::ReadText(std::size_t aCount) {
    if (const unsigned char* const bytes = TakeBuffered(aCount)) {
        return ezCString(reinterpret_cast<const char*>(bytes), aCount);
    }
    std::string text;
    if (Require(aCount <= GetLeft())) {
        for (std::size_t i = 0; i < aCount && !mfFailed; ++i) {
            text.push_back(static_cast<char>(Next()));
        }
    }
    return mfFailed ? ezCString() : ezCString(std::string_view(text));
}

ezCString ByteReader::ReadZeroTerminated(std::size_t aMaximum) {
    std::string text;
    for (char character = static_cast<char>(Next()); character != '\0' && !mfFailed;
         character = static_cast<char>(Next())) {
        text.push_back(character);
        Require(text.size() < aMaximum);
    }
    return mfFailed ? ezCString() : ezCString(std::string_view(text));
}

void ByteReader::SkipWithStuffing(std::uint64_t aCount) {
    if (!Require(aCount <= GetLeft())) {
        return;
    }
    // Only the bytes themselves tell how many of them are stuffing.
    for (std::uint64_t i = 0; i < aCount && !mfFailed; ++i) {
        Next();
    }
}
