#include "ezPlatform/files/PathName.h"

namespace {

bool IsSeparator(char aCharacter) {
    return aCharacter == '/' || aCharacter == '\\';
}

} // namespace

ezPathName ezPathName::MakeFilePath(const ezCString& aPath) {
    ezPathName path;
    path.mPath = aPath;
    const std::string_view text = path.mPath.View();
    const std::size_t separator = text.find_last_of("/\\");
    path.mNameStart = separator == std::string_view::npos ? 0 : separator + 1;
    const std::size_t dot = text.rfind('.');
    path.mDot = dot == std::string_view::npos || dot <= path.mNameStart ? text.size() : dot;
    return path;
}

ezCString ezPathName::GetFileName() const {
    return mPath.Mid(mNameStart, static_cast<std::ptrdiff_t>(mDot - mNameStart));
}

ezCString ezPathName::GetExtension() const {
    return mPath.Mid(mDot + 1);
}

bool ezPathName::IsAbsolute() const {
    const std::string_view text = mPath.View();
    if (text.empty()) {
        return false;
    }
    if (IsSeparator(text[0])) {
        return true;
    }
    const char drive = ezLower(text[0]);
    return text.size() >= 3 && drive >= 'a' && drive <= 'z' && text[1] == ':' && IsSeparator(text[2]);
}
