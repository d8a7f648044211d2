#include "ezPlaylists/detail/EntryReaders.h"
#include "ezPlaylists/detail/EntryText.h"
#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/Location.h"
#include "ezPlaylists/detail/MarkupScanner.h"

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/URI.h"

#include <algorithm>

namespace {

/// A location under a base. A URL as the base is one of a folder, whether it ends in "/" or not; any other
/// base is put before what is neither URL nor absolute path. A Windows path is under no base.
std::string Based(const LocationBasePtr& aBase, const std::string& aLocation) {
    if (aBase == nullptr || HasScheme(aLocation) || IsWindowsPath(aLocation)) {
        return aLocation;
    }
    const std::string& folder = aBase->Text();
    if (aBase->IsURL()) {
        char* url = ezURI_S_Combine(folder.c_str(), URLReference(ezCString(aLocation)).c_str());
        return std::string(ezCString::FromAllocatedString(url).View());
    }
    return ezPathName::MakeFilePath(ezCString(aLocation)).IsAbsolute() ? aLocation : folder + aLocation;
}

/// A base as that of a folder; null where it says nothing.
LocationBasePtr FolderOf(std::string_view aBase) {
    if (aBase.empty()) {
        return nullptr;
    }
    const bool fSlash = aBase.back() == '/' || aBase.back() == '\\';
    return std::make_shared<const LocationBase>(std::string(aBase) + (fSlash ? "" : "/"));
}

/// Walks over the pieces of a document.
class AsxWalk {
public:
    AsxWalk(DocumentText& aDocument, const EntrySink& aSink) : mDocument(aDocument), mSink(aSink) {}

    /// False when the rest is left out.
    bool Run() {
        MarkupScanner scanner(mDocument.Text());
        MarkupPiece piece;
        bool fGoOn = true;
        while (fGoOn && scanner.Next(piece)) {
            switch (piece.mKind) {
            case MarkupPiece::Kind::Text:
                TakeText(piece.mText);
                break;
            case MarkupPiece::Kind::StartTag:
                fGoOn = Start(piece);
                break;
            case MarkupPiece::Kind::EndTag:
                mTextOf.clear();
                fGoOn = piece.mName != "entry" || Finish();
                break;
            }
        }
        return !mfSpent;
    }

private:
    /// Text of an element of an entry; of several such elements the first counts that says something.
    struct Line {
        std::string mText;
        bool mfSaid = false;
    };

    /// False when no more is wanted.
    bool Start(const MarkupPiece& aTag) {
        mTextOf.clear();
        if (aTag.mName == "entry") {
            const bool fGoOn = Finish(); // one that nobody closed
            mfInEntry = true;
            mEntry = PlaylistParserEntry();
            mEntry.mStreamPos = mDocument.PositionOf(aTag.mOffset);
            mEntryBase = mBase;
            mLocation.clear();
            return fGoOn && (!aTag.mfEmptyElement || Finish());
        }
        if (aTag.mName == "entryref") {
            return ListOther(aTag);
        }
        if (aTag.mName == "base") {
            TakeBase(aTag);
        } else if (mfInEntry) {
            StartInEntry(aTag);
        }
        return true;
    }

    void StartInEntry(const MarkupPiece& aTag) {
        const std::string* value = aTag.FindAttribute("value");
        const std::string* location = aTag.FindAttribute("href");
        if (aTag.mName == "ref" && location != nullptr && mLocation.empty()) {
            mLocation = ezTrimmed(*location); // further ones are for a player to fall back on
        } else if (aTag.mName == "duration" && value != nullptr) {
            mEntry.mDuration = SecondsOfClock(*value);
        } else if (Line* line = LineOf(aTag.mName); line != nullptr && !line->mfSaid) {
            mTextOf = aTag.mfEmptyElement ? "" : aTag.mName;
        }
    }

    void TakeText(const std::string& aText) {
        Line* line = LineOf(mTextOf);
        if (line != nullptr && aText.size() <= kPlaylist_MaxText - line->mText.size()) {
            line->mText += aText;
            line->mfSaid = line->mfSaid || !ezTrimmed(aText).empty();
        }
    }

    Line* LineOf(std::string_view aName) {
        return aName == "title" ? &mTitle : aName == "author" ? &mAuthor : nullptr;
    }

