#include "ezPlatform/text/URI.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/text/CString.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

/// A text taken apart, still escaped (RFC 3986 appendix B).
template <typename Text>
struct Parts {
    std::optional<Text> mScheme;
    std::optional<Text> mAuthority;
    Text mPath;
    std::optional<Text> mQuery;
    std::optional<Text> mFragment;
};
using BorrowedParts = Parts<std::string_view>;
using OwnParts = Parts<std::string>;

constexpr const char* kDoesNotStandInAURI = "\"<>\\^`{|}";
constexpr const char* kDoesNotStandInAPath = "#%?[]";
/// What would part an authority, or end it.
constexpr const char* kDoesNotStandInAHost = "/#%?@:";

bool IsOneOf(const char* aSet, char aCharacter) {
    return std::string_view(aSet).find(aCharacter) != std::string_view::npos;
}

bool IsLetter(char aCharacter) {
    const char lower = ezLower(aCharacter);
    return lower >= 'a' && lower <= 'z';
}

bool IsDigit(char aCharacter) {
    return aCharacter >= '0' && aCharacter <= '9';
}

bool IsSlash(char aCharacter) {
    return aCharacter == '/' || aCharacter == '\\';
}

/// 0 to 15; -1 for any other byte.
int HexDigit(char aCharacter) {
    if (IsDigit(aCharacter)) {
        return aCharacter - '0';
    }
    const char lower = ezLower(aCharacter);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Appends a text, escaped where a byte stands in no URI or in aSet.
void AppendEscaped(std::string& aTarget, std::string_view aText, const char* aSet) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    for (const char character : aText) {
        const unsigned byte = static_cast<unsigned char>(character);
        if (byte <= 0x20 || byte >= 0x7F || IsOneOf(kDoesNotStandInAURI, character) ||
            IsOneOf(aSet, character)) {
            aTarget += '%';
            aTarget += kDigits[byte >> 4];
            aTarget += kDigits[byte & 0xF];
        } else {
            aTarget += character;
        }
    }
}

/// Decoded once. Escapes of NUL and of the bytes in aKept stay as they are, and so do broken ones.
std::string Decoded(std::string_view aText, const char* aKept = "") {
    std::string decoded;
    decoded.reserve(aText.size());
    for (std::size_t i = 0; i < aText.size(); ++i) {
        const bool fEscape = aText[i] == '%' && aText.size() - i > 2;
        const int high = fEscape ? HexDigit(aText[i + 1]) : -1;
        const int low = fEscape ? HexDigit(aText[i + 2]) : -1;
        const char character = high >= 0 && low >= 0 ? static_cast<char>(high << 4 | low) : '\0';
        if (character == '\0' || IsOneOf(aKept, character)) {
            decoded += aText[i];
        } else {
            decoded += character;
            i += 2;
        }
    }
    return decoded;
}

/// How a single letter before a colon is read.
enum class OneLetter { kDrive, kScheme };

bool IsScheme(std::string_view aText, OneLetter aRule) {
    const std::size_t fewest = aRule == OneLetter::kScheme ? 1 : 2;
    if (aText.size() < fewest || !IsLetter(aText.front())) {
        return false;
    }
    for (const char character : aText) {
        if (!IsLetter(character) && !IsDigit(character) && !IsOneOf("+-.", character)) {
            return false;
        }
    }
    return true;
}

bool HasBlank(std::string_view aText) {
    for (const char character : aText) {
        if (static_cast<unsigned char>(character) <= 0x20) {
            return true;
        }
    }
    return false;
}

std::optional<std::string_view> TakeScheme(std::string_view& aText, OneLetter aRule) {
    const std::size_t colon = aText.find_first_of(":/?#");
    if (colon == std::string_view::npos || aText[colon] != ':' || !IsScheme(aText.substr(0, colon), aRule)) {
        return std::nullopt;
    }
    const std::string_view after = aText.substr(colon + 1);
    // No URI holds a raw blank, but URLs are met that do; without a slash it is rather the name of a song.
    if (HasBlank(after) && !IsSlash(after.front())) {
        return std::nullopt;
    }
    const std::string_view scheme = aText.substr(0, colon);
    aText = after;
    return scheme;
}

