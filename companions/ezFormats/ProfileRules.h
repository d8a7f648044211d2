#pragma once

#include "ezFormats/Export.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ezMediaInfo;

/// What is wrong with a table of profile rules, and where.
struct ProfileRulesProblem {
    std::size_t mLine; ///< from 1; 0 for the file as a whole
    std::string mText;
};

/// Which DLNA profile a media keeps, decided by a table that an operator can read and edit:
///
/// ```
/// # profile   MIME types   conditions
/// MP3         audio/mpeg   audio-codec=MP3 sampling-rate=32000,44100,48000 channels=1-2
/// audio-bit-rate=32000-320000 JPEG_SM     image/jpeg   process=baseline colours=grey,4:2:0,4:2:2 width=1-640
/// height=1-480
/// ```
///
/// Columns are parted by blanks, items of a column by commas; "#" begins a comment where a word could. A
/// condition names a fact of the record and what it may be: words, numbers, or ranges with both ends in. A
/// fact that the record does not state, or that varies without a bound, meets no condition. The first rule
/// all of whose conditions are met decides; a media that meets none has no profile. The facts and their names
/// are listed at the head of the built-in table.
///
/// Immutable once it is made, and shared by all parsers and threads.
class EZFORMATS_API ProfileRules {
public:
    ~ProfileRules();
    ProfileRules(const ProfileRules&) = delete;
    ProfileRules& operator=(const ProfileRules&) = delete;

    /// The table that the library brings.
    static std::shared_ptr<const ProfileRules> BuiltIn();
    /// Its text, with the comments that explain it: what an operator starts from.
    static std::string_view BuiltInText();

    /// Null when there is a problem; *aProblems, unless null, receives every one, in the order of the lines:
    /// a line that cannot be read, a profile that DLNA does not know, a MIME type that no parser here gives,
    /// a condition that nothing can meet, and a rule that can never win, because an earlier one wins
    /// whenever it would.
    static std::shared_ptr<const ProfileRules> FromText(std::string_view aText,
                                                        std::vector<ProfileRulesProblem>* aProblems);
    /// The same of a file. One that cannot be read, or is larger than a table can be, is a problem of line 0.
    static std::shared_ptr<const ProfileRules> FromFile(const ezCString& aPath,
                                                        std::vector<ProfileRulesProblem>* aProblems);

    /// The profile that a record keeps, by its MIME type and facts alone; empty when none.
    ezCString FindProfile(const ezMediaInfo& anInfo) const;

    /// What media of some MIME types (parted by ",") can be announced as: "MIME:DLNA.ORG_PN=X" of every rule,
    /// each once, in the order of the table, and then "MIME:*" of each type. Entries are parted by ",".
    ezCString GetProfileInfo(std::string_view aMimeTypes) const;

private:
    struct Rule;
    ProfileRules();

    std::vector<Rule> mRules;
};
