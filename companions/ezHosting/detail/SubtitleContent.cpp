#include "ezHosting/detail/SubtitleContent.h"

#include "ezBytes/LanguageTags.h"
#include "ezBytes/Utf16.h"
#include "ezBytes/Utf8.h"
#include "ezHosting/detail/SubtitleLimits.h"
#include "ezHosting/detail/SubtitleMarkup.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF"; // U+FEFF
constexpr std::string_view kMarkBig = "\xFE\xFF";
constexpr std::string_view kMarkLittle = "\xFF\xFE";

bool BeginsWith(std::string_view aText, std::string_view aStart) {
    return aText.substr(0, aStart.size()) == aStart;
}

/// The text in UTF-8, or in the code page of its letters: what tells the kinds is plain.
struct Text {
    std::string_view mText;
    std::string mConverted; ///< what mText is of, unless it is the file's own bytes
    std::string mEncoding;
};

/// Takes a text by its byte order mark; without one by its letters.
void ReadText(std::string_view aHead, bool afWhole, const std::string& aCodePage, Text& aText) {
    const bool fLittle = BeginsWith(aHead, kMarkLittle);
    if (fLittle || BeginsWith(aHead, kMarkBig)) {
        ForEachUtf16(aHead.substr(kMarkBig.size()), fLittle, [&](char32_t aCharacter) {
            AppendUtf8(aText.mConverted, aCharacter);
            return true;
        });
        aText.mText = aText.mConverted;
        aText.mEncoding = fLittle ? "UTF-16LE" : "UTF-16BE";
        return;
    }
    const bool fMark = BeginsWith(aHead, kMark);
    aText.mText = aHead.substr(fMark ? kMark.size() : 0);
    aText.mEncoding =
        fMark || IsWholeUtf8(afWhole ? aText.mText : WithoutCutUtf8(aText.mText)) ? "UTF-8" : aCodePage;
}

/// The next line without its end, which is "\n", "\r\n" or, of old systems, "\r", and without blanks around.
std::string_view TakeLine(std::string_view& aText) {
    const std::size_t end = std::min(aText.find_first_of("\r\n"), aText.size());
    const std::string_view line = aText.substr(0, end);
    aText.remove_prefix(std::min(end + (aText.substr(end, 2) == "\r\n" ? 2 : 1), aText.size()));
    return ezTrimmed(line);
}

/// The next line that is not empty; empty where there is none within the lines that are looked at.
std::string_view TakeFullLine(std::string_view& aText) {
    std::string_view line;
    for (std::size_t i = 0; i < kSubtitle_MaxLines && line.empty() && !aText.empty(); ++i) {
        line = TakeLine(aText);
    }
    return line;
}

/// Takes up to so many digits; how many there were.
std::size_t TakeDigits(std::string_view& aText, std::size_t aMost) {
    std::size_t count = 0;
    while (count < aMost && count < aText.size() && aText[count] >= '0' && aText[count] <= '9') {
        ++count;
    }
    aText.remove_prefix(count);
    return count;
}

bool TakeText(std::string_view& aText, std::string_view aStart) {
    const bool fThere = BeginsWith(aText, aStart);
    aText.remove_prefix(fThere ? aStart.size() : 0);
    return fThere;
}

// ---- the kinds ----

/// "WEBVTT", and a blank or an end after it (WebVTT, 4.1).
bool IsWebVTT(std::string_view aText) {
    return TakeText(aText, "WEBVTT") &&
           (aText.empty() || std::string_view(" \t\r\n").find(aText[0]) != std::string_view::npos);
}

/// The section that every script begins with. Comments may stand before it.
bool IsSubStation(std::string_view aText) {
    std::string_view line = TakeFullLine(aText);
    for (std::size_t i = 0; i < kSubtitle_MaxLines && !line.empty() && (line[0] == ';' || line[0] == '!');
         ++i) {
        line = TakeFullLine(aText);
    }
    return ezIsEqualNoCase(line, "[Script Info]");
}

/// Version 4+ by its name of the styles' section, as the type of the script may be missing.
bool IsAdvancedSubStation(std::string_view aText) {
    bool fAdvanced = false;
    while (!fAdvanced && !aText.empty()) {
        const std::string_view line = TakeLine(aText);
        fAdvanced = ezIsEqualNoCase(line, "[V4+ Styles]");
    }
    return fAdvanced;
}

bool IsAnySubStationPlus(std::string_view aText) {
    return IsSubStation(aText) && IsAdvancedSubStation(aText);
}

