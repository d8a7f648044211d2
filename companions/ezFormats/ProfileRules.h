#pragma once

#include "ezFormats/Export.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ezMediaInfo;
struct ProfileRuleList;
class ProfileRuleTable;

/// What is wrong with a table of profile rules, and where.
struct ProfileRulesProblem {
    std::size_t mLine; ///< from 1; 0 for the file as a whole
    std::string mText; ///< for a person: printable ASCII without a line end
};

/// What a record is announced as by the rules.
struct ProfileMatch {
    ezCString mProfile;  ///< empty where no rule is met
    ezCString mMimeType; ///< the type that the profile is announced with; empty where the record's own stays
};

/// Which DLNA profile a file or stream keeps, decided by a table that an operator can read and edit:
///
/// ```
/// # profile  MIME types  conditions
/// MP3        audio/mpeg  audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
/// JPEG_SM    image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 size=-640x480
/// ```
///
/// The first rule all of whose conditions a record meets decides; without one there is no profile. A MIME
/// type may be followed by ">" and the one to announce: a profile can ask for another than a file without a
/// profile is best announced with. Lines may say which region's names are preferred, whether inferred rules
/// count, and how names end by the packets of transport streams. docs/profile-rules.md tells the whole
/// language, and the head of the built-in table the facts.
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

    /// Null when there is a problem; *aProblems, unless null, then holds every one and nothing else, in the
    /// order of the lines: a line that cannot be read, a profile that DLNA does not know, a MIME type that no
    /// parser here gives, a condition that nothing can meet, and a rule that can never win, because for each
    /// of its MIME types one earlier rule wins whenever it would. A text of more than 256 KiB is a problem of
    /// line 0, and a rule after the 2,000th one of its line; neither is read on. Problems are printable
    /// ASCII, whatever the text holds. A text without a rule is sound, and gives no media a profile.
    static std::shared_ptr<const ProfileRules> FromText(std::string_view aText,
                                                        std::vector<ProfileRulesProblem>* aProblems);
    /// The same of a file. One that cannot be read, or is larger than a table can be, is a problem of line 0.
    static std::shared_ptr<const ProfileRules> FromFile(const ezCString& aPath,
                                                        std::vector<ProfileRulesProblem>* aProblems);

    /// The profile that a record keeps, by its MIME type (whose case and parameters do not matter) and facts
    /// alone, and the type that it is announced with. There is none for free format
    /// (kezMediaInfo_FreeFormat), whose rates are in no profile's list.
    ProfileMatch FindMatch(const ezMediaInfo& anInfo) const;
    /// The profile of it alone.
    ezCString FindProfile(const ezMediaInfo& anInfo) const { return FindMatch(anInfo).mProfile; }

    /// What media of some MIME types (separated by ",") can be announced as: "MIME:DLNA.ORG_PN=X" of every
    /// rule that can win, with the type that it announces, each once, in the order of the table after the
    /// rules of the preferred region (of one rule in the order asked), and then "MIME:*" of each type.
    /// Entries are separated by ",".
    ezCString GetProfileInfo(std::string_view aMimeTypes) const;

private:
    explicit ProfileRules(ProfileRuleList aList);

    std::unique_ptr<const ProfileRuleList> mList;   ///< those that count, as they are asked
    std::unique_ptr<const ProfileRuleTable> mTable; ///< of the list
};
