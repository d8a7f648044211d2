#include "ezHosting/detail/SubtitleName.h"

#include "ezBytes/LanguageTags.h"
#include "ezHosting/detail/LanguageNames.h"
#include "ezHosting/detail/SubtitleLimits.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>

namespace {

constexpr std::string_view kParts = " -_,+&()[]{}";

/// Words that flag what the subtitles are.
struct FlagWord {
    std::string_view mWord;
    bool SubtitleName::*mFlag;
};
constexpr FlagWord kFlags[] = {
    {"forced", &SubtitleName::mfForced},       {"foreign", &SubtitleName::mfForced},
    {"sdh", &SubtitleName::mfHearingImpaired}, {"cc", &SubtitleName::mfHearingImpaired},
    {"default", &SubtitleName::mfDefault},
};
constexpr std::string_view kHindi = "hi"; ///< or the flag of hearing impaired: the other words decide

const FlagWord* FindFlag(std::string_view aWord) {
    const auto* const found = std::find_if(std::begin(kFlags), std::end(kFlags), [&](const FlagWord& aFlag) {
        return ezIsEqualNoCase(aFlag.mWord, aWord);
    });
    return found != std::end(kFlags) ? found : nullptr;
}

bool IsDigit(char aCharacter) {
    return aCharacter >= '0' && aCharacter <= '9';
}

bool IsNumber(std::string_view aWord) {
    return !aWord.empty() && std::all_of(aWord.begin(), aWord.end(), IsDigit);
}

/// Calls a function with each part of a text between separators, without the empty ones.
template <typename Taker>
void ForEachPart(std::string_view aText, std::string_view aSeparators, const Taker& aTaker) {
    while (!aText.empty()) {
        const std::size_t end = std::min(aText.find_first_of(aSeparators), aText.size());
        if (end != 0) {
            aTaker(aText.substr(0, end));
        }
        aText.remove_prefix(std::min(end + 1, aText.size()));
    }
}

/// A part of a tag after its language that names of files have: a script, or a region by letters or digits.
bool IsSubtag(std::string_view aPart) {
    constexpr std::string_view kScripts[] = {"Hans", "Hant", "Latn", "Cyrl", "Arab"};
    const bool fScript = std::any_of(std::begin(kScripts), std::end(kScripts), [&](std::string_view aScript) {
        return ezIsEqualNoCase(aScript, aPart);
    });
    const bool fFlag = FindFlag(aPart) != nullptr || ezIsEqualNoCase(aPart, kHindi); // and no region
    const bool fLetters = std::all_of(aPart.begin(), aPart.end(), [](char aCharacter) {
        return ezLower(aCharacter) >= 'a' && ezLower(aCharacter) <= 'z';
    });
    return fScript || (aPart.size() == 2 && fLetters && !fFlag) || (aPart.size() == 3 && IsNumber(aPart));
}

/// The tag that a word is: a code, or one with parts that "-" or "_" separates; "" for other words.
std::string TagOf(std::string_view aWord) {
    std::string tag;
    bool fTag = !aWord.empty() && aWord.back() != '-' && aWord.back() != '_';
    ForEachPart(aWord, "-_", [&](std::string_view aPart) {
        fTag = fTag && (tag.empty() ? IsLanguageCode(aPart) : IsSubtag(aPart));
        tag.append(tag.empty() ? "" : "-").append(aPart);
    });
    std::string read;
    if (fTag && tag.size() == aWord.size()) { // else separators stood at its start, or in a row
        AddLanguages(read, tag);
    }
    return read;
}

/// The tag of a word that is a language by its tag, its code or its name; "" for other words.
std::string LanguageOf(std::string_view aWord) {
    const std::string_view named = LanguageByName(aWord);
    return named.empty() ? TagOf(aWord) : std::string(named);
}

bool IsKnown(std::string_view aWord) {
    return FindFlag(aWord) != nullptr || !LanguageOf(aWord).empty();
}

/// The parts of a word as a whole.
struct Parts {
    explicit Parts(std::string_view aWord) {
        ForEachPart(aWord, kParts, [this](std::string_view aPart) {
            const bool fNumber = IsNumber(aPart);
            const bool fKnown = !fNumber && IsKnown(aPart);
            mfNamed = mKnown + mUnknown == 0 && !fNumber ? !LanguageByName(aPart).empty() : mfNamed;
            mKnown += fKnown ? 1 : 0;
            mUnknown += fKnown || fNumber ? 0 : 1;
            mNumbers += fNumber ? 1 : 0;
        });
    }

