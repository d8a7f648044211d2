#include "host/SubtitleWords.h"

#include "host/Facts.h"
#include "output/SafeText.h"

#include "ezBytes/Utf8.h"

namespace {

/// What a name says of subtitles, beside their language.
struct Flag {
    bool ezSubtitleFile::*mFlag;
    const char* mWords;
    const char* mField;
};
constexpr Flag kFlags[] = {{&ezSubtitleFile::mfForced, "forced", "forced"},
                           {&ezSubtitleFile::mfHearingImpaired, "hearing impaired", "hearing_impaired"},
                           {&ezSubtitleFile::mfDefault, "default", "default"}};

/// The texts of a list that are joined by ",".
nlohmann::ordered_json ListOf(std::string_view aText) {
    return aText.empty() ? nlohmann::ordered_json::array() : nlohmann::ordered_json(ListedValues(aText, ','));
}

void SetPath(nlohmann::ordered_json& aFile, const std::string& aName, const std::string& aPath) {
    aFile[aName] = aPath;
    if (!IsWholeUtf8(aPath)) {
        aFile[aName + "_bytes"] = HexBytes(aPath);
    }
}

} // namespace

std::string NameOf(const ezSubtitleFile& aFile, std::string_view aFilm) {
    return aFile.mPath.substr(aFilm.substr(0, aFilm.rfind('/') + 1).size());
}

std::string InWords(const ezSubtitleFile& aFile) {
    std::string words = ezSubtitleKind_GetName(aFile.mKind);
    const auto add = [&words](const std::string& aText) { words += aText.empty() ? "" : ", " + aText; };
    add(aFile.mLanguages);
    for (const Flag& flag : kFlags) {
        add(aFile.*flag.mFlag ? flag.mWords : "");
    }
    add(aFile.mEncoding);
    add(aFile.mTitle.empty() ? "" : "\"" + aFile.mTitle + "\"");
    return words;
}

nlohmann::ordered_json InJson(const ezSubtitleFile& aFile) {
    nlohmann::ordered_json file = nlohmann::ordered_json::object();
    SetPath(file, "path", aFile.mPath);
    file["kind"] = ezSubtitleKind_GetName(aFile.mKind);
    file["mime_types"] = ListOf(ezSubtitleKind_GetMimeTypes(aFile.mKind));
    file["languages"] = ListOf(aFile.mLanguages);
    file["encoding"] =
        aFile.mEncoding.empty() ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(aFile.mEncoding);
    for (const Flag& flag : kFlags) {
        file[flag.mField] = aFile.*flag.mFlag;
    }
    if (!aFile.mTitle.empty()) {
        file["title"] = aFile.mTitle;
    }
    if (!aFile.mPicturesPath.empty()) {
        SetPath(file, "pictures", aFile.mPicturesPath);
    }
    return file;
}
