#include "ezBytes/LanguageTags.h"

#include "ezBytes/Limits.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr std::size_t kLong = 3;

/// Codes of ISO 639-2 that have one of two letters, with it; sorted. A language has two where its codes for
/// libraries and for terms differ.
// clang-format off
constexpr std::string_view kShortCodes =
    "aaraa abkab afraf akaak albsq amham araar argan armhy asmas avaav aveae aymay azeaz bakba bambm "
    "baqeu belbe benbn bihbh bisbi bodbo bosbs brebr bulbg burmy catca cescs chach chece chizh chucu "
    "chvcv corkw cosco crecr cymcy czecs danda deude divdv dutnl dzodz ellel engen epoeo estet euseu "
    "eweee faofo fasfa fijfj finfi frafr frefr fryfy fulff geoka gerde glagd glega glggl glvgv greel "
    "grngn gujgu hatht hauha hebhe herhz hinhi hmoho hrvhr hunhu hyehy iboig iceis idoio iiiii ikuiu "
    "ileie inaia indid ipkik islis itait javjv jpnja kalkl kankn kasks katka kaukr kazkk khmkm kikki "
    "kinrw kirky komkv konkg korko kuakj kurku laolo latla lavlv limli linln litlt ltzlb lublu luglg "
    "macmk mahmh malml maomi marmr mayms mkdmk mlgmg mltmt monmn mrimi msams myamy nauna navnv nblnr "
    "ndend ndong nepne nldnl nnonn nobnb norno nyany ocioc ojioj orior ormom ossos panpa perfa plipi "
    "polpl porpt pusps quequ rohrm ronro rumro runrn rusru sagsg sansa sinsi slksk slosk slvsl smese "
    "smosm snasn sndsd somso sotst spaes sqisq srdsc srpsr sswss sunsu swasw swesv tahty tamta tattt "
    "telte tgktg tgltl thath tibbo tirti tonto tsntn tsots tuktk turtr twitw uigug ukruk urdur uzbuz "
    "venve vievi volvo welcy wlnwa wolwo xhoxh yidyi yoryo zhaza zhozh zulzu ";
// clang-format on
constexpr std::size_t kRowSize = 6;

bool IsLetter(char aCharacter) {
    return aCharacter >= 'a' && aCharacter <= 'z';
}

bool IsLetterOrDigit(char aCharacter) {
    return IsLetter(aCharacter) || (aCharacter >= '0' && aCharacter <= '9');
}

/// The code of two letters; empty for a code that has none.
std::string_view FindShort(std::string_view aLong) {
    std::size_t first = 0;
    std::size_t count = kShortCodes.size() / kRowSize;
    while (count != 0) {
        const std::size_t half = count / 2;
        const std::size_t row = (first + half) * kRowSize;
        const bool fBelow = kShortCodes.substr(row, kLong) < aLong;
        first += fBelow ? half + 1 : 0;
        count = fBelow ? count - half - 1 : half;
    }
    const std::string_view row = kShortCodes.substr(std::min(first * kRowSize, kShortCodes.size()), kRowSize);
    return row.substr(0, kLong) == aLong ? row.substr(kLong, 2) : std::string_view();
}

/// Codes for what is not a language, or one that only its writer knows (ISO 639-2: qaa to qtz).
bool IsNone(std::string_view aLong) {
    constexpr std::array<std::string_view, 5> kNone = {"und", "mul", "mis", "zxx", "xxx"};
    return std::find(kNone.begin(), kNone.end(), aLong) != kNone.end() ||
           (aLong[0] == 'q' && aLong[1] <= 't');
}

/// Whether a language has this code of two letters.
bool IsShort(std::string_view aShort) {
    bool fFound = false;
    for (std::size_t row = 0; !fFound && row < kShortCodes.size(); row += kRowSize) {
        fFound = kShortCodes.substr(row + kLong, 2) == aShort;
    }
    return fFound;
}

bool AreLetters(std::string_view aText) {
    return std::all_of(aText.begin(), aText.end(), IsLetter);
}

void AddTag(std::string& aList, std::string_view aTag) {
    constexpr char kSeparator = ',';
    for (std::size_t start = 0; start < aList.size();) {
        const std::size_t end = std::min(aList.find(kSeparator, start), aList.size());
        if (std::string_view(aList).substr(start, end - start) == aTag) {
            return;
        }
        start = end + 1;
    }
    if (aList.size() + 1 + aTag.size() <= kLanguages_MaxSize) {
        aList.append(aList.empty() ? 0 : 1, kSeparator).append(aTag);
    }
}

