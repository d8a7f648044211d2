#include "ez/PlaylistParser.h"

#include "ez/PlaylistParserFactory.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/text/NUL.h"
#include "ezPlatform/text/URI.h"

#include <cstring>

namespace {

/// Title, dot and extension, brought up to this by zeros.
constexpr std::size_t kNameLength = 30;
constexpr std::size_t kPositionLength = 20;
/// After the prefix: position, "/0", zeros and name, "/", line end.
constexpr std::size_t kLineLength = kPositionLength + 2 + kNameLength + 1 + 2;
static_assert(kLineLength == 55, "servers and clients count on it");
constexpr std::size_t kTooLongExtension = 7;

/// Where the first entry of a walk goes.
struct FirstEntry {
    PlaylistParserEntry* mEntry;
    bool mfTaken;
};

/// All but mStreamPos, which is the position that was asked for.
bool sTakeFirstEntry(PlaylistParserEntry* anEntry, void* aUserData) {
    FirstEntry* first = static_cast<FirstEntry*>(aUserData);
    if (anEntry != nullptr && !first->mfTaken) { // a reader may forget to stop
        first->mfTaken = true;
        first->mEntry->mDuration = anEntry->mDuration;
        first->mEntry->mTitle = anEntry->mTitle;
        first->mEntry->mURI = anEntry->mURI;
        first->mEntry->mSpecificTags = anEntry->mSpecificTags;
        first->mEntry->mRelativeEntryIndex = anEntry->mRelativeEntryIndex;
        first->mEntry->mNextEntryStreamPos = anEntry->mNextEntryStreamPos;
    }
    return true;
}

bool sFindIndex(PlaylistParserEntry* anEntry, void* aUserData) {
    PlaylistParserAtEntry* wanted = static_cast<PlaylistParserAtEntry*>(aUserData);
    if (wanted->mPos != kezuint64_Max) { // a reader may forget to stop
        return true;
    }
    if (anEntry == nullptr || anEntry->mRelativeEntryIndex != wanted->mEntryIndex) {
        return false;
    }
    wanted->mPos = anEntry->mStreamPos;
    return true;
}

/// The title that a URL's path gives: false when the text is not a URL with a path.
bool URLTitle(const ezCString& aText, ezCString* aTitle) {
    if (ezHasNUL(aText)) {
        return false;
    }
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(aText.c_str()));
    if (ezURI_GetScheme(uri.get()) == nullptr || ezURI_GetPath(uri.get()) == nullptr) {
        return false;
    }
    *aTitle = ezCString::FromAllocatedString(ezURI_GetLastPathSegment(uri.get())).BeforeLast('.');
    return true;
}

/// The location as a file of this system, relative to a folder.
ezCString FileURL(const ezPathName& aFolder, const ezCString& anEntryURI) {
    ezPathName path = ezPathName::MakeFilePath(anEntryURI);
    if (!path.IsAbsolute()) { // a URL is not, and so becomes a file beside the playlist
        path = ezPathName::MakeCombinedFilePath(aFolder, anEntryURI);
    }
    const ezOwned<ezURI_Delete> uri(ezURI_New());
    ezURI_SetScheme(uri.get(), "file");
    if (ezHasNUL(path.GetFullPath()) || !ezURI_SetFilePath(uri.get(), path.GetFullPath().c_str())) {
        return ezCString();
    }
    return ezCString::FromAllocatedString(ezURI_GetStr(uri.get()));
}

} // namespace

PlaylistParser::PlaylistParser() = default;

PlaylistParser::PlaylistParser(const char* aParentURL) : mParentURL(ezStrdup(aParentURL)) {}

PlaylistParser::~PlaylistParser() {
    ezFree(mParentURL);
}

bool PlaylistParser::FetchEntryAtPos(const ezuint64& aPos, PlaylistParserEntry* anEntry) {
    const ezuint64 pos = aPos; // it may be a field of the entry, which is about to change
    if (anEntry == nullptr || !SeekBytes(pos)) {
        return false;
    }
    anEntry->mURI = "";
    anEntry->mTitle = "";
    anEntry->mDuration = 0;
    anEntry->mStreamPos = pos;
    anEntry->mNextEntryStreamPos = kezuint64_Max;
    FirstEntry first = {anEntry, false};
    ParseAll(sTakeFirstEntry, &first);
    return !anEntry->mURI.IsEmpty();
}

