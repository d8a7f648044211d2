#include "ezPlaylists/detail/Location.h"

#include "ezPlaylists/detail/Limits.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/text/URI.h"

#include <algorithm>
#include <string>

bool HasScheme(std::string_view aLocation) {
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(std::string(aLocation).c_str()));
    return ezURI_GetScheme(uri.get()) != nullptr;
}

bool IsWindowsPath(std::string_view aLocation) {
    if (aLocation.substr(0, 2) == "\\\\") {
        return true;
    }
    const char drive = aLocation.empty() ? '\0' : ezLower(aLocation[0]);
    return drive >= 'a' && drive <= 'z' && aLocation.size() >= 3 && aLocation[1] == ':' &&
           (aLocation[2] == '\\' || aLocation[2] == '/');
}

LocationBase::LocationBase(const std::string& aText) : mText(aText), mfURL(HasScheme(aText)) {
    if (mfURL) {
        mText = ezCString::FromAllocatedString(ezURI_S_Combine(aText.c_str(), aText.c_str())).View();
    }
}

bool LocationBaseBudget::Take(const LocationBasePtr& aBase) {
    const std::size_t size = aBase != nullptr ? aBase->Text().size() : 0;
    if (size > kPlaylist_MaxBased - mTaken) {
        return false;
    }
    mTaken += size;
    return true;
}

ezCString URLReference(const ezCString& aLocation) {
    std::string text(aLocation.View());
    if (text.find('\\') == std::string::npos || IsWindowsPath(text) || HasScheme(text)) {
        return aLocation;
    }
    const std::size_t end = std::min(text.find_first_of("?#"), text.size());
    std::replace(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\\', '/');
    return ezCString(text);
}
