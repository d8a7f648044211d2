#include "ezPlaylists/detail/LineReader.h"

#include "ezBytes/Utf16.h"
#include "ezBytes/Utf8.h"
#include "ezPlaylists/detail/Limits.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::size_t kLongestMark = 3;

} // namespace

/// Looks what the playlist begins with, once. False when the stream refuses, or fails before that is known.
bool PlaylistLineReader::FindMark() {
    struct Mark {
        std::string_view mBytes;
        Encoding mEncoding;
    };
    constexpr std::array<Mark, 3> kMarks = {{{"\xEF\xBB\xBF", Encoding::Bytes},
                                             {"\xFF\xFE", Encoding::Utf16Little},
                                             {"\xFE\xFF", Encoding::Utf16Big}}};
    if (mEncoding != Encoding::NotKnown) {
        return true;
    }
    if (!mReader.Seek(0)) {
        return false;
    }
    while (mReader.Peek().size() < kLongestMark && mReader.Grow()) {
    }
    const std::string_view start = mReader.Peek();
    if (start.size() < kLongestMark && mReader.HasFailed()) {
        return false; // the next time may see more
    }
    const auto* mark = std::find_if(kMarks.begin(), kMarks.end(), [&](const Mark& aMark) {
        return start.substr(0, aMark.mBytes.size()) == aMark.mBytes;
    });
    mEncoding = mark != kMarks.end() ? mark->mEncoding : Encoding::Bytes;
    mMarkSize = mark != kMarks.end() ? mark->mBytes.size() : 0;
    return true;
}

char32_t PlaylistLineReader::UnitAt(std::string_view aBytes, std::size_t aPlace) const {
    return IsUtf16() ? Utf16UnitAt(aBytes, aPlace, mEncoding == Encoding::Utf16Little)
                     : static_cast<unsigned char>(aBytes[aPlace]);
}

bool PlaylistLineReader::StartAt(std::uint64_t aPos) {
    if (!FindMark()) {
        return false;
    }
    // The unit before tells whether a line begins here.
    const std::uint64_t from = aPos <= mMarkSize ? mMarkSize : (aPos - 1) / UnitSize() * UnitSize();
    if (!mReader.Seek(from)) {
        return false;
    }
    mLF.mNoneBefore = 0;
    mCR.mNoneBefore = 0;
    if (from < aPos && !IsAtLineStart()) {
        PlaylistLine cut;
        while (mReader.Tell() < aPos && Next(&cut)) {
        }
    }
    return true;
}

/// Whether a line begins after the unit at the position, which is passed then.
bool PlaylistLineReader::IsAtLineStart() {
    const std::size_t unit = UnitSize();
    while (mReader.Peek().size() < 2 * unit && mReader.Grow()) {
    }
    const std::string_view bytes = mReader.Peek();
    if (bytes.size() < unit) {
        return false;
    }
    const bool fStart =
        UnitAt(bytes, 0) == '\n' ||
        (UnitAt(bytes, 0) == '\r' && (bytes.size() < 2 * unit || UnitAt(bytes, unit) != '\n'));
    if (fStart) {
        mReader.Skip(unit);
    }
    return fStart;
}

std::size_t PlaylistLineReader::Find(Search* aSearch, std::string_view aBytes, std::size_t aFrom,
                                     std::size_t aTo) const {
    const std::uint64_t base = mReader.Tell();
    while (aSearch->mNoneBefore < base + aTo) {
        const std::size_t known =
            aSearch->mNoneBefore > base ? static_cast<std::size_t>(aSearch->mNoneBefore - base) : 0;
        const std::size_t from = std::max(aFrom, known);
        const std::size_t to = std::min(aBytes.size(), from + kPlaylist_LookAhead);
        const void* found = std::memchr(aBytes.data() + from, aSearch->mByte, to - from);
        if (found != nullptr) {
            const auto at = static_cast<std::size_t>(static_cast<const char*>(found) - aBytes.data());
            aSearch->mNoneBefore = base + at;
            return std::min(at, aTo);
        }
        aSearch->mNoneBefore = base + to;
    }
    return aTo;
}

