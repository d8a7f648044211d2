#include "ezPlaylists/detail/IndexedPlaylistParser.h"

#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/Location.h"
#include "ezPlaylists/detail/PlaylistPlace.h"

#include <algorithm>
#include <utility>

IndexedPlaylistParser::IndexedPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace)
    : PlaylistParser(aPlace.GetParentURL()), mReader(aStream) {
    mFilePath = aPlace.GetFilePath();
}

IndexedPlaylistParser::~IndexedPlaylistParser() = default;

bool IndexedPlaylistParser::AddEntry(std::uint64_t aPos, std::string_view aURI, std::string_view aTitle,
                                     uint32 aDuration, std::string_view aTags) {
    if (aURI.empty()) {
        return true;
    }
    const std::size_t size = aURI.size() + aTitle.size() + aTags.size();
    if (mRecords.Size() >= kPlaylist_MaxIndexed || size > kPlaylist_MaxIndexedText - mTexts.Size()) {
        Cut();
        return false;
    }
    const Record record = {aPos,
                           mTexts.Size(),
                           static_cast<uint32>(aURI.size()),
                           static_cast<uint32>(aTitle.size()),
                           static_cast<uint32>(aTags.size()),
                           aDuration};
    mfRefused =
        !mTexts.Append(aURI) || !mTexts.Append(aTitle) || !mTexts.Append(aTags) || !mRecords.Append(record);
    return !mfRefused;
}

bool IndexedPlaylistParser::EnsureIndex() {
    if (mfIndexed || !mfReadDue) {
        return false;
    }
    ReadIndex();
    return true;
}

void IndexedPlaylistParser::EnsureIndexAgain() {
    // A stream that fails for good must not be read for each of a thousand requests.
    if (!mfIndexed && mInVain++ >= mPatience) {
        mInVain = 0;
        mPatience = 2 * mPatience + 1;
        ReadIndex();
    }
}

void IndexedPlaylistParser::ReadIndex() {
    mfReadDue = false;
    if (!mReader.Seek(0)) {
        return;
    }
    GrowingBlock<Record> records = std::exchange(mRecords, GrowingBlock<Record>(kPlaylist_MaxIndexed));
    GrowingBlock<std::size_t> byPosition = std::exchange(mByPosition, GrowingBlock<std::size_t>());
    GrowingText texts = std::exchange(mTexts, GrowingText(kPlaylist_MaxIndexedText));
    mfRefused = false;
    mfCut = false;
    const bool fRead = ReadEntries(mReader) && !mfRefused;
    const bool fSorted = SortByPosition();
    mfIndexed = fRead && fSorted && !mReader.HasFailed();
    if (!mfIndexed && (!fSorted || mRecords.Size() <= records.Size())) {
        mRecords = std::move(records);
        mByPosition = std::move(byPosition);
        mTexts = std::move(texts);
        return;
    }
    mPatience = 0;
}

bool IndexedPlaylistParser::SortByPosition() {
    const auto isBefore = [](const Record& aLeft, const Record& aRight) { return aLeft.mPos < aRight.mPos; };
    if (std::is_sorted(mRecords.begin(), mRecords.end(), isBefore)) {
        return true;
    }
    if (!mByPosition.Reserve(mRecords.Size())) {
        return false;
    }
    for (std::size_t i = 0; i < mRecords.Size(); ++i) {
        mByPosition.Append(i);
    }
    std::sort(mByPosition.begin(), mByPosition.end(), [this](std::size_t aLeft, std::size_t aRight) {
        return mRecords[aLeft].mPos < mRecords[aRight].mPos;
    });
    return true;
}

std::size_t IndexedPlaylistParser::IndexFrom(std::uint64_t aPos) const {
    if (mByPosition.Size() == 0) {
        const auto found = std::lower_bound(
            mRecords.begin(), mRecords.end(), aPos,
            [](const Record& aRecord, std::uint64_t aWanted) { return aRecord.mPos < aWanted; });
        return static_cast<std::size_t>(found - mRecords.begin());
    }
    if (aPos < mRecords[mByPosition[0]].mPos) {
        return 0;
    }
    const auto found = std::lower_bound(
        mByPosition.begin(), mByPosition.end(), aPos,
        [this](std::size_t anIndex, std::uint64_t aWanted) { return mRecords[anIndex].mPos < aWanted; });
    return found != mByPosition.end() ? *found : mRecords.Size();
}

void IndexedPlaylistParser::Fill(std::size_t anIndex, PlaylistParserEntry* anEntry) const {
    const Record& record = mRecords[anIndex];
    const std::string_view texts = mTexts.View();
    const std::size_t title = record.mText + record.mURISize;
    anEntry->mURI = ezCString(texts.substr(record.mText, record.mURISize));
    anEntry->mTitle = ezCString(texts.substr(title, record.mTitleSize));
    anEntry->mSpecificTags = ezCString(texts.substr(title + record.mTitleSize, record.mTagsSize));
    anEntry->mDuration = record.mDuration;
    anEntry->mStreamPos = record.mPos;
    anEntry->mNextEntryStreamPos = anIndex + 1 < mRecords.Size() ? mRecords[anIndex + 1].mPos : kezuint64_Max;
}

void IndexedPlaylistParser::ParseAll(PlaylistParserCallback aCallback, void* aUserData) {
    const bool fRead = EnsureIndex();
    std::size_t first = IndexFrom(mWalkPos);
    if (!fRead && first == mRecords.Size()) {
        EnsureIndexAgain();
        first = IndexFrom(mWalkPos);
    }
    const unsigned move = ++mMoves;
    bool fStop = false;
    for (std::size_t i = first; i < mRecords.Size() && !fStop; ++i) {
        PlaylistParserEntry entry;
        Fill(i, &entry);
        entry.mRelativeEntryIndex = mRelativeEntryIndex++;
        mWalkPos = entry.mNextEntryStreamPos.ToUInt64();
        fStop = aCallback(&entry, aUserData) || move != mMoves;
    }
}

bool IndexedPlaylistParser::FetchEntryAtIndex(uint32 anEntryIndex, PlaylistParserEntry* anEntry) {
    if (!EnsureIndex() && anEntryIndex >= mRecords.Size()) {
        EnsureIndexAgain();
    }
    if (anEntryIndex >= mRecords.Size()) {
        return false;
    }
    const bool fIndexed = std::exchange(mfIndexed, true); // one look at the stream is enough for one entry
    const bool fFetched = FetchEntryAtPos(mRecords[anEntryIndex].mPos, anEntry);
    mfIndexed = fIndexed;
    return fFetched;
}

bool IndexedPlaylistParser::SeekBytes(const ezuint64& aPos) {
    ++mMoves;
    mWalkPos = aPos.ToUInt64();
    mfReadDue = mfReadDue || mWalkPos == 0;
    return PlaylistParser::SeekBytes(aPos);
}

ezCString IndexedPlaylistParser::GetFullURLFor(const ezCString& anEntryURI) {
    return PlaylistParser::GetFullURLFor(mParentURL != nullptr ? URLReference(anEntryURI) : anEntryURI);
}
