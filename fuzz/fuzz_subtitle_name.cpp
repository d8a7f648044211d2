// The door: names of files next to films. The input is the name of a film, and in the lines after it names of
// files in its folder.

#include "fuzz/support/Check.h"

#include "ezBytes/LanguageTags.h"
#include "ezHosting/detail/SubtitleFolder.h"
#include "ezHosting/detail/SubtitleName.h"
#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kLongestName = 300; ///< file systems have 255

std::string UpperOf(std::string_view aText) {
    std::string upper(aText);
    for (char& letter : upper) {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return upper;
}

void CheckWords(std::string_view aWords) {
    const SubtitleName name = ReadSubtitleName(aWords);
    std::string again;
    AddLanguages(again, name.mLanguages);
    FuzzCheck(again == name.mLanguages);
    FuzzCheck(name.mTitle.size() <= aWords.size());
    // Case counts for nothing but how a title is written.
    const SubtitleName upper = ReadSubtitleName(UpperOf(aWords));
    FuzzCheck(upper.mLanguages == name.mLanguages && ezIsEqualNoCase(upper.mTitle, name.mTitle));
    FuzzCheck(upper.mfForced == name.mfForced && upper.mfDefault == name.mfDefault &&
              upper.mfHearingImpaired == name.mfHearingImpaired);
    // A flag more is a flag more, wherever it stands.
    for (const std::string& flagged : {"forced." + std::string(aWords), std::string(aWords) + ".forced"}) {
        const SubtitleName more = ReadSubtitleName(flagged);
        FuzzCheck(more.mfForced && more.mLanguages == name.mLanguages && more.mTitle == name.mTitle);
    }
}

/// Who has a name among the films of a folder, by a look at each of them.
bool IsOwnedByLonger(std::string_view aName, std::string_view aFilm, const SubtitleFolder& aFolder) {
    return std::any_of(aFolder.mFilms.begin(), aFolder.mFilms.end(), [&](const FoundName& aOther) {
        return aOther.mName.size() > aFilm.size() && WordsAfterFilm(aName, aOther.mName);
    });
}

void CheckName(std::string_view aName, std::string_view aFilm, const SubtitleFolder& aFolder) {
    const std::optional<std::string_view> words = WordsAfterFilm(aName, aFilm);
    const bool fOwn = aFolder.BelongsTo(aName, aFilm);
    if (words) {
        FuzzCheck(words->size() <= aName.size() && ezStartsWithNoCase(aName, aFilm));
        CheckWords(*words);
        if (aName.substr(0, aFilm.size()) == aFilm) { // spelled as this film
            FuzzCheck(fOwn == !IsOwnedByLonger(aName, aFilm, aFolder));
        }
    }
    FuzzCheck(!fOwn || words.has_value());
    FuzzCheck(!fOwn || !IsOwnedByLonger(aName, aFilm, aFolder));
    FuzzCheck(WordsAfterFilm(std::string(aFilm) + "." + std::string(aName), aFilm) == aName);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const std::string bytes(aData, aData + aSize);
    std::vector<std::string_view> names;
    for (std::string_view rest = bytes; !rest.empty() && names.size() < 16;) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        names.push_back(line.substr(0, kLongestName));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    if (names.empty() || names[0].empty()) {
        return 0;
    }
    SubtitleFolder folder;
    for (const std::string_view name : names) {
        std::string lower(name);
        std::transform(lower.begin(), lower.end(), lower.begin(), ezLower);
        folder.mFilms.push_back({lower, std::string(name)});
    }
    std::sort(folder.mFilms.begin(), folder.mFilms.end());
    for (const std::string_view name : names) {
        CheckName(name, names[0], folder);
    }
    return 0;
}
