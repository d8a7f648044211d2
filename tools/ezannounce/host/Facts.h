#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class ezDateTime;
class ezMediaInfo;

/// One thing that a record tells, ready to be shown.
struct Fact {
    std::string mKey;      ///< the record's two-letter key, or "" for what is no keyed value
    std::string mMember;   ///< what ezParseObserver::FactStated calls that, or "" for a keyed value
    std::string mName;     ///< for programs: "bit_rate"; "" for a key that has no name of its own
    std::string mLabel;    ///< for people: "bit rate"
    std::string mWords;    ///< for people: "128 kbit/s"; not escaped
    bool mfNumber = false; ///< the value is mNumber, in mDivisor-ths, else mText
    bool mfFlag = false;   ///< the value is a yes or no: mNumber 1 or 0
    std::uint64_t mNumber = 0;
    unsigned mDivisor = 1; ///< 1000 of a frame rate
    std::string mText;
    std::vector<std::string> mValues; ///< of a text that lists them; empty of any other
};

/// Everything that a record tells, in the order in which it is shown. A rate that is not known is left out,
/// and one that varies or cannot be told is the text "variable". The record of LPCM media keeps the sampling
/// rate under "ar"; the rates derived from that are no bit rates and come without a name, as do keys that
/// this tool does not know.
std::vector<Fact> FactsOf(const ezMediaInfo& anInfo);

/// The fact of a name for programs; null where there is none.
const Fact* FindFactNamed(const std::vector<Fact>& aFacts, std::string_view aName);

/// The 4th field as it is announced: "*" where the record has none.
std::string AnnouncedFourthField(const ezMediaInfo& anInfo);

/// "http-get:*:TYPE:FIELD".
std::string ProtocolInfo(const ezMediaInfo& anInfo);

/// "2024-02-29T12:34:56Z"; "" for a time that is not set or beyond the calendar.
std::string Iso8601(const ezDateTime& aTime);

/// The values of a text that lists several with a separator between them.
std::vector<std::string> ListedValues(std::string_view aText, char aSeparator);

/// "1.2 MiB".
std::string SizeInWords(std::uint64_t aSize);