    std::size_t mKnown = 0;
    std::size_t mUnknown = 0;
    std::size_t mNumbers = 0;
    bool mfNamed = false; ///< the first that is no number is the name of a language
};

class NameReader {
public:
    void TakeWord(std::string_view aWord) {
        if (Take(aWord)) {
            return;
        }
        const Parts parts(aWord);
        if (parts.mUnknown != 0 && !parts.mfNamed) {
            AddTitle(aWord);
            return;
        }
        ForEachPart(aWord, kParts, [this](std::string_view aPart) {
            if (!Take(aPart)) {
                AddTitle(aPart);
            }
        });
    }

    SubtitleName Finish() {
        if (mHindi != 0 && mName.mLanguages.empty()) {
            AddLanguage(std::string(kHindi));
            --mHindi;
        }
        mName.mfHearingImpaired = mName.mfHearingImpaired || mHindi != 0;
        return mName;
    }

private:
    bool Take(std::string_view aWord) {
        if (const FlagWord* const flag = FindFlag(aWord)) {
            mName.*flag->mFlag = true;
            return true;
        }
        if (ezIsEqualNoCase(aWord, kHindi)) {
            ++mHindi;
            return true;
        }
        const std::string tag = LanguageOf(aWord);
        if (!tag.empty()) {
            AddLanguage(tag);
        }
        return !tag.empty() || IsNumber(aWord);
    }

    /// Of a language and its form in a region only the latter is kept: "Brazilian Portuguese".
    void AddLanguage(const std::string& aTag) {
        std::string others;
        bool fMore = false; // one that says more is there
        ForEachPart(mName.mLanguages, ",", [&](std::string_view aOther) {
            fMore = fMore || aOther.substr(0, aTag.size() + 1) == aTag + "-";
            const bool fLess = aTag.compare(0, aOther.size() + 1, std::string(aOther) + "-") == 0;
            if (!fLess) {
                AddLanguages(others, aOther);
            }
        });
        if (!fMore) {
            AddLanguages(others, aTag);
        }
        mName.mLanguages = others;
    }

    void AddTitle(std::string_view aWord) {
        mName.mTitle.append(mName.mTitle.empty() ? "" : " ").append(aWord);
    }

    SubtitleName mName;
    std::size_t mHindi = 0; ///< times that the word was there
};

} // namespace

SubtitleName ReadSubtitleName(std::string_view aWords) {
    NameReader reader;
    ForEachPart(aWords.substr(0, kSubtitle_MaxName), ".",
                [&](std::string_view aWord) { reader.TakeWord(aWord); });
    return reader.Finish();
}

std::optional<std::string_view> WordsAfterFilm(std::string_view aName, std::string_view aFilm) {
    if (aName.size() < aFilm.size() || !ezStartsWithNoCase(aName, aFilm)) {
        return std::nullopt;
    }
    const std::string_view rest = aName.substr(aFilm.size());
    if (rest.empty()) {
        return rest;
    }
    if (rest[0] == '.') {
        return rest.substr(1);
    }
    const bool fBracket =
        rest[0] == '(' || rest[0] == '[' || rest.substr(0, 2) == " (" || rest.substr(0, 2) == " [";
    if (!fBracket && rest[0] != '-' && rest[0] != '_') {
        return std::nullopt;
    }
    const std::string_view word = rest.substr(1, std::min(rest.find('.'), kSubtitle_MaxName) - 1);
    const Parts parts(word);
    const bool fMeant = !TagOf(word).empty() || (parts.mKnown != 0 && parts.mUnknown + parts.mNumbers == 0);
    return fMeant ? std::optional(rest.substr(1)) : std::nullopt;
}