bool PlaylistParser::FetchEntryAtIndex(uint32 anEntryIndex, PlaylistParserEntry* anEntry) {
    PlaylistParserAtEntry wanted;
    wanted.mEntryIndex = anEntryIndex;
    if (anEntry != nullptr && SeekBytes(0)) {
        ParseAll(sFindIndex, &wanted);
    }
    return wanted.mPos != kezuint64_Max && FetchEntryAtPos(wanted.mPos, anEntry);
}

bool PlaylistParser::FetchNextEntry(PlaylistParserEntry* anEntry) {
    if (!ezAssert(anEntry != nullptr, "anEntry != NULL", "PlaylistParser")) {
        return false;
    }
    const ezuint64 next = anEntry->mNextEntryStreamPos;
    return next != kezuint64_Max && FetchEntryAtPos(next, anEntry);
}

ezCString PlaylistParser::GetFullURLFor(const ezCString& anEntryURI) {
    if (anEntryURI.IsEmpty() || ezHasNUL(anEntryURI)) {
        return ezCString();
    }
    if (mParentURL != nullptr) {
        return ezCString::FromAllocatedString(ezURI_S_Combine(mParentURL, anEntryURI.c_str()));
    }
    return FileURL(mFilePath.GetParentPath(), anEntryURI);
}

bool PlaylistParser::SeekBytes(const ezuint64& /*aPos*/) {
    mRelativeEntryIndex = 0;
    return true;
}

ezCString PlaylistParser::GetURLFor(const ezCString& anURLPrefix, const PlaylistParserEntry* anEntry) {
    if (anEntry == nullptr) {
        return ezCString();
    }
    ezCString extension = "." + anEntry->mURI.AfterLast('.');
    if (extension.GetLength() > kTooLongExtension) {
        extension = "";
    }
    const ezCString name = anEntry->mTitle.Left(kNameLength - extension.GetLength()) + extension;
    const ezCString filler = ezCString("/0").Pad(2 + kNameLength - name.GetLength(), '0', true);
    const ezCString position = anEntry->mStreamPos.ToCString().Pad(kPositionLength, '0', false);
    return anURLPrefix + position + filler + "/" + name + "\r\n";
}

ezCString PlaylistParser::GetURLPrefix(uint32 anIPAddress, std::uint16_t aPort, const ezCString& anID,
                                       uint32* aPlaylistLineLength) {
    unsigned char bytes[sizeof anIPAddress];
    std::memcpy(bytes, &anIPAddress, sizeof bytes);
    ezCString prefix =
        ezCString::Format("http://%u.%u.%u.%u:%u/%s/", unsigned{bytes[0]}, unsigned{bytes[1]},
                          unsigned{bytes[2]}, unsigned{bytes[3]}, unsigned{aPort}, anID.c_str());
    if (aPlaylistLineLength != nullptr) {
        *aPlaylistLineLength = static_cast<uint32>(prefix.GetLength() + kLineLength);
    }
    return prefix;
}

void PlaylistParser::FixEntry(PlaylistParserEntry* anEntry) {
    if (anEntry == nullptr || !anEntry->mTitle.IsEmpty() || URLTitle(anEntry->mURI, &anEntry->mTitle)) {
        return;
    }
    if (anEntry->mURI.View().find_first_of("/\\") == std::string_view::npos) {
        anEntry->mTitle = anEntry->mURI.BeforeLast('.');
    } else {
        anEntry->mTitle = ezPathName::MakeFilePath(anEntry->mURI).GetFileName();
    }
}

bool PlaylistParser::RegisterBuilder(PlaylistParserFactory* aFactory, PlaylistParserBuilderFunc aBuilderFunc,
                                     const ezCString& aMimeType, const ezCString& anExtensionList) {
    return aFactory != nullptr && aFactory->Register(aBuilderFunc, aMimeType, anExtensionList);
}
