#pragma once

#include <string>
#include <string_view>

/// What the bytes 80 to FF mean in texts that state no encoding and are no UTF-8: the letters of the systems
/// that wrote them, which no file tells and an operator knows of his collection. Windows-1252 is built in;
/// all others are those of the system's iconv. Any number of threads may read one at a time.
class CodePage {
public:
    /// Windows-1252.
    CodePage() = default;
    /// By a number ("1251", "932", "28592") or a name ("windows-1251", "KOI8-R", "Shift_JIS"), whatever the
    /// case. An empty name, and one that the system does not know, is Windows-1252.
    explicit CodePage(std::string_view aName);

    /// True where a name is empty, or names one that the system knows and in which plain letters are those of
    /// ASCII.
    static bool IsKnown(std::string_view aName);

    /// The name that protocols have for it where iconv has another ("windows-1251"), else that of iconv. Of a
    /// page that the system does not know that of Windows-1252, by which it is read.
    std::string GetName() const;

    /// The text as UTF-8. A byte that means nothing becomes U+FFFD (in Windows-1252 the control character of
    /// its number), and what a cut left of a last character is dropped.
    std::string ToUtf8(std::string_view aBytes) const;

private:
    std::string mConverter; ///< as iconv has it; empty for Windows-1252
};
