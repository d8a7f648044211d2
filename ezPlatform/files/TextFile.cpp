#include "ezPlatform/files/TextFile.h"

#include <string_view>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

ezTextFile::ezTextFile(const ezCString& aPath, std::size_t aMaximumLineLength)
    : mFile(aPath, ezFileOpenMode_Read), mMaximumLineLength(aMaximumLineLength) {
    mFile.Open();
}

bool ezTextFile::NextCharacter(char* aCharacter) {
    if (mfFailed) {
        return false; // what could be read after a gap is no line of the file
    }
    if (mBufferPosition == mBufferLength) {
        const int count = mFile.Read(mBuffer.data(), mBuffer.size());
        mfFailed = count < 0;
        mBufferPosition = 0;
        mBufferLength = count > 0 ? static_cast<std::size_t>(count) : 0;
        if (mBufferLength == 0) {
            return false;
        }
        if (mfAtStart && std::string_view(mBuffer.data(), mBufferLength).substr(0, 3) == kByteOrderMark) {
            mBufferPosition = kByteOrderMark.size();
        }
        mfAtStart = false;
        if (mBufferPosition == mBufferLength) {
            return false; // nothing but the mark
        }
    }
    *aCharacter = mBuffer[mBufferPosition++];
    return true;
}

bool ezTextFile::NextLine(ezCString* aLine, bool* afCut) {
    std::string line;
    bool fCut = false;
    bool fAny = false;
    bool fHeldReturn = false; // a "\r" that belongs to the line end, should "\n" follow
    char character = 0;
    const auto append = [&](char anAppended) {
        if (line.size() < mMaximumLineLength) {
            line += anAppended;
        } else {
            fCut = true;
        }
    };
    while (NextCharacter(&character)) {
        fAny = true;
        if (character == '\n') {
            fHeldReturn = false;
            break;
        }
        if (fHeldReturn) {
            append('\r');
        }
        fHeldReturn = character == '\r';
        if (!fHeldReturn) {
            append(character);
        }
    }
    if (fHeldReturn) {
        append('\r'); // the file ends in it
    }
    *aLine = ezCString(std::string_view(line));
    if (afCut != nullptr) {
        *afCut = fCut;
    }
    return fAny;
}
