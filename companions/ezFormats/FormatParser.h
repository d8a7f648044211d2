#pragma once

#include "ez/Environment.h"
#include "ez/MediaParser.h"
#include "ez/ParseObserver.h"

#include "ezFormats/Export.h"
#include "ezFormats/ProfileRules.h"

#include <memory>

class MediaBytes;
struct ExtensionMimeTypeMatcherEntry;
struct FormatDescription;

/// The base of the parsers of this library: it reads a file within a budget, lets the format fill a record,
/// and announces what the format found.
///
/// A format states its MIME type and its facts; class and 4th field follow from these, and the media types
/// file has a word in the class and in the name of the type. The 4th field holds the profile that the rules
/// give, if they do; "DLNA.ORG_OP=01" for a file of known size, which can be read from any byte on; and, with
/// a profile, the flags. The order in which all of this is decided: docs/file-formats.md.
class EZFORMATS_API FormatParser : public ezMediaParser {
public:
    ~FormatParser() override;

    /// The first read is at the start of the media, wherever the stream stands.
    ezMediaInfo* Parse(ezMediaParserStream& aStream) final;

    /// Completes class and 4th field of a record that has one of the parser's MIME types, by any of their
    /// names; what is there stays. The size ("fs") must be stated for media that can be read from any byte
    /// on.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) final;

    /// The profiles that the rules can give, and the MIME types alone.
    ezCString GetDLNAInfo() final;

    /// The environment's kProperty_TextCodePage; "" without one.
    const char* GetTextCodePage() const;

protected:
    /// @param aDescription  of the format; must live as long as the parser
    /// @param aRules        not null
    FormatParser(const FormatDescription& aDescription, std::shared_ptr<const ProfileRules> aRules);

    /// Reads the media and fills the record with its facts, and with its MIME type where that is not the
    /// first one of the format's. False, after Refuse said why, for what is not of the format; the record is
    /// then thrown away.
    virtual bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) = 0;

    /// Whether a file may be read whole for the length of sound of a varying rate, as the media types file of
    /// the manager says; false without one.
    bool MayReadWholeMedia() const;

    /// Why a file is refused.
    using Cause = ezParseRefusal;

    /// Says why a file is refused, for a person who looks for the reason: logs it, and tells it to the
    /// manager's observer. Always false. The format is of printf, without a line end; one that
    /// is too long for a line of a log is cut.
    bool Refuse(Cause aCause, const char* aFormat, ...) const __attribute__((format(printf, 3, 4)));
    /// Refuses a file of which a reading did not get so far, because it ends, because the budget does, or by
    /// an error of the stream. Always false.
    bool RefuseCut(const MediaBytes& aBytes, const char* aBefore) const;

private:
    bool IsOurs(const ezCString& aMimeType) const;
    /// @param anEntry  the line of the media types file that led here; null when there is none
    void Announce(ezMediaInfo& anInfo, bool afSizeKnown, const ExtensionMimeTypeMatcherEntry* anEntry) const;
    void SetClass(ezMediaInfo& anInfo, const char* aKind, const ExtensionMimeTypeMatcherEntry* anEntry) const;

    const FormatDescription& mDescription;
    std::shared_ptr<const ProfileRules> mRules;
};
