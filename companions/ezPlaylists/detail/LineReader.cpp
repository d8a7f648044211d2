#include "ezPlaylists/detail/LineReader.h"

#include "ezPlaylists/detail/Limits.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
/// How far the search for CR runs ahead at once.
constexpr std::size_t kAhead = 1024;

/// Where a byte stands in a part; the end of the part when it does not.
std::size_t Find(std::string_view aBytes, char aByte, std::size_t aFrom, std::size_t aTo) {
    if (aFrom >= aTo) {
        return aTo;
    }
    const void* found = std::memchr(aBytes.data() + aFrom, aByte, aTo - aFrom);
    return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - aBytes.data()) : aTo;
}

} // namespace

bool PlaylistLineReader::StartAt(std::uint64_t aPos) {
    // The byte before tells whether a line begins here; at the mark's end it is the mark.
    const std::uint64_t from = aPos <= kByteOrderMark.size() ? 0 : aPos - 1;
    if (!mReader.Seek(from)) {
        return false;
    }
    mNoCRBefore = 0;
    if (from == 0) {
        SkipByteOrderMark();
    }
    if (mReader.Tell() < aPos && !IsAtLineStart(aPos)) {
        PlaylistLine cut;
        while (mReader.Tell() < aPos && Next(&cut)) {
        }
    }
    return true;
}

bool PlaylistLineReader::IsAtLineStart(std::uint64_t aPos) {
    // Only of a position behind byte 3: what is before is read line by line.
    if (aPos <= kByteOrderMark.size()) {
        return false;
    }
    while (mReader.Peek().size() < 2 && mReader.Grow()) {
    }
    const std::string_view bytes = mReader.Peek();
    if (bytes.empty()) {
        return false;
    }
    const bool fStart = bytes[0] == '\n' || (bytes[0] == '\r' && (bytes.size() < 2 || bytes[1] != '\n'));
    if (fStart) {
        mReader.Skip(1);
    }
    return fStart;
}

void PlaylistLineReader::SkipByteOrderMark() {
    const auto isMark = [this] {
        const std::string_view bytes = mReader.Peek().substr(0, kByteOrderMark.size());
        return bytes == kByteOrderMark.substr(0, bytes.size());
    };
    while (isMark() && mReader.Peek().size() < kByteOrderMark.size() && mReader.Grow()) {
    }
    if (isMark() && mReader.Peek().size() >= kByteOrderMark.size()) {
        mReader.Skip(kByteOrderMark.size());
    }
}

std::size_t PlaylistLineReader::CRIn(std::string_view aBytes, std::size_t aFrom, std::size_t aTo) {
    const std::uint64_t base = mReader.Tell();
    while (mNoCRBefore < base + aTo) {
        const std::size_t from =
            std::max(aFrom, mNoCRBefore > base ? static_cast<std::size_t>(mNoCRBefore - base) : 0);
        const std::size_t to = std::min(aBytes.size(), from + kAhead);
        const std::size_t found = Find(aBytes, '\r', from, to);
        mNoCRBefore = base + found;
        if (found != to) {
            return std::min(found, aTo);
        }
    }
    return aTo;
}

/// Where the line at the start ends; the size when it ends nowhere.
std::size_t PlaylistLineReader::EndIn(std::string_view aBytes, std::size_t aFrom) {
    return CRIn(aBytes, aFrom, Find(aBytes, '\n', aFrom, aBytes.size()));
}

/// Where the line at the position ends; one that is too long is read over up to there. False when there is
/// no line.
bool PlaylistLineReader::FindEnd(std::size_t* anEnd) {
    std::size_t searched = 0;
    bool fTooLong = false;
    while (true) {
        const std::string_view bytes = mReader.Peek();
        *anEnd = EndIn(bytes, searched);
        const bool fFound = *anEnd != bytes.size();
        searched = *anEnd;
        fTooLong = fTooLong || *anEnd > kPlaylist_MaxLine;
        if (fTooLong) {
            mReader.Skip(*anEnd);
            *anEnd = searched = 0;
        }
        if (fFound) {
            return true;
        }
        if (!mReader.Grow()) {
            return !mReader.HasFailed() && (fTooLong || *anEnd != 0);
        }
    }
}

/// Bytes of the line end, of which CRLF may have arrived in part.
std::size_t PlaylistLineReader::EndSizeAt(std::size_t anEnd) {
    std::string_view bytes = mReader.Peek();
    if (anEnd == bytes.size()) {
        return 0;
    }
    if (bytes[anEnd] == '\n') {
        return 1;
    }
    if (anEnd + 1 == bytes.size() && mReader.Grow()) {
        bytes = mReader.Peek();
    }
    return anEnd + 1 < bytes.size() && bytes[anEnd + 1] == '\n' ? 2 : 1;
}

bool PlaylistLineReader::Next(PlaylistLine* aLine) {
    aLine->mPos = mReader.Tell();
    std::size_t end = 0;
    if (!FindEnd(&end)) {
        return false;
    }
    const std::size_t endSize = EndSizeAt(end);
    aLine->mText = mReader.Peek().substr(0, end); // only now: the search may have moved the bytes
    mReader.Skip(end + endSize);
    return true;
}