void AddLong(std::string& aList, std::string_view aLong) {
    if (!IsNone(aLong)) {
        const std::string_view two = FindShort(aLong);
        AddTag(aList, two.empty() ? aLong : two);
    }
}

/// True where a text is nothing but codes that have one of two letters.
bool IsRow(std::string_view aText) {
    bool fRow = aText.size() % kLong == 0;
    for (std::size_t i = 0; fRow && i < aText.size(); i += kLong) {
        fRow = !FindShort(aText.substr(i, kLong)).empty();
    }
    return fRow;
}

/// The parts of a tag after the language, in the case that RFC 5646, 2.1.1 recommends: regions in capitals,
/// scripts with one, and nothing after a part of one character, which begins an extension. Empty for what is
/// not one.
std::string Subtags(std::string_view aText) {
    std::string subtags;
    bool fExtension = false;
    while (!aText.empty()) {
        const std::size_t end = std::min(aText.find('-', 1), aText.size());
        std::string part(aText.substr(1, end - 1));
        if (part.empty() || part.size() > 8 || !std::all_of(part.begin(), part.end(), IsLetterOrDigit)) {
            return {};
        }
        fExtension = fExtension || part.size() == 1;
        const std::size_t capitals = fExtension                              ? 0
                                     : part.size() == 2                      ? 2
                                     : part.size() == 4 && IsLetter(part[0]) ? 1
                                                                             : 0;
        std::transform(part.begin(), part.begin() + static_cast<std::ptrdiff_t>(capitals), part.begin(),
                       [](char aLetter) {
                           return IsLetter(aLetter) ? static_cast<char>(aLetter - 'a' + 'A') : aLetter;
                       });
        subtags.append(1, '-').append(part);
        aText.remove_prefix(end);
    }
    return subtags;
}

/// A tag of RFC 5646 with parts after its language.
void AddLongTag(std::string& aList, std::string_view aText) {
    const std::string_view language = aText.substr(0, aText.find('-'));
    const std::string subtags = Subtags(aText.substr(language.size()));
    if (subtags.empty() || language.size() < 2 || language.size() > kLong || !AreLetters(language) ||
        (language.size() == kLong && IsNone(language))) {
        return;
    }
    const std::string_view two = language.size() == kLong ? FindShort(language) : std::string_view();
    AddTag(aList, std::string(two.empty() ? language : two).append(subtags));
}

/// A tag, a code, or a row of codes.
void AddStated(std::string& aList, std::string_view aText) {
    std::string text(ezTrimmed(aText));
    std::transform(text.begin(), text.end(), text.begin(), ezLower);
    const std::string_view low = text;
    if (low.find('-') != std::string_view::npos) {
        AddLongTag(aList, low);
    } else if (!AreLetters(low)) {
        return;
    } else if (low.size() == 2) {
        AddTag(aList, low);
    } else if (low.size() == kLong) {
        AddLong(aList, low);
    } else if (IsRow(low)) {
        for (std::size_t i = 0; i < low.size(); i += kLong) {
            AddLong(aList, low.substr(i, kLong));
        }
    }
}

} // namespace

void AddLanguages(std::string& aList, std::string_view aText) {
    aText = ezTrimmed(aText);
    while (!aText.empty() && aText.size() <= kLanguages_MaxText) {
        const std::size_t end = std::min(aText.find(','), aText.size());
        AddStated(aList, aText.substr(0, end));
        aText.remove_prefix(std::min(end + 1, aText.size()));
    }
}

bool IsLanguageCode(std::string_view aText) {
    std::string low(aText.substr(0, kLong + 1));
    std::transform(low.begin(), low.end(), low.begin(), ezLower);
    return (low.size() == 2 && IsShort(low)) || (low.size() == kLong && !FindShort(low).empty());
}

void AddPackedLanguage(std::string& aList, unsigned aPacked) {
    constexpr unsigned kBefore = 0x60; // the character before "a"
    const std::array<char, kLong> code = {static_cast<char>(kBefore + (aPacked >> 10 & 0x1FU)),
                                          static_cast<char>(kBefore + (aPacked >> 5 & 0x1FU)),
                                          static_cast<char>(kBefore + (aPacked & 0x1FU))};
    const std::string_view text(code.data(), code.size());
    if (AreLetters(text)) {
        AddLong(aList, text);
    }
}
