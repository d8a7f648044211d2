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

    virtual bool HasData() = 0;
    virtual void Clear() = 0;
    virtual ParsingStatus Parse(ezMediaParserStream& aStream) = 0;
    virtual bool Step(unsigned long, long) = 0;
    virtual bool GetSubtitleInfo(bool*, unsigned long*, unsigned long*) = 0;
    virtual bool GetSubtitleText(ezCString& aText) = 0;

    ezCString GetType() const { return mType; }
    void SetEnvironmentInfo(ezPropertyList* aEnvironmentInfo) { mEnvironmentInfo = aEnvironmentInfo; }

protected:
    ezCString mType;
    ezPropertyList* mEnvironmentInfo;
};
