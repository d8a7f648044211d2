#include "ezPlaylists/detail/EntryReaders.h"
#include "ezPlaylists/detail/EntryText.h"
#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/Location.h"
#include "ezPlaylists/detail/XmlScanner.h"

#include "ezPlatform/text/URI.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>

namespace {

/// The elements of a track whose texts are taken; of several the first counts.
enum Field : std::size_t { kTitle, kDuration, kFirstTag };
constexpr std::array<std::string_view, 6> kFields = {"title", "duration", "creator",
                                                     "album", "tracknum", "image"};
/// Those that go into the further lines of the entry are written so.
constexpr std::array<const char*, 6> kTags = {"", "", "creator", "album", "trackNum", "image"};

/// A reference under a base, which may be a relative one itself: then it stays one, and its ".." count from
/// where the playlist lies.
std::string Resolved(const LocationBasePtr& aBase, const std::string& aReference) {
    if (aBase == nullptr || aReference.empty() || IsWindowsPath(aReference)) {
        return aReference; // as it is written
    }
    const std::string& base = aBase->Text();
    if (aBase->IsURL()) {
        char* url = ezURI_S_Combine(base.c_str(), aReference.c_str());
        return std::string(ezCString::FromAllocatedString(url).View());
    }
    if (HasScheme(aReference) || aReference[0] == '/') {
        return aReference;
    }
    const std::string path = base.substr(0, base.find_first_of("?#"));
    return path.substr(0, path.rfind('/') + 1) + aReference; // without a "/" that is the reference alone
}

/// Whole seconds of whole milliseconds, the fraction dropped.
uint32 SecondsOf(const std::string& aMilliseconds) {
    std::uint64_t milliseconds = 0;
    if (!ezReadDecimal(ezTrimmed(aMilliseconds), &milliseconds)) {
        return 0;
    }
    return static_cast<uint32>(
        std::min<std::uint64_t>(milliseconds / 1000, std::numeric_limits<uint32>::max()));
}

/// The text that stands directly in an element. One of more than kPlaylist_MaxText bytes counts as absent.
class Text {
public:
    void Append(std::string_view aPiece) {
        mfTooLong = mfTooLong || aPiece.size() > kPlaylist_MaxText - mText.size();
        if (mfTooLong) {
            mText.clear();
        } else {
            mText += aPiece;
        }
    }
    const std::string& Get() const { return mText; }

private:
    std::string mText;
    bool mfTooLong = false;
};

/// What is known of a track while it is read.
struct Track {
    std::uint64_t mPos = 0;
    LocationBasePtr mBase;
    std::string mLocation; ///< the first that says anything, resolved; media may have several sources
    std::array<std::optional<Text>, kFields.size()> mFields;
};

/// Walks over the first list of tracks: the root, the list, its tracks and their fields are one level each.
class XspfWalk {
public:
    XspfWalk(DocumentText& aDocument, const EntrySink& aSink)
        : mDocument(aDocument), mSink(aSink), mScanner(aDocument.Text()) {}

    /// False when the rest is left out.
    bool Run() {
        bool fGoOn = true;
        while (fGoOn && mScanner.Next()) {
            switch (mScanner.Piece().mKind) {
            case MarkupPiece::Kind::StartTag:
                fGoOn = Begin();
                break;
            case MarkupPiece::Kind::EndTag:
                fGoOn = End();
                break;
            case MarkupPiece::Kind::Text:
                if (mText != nullptr && mScanner.Level() == kFieldLevel) {
                    mText->Append(mScanner.Piece().mText);
                }
                break;
            }
            fGoOn = fGoOn && !mfSpent;
        }
        return !mfSpent;
    }

private:
    enum Level : std::size_t { kRootLevel = 1, kListLevel, kTrackLevel, kFieldLevel };

