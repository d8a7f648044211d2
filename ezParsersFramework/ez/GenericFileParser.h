#pragma once

#include "ez/MediaParser.h"

/// Recognises one file extension and answers with a fixed MIME type and UPnP class; reads no content. A host
/// derives from it and supplies AdjustDLNAInfo.
class EZPARSERS_API ezGenericFileParser : public ezMediaParser {
public:
    /// @param anExtension       compared exactly with the stream's lower-case extension: write it in lower
    /// case
    /// @param aMimeType         the answer's "mt"
    /// @param anItemClassName   the answer's "cn"
    /// @param anEnvironmentInfo borrowed, may be null
    ezGenericFileParser(const ezCString& anExtension, const ezCString& aMimeType,
                        const ezCString& anItemClassName, ezPropertyList* anEnvironmentInfo);
    ~ezGenericFileParser() override;

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;

protected:
    ezCString mMimeType;      ///< of the answer
    ezCString mItemClassName; ///< of the answer
    ezCString mExtension;     ///< that is answered, compared exactly
    ezCString mName;          ///< "ezGenericFileParser(mp3 -> audio/mpeg,item.audioItem)", for diagnostics
};
