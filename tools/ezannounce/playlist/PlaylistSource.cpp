#include "playlist/PlaylistSource.h"

#include "host/Unreadable.h"
#include "playlist/Limits.h"
#include "playlist/PlaylistBeginning.h"

#include "ez/PlaylistParser.h"
#include "ez/PlaylistParserFactory.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlatform/text/URI.h"
#ifdef EZ_HAS_HTTP_STREAM
#include "ezBytes/WaitingRead.h"
#include "ezLiveStreams/HttpStream.h"
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

constexpr const char* kTooLarge = "larger than 64 MiB";
static_assert(kPlaylistSource_MaxSize == std::size_t{64} << 20, "the text says so");

bool IsURL(std::string_view aName) {
    const ezCString name = ezCString(aName.substr(0, std::strlen("https://"))).Lower();
    return name.StartsWith("http://") || name.StartsWith("https://");
}

/// All of what a function reads a block of, whose count is negative when it fails. False, with the reason,
/// then and when it is too large.
template <typename Read>
bool ReadToEnd(const Read& aRead, std::string& aBytes, std::string& aReason) {
    std::vector<char> block(kPlaylistSource_Block);
    int count = 0;
    while (aBytes.size() <= kPlaylistSource_MaxSize && (count = aRead(block.data(), block.size())) > 0) {
        aBytes.append(block.data(), static_cast<std::size_t>(count));
    }
    if (count < 0 || aBytes.size() > kPlaylistSource_MaxSize) {
        aReason = count < 0 ? std::strerror(errno) : kTooLarge;
        return false;
    }
    return true;
}

#ifdef EZ_HAS_HTTP_STREAM
std::string ExtensionOfURL(const ezCString& aURL) {
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(aURL.c_str()));
    const ezCString name = ezCString::FromAllocatedString(ezURI_GetLastPathSegment(uri.get()));
    return std::string(ezPathName::MakeFilePath(name).GetExtension().View());
}

/// All of a stream, waiting for what has not arrived.
ReadEnding ReadAll(ezStream& aStream, std::string& aBytes) {
    ezCondition arrived;
    std::vector<char> block(kPlaylistSource_Block);
    LimitedRead read;
    while (read.mEnding == ReadEnding::None) {
        read = WaitingReadWithin(aStream, arrived, block.data(), block.size(),
                                 kPlaylistSource_MaxSize - aBytes.size());
        aBytes.append(block.data(), read.mCount);
    }
    return read.mEnding;
}
#endif

} // namespace

PlaylistSource::PlaylistSource() = default;
PlaylistSource::~PlaylistSource() = default;

bool PlaylistSource::Open(const std::string& aName, std::string& aReason) {
    if (aName == "-") {
        return OpenInput(aReason);
    }
    mfFromNetwork = IsURL(aName);
    return mfFromNetwork ? OpenURL(aName, aReason) : OpenFile(aName, aReason);
}

bool PlaylistSource::OpenFile(const std::string& aName, std::string& aReason) {
    auto file = std::make_unique<ezFile>();
    if (!file->Open(ezCString(aName), ezFileOpenMode_Read, 0)) {
        aReason = WhyUnreadable(aName);
        return false;
    }
    mExtensions.emplace_back(ezPathName::MakeFilePath(ezCString(aName)).GetExtension().View());
    if (file->LengthAtOpen() > 0) {
        TakeStream(ezFileGetStream(file.release(), "", ezCString(aName)));
        return true;
    }
    // A file of the kernel's may state no size and have bytes, or an error, all the same.
    std::string bytes;
    const auto read = [&](char* aBlock, std::size_t aSize) { return file->Read(aBlock, aSize); };
    if (!ReadToEnd(read, bytes, aReason)) {
        return false;
    }
    TakeBytes(bytes, aName);
    return true;
}

#ifdef EZ_HAS_HTTP_STREAM
bool PlaylistSource::OpenURL(const std::string& aName, std::string& aReason) {
    ezHttpStream* http = new ezHttpStream{ezCString(aName)};
    const ezStreamOwner owner(http);
    std::string bytes;
    const ReadEnding ending = ReadAll(*http, bytes);
    if (ending != ReadEnding::End) {
        aReason = ending == ReadEnding::Limit ? kTooLarge : http->GetErrorText();
        return false;
    }
    ezMediaInfo info;
    http->CopyInfo(&info);
    mMimeType = info.GetCString(kezInfo_MimeType, "").View();
    const ezCString place = http->GetFinalURI();
    for (const std::string& extension : {ExtensionOfURL(place), ExtensionOfURL(http->GetURI())}) {
        if (!extension.empty()) {
            mExtensions.push_back(extension);
        }
    }
    if (mExtensions.empty()) {
        mExtensions.push_back(ExtensionOfPlaylist(bytes));
    }
    TakeBytes(bytes, std::string(place.View()));
    return true;
}
#else
bool PlaylistSource::OpenURL(const std::string& /*aName*/, std::string& aReason) {
    aReason = "built without HTTP";
    return false;
}
#endif

bool PlaylistSource::OpenInput(std::string& aReason) {
    std::string bytes;
    const auto read = [](char* aBlock, std::size_t aSize) {
        const std::size_t count = std::fread(aBlock, 1, aSize, stdin);
        return count == 0 && std::ferror(stdin) != 0 ? -1 : static_cast<int>(count);
    };
    if (!ReadToEnd(read, bytes, aReason)) {
        return false;
    }
    mExtensions.push_back(ExtensionOfPlaylist(bytes));
    TakeBytes(bytes, "");
    return true;
}

void PlaylistSource::TakeBytes(const std::string& aBytes, const std::string& aName) {
    void* block = ezMalloc(std::max<std::size_t>(aBytes.size(), 1));
    const std::size_t size = block != nullptr ? aBytes.size() : 0;
    if (size != 0) {
        std::memcpy(block, aBytes.data(), size);
    }
    auto* stream = new ezMemoryStream(block, size, ezCString(mMimeType));
    stream->SetURI(ezCString(aName));
    TakeStream(stream);
}

void PlaylistSource::TakeStream(ezStream* aStream) {
    mStream.reset(new PlaylistStream(ezStreamOwner(aStream)));
}

PlaylistParser* PlaylistSource::NewReader(const PlaylistParserFactory& aFactory) {
    // Servers send playlists under all sorts of types, so one that nobody reads does not count.
    const ezCString mimeType = ezCString(mMimeType).Lower();
    const bool fKnownType = aFactory.IsSupportedPlaylist(mimeType, "");
    const auto found =
        std::find_if(mExtensions.begin(), mExtensions.end(), [&](const std::string& anExtension) {
            return aFactory.IsSupportedPlaylist("", ezCString(anExtension));
        });
    const ezCString extension = found != mExtensions.end() ? ezCString(*found) : ezCString();
    mReader.reset(aFactory.NewPlaylistParser(mStream.get(), fKnownType ? mimeType : ezCString(), extension));
    return mReader.get();
}
