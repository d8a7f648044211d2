#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/text/CString.h"

class ezMediaParserStream;
struct ezPropertyList;

/// How the parsing of a subtitle media ended.
enum ParsingStatus : int {
    kParsingStatusSuccess = 0,
    kParsingStatusInternalError = 1,
    kParsingStatusReadError = 2,
    kParsingStatusUnknownFormat = 3,
    kParsingStatusInvalidFormat = 4,
    kParsingStatusMax = 5
};

/// The interface of subtitle parsers, which other components implement. What the arguments of Step,
/// GetSubtitleInfo and GetSubtitleText mean is agreed between them and their callers.
class EZPARSERS_API ezBaseSubtitleParser {
public:
    /// @param aType              the kind of subtitles
    /// @param aEnvironmentInfo   borrowed, may be null
    ezBaseSubtitleParser(const ezCString& aType, ezPropertyList* aEnvironmentInfo);
    virtual ~ezBaseSubtitleParser();

    ezBaseSubtitleParser(const ezBaseSubtitleParser&) = delete;
    ezBaseSubtitleParser& operator=(const ezBaseSubtitleParser&) = delete;

    /// True when there are subtitles to ask for.
    virtual bool HasData() = 0;
    /// Forgets the subtitles.
    virtual void Clear() = 0;
    /// Reads subtitles from a stream and tells how that ended.
    virtual ParsingStatus Parse(ezMediaParserStream& aStream) = 0;
    /// Goes to a subtitle; to which, implementation and caller agree.
    virtual bool Step(unsigned long, long) = 0;
    /// Tells about the subtitle that Step went to.
    virtual bool GetSubtitleInfo(bool*, unsigned long*, unsigned long*) = 0;
    /// Fills aText with the text of the subtitle that Step went to.
    virtual bool GetSubtitleText(ezCString& aText) = 0;

    /// The kind of subtitles, as it was given.
    ezCString GetType() const { return mType; }
    /// Exchanges the environment: borrowed, null for none.
    void SetEnvironmentInfo(ezPropertyList* aEnvironmentInfo) { mEnvironmentInfo = aEnvironmentInfo; }

protected:
    ezCString mType;                  ///< what GetType tells
    ezPropertyList* mEnvironmentInfo; ///< borrowed; null when there is none
};