/// Takes what follows the first aMark, and the mark, off the end.
std::optional<std::string_view> TakeAfter(std::string_view& aText, char aMark) {
    const std::size_t mark = aText.find(aMark);
    if (mark == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view after = aText.substr(mark + 1);
    aText = aText.substr(0, mark);
    return after;
}

BorrowedParts Split(std::string_view aText, OneLetter aRule) {
    BorrowedParts parts;
    parts.mScheme = TakeScheme(aText, aRule);
    parts.mFragment = TakeAfter(aText, '#');
    parts.mQuery = TakeAfter(aText, '?');
    if (aText.substr(0, 2) == "//") {
        aText.remove_prefix(2);
        const std::size_t length = aText.find('/');
        parts.mAuthority = aText.substr(0, length);
        aText.remove_prefix(parts.mAuthority->size());
    }
    parts.mPath = aText;
    return parts;
}

/// What keeps a path from being read as an authority or a scheme.
template <typename Text>
const char* PathGuard(const Parts<Text>& aParts, OneLetter aRule) {
    const std::string_view path = aParts.mPath;
    if (!aParts.mAuthority && path.substr(0, 2) == "//") {
        return "/.";
    }
    const std::size_t colon = path.find_first_of(":/");
    const bool fLikeAScheme =
        colon != std::string_view::npos && path[colon] == ':' && IsScheme(path.substr(0, colon), aRule);
    return !aParts.mScheme && !aParts.mAuthority && fLikeAScheme ? "./" : "";
}

/// The parts put together (RFC 3986 section 5.3).
template <typename Text>
std::string Joined(const Parts<Text>& aParts, OneLetter aRule) {
    std::string text;
    if (aParts.mScheme) {
        text += *aParts.mScheme;
        text += ':';
    }
    if (aParts.mAuthority) {
        text += "//";
        AppendEscaped(text, *aParts.mAuthority, "");
    }
    text += PathGuard(aParts, aRule);
    AppendEscaped(text, aParts.mPath, "");
    if (aParts.mQuery) {
        text += '?';
        AppendEscaped(text, *aParts.mQuery, "");
    }
    if (aParts.mFragment) {
        text += '#';
        AppendEscaped(text, *aParts.mFragment, "");
    }
    return text;
}

void RemoveLastSegment(std::string& aPath) {
    const std::size_t slash = aPath.rfind('/');
    aPath.erase(slash == std::string::npos ? 0 : slash);
}

/// RFC 3986 section 5.2.4. Linear: what is removed from the result is never looked at again.
std::string WithoutDotSegments(std::string_view aPath) {
    std::string path;
    path.reserve(aPath.size());
    while (!aPath.empty()) {
        if (aPath.substr(0, 3) == "../") {
            aPath.remove_prefix(3);
        } else if (aPath.substr(0, 2) == "./" || aPath.substr(0, 3) == "/./") {
            aPath.remove_prefix(2);
        } else if (aPath.substr(0, 4) == "/../") {
            aPath.remove_prefix(3);
            RemoveLastSegment(path);
        } else if (aPath == "/.") {
            aPath = "/";
        } else if (aPath == "/..") {
            aPath = "/";
            RemoveLastSegment(path);
        } else if (aPath == "." || aPath == "..") {
            aPath = {};
        } else {
            const std::string_view segment = aPath.substr(0, aPath.find('/', 1));
            path += segment;
            aPath.remove_prefix(segment.size());
        }
    }
    return path;
}

/// RFC 3986 section 5.2.3.
std::string Merged(const BorrowedParts& aBase, std::string_view aPath) {
    std::string path;
    if (aBase.mAuthority && aBase.mPath.empty()) {
        path = "/";
    } else {
        path = aBase.mPath.substr(0, aBase.mPath.rfind('/') + 1);
    }
    path += aPath;
    return path;
}

OwnParts Owned(const BorrowedParts& aParts) {
    return {std::optional<std::string>(aParts.mScheme), std::optional<std::string>(aParts.mAuthority),
            std::string(aParts.mPath), std::optional<std::string>(aParts.mQuery),
            std::optional<std::string>(aParts.mFragment)};
}

/// RFC 3986 section 5.2.2.
OwnParts Resolved(const BorrowedParts& aBase, const BorrowedParts& aReference) {
    OwnParts target = Owned(aReference);
    const bool fOnItsOwn = aReference.mScheme || aReference.mAuthority;
    if (!fOnItsOwn && aReference.mPath.empty()) {
        target.mPath = aBase.mPath;
        if (!aReference.mQuery) {
            target.mQuery = aBase.mQuery;
        }
    } else if (fOnItsOwn || aReference.mPath.front() == '/') {
        target.mPath = WithoutDotSegments(aReference.mPath);
    } else {
        target.mPath = WithoutDotSegments(Merged(aBase, aReference.mPath));
    }
    if (!aReference.mScheme) {
        target.mScheme = aBase.mScheme;
        if (!aReference.mAuthority) {
            target.mAuthority = aBase.mAuthority;
        }
    }
    return target;
}

std::string_view View(const char* aText) {
    return aText != nullptr ? aText : "";
}

char* Given(const std::string& aText) {
    return ezStrdup(aText.c_str());
}

const char* Borrowed(const std::optional<std::string>& aText) {
    return aText ? aText->c_str() : nullptr;
}

bool BeginsWithDrive(std::string_view aPath) {
    return aPath.size() >= 3 && IsLetter(aPath[0]) && aPath[1] == ':' && IsSlash(aPath[2]);
}

std::string WithSlashes(std::string_view aPath) {
    return std::string(ezCString(aPath).Replace("\\", "/", true).View());
}

/// Authority and path of a local file, escaped; none when the working folder cannot be told.
std::optional<OwnParts> FileParts(std::string_view aPath) {
    std::string host;
    std::string root; ///< what ".." does not lead above
    std::string path;
    if (BeginsWithDrive(aPath)) {
        root = "/" + std::string(aPath.substr(0, 2));
        path = WithSlashes(aPath.substr(2));
    } else if (aPath.size() > 2 && aPath.substr(0, 2) == "\\\\" && !IsSlash(aPath[2])) {
        path = WithSlashes(aPath.substr(2));
        host = path.substr(0, path.find('/'));
        path.erase(0, host.size());
    } else if (aPath[0] == '\\') {
        path = WithSlashes(aPath);
    } else if (aPath[0] == '/') {
        path = aPath;
    } else {
        std::error_code error;
        path = std::filesystem::current_path(error).string();
        if (error) {
            return std::nullopt;
        }
        path += path.back() == '/' ? "" : "/";
        path += aPath;
    }
    OwnParts parts;
    parts.mAuthority.emplace();
    AppendEscaped(*parts.mAuthority, host, kDoesNotStandInAHost);
    AppendEscaped(parts.mPath, root + WithoutDotSegments(path), kDoesNotStandInAPath);
    return parts;
}

} // namespace

