#include "ezPlaylists/detail/PLSPlaylistParser.h"

#include "ezPlaylists/detail/GrowingBlock.h"
#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/LineReader.h"
#include "ezPlaylists/detail/PlaylistPlace.h"
#include "ezPlaylists/detail/PlaylistText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace {

constexpr const char* kSection = "[playlist]";

enum class Key : unsigned char { File, Title, Length };

struct KeyName {
    std::string_view mName; ///< lower case
    Key mKey;
};
constexpr std::array<KeyName, 3> kKeys = {
    {{"file", Key::File}, {"title", Key::Title}, {"length", Key::Length}}};

/// A line of an entry. Its text stands among all texts, as there may be many lines.
struct Line {
    std::uint64_t mNumber;
    std::uint64_t mPos;
    std::size_t mText;
    uint32 mSize;
    Key mKey;
};

bool ReadKey(const ezCString& aLowerKey, Line* aLine) {
    for (const KeyName& key : kKeys) {
        if (aLowerKey.StartsWith(key.mName)) {
            aLine->mKey = key.mKey;
            return ezReadDecimal(aLowerKey.View().substr(key.mName.size()), &aLine->mNumber);
        }
    }
    return false;
}

/// The lines of the section that belong to entries.
class Lines {
public:
    /// False when there are too many, or memory for them is refused.
    bool Add(const PlaylistLine& aLine) {
        const std::string_view text = ezTrimmed(aLine.mText);
        if (!text.empty() && text.front() == '[') {
            mfInSection = ezIsEqualNoCase(text, kSection);
            return true;
        }
        const std::size_t equals = text.find('=');
        if (!mfInSection || equals == std::string_view::npos) {
            return true;
        }
        const std::string_view value = ezTrimmed(text.substr(equals + 1));
        Line line = {0, aLine.mPos, mTexts.Size(), static_cast<uint32>(value.size()), Key::File};
        if (value.empty() || !ReadKey(ezCString(ezTrimmed(text.substr(0, equals))).Lower(), &line)) {
            return true;
        }
        if (mLines.Size() >= kKeys.size() * kPlaylist_MaxIndexed ||
            value.size() > kPlaylist_MaxIndexedText - mTexts.Size()) {
            mfFull = true;
            return false;
        }
        mfRefused = !mTexts.Append(value) || !mLines.Append(line);
        return !mfRefused;
    }

    bool IsRefused() const { return mfRefused; }
    bool IsFull() const { return mfFull; }

    /// By number; the lines of a number in the order of the playlist.
    const GrowingBlock<Line>& Sorted() {
        std::sort(mLines.begin(), mLines.end(), [](const Line& aLeft, const Line& aRight) {
            return std::tie(aLeft.mNumber, aLeft.mPos) < std::tie(aRight.mNumber, aRight.mPos);
        });
        return mLines;
    }

    std::string_view TextOf(const Line& aLine) const {
        return mTexts.View().substr(aLine.mText, aLine.mSize);
    }

private:
    GrowingBlock<Line> mLines;
    GrowingText mTexts;
    bool mfRefused = false;
    bool mfFull = false;
    bool mfInSection = false;
};

} // namespace

PlaylistParser* PLSPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new PLSPlaylistParser(aStream) : nullptr;
}

PLSPlaylistParser::PLSPlaylistParser(ezStream* aStream)
    : IndexedPlaylistParser(aStream, PlaylistPlace(aStream)) {
    mMimeType = kMimeTypes[0];
}

bool PLSPlaylistParser::ReadEntries(PlaylistStreamReader& aReader) {
    Lines lines;
    PlaylistLineReader reader(aReader);
    PlaylistLine line;
    bool fMore = reader.StartAt(0);
    while (fMore && reader.Next(&line)) {
        fMore = lines.Add(line);
    }
    if (lines.IsRefused()) {
        return false; // what is missing could be of any entry
    }
    if (lines.IsFull()) {
        Cut();
    }
    const GrowingBlock<Line>& sorted = lines.Sorted();
    for (const Line* next = sorted.begin(); next != sorted.end();) {
        const std::uint64_t number = next->mNumber;
        std::array<const Line*, kKeys.size()> entry = {};
        for (; next != sorted.end() && next->mNumber == number; ++next) {
            entry[static_cast<std::size_t>(next->mKey)] = next; // the last one counts
        }
        const auto textOf = [&](Key aKey) {
            const Line* found = entry[static_cast<std::size_t>(aKey)];
            return found != nullptr ? lines.TextOf(*found) : std::string_view();
        };
        const Line* file = entry[static_cast<std::size_t>(Key::File)];
        if (file != nullptr &&
            !AddEntry(file->mPos, textOf(Key::File), PlaylistText(textOf(Key::Title), false).View(),
                      PlaylistSeconds(textOf(Key::Length), nullptr), {})) {
            return true;
        }
    }
    return true;
}
