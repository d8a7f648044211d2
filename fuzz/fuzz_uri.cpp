// The door: a URI. The input is a reference; what stands before its first line end, if there is one, is the
// base that it is resolved against.

#include "fuzz/support/Check.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/URI.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using URI = ezOwned<ezURI_Delete>;

URI Parsed(const std::string& aText) {
    return URI(ezURI_NewFromEscapedStr(aText.c_str()));
}

std::string Taken(char* aText) {
    FuzzCheck(aText != nullptr);
    return std::string(ezCString::FromAllocatedString(aText).View());
}

std::string Text(const URI& aURI) {
    return Taken(ezURI_GetStr(aURI.get()));
}

bool Same(const char* aLeft, const char* aRight) {
    return aLeft == nullptr || aRight == nullptr ? aLeft == aRight : std::strcmp(aLeft, aRight) == 0;
}

/// No byte that a URI must not hold.
void CheckEscaped(const std::string& aText) {
    for (const char byte : aText) {
        FuzzCheck(byte > ' ' && byte < '\x7F' && std::strchr("\"<>\\^`{|}", byte) == nullptr);
    }
}

/// What is written is read as what it was made of, and written the same again.
void CheckText(const URI& aURI) {
    const std::string text = Text(aURI);
    CheckEscaped(text);
    const URI again = Parsed(text);
    FuzzCheck(Text(again) == text);
    FuzzCheck(Same(ezURI_GetScheme(again.get()), ezURI_GetScheme(aURI.get())));
    FuzzCheck(Same(ezURI_GetUserInfo(again.get()), ezURI_GetUserInfo(aURI.get())));
    FuzzCheck(Same(ezURI_GetHostName(again.get()), ezURI_GetHostName(aURI.get())));
    FuzzCheck(ezURI_GetPort(again.get()) == ezURI_GetPort(aURI.get()));
    FuzzCheck(Same(ezURI_GetQuery(again.get()), ezURI_GetQuery(aURI.get())));
    FuzzCheck(Same(ezURI_GetFragment(again.get()), ezURI_GetFragment(aURI.get())));
}

void CheckComponents(const URI& aURI) {
    const char* scheme = ezURI_GetScheme(aURI.get());
    FuzzCheck(scheme == nullptr || std::strlen(scheme) >= 2);
    const char* path = ezURI_GetPath(aURI.get());
    FuzzCheck(path == nullptr || *path != '\0');
    char* segment = ezURI_GetLastPathSegment(aURI.get());
    FuzzCheck((segment == nullptr) == (path == nullptr));
    ezCString::FromAllocatedString(segment);
    FuzzCheck(ezURI_GetPort(aURI.get()) <= 65535);
}

bool IsLetter(char aByte) {
    return ezLower(aByte) >= 'a' && ezLower(aByte) <= 'z';
}

/// The scheme by the grammar alone: one letter is one here.
std::string_view SchemeOf(std::string_view aText) {
    std::size_t size = 0;
    while (size < aText.size() &&
           (IsLetter(aText[size]) || (size != 0 && std::strchr("0123456789+-.", aText[size]) != nullptr))) {
        ++size;
    }
    return size < aText.size() && aText[size] == ':' ? aText.substr(0, size) : std::string_view();
}

void CheckCombine(const std::string& aBase, const std::string& aReference) {
    const std::string full = Taken(ezURI_S_Combine(aBase.c_str(), aReference.c_str()));
    CheckEscaped(full);
    const std::string_view reference = aReference.c_str();
    const bool fPathOfBase = reference.empty() || reference[0] == '?' || reference[0] == '#';
    if (SchemeOf(full).empty() || fPathOfBase) { // the base's path is taken as it is written
        return;
    }
    // Resolved is resolved: whatever it is resolved against, and no step up or to the same folder is left.
    FuzzCheck(Taken(ezURI_S_Combine("http://other/x/y", full.c_str())) == full);
    std::string path = full.substr(SchemeOf(full).size() + 1);
    path = path.substr(0, path.find_first_of("?#"));
    if (path.rfind("//", 0) == 0) {
        path.erase(0, std::min(path.find('/', 2), path.size())); // the authority may be named ".."
    }
    path = "/" + path + "/";
    FuzzCheck(path.find("/../") == std::string::npos);
}

void CheckFile(const std::string& aPath) {
    const URI uri(ezURI_New());
    ezURI_SetScheme(uri.get(), "file");
    const bool fSet = ezURI_SetFilePath(uri.get(), aPath.c_str());
    FuzzCheck(fSet == (*aPath.c_str() != '\0'));
    const std::string text = Text(uri);
    FuzzCheck(!fSet || text.rfind("file://", 0) == 0);
    CheckText(uri);
    FuzzCheck(ezURI_GetQuery(uri.get()) == nullptr && ezURI_GetFragment(uri.get()) == nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    std::string input;
    for (std::size_t i = 0; i < aSize; ++i) {
        input.push_back(static_cast<char>(aData[i]));
    }
    const std::size_t end = input.find('\n');
    const std::string base =
        end != std::string::npos ? input.substr(0, end) : "http://host/folder/list.m3u?q#f";
    const std::string reference = end != std::string::npos ? input.substr(end + 1) : input;
    for (const std::string& text : {base, reference}) {
        const URI uri = Parsed(text);
        CheckComponents(uri);
        CheckText(uri);
        CheckFile(text);
    }
    CheckCombine(base, reference);
    return 0;
}