struct ezURI {
    explicit ezURI(OwnParts aParts) : mParts(std::move(aParts)) { Decode(); }

    void Decode();
    void DecodeAuthority();

    OwnParts mParts; ///< escaped
    std::optional<std::string> mUserInfo;
    std::optional<std::string> mHostName;
    uint32 mPort = 0;
    std::optional<std::string> mPath;
    std::optional<std::string> mQuery;
    std::optional<std::string> mFragment;
};

void ezURI::DecodeAuthority() {
    mUserInfo.reset();
    mHostName.reset();
    mPort = 0;
    if (!mParts.mAuthority) {
        return;
    }
    std::string_view host = *mParts.mAuthority;
    const std::size_t at = host.rfind('@');
    if (at != std::string_view::npos) {
        mUserInfo = Decoded(host.substr(0, at));
        host.remove_prefix(at + 1);
    }
    // The colons of an IPv6 address stand inside its brackets.
    const std::size_t colon = host.find(':', host.substr(0, 1) == "[" ? host.find(']') : 0);
    if (colon != std::string_view::npos) {
        uint32 port = 0;
        mPort = ezReadDecimal32(host.substr(colon + 1), &port) && port <= 0xFFFF ? port : 0;
        host = host.substr(0, colon);
    }
    mHostName = Decoded(host);
}