bool IsVobSub(std::string_view aText) {
    return BeginsWith(aText, "# VobSub index file");
}

/// "{25}{50}": the frames of a cue, of which the last may be missing. A first one may tell the styles of all.
bool IsMicroDVD(std::string_view aText) {
    constexpr std::size_t kDigits = 9;
    std::string_view line = TakeFullLine(aText);
    if (TakeText(line, "{DEFAULT}{}")) {
        line = TakeFullLine(aText);
    }
    const bool fStart = TakeText(line, "{") && TakeDigits(line, kDigits) != 0 && TakeText(line, "}{");
    TakeDigits(line, kDigits);
    return fStart && TakeText(line, "}");
}

/// "00:01:02,345"; writers have fewer digits, or a point.
bool TakeTime(std::string_view& aText) {
    const bool fMinutes = TakeDigits(aText, 3) != 0 && TakeText(aText, ":") && TakeDigits(aText, 2) != 0;
    const bool fSeconds = fMinutes && TakeText(aText, ":") && TakeDigits(aText, 2) != 0;
    return fSeconds && (TakeText(aText, ",") || TakeText(aText, ".")) && TakeDigits(aText, 3) != 0;
}

bool IsTimes(std::string_view aLine) {
    const bool fStart = TakeTime(aLine);
    aLine = ezTrimmed(aLine);
    const bool fArrow = fStart && TakeText(aLine, "-->");
    aLine = ezTrimmed(aLine);
    return fArrow && TakeTime(aLine);
}

/// A line with a number, and one with the times of a cue after it; before the first cue its maker's own line
/// may stand. The number may be missing where the text begins with the times.
bool IsSubRip(std::string_view aText) {
    constexpr std::size_t kDigits = 9;
    bool fNumber = true;
    for (std::size_t i = 0; i < kSubtitle_MaxLines && !aText.empty(); ++i) {
        std::string_view line = TakeFullLine(aText);
        if (fNumber && IsTimes(line)) {
            return true;
        }
        fNumber = TakeDigits(line, kDigits) != 0 && line.empty();
    }
    return false;
}

// ---- languages ----

/// "id: en, index: 0", a line for each track.
std::string VobSubLanguages(std::string_view aText) {
    std::string languages;
    while (!aText.empty()) {
        std::string_view line = TakeLine(aText);
        if (TakeText(line, "id:")) {
            AddLanguages(languages, line.substr(0, line.find(',')));
        }
    }
    return languages;
}

/// What is recognised, in this order.
struct Recognition {
    ezSubtitleKind mKind;
    bool (*mIs)(std::string_view aText);
    std::string (*mLanguages)(std::string_view aText) = nullptr;
};
constexpr Recognition kRecognitions[] = {
    {ezSubtitleKind::WebVTT, IsWebVTT},
    {ezSubtitleKind::AdvancedSubStation, IsAnySubStationPlus},
    {ezSubtitleKind::SubStation, IsSubStation},
    {ezSubtitleKind::VobSub, IsVobSub, VobSubLanguages},
    {ezSubtitleKind::SAMI, IsSAMI, SAMILanguages},
    {ezSubtitleKind::TTML, IsTTML, TTMLLanguage},
    {ezSubtitleKind::MicroDVD, IsMicroDVD},
    {ezSubtitleKind::SubRip, IsSubRip},
};

/// A segment as Blu-ray has them: "PG", two times, and its type, of which there are five.
bool IsPresentationGraphics(std::string_view aHead) {
    constexpr std::size_t kType = 10;
    constexpr std::string_view kTypes("\x14\x15\x16\x17\x80");
    return BeginsWith(aHead, "PG") && aHead.size() > kType &&
           kTypes.find(aHead[kType]) != std::string_view::npos;
}

} // namespace

std::optional<SubtitleContent> ReadSubtitleContent(std::string_view aHead, bool afWhole,
                                                   const std::string& aCodePage) {
    SubtitleContent content;
    if (IsPresentationGraphics(aHead)) {
        content.mKind = ezSubtitleKind::PresentationGraphics;
        return content;
    }
    Text text;
    ReadText(aHead, afWhole, aCodePage, text);
    for (const Recognition& recognition : kRecognitions) {
        if (recognition.mIs(text.mText)) {
            content.mKind = recognition.mKind;
            content.mEncoding = recognition.mKind == ezSubtitleKind::VobSub ? "" : text.mEncoding;
            content.mLanguages = recognition.mLanguages != nullptr ? recognition.mLanguages(text.mText) : "";
            return content;
        }
    }
    return std::nullopt;
}
