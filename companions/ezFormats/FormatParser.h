#pragma once

#include "ez/Environment.h"
#include "ez/MediaParser.h"

#include "ezFormats/Export.h"
#include "ezFormats/ProfileRules.h"

#include <memory>

class MediaBytes;
struct ExtensionMimeTypeMatcherEntry;
struct FormatDescription;

/// The base of the parsers of this library: it reads the media within a budget, lets the format fill a
/// record, and announces what the format found.
///
/// A format states its MIME type and its facts; class and 4th field follow from these, and the media types
/// file has a word in both names. The class is, in this order: that of the line that led to the parser, where
/// it is of the content's kind (audio, video, image; by the MIME type); that of the first line of the MIME
/// type that is; the kind alone. The MIME type is the first one of the line that led to the parser where that
/// is only another name of the format's own ("audio/x-m4a" of "audio/mp4"), and no profile was found, as a
/// profile is defined for the one type. Where the rule that gives the profile names another type to announce
/// than the format stated, it is that one, if the record has no 4th field yet.
///
/// The 4th field holds
/// the profile that the rules give, if they do; "DLNA.ORG_OP=01" for a media of known size, which can be
/// read from any byte on; and, with a profile, the flags: version 1.5, background transfer, and interactive
/// transfer for a picture, streaming for all else. DLNA.ORG_CI is left out, as it always is 0, and old
/// renderers prefer any resource that states it. Without a profile there are no flags (DLNA guidelines
/// 7.4.1.3.17).
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

    /// Why a media is refused, as the log says it: it breaks its format, or ends early; it is a kind of the
    /// format that is not read; it needs more than one parse may cost or hold; the stream failed.
    enum class Cause { Malformed, Unsupported, Limit, ReadError };

    /// Logs why a media is refused, for a person who looks for the reason. Always false. The format is of
    /// printf, without a line end.
    bool Refuse(Cause aCause, const char* aFormat, ...) const __attribute__((format(printf, 3, 4)));
    /// Refuses a media of which a reading did not get so far, because it ends, because the budget does, or by
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
