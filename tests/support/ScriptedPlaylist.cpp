#include "support/ScriptedPlaylist.h"

#include "support/Str.h"

void ScriptedPlaylist::Add(const std::string& aTitle, const std::string& aURI, uint32 aDuration,
                           const std::string& aTags, std::uint64_t aLength) {
    if (!mEntries.empty()) {
        mEntries.back().mNextEntryStreamPos = mLength;
    }
    PlaylistParserEntry entry;
    entry.mTitle = Bytes(aTitle);
    entry.mURI = Bytes(aURI);
    entry.mDuration = aDuration;
    entry.mSpecificTags = Bytes(aTags);
    entry.mStreamPos = mLength;
    mEntries.push_back(entry);
    mLength += aLength;
}

void ScriptedPlaylist::ParseAll(PlaylistParserCallback aCallback, void* aUserData) {
    mCalls.emplace_back("walk");
    if (mfReportsNull) {
        aCallback(nullptr, aUserData);
    }
    for (const PlaylistParserEntry& entry : mEntries) {
        if (entry.mStreamPos < mPosition) {
            continue;
        }
        PlaylistParserEntry reported = entry;
        reported.mRelativeEntryIndex = mRelativeEntryIndex++;
        mCalls.push_back("entry " + std::to_string(entry.mStreamPos.ToUInt64()));
        if (aCallback(&reported, aUserData) && !mfGoesOn) {
            return;
        }
    }
}

bool ScriptedPlaylist::SeekBytes(const ezuint64& aPos) {
    mCalls.push_back("seek " + std::to_string(aPos.ToUInt64()));
    if (mfSeekFails || aPos > mLength) {
        return false;
    }
    mPosition = aPos;
    return PlaylistParser::SeekBytes(aPos);
}