    void TakeBase(const MarkupPiece& aTag) {
        const std::string* location = aTag.FindAttribute("href");
        if (location != nullptr && location->size() <= kPlaylist_MaxBase) {
            (mfInEntry ? mEntryBase : mBase) = FolderOf(ezTrimmed(*location));
        }
    }

    /// Another playlist is an entry that says so; whether it is followed is the host's to decide.
    bool ListOther(const MarkupPiece& aTag) {
        const bool fGoOn = Finish();
        const std::string* location = aTag.FindAttribute("href");
        if (!fGoOn || location == nullptr || ezTrimmed(*location).empty()) {
            return fGoOn;
        }
        PlaylistParserEntry entry;
        entry.mStreamPos = mDocument.PositionOf(aTag.mOffset);
        entry.mSpecificTags = "entryref";
        return Put(entry, mBase, std::string(ezTrimmed(*location)));
    }

    bool Finish() {
        const bool fEntry = mfInEntry && !mLocation.empty();
        mfInEntry = false;
        mEntry.mTitle = ezCString(OneLine(mTitle.mText));
        AddTag(mEntry, "author", mAuthor.mText);
        mTitle = Line();
        mAuthor = Line();
        if (!fEntry) {
            return true;
        }
        return Put(mEntry, mEntryBase, mLocation);
    }

    bool Put(PlaylistParserEntry& anEntry, const LocationBasePtr& aBase, const std::string& aLocation) {
        mfSpent = !mBudget.Take(aBase);
        if (mfSpent) {
            return false;
        }
        anEntry.mURI = ezCString(Based(aBase, aLocation));
        return mSink(anEntry);
    }

    DocumentText& mDocument;
    const EntrySink& mSink;
    PlaylistParserEntry mEntry;
    std::string mLocation;
    Line mTitle;
    Line mAuthor;
    LocationBasePtr mBase;      ///< of the whole document
    LocationBasePtr mEntryBase; ///< of the entry
    LocationBaseBudget mBudget;
    bool mfSpent = false;
    std::string mTextOf; ///< the element whose text is read; "" for none
    bool mfInEntry = false;
};

/// The old form: "Ref1=location" lines, in a section "[Reference]".
class AsxReferences {
public:
    AsxReferences(DocumentText& aDocument, const EntrySink& aSink) : mDocument(aDocument), mSink(aSink) {}

    void Run() {
        const std::string_view text = mDocument.Text();
        bool fGoOn = true;
        for (std::size_t start = 0; fGoOn && start < text.size();) {
            const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
            fGoOn = TakeLine(text.substr(start, end - start), start);
            start = end + 1;
        }
    }

private:
    bool TakeLine(std::string_view aLine, std::size_t anOffset) {
        const std::string_view line = ezTrimmed(aLine);
        if (line.size() > kPlaylist_MaxText) {
            return true;
        }
        if (!line.empty() && line.front() == '[') {
            mfReference = ezIsEqualNoCase(line, "[Reference]");
            return true;
        }
        const std::size_t equals = line.find('=');
        if (!mfReference || equals == std::string_view::npos) {
            return true;
        }
        const std::string_view key = ezTrimmed(line.substr(0, equals));
        const std::string_view location = ezTrimmed(line.substr(equals + 1));
        const bool fRef = ezStartsWithNoCase(key, "ref");
        const bool fNumber = key.size() > 3 && key.substr(3).find_first_not_of("0123456789") == key.npos;
        if (!fRef || !fNumber || location.empty()) {
            return true;
        }
        PlaylistParserEntry entry;
        entry.mStreamPos = mDocument.PositionOf(anOffset);
        entry.mURI = ezCString(location);
        return mSink(entry);
    }

    DocumentText& mDocument;
    const EntrySink& mSink;
    bool mfReference = false;
};

} // namespace

bool ReadAsxEntries(DocumentText& aDocument, const EntrySink& aSink) {
    const std::string_view start = ezTrimmed(aDocument.Text().substr(0, 64));
    if (!start.empty() && start.front() == '[') {
        AsxReferences(aDocument, aSink).Run();
        return true;
    }
    return AsxWalk(aDocument, aSink).Run();
}
