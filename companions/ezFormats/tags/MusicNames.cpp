#include "ezFormats/tags/MusicNames.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/TextBytes.h"

#include <algorithm>

namespace {

constexpr char kLineEnd = '\n';

void AddLine(std::string& aLines, std::string_view aLine) {
    for (std::size_t start = 0; start < aLines.size();) {
        const std::size_t end = std::min(aLines.find(kLineEnd, start), aLines.size());
        if (std::string_view(aLines).substr(start, end - start) == aLine) {
            return;
        }
        start = end + 1;
    }
    if (aLines.size() + 1 + aLine.size() <= kMusicNames_MaxSize) {
        aLines.append(aLines.empty() ? 0 : 1, kLineEnd).append(aLine);
    }
}

} // namespace

bool MusicNames::Count(const ezCString& aValue) {
    if (aValue.IsEmpty() || mCount == kMusicNames_MaxCount) {
        return false;
    }
    ++mCount;
    return true;
}

void MusicNames::Add(const ezCString& aName) {
    if (Count(aName)) {
        AddName(aName.View());
    }
}

void MusicNames::AddGenre(const ezCString& aText) {
    if (Count(aText)) {
        std::string_view rest = aText.View();
        std::string_view name;
        while (TakeMusicGenre(rest, &name)) {
            AddName(name);
        }
    }
}

void MusicNames::AddName(std::string_view aName) {
    if (aName.empty()) {
        return;
    }
    if (mFirst.IsEmpty()) {
        mFirst = ezCString(aName);
        return;
    }
    if (mListed.empty()) {
        mJoined = mFirst.View();
        mListed = mFirst.View();
    }
    if (mCount <= kMusicTexts_MaxCount) {
        AddMusicName(mJoined, aName);
    }
    AddLine(mListed, aName);
}

ezCString MusicNames::GetJoined() const {
    return mJoined.empty() ? mFirst : CleanText(mJoined, TextEncoding::Utf8);
}

ezCString MusicNames::GetListed() const {
    const bool fSeveral = mListed.find(kLineEnd) != std::string::npos;
    return fSeveral ? ezCString(std::string_view(mListed)) : ezCString();
}