void ezURI::Decode() {
    DecodeAuthority();
    const auto decode = [](const std::optional<std::string>& aText) {
        return aText ? std::optional<std::string>(Decoded(*aText)) : std::nullopt;
    };
    mPath.reset();
    if (!mParts.mPath.empty()) {
        mPath = Decoded(mParts.mPath, "/");
    }
    mQuery = decode(mParts.mQuery);
    mFragment = decode(mParts.mFragment);
}

ezURI* ezURI_New() {
    return new ezURI(OwnParts());
}

ezURI* ezURI_NewFromEscapedStr(const char* aText) {
    return new ezURI(Owned(Split(View(aText), OneLetter::kDrive)));
}

void ezURI_Delete(ezURI* aURI) {
    delete aURI;
}

void ezURI_SetScheme(ezURI* aURI, const char* aScheme) {
    if (aURI == nullptr) {
        return;
    }
    aURI->mParts.mScheme.reset();
    if (IsScheme(View(aScheme), OneLetter::kDrive)) {
        aURI->mParts.mScheme = aScheme;
    }
}

bool ezURI_SetFilePath(ezURI* aURI, const char* aPath) {
    if (aURI == nullptr || View(aPath).empty()) {
        return false;
    }
    std::optional<OwnParts> parts = FileParts(aPath);
    if (!parts) {
        return false;
    }
    aURI->mParts.mAuthority = std::move(parts->mAuthority);
    aURI->mParts.mPath = std::move(parts->mPath);
    aURI->Decode();
    return true;
}

char* ezURI_GetStr(const ezURI* aURI) {
    return aURI != nullptr ? Given(Joined(aURI->mParts, OneLetter::kDrive)) : nullptr;
}

const char* ezURI_GetScheme(const ezURI* aURI) {
    return aURI != nullptr ? Borrowed(aURI->mParts.mScheme) : nullptr;
}

const char* ezURI_GetUserInfo(const ezURI* aURI) {
    return aURI != nullptr ? Borrowed(aURI->mUserInfo) : nullptr;
}

const char* ezURI_GetHostName(const ezURI* aURI) {
    return aURI != nullptr ? Borrowed(aURI->mHostName) : nullptr;
}

uint32 ezURI_GetPort(const ezURI* aURI) {
    return aURI != nullptr ? aURI->mPort : 0;
}

const char* ezURI_GetPath(const ezURI* aURI) {
    return aURI != nullptr ? Borrowed(aURI->mPath) : nullptr;
}

const char* ezURI_GetQuery(const ezURI* aURI) {
    return aURI != nullptr ? Borrowed(aURI->mQuery) : nullptr;
}

const char* ezURI_GetFragment(const ezURI* aURI) {
    return aURI != nullptr ? Borrowed(aURI->mFragment) : nullptr;
}

char* ezURI_GetLastPathSegment(const ezURI* aURI) {
    if (aURI == nullptr || aURI->mParts.mPath.empty()) {
        return nullptr;
    }
    const std::string_view path = aURI->mParts.mPath;
    return Given(Decoded(path.substr(path.rfind('/') + 1)));
}

char* ezURI_S_Combine(const char* aBase, const char* aReference) {
    const BorrowedParts base = Split(View(aBase), OneLetter::kScheme);
    const BorrowedParts reference = Split(View(aReference), OneLetter::kScheme);
    return Given(Joined(Resolved(base, reference), OneLetter::kScheme));
}
