#include "support/Record.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

void AppendText(std::string& aDump, const char* aName, const ezCString& aText) {
    if (!aText.IsEmpty()) {
        aDump += std::string(aName) + "=\"" + aText.c_str() + "\"\n";
    }
}

} // namespace

std::string DumpRecord(const ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return "null\n";
    }
    std::string dump;
    for (std::size_t i = 0; i < anInfo->GetCount(); ++i) {
        const ezCString key = anInfo->GetKeyAt(i);
        const ezCString value = anInfo->GetCString(key.c_str(), "");
        const char* quote = anInfo->IsNumber(key.c_str()) ? "" : "\"";
        dump +=
            std::string(key.c_str()) + "=" + quote + value.Replace("\n", "\\n", true).c_str() + quote + "\n";
    }
    AppendText(dump, "path", anInfo->mFullPath);
    if (anInfo->mLastModificationTime.IsSet()) {
        dump += "modified=" + std::to_string(anInfo->mLastModificationTime.GetUnixTime()) + "\n";
    }
    AppendText(dump, "title", anInfo->mTitle);
    AppendText(dump, "creator", anInfo->mCreator);
    AppendText(dump, "genre", anInfo->mGenre);
    AppendText(dump, "album", anInfo->mAlbum);
    return dump;
}
