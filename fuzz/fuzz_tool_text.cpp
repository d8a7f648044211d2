// The door: a text of a stranger as the tool prints it: the name of a file, or a title, on a terminal, in
// columns and in JSON; and a document that the tool tells the playlist format of.

#include "fuzz/support/Check.h"
#include "tools/ezannounce/host/Explanation.h"
#include "tools/ezannounce/host/Host.h"
#include "tools/ezannounce/host/MapperAnswer.h"
#include "tools/ezannounce/output/Columns.h"
#include "tools/ezannounce/output/SafeText.h"
#include "tools/ezannounce/parse/Json.h"
#include "tools/ezannounce/playlist/PlaylistBeginning.h"

#include "ezBytes/Utf8.h"
#include "ezPlatform/media/MediaInfo.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

namespace {

/// A digit's value.
unsigned Digit(char aDigit) {
    return static_cast<unsigned>(aDigit <= '9' ? aDigit - '0' : aDigit - 'a' + 10);
}

/// The bytes that a safe text was made of.
std::string Unescaped(std::string_view aText) {
    std::string bytes;
    for (std::size_t i = 0; i < aText.size(); ++i) {
        if (aText[i] != '\\') {
            bytes += aText[i];
            continue;
        }
        FuzzCheck(++i < aText.size());
        const std::string_view letters = "\\ntrx";
        const std::size_t which = letters.find(aText[i]);
        FuzzCheck(which != std::string_view::npos);
        if (which < 4) {
            bytes += "\\\n\t\r"[which];
        } else {
            FuzzCheck(aText.size() - i > 2);
            bytes += static_cast<char>(Digit(aText[i + 1]) * 16 + Digit(aText[i + 2]));
            i += 2;
        }
    }
    return bytes;
}

/// Nothing in it ends a line, steers a terminal or turns the direction of writing.
void CheckSafe(const std::string& aText) {
    for (const char byte : aText) {
        FuzzCheck(static_cast<unsigned char>(byte) >= 0x20 && byte != '\x7F');
    }
    // U+0080 to U+009F, U+061C, U+200B to U+200F, U+2028 to U+202E, U+2060 to U+206F, U+FEFF.
    for (std::size_t i = 0; i + 1 < aText.size(); ++i) {
        const auto second = static_cast<unsigned char>(aText[i + 1]);
        FuzzCheck(aText[i] != '\xC2' || second >= 0xA0);
        FuzzCheck(aText[i] != '\xD8' || second != 0x9C);
    }
    for (std::size_t i = 0; i + 2 < aText.size(); ++i) {
        const std::string_view lead = std::string_view(aText).substr(i, 2);
        const auto third = static_cast<unsigned char>(aText[i + 2]);
        FuzzCheck(lead != "\xE2\x80" || ((third < 0x8B || third > 0x8F) && (third < 0xA8 || third > 0xAE)));
        FuzzCheck(lead != "\xE2\x81" || third < 0xA0 || third > 0xAF);
        FuzzCheck(lead != "\xEF\xBB" || third != 0xBF);
    }
}

void CheckTerminal(const std::string& aText) {
    const std::string safe = ForTerminal(aText);
    CheckSafe(safe);
    FuzzCheck(IsWholeUtf8(safe) && Unescaped(safe) == aText);
    const std::string replaced = WithoutUnsafe(aText, '?');
    CheckSafe(replaced);
    FuzzCheck(replaced.size() == aText.size() && IsWholeUtf8(replaced));

    const std::size_t width = TerminalWidth(safe);
    FuzzCheck(width <= safe.size());
    for (const std::size_t wanted : {std::size_t{0}, width / 2, width, width + 1}) {
        const std::string cut = CutToTerminalWidth(safe, wanted);
        FuzzCheck(safe.compare(0, cut.size(), cut) == 0 && IsWholeUtf8(cut) && TerminalWidth(cut) <= wanted);
        FuzzCheck(wanted < width || cut == safe);
        const std::size_t next = FirstUtf8Character(std::string_view(safe).substr(cut.size())).mLength;
        FuzzCheck(next == 0 || TerminalWidth(safe.substr(0, cut.size() + next)) > wanted);
    }
}

/// A text that is cut in its middle begins and ends as it does, and fits.
void CheckCut(const std::string& aText) {
    const std::string safe = ForTerminal(aText);
    const std::size_t width = TerminalWidth(safe);
    FuzzCheck(CutInMiddle(aText, width) == safe);
    for (const std::size_t wanted :
         {std::size_t{0}, std::size_t{2}, width / 2, width - std::min<std::size_t>(width, 1)}) {
        const std::string cut = CutInMiddle(aText, wanted);
        CheckSafe(cut);
        FuzzCheck(IsWholeUtf8(cut) && TerminalWidth(cut) <= wanted);
    }
}

void CheckColumns(const std::string& aText) {
    const std::size_t half = aText.size() / 2;
    const std::string text = InColumns({{aText, "b"}, {aText.substr(0, half), aText.substr(half)}});
    FuzzCheck(std::count(text.begin(), text.end(), '\n') == 2 && text.back() == '\n');
    const std::size_t end = text.find('\n');
    const std::string lines[] = {text.substr(0, end), text.substr(end + 1, text.size() - end - 2)};
    for (const std::string& line : lines) {
        CheckSafe(line);
    }
    const std::string shown = aText.empty() ? "-" : ForTerminal(aText);
    FuzzCheck(lines[0].compare(0, shown.size(), shown) == 0);
    const std::size_t widest = ColumnStyle().mMaximumWidth;
    if (TerminalWidth(shown) > widest || TerminalWidth(ForTerminal(aText.substr(0, half))) > widest) {
        return; // a longer cell pushes its own row, and no other
    }
    const std::size_t first = TerminalWidth(lines[0]) - 1; // where the second column begins
    const std::string rest = half == aText.size() ? "-" : ForTerminal(aText.substr(half));
    const std::size_t seen = rest.find_last_not_of(' ') + 1; // a line ends without blanks
    FuzzCheck(seen == 0 || TerminalWidth(lines[1]) == first + TerminalWidth(rest.substr(0, seen)));
}

/// A row with a name that is cut to its column is no wider than the columns are.
void CheckFitted(const std::string& aText) {
    ColumnWidths widths({{SIZE_MAX}, {5, true}, {}});
    widths.Take({ForTerminal(aText), "b", "c"});
    widths.Bound(0, 20);
    for (const bool fHidden : {false, true}) {
        if (fHidden) {
            widths.Hide(1);
        }
        const std::string line = widths.Line({CutInMiddle(aText, widths.GetWidth(0)), "b", "c"});
        FuzzCheck(widths.IsHidden(1) == fHidden && line.back() == '\n');
        FuzzCheck(TerminalWidth(line.substr(0, line.size() - 1)) <= widths.GetLineWidth());
    }
}

void CheckJson(const std::string& aText) {
    Announcement announcement;
    announcement.mPath = aText;
    announcement.mfRecognised = true;
    announcement.mInfo = std::make_unique<ezMediaInfo>();
    announcement.mInfo->Set(kezInfo_MimeType, ezCString(std::string_view(aText)), true);
    announcement.mInfo->mTitle = ezCString(std::string_view(aText));
    const std::string line = InJson(announcement);
    FuzzCheck(std::count(line.begin(), line.end(), '\n') == 1 && line.back() == '\n' && IsWholeUtf8(line));
    CheckSafe(line.substr(0, line.size() - 1));
    const nlohmann::json media = nlohmann::json::parse(line, nullptr, false);
    FuzzCheck(media.is_object());
    if (IsWholeUtf8(aText)) {
        FuzzCheck(media["path"] == aText && !media.contains("path_bytes"));
        FuzzCheck(aText.empty() || media["mime_type"] == aText);
    } else {
        FuzzCheck(media["path_bytes"] == HexBytes(aText));
    }
    const std::string digits = HexBytes(aText);
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(Digit(digits[i]) * 16 + Digit(digits[i + 1]));
    }
    FuzzCheck(bytes == aText);
}

/// A format that is told is told whatever the case, after a byte order mark, and in two bytes a letter.
void CheckPlaylist(const std::string& aText) {
    constexpr std::size_t kWithinWhatIsLooked = 500;
    const std::string extension = ExtensionOfPlaylist(aText);
    const std::string_view known[] = {"m3u", "pls", "asx", "wpl", "xspf"};
    FuzzCheck(std::find(std::begin(known), std::end(known), extension) != std::end(known));
    if (aText.size() > kWithinWhatIsLooked) {
        return;
    }
    std::string upper;
    std::string wide = "\xFF\xFE";
    for (const char byte : aText) {
        upper += byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
        wide += byte;
        wide += '\0';
    }
    FuzzCheck(ExtensionOfPlaylist(upper) == extension);
    FuzzCheck(ExtensionOfPlaylist("\xEF\xBB\xBF" + aText) == extension);
    FuzzCheck(ExtensionOfPlaylist(wide) == extension);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const std::string text(reinterpret_cast<const char*>(aData), aSize);
    CheckTerminal(text);
    CheckCut(text);
    CheckColumns(text);
    CheckFitted(text);
    CheckJson(text);
    CheckPlaylist(text);
    return 0;
}
