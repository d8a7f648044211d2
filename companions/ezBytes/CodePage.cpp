#include "ezBytes/CodePage.h"

#include "ezBytes/Limits.h"
#include "ezBytes/Utf8.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <iconv.h>

namespace {

constexpr std::string_view kPlainLetters = " 0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kUnknown = "\xEF\xBF\xBD"; // U+FFFD

/// Numbers that are no "CP" and the number.
struct Numbered {
    std::uint32_t mNumber;
    const char* mName;
};
constexpr Numbered kNumbered[] = {
    {20866, "KOI8-R"}, {21866, "KOI8-U"}, {51932, "EUC-JP"}, {54936, "GB18030"}};
constexpr std::uint32_t kFirstISO8859 = 28591; // ISO-8859-1; -16 is the last
constexpr std::uint32_t kLastISO8859 = 28606;

/// Pages whose names with protocols are not those with iconv. Of 949 that is the registered one, which mail
/// has for it: "windows-949" is not registered.
struct Told {
    std::string_view mConverter;
    const char* mName;
};
constexpr Told kTold[] = {{"CP874", "windows-874"},
                          {"CP932", "Windows-31J"},
                          {"CP936", "GBK"},
                          {"CP949", "KS_C_5601-1987"},
                          {"CP950", "Big5"}};

std::string NameOfNumber(std::uint32_t aNumber) {
    for (const Numbered& numbered : kNumbered) {
        if (numbered.mNumber == aNumber) {
            return numbered.mName;
        }
    }
    if (aNumber >= kFirstISO8859 && aNumber <= kLastISO8859) {
        return "ISO-8859-" + std::to_string(aNumber - kFirstISO8859 + 1);
    }
    return "CP" + std::to_string(aNumber);
}

/// A name as iconv has it, in upper case; empty for what is not one. "/" would ask it for more than a name.
std::string ConverterOf(std::string_view aName) {
    std::uint32_t number = 0;
    if (ezReadDecimal32(aName, &number)) {
        return NameOfNumber(number);
    }
    constexpr std::string_view kWindows = "WINDOWS-";
    std::string name;
    for (const char character : aName) {
        const char lower = ezLower(character);
        const bool fLetter = (lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9');
        if (!fLetter && std::string_view("-_.:").find(lower) == std::string_view::npos) {
            return {};
        }
        name += fLetter && lower >= 'a' ? static_cast<char>(lower - 'a' + 'A') : lower;
    }
    if (name.compare(0, kWindows.size(), kWindows) == 0) {
        name.replace(0, kWindows.size(), "CP"); // the name that all systems have
    }
    return name.size() <= kCodePage_MaxName ? name : std::string();
}

bool IsBuiltIn(const std::string& aConverter) {
    return aConverter == "CP1252";
}

/// A converter of the system into UTF-8.
class Converter {
public:
    explicit Converter(const std::string& aName) : mHandle(iconv_open("UTF-8", aName.c_str())) {}
    ~Converter() {
        if (IsOpen()) {
            iconv_close(mHandle);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool IsOpen() const {
        return mHandle != reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr): POSIX has it so
    }

    std::string Convert(std::string_view aBytes) {
        std::string text;
        std::string bytes(aBytes); // iconv takes bytes that it might change
        char* from = bytes.data();
        std::size_t left = bytes.size();
        while (left != 0) {
            std::array<char, 256> block = {};
            char* to = block.data();
            std::size_t room = block.size();
            const bool fDone = iconv(mHandle, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
            const int error = errno;
            text.append(block.data(), block.size() - room);
            if (!fDone && error == EINVAL) {
                break; // a character was cut
            }
            if (!fDone && error != E2BIG) {
                text += kUnknown;
                const std::size_t count = std::min<std::size_t>(left, 1); // it may have read all the same
                from += count;
                left -= count;
            }
        }
        return text;
    }

private:
    iconv_t mHandle;
};

std::string FromBuiltIn(std::string_view aBytes) {
    std::string text;
    for (const char byte : aBytes) {
        AppendUtf8(text, FromWindows1252(static_cast<unsigned char>(byte)));
    }
    return text;
}

} // namespace

CodePage::CodePage(std::string_view aName) : mConverter(ConverterOf(aName)) {
    if (IsBuiltIn(mConverter)) {
        mConverter.clear();
    }
}

bool CodePage::IsKnown(std::string_view aName) {
    const std::string name = ConverterOf(aName);
    if (aName.empty() || IsBuiltIn(name)) {
        return true;
    }
    Converter converter(name);
    return !name.empty() && converter.IsOpen() && converter.Convert(kPlainLetters) == kPlainLetters;
}

std::string CodePage::GetName() const {
    constexpr std::string_view kWindows = "CP125"; // 1250 to 1258
    if (mConverter.empty() || !IsKnown(mConverter)) {
        return "windows-1252";
    }
    for (const Told& told : kTold) {
        if (told.mConverter == mConverter) {
            return told.mName;
        }
    }
    const bool fWindows =
        mConverter.size() == kWindows.size() + 1 && mConverter.compare(0, kWindows.size(), kWindows) == 0;
    return fWindows ? "windows-" + mConverter.substr(2) : mConverter;
}

std::string CodePage::ToUtf8(std::string_view aBytes) const {
    if (mConverter.empty()) {
        return FromBuiltIn(aBytes);
    }
    Converter converter(mConverter);
    std::string text = converter.IsOpen() ? converter.Convert(aBytes) : std::string();
    return converter.IsOpen() && IsWholeUtf8(text) ? text : FromBuiltIn(aBytes);
}