    /// The base inside of an element that lies in another one with a base.
    LocationBasePtr BaseOf(const MarkupPiece& aTag, const LocationBasePtr& anOuterBase) {
        const std::string* attribute = aTag.FindAttribute("xml:base");
        const std::string_view own = attribute != nullptr ? ezTrimmed(*attribute) : std::string_view();
        if (own.empty() || own.size() > kPlaylist_MaxBase || IsSpent(anOuterBase)) {
            return anOuterBase;
        }
        const std::string base = Resolved(anOuterBase, std::string(own));
        return base.size() <= kPlaylist_MaxBase ? std::make_shared<const LocationBase>(base) : anOuterBase;
    }

    bool IsSpent(const LocationBasePtr& aBase) {
        mfSpent = mfSpent || !mBudget.Take(aBase);
        return mfSpent;
    }

    /// False when no more is wanted.
    bool Begin() {
        const MarkupPiece& tag = mScanner.Piece();
        const std::string_view name = mScanner.LocalName();
        if (mScanner.Level() == kRootLevel) {
            mBase = BaseOf(tag, nullptr);
            return name == "playlist";
        }
        if (mScanner.Level() == kListLevel && name == "tracklist") {
            mfInList = true;
            mBase = BaseOf(tag, mBase);
        } else if (mScanner.Level() == kTrackLevel && mfInList && name == "track") {
            mTrack.emplace();
            mTrack->mPos = mDocument.PositionOf(tag.mOffset);
            mTrack->mBase = BaseOf(tag, mBase);
        } else if (mScanner.Level() == kFieldLevel && mTrack) {
            BeginField(tag, name);
        }
        return true;
    }

    void BeginField(const MarkupPiece& aTag, std::string_view aName) {
        if (aName == "location" && mTrack->mLocation.empty()) {
            mLocation.emplace();
            mLocationBase = BaseOf(aTag, mTrack->mBase);
            mText = &*mLocation;
        }
        for (std::size_t i = 0; i < kFields.size(); ++i) {
            if (kFields[i] == aName && !mTrack->mFields[i]) {
                mText = &mTrack->mFields[i].emplace();
            }
        }
    }

    /// False when no more is wanted.
    bool End() {
        if (mScanner.Level() == kFieldLevel && mTrack) {
            mText = nullptr;
            if (mLocation) {
                const std::string location(ezTrimmed(mLocation->Get()));
                const bool fNone = location.empty() || IsSpent(mLocationBase);
                mTrack->mLocation = fNone ? "" : Resolved(mLocationBase, location);
                mLocation.reset();
            }
        } else if (mScanner.Level() == kTrackLevel && mTrack) {
            const bool fGoOn = mTrack->mLocation.empty() || mSink(EntryOf(*mTrack));
            mTrack.reset();
            return fGoOn;
        }
        return mScanner.Level() != kListLevel || !mfInList; // there is one list
    }

    static PlaylistParserEntry EntryOf(const Track& aTrack) {
        const auto textOf = [&](std::size_t aField) {
            return aTrack.mFields[aField] ? aTrack.mFields[aField]->Get() : std::string();
        };
        PlaylistParserEntry entry;
        entry.mStreamPos = aTrack.mPos;
        entry.mURI = ezCString(aTrack.mLocation);
        entry.mTitle = ezCString(OneLine(textOf(kTitle)));
        entry.mDuration = SecondsOf(textOf(kDuration));
        for (std::size_t i = kFirstTag; i < kFields.size(); ++i) {
            AddTag(entry, kTags[i], textOf(i));
        }
        return entry;
    }

    DocumentText& mDocument;
    const EntrySink& mSink;
    XmlScanner mScanner;
    LocationBasePtr mBase; ///< of the root, then of the list
    bool mfInList = false;
    std::optional<Track> mTrack;
    std::optional<Text> mLocation;
    LocationBasePtr mLocationBase;
    LocationBaseBudget mBudget;
    bool mfSpent = false;
    Text* mText = nullptr; ///< of the field that is read; null for none
};

} // namespace

bool ReadXspfEntries(DocumentText& aDocument, const EntrySink& aSink) {
    return XspfWalk(aDocument, aSink).Run();
}
