#pragma once

#include "fuzz/support/Check.h"

#include "ez/PlaylistParser.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

/// What every reader of playlists promises of every input.

/// Bounds what is asked of one input, so that a long one does not take for ever.
constexpr std::size_t kPlaylistAgreement_Asked = 64;

inline bool PlaylistAgreement_Collect(PlaylistParserEntry* anEntry, void* aUserData) {
    static_cast<std::vector<PlaylistParserEntry>*>(aUserData)->push_back(*anEntry);
    return false;
}

inline std::vector<PlaylistParserEntry> PlaylistAgreement_Walk(PlaylistParser& aReader, std::uint64_t aPos) {
    std::vector<PlaylistParserEntry> entries;
    if (aReader.SeekBytes(aPos)) {
        aReader.ParseAll(PlaylistAgreement_Collect, &entries);
    }
    return entries;
}

/// All but the index, which counts from where the walk began.
inline bool PlaylistAgreement_Same(const PlaylistParserEntry& aLeft, const PlaylistParserEntry& aRight) {
    return aLeft.mTitle == aRight.mTitle && aLeft.mURI == aRight.mURI &&
           aLeft.mDuration == aRight.mDuration && aLeft.mStreamPos == aRight.mStreamPos &&
           aLeft.mNextEntryStreamPos == aRight.mNextEntryStreamPos &&
           aLeft.mSpecificTags == aRight.mSpecificTags;
}

/// Fetches of an entry agree with the plain walk, and what is made of it keeps its form.
inline void PlaylistAgreement_CheckEntry(PlaylistParser& aReader,
                                         const std::vector<PlaylistParserEntry>& aPlain,
                                         std::size_t anIndex) {
    const PlaylistParserEntry& plain = aPlain[anIndex];
    const bool fLast = anIndex + 1 == aPlain.size();
    FuzzCheck(!plain.mURI.IsEmpty() && plain.mRelativeEntryIndex == anIndex);
    FuzzCheck(plain.mNextEntryStreamPos ==
              (fLast ? ezuint64(kezuint64_Max) : aPlain[anIndex + 1].mStreamPos));
    PlaylistParserEntry entry;
    FuzzCheck(aReader.FetchEntryAtIndex(static_cast<uint32>(anIndex), &entry));
    FuzzCheck(PlaylistAgreement_Same(entry, plain));
    FuzzCheck(aReader.FetchEntryAtPos(plain.mStreamPos, &entry));
    FuzzCheck(PlaylistAgreement_Same(entry, plain));
    FuzzCheck(aReader.FetchNextEntry(&entry) == !fLast);
    FuzzCheck(PlaylistAgreement_Same(entry, aPlain[fLast ? anIndex : anIndex + 1]));

    aReader.GetFullURLFor(plain.mURI);
    entry = plain;
    PlaylistParser::FixEntry(&entry);
    FuzzCheck(PlaylistParser::GetURLFor("http://h/", &entry).GetLength() == 9 + 55);
}

/// From any position: a walk is a part of the plain one, but for what is left of the entry it begins in.
inline void PlaylistAgreement_CheckStart(PlaylistParser& aReader,
                                         const std::vector<PlaylistParserEntry>& aPlain, std::uint64_t aPos) {
    const std::vector<PlaylistParserEntry> walk = PlaylistAgreement_Walk(aReader, aPos);
    PlaylistParserEntry entry;
    FuzzCheck(aReader.FetchEntryAtPos(aPos, &entry) == !walk.empty());
    FuzzCheck(walk.size() <= aPlain.size());
    for (std::size_t i = 1; i < walk.size(); ++i) {
        FuzzCheck(PlaylistAgreement_Same(walk[i], aPlain[aPlain.size() - walk.size() + i]));
    }
}

/// Reads an input with a reader of this class.
/// @param aURI  where the playlist lies
template <typename Reader>
void PlaylistAgreement_Check(const std::uint8_t* aData, std::size_t aSize, const char* aURI) {
    const FuzzHouse house;
    void* block = ezMalloc(std::max<std::size_t>(aSize, 1));
    if (aSize != 0) {
        std::memcpy(block, aData, aSize);
    }
    auto* stream = new ezMemoryStream(block, aSize, ezCString());
    const ezStreamOwner owner(stream);
    stream->SetURI(aURI);
    Reader reader(stream);
    const std::vector<PlaylistParserEntry> plain = PlaylistAgreement_Walk(reader, 0);
    const std::size_t step = 1 + plain.size() / kPlaylistAgreement_Asked;
    for (std::size_t i = 0; i < plain.size(); i += step) {
        FuzzCheck(plain[i].mStreamPos < aSize);
        PlaylistAgreement_CheckEntry(reader, plain, i);
    }
    const std::size_t stride = 1 + aSize / kPlaylistAgreement_Asked;
    for (std::size_t pos = 0; pos <= aSize + 1; pos += stride) {
        PlaylistAgreement_CheckStart(reader, plain, pos);
    }
    PlaylistAgreement_CheckStart(reader, plain, UINT64_MAX);
    PlaylistParserEntry entry;
    FuzzCheck(!reader.FetchEntryAtIndex(static_cast<uint32>(plain.size()), &entry));
}
