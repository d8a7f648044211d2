#include "ezHosting/detail/Places.h"

#include "ezHosting/detail/Limits.h"

#include "ezPlatform/config/Config.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

/// A name that holds a NUL leads to another file than it says.
bool HasNUL(const std::string& aPath) {
    return aPath.find('\0') != std::string::npos;
}

bool IsControl(char aCharacter) {
    return (aCharacter >= 0 && aCharacter < ' ') || aCharacter == 0x7F;
}

bool IsTooLarge(const std::string& aPath) {
    struct stat status = {};
    return stat(aPath.c_str(), &status) == 0 && status.st_size > ezConfig::kMaximumFileSize;
}

std::string WordsOf(int anError) {
    return anError == ENOENT || anError == ENOTDIR ? "not found" : std::generic_category().message(anError);
}

} // namespace

std::string ShownPath(std::string_view aPath) {
    std::string shown(aPath.substr(0, kHost_MaxShownPath));
    std::replace_if(shown.begin(), shown.end(), IsControl, '?');
    return aPath.size() > shown.size() ? shown + "..." : shown;
}

std::string WhyNoFile(const std::string& aPath) {
    struct stat status = {};
    if (HasNUL(aPath)) {
        return "not found";
    }
    if (stat(aPath.c_str(), &status) != 0) {
        return WordsOf(errno);
    }
    return S_ISREG(status.st_mode) ? "" : "not a regular file";
}

std::string WhyNotRead(const std::string& aPath) {
    const std::string note = WhyNoFile(aPath);
    const bool fDenied = note.empty() && faccessat(AT_FDCWD, aPath.c_str(), R_OK, AT_EACCESS) != 0;
    return fDenied ? WordsOf(errno) : note;
}

std::string WhyNotOpened(std::string_view aPath) {
    const std::string why = WhyNotRead(std::string(aPath));
    return ShownPath(aPath) + ": " + (why.empty() ? "cannot be opened" : why);
}

std::string FileIn(const std::string& aFolder, const char* aName) {
    const bool fSeparated = aFolder.empty() || aFolder.back() == '/';
    return aFolder + (fSeparated ? "" : "/") + aName;
}

std::string WhyNoTable(const ezHostFolders& aFolders) {
    std::string text = "no media types: ";
    const char* separator = "";
    for (const ezHostFolders::Place& place : aFolders.mPlaces) {
        std::string note = place.mNote.empty() ? WhyNotRead(place.mPath) : place.mNote;
        if (note.empty()) {
            note = IsTooLarge(place.mPath) ? "too large" : "no types were read from it";
        }
        text.append(separator).append(ShownPath(place.mPath)).append(": ").append(note);
        separator = "; ";
    }
    return text;
}
