#include "ezPlatform/files/PathName.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/text/NUL.h"

#include <cerrno>

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

ezPathName ezPathName::MakeDirPath(const ezCString& aPath) {
    return MakeFilePath(aPath.IsEmpty() || aPath.Last() == '/' ? aPath : aPath + "/");
}

ezPathName ezPathName::MakeCombinedDirPath(const ezPathName& aFolder, const ezCString& aName) {
    return MakeDirPath(aFolder.mPath + aName.Replace("\\", "/", true));
}

ezPathName ezPathName::MakeCombinedFilePath(const ezPathName& aFolder, const ezCString& aName) {
    return MakeFilePath(aFolder.mPath + aName.Replace("\\", "/", true));
}

bool ezPathName::FileExists() const {
    struct stat status = {};
    // A NUL would cut the path short and find another file than the one that was named.
    if (!IsValid() || ezHasNUL(mPath)) {
        return false;
    }
    if (ezSystem().mStat(mPath.c_str(), &status) == 0) {
        return !S_ISDIR(status.st_mode);
    }
    // What cannot be looked at may well be there, and whoever asks is about to write where it thinks nothing
    // is.
    return errno != ENOENT && errno != ENOTDIR && errno != ENAMETOOLONG;
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