/// Where the line at the start ends, from a place on. False when it ends nowhere: *anEnd is then what was
/// searched.
bool PlaylistLineReader::EndIn(std::string_view aBytes, std::size_t aFrom, std::size_t* anEnd) {
    if (!IsUtf16()) {
        *anEnd = Find(&mCR, aBytes, aFrom, Find(&mLF, aBytes, aFrom, aBytes.size()));
        return *anEnd != aBytes.size();
    }
    for (*anEnd = aFrom; *anEnd + 1 < aBytes.size(); *anEnd += 2) {
        const char32_t unit = UnitAt(aBytes, *anEnd);
        if (unit == '\n' || unit == '\r') {
            return true;
        }
    }
    return false;
}

/// Where the line at the position ends; one that is too long is read over up to there. False when there is
/// no line.
bool PlaylistLineReader::FindEnd(std::size_t* anEnd) {
    const std::uint64_t start = mReader.Tell();
    std::size_t searched = 0;
    bool fTooLong = false;
    while (true) {
        const bool fFound = EndIn(mReader.Peek(), searched, anEnd);
        searched = *anEnd;
        fTooLong = fTooLong || *anEnd > kPlaylist_MaxLine;
        if (fTooLong) {
            mReader.Skip(*anEnd);
            *anEnd = searched = 0;
        }
        if (fTooLong && mReader.Tell() - start > kPlaylist_MaxSkippedLine) {
            mReader.EndAt(start, PlaylistCut::Line);
            return false;
        }
        if (fFound) {
            return true;
        }
        if (!mReader.Grow()) {
            return !mReader.HasFailed() && !mReader.IsAtCut() && (fTooLong || *anEnd != 0);
        }
    }
}

/// Bytes of the line end, of which CRLF may have arrived in part; 0 at the end of the stream.
std::size_t PlaylistLineReader::EndSizeAt(std::size_t anEnd) {
    const std::size_t unit = UnitSize();
    if (mReader.Peek().size() < anEnd + unit) {
        return 0;
    }
    if (UnitAt(mReader.Peek(), anEnd) == '\n') {
        return unit;
    }
    while (mReader.Peek().size() < anEnd + 2 * unit && mReader.Grow()) {
    }
    const std::string_view bytes = mReader.Peek();
    return bytes.size() >= anEnd + 2 * unit && UnitAt(bytes, anEnd + unit) == '\n' ? 2 * unit : unit;
}

void PlaylistLineReader::TakeText(std::string_view aBytes, std::string* aText) const {
    aText->clear();
    ForEachUtf16(aBytes, mEncoding == Encoding::Utf16Little, [aText](char32_t aCharacter) {
        AppendUtf8(*aText, aCharacter);
        return true;
    });
}

bool PlaylistLineReader::Next(PlaylistLine* aLine) {
    aLine->mPos = mReader.Tell();
    std::size_t end = 0;
    if (!FindEnd(&end)) {
        return false;
    }
    const std::size_t endSize = EndSizeAt(end);
    aLine->mText = mReader.Peek().substr(0, end); // only now: the search may have moved the bytes
    if (IsUtf16()) {
        TakeText(aLine->mText, &mConverted);
        aLine->mText = mConverted;
    }
    mReader.Skip(end + endSize);
    return true;
}

bool PlaylistLineReader::LookAtStart(std::size_t aSize, std::string* aText) {
    if (!StartAt(0)) {
        return false;
    }
    while (mReader.Peek().size() < aSize && mReader.Grow()) {
    }
    const std::string_view bytes = mReader.Peek().substr(0, aSize);
    if (IsUtf16()) {
        TakeText(bytes, aText);
    } else {
        aText->assign(bytes);
    }
    return true;
}
