#include "ez/GenericFileParser.h"

#include "ez/MediaParserStream.h"

#include "ezPlatform/media/MediaInfo.h"

ezGenericFileParser::ezGenericFileParser(const ezCString& anExtension, const ezCString& aMimeType,
                                         const ezCString& anItemClassName, ezPropertyList* anEnvironmentInfo)
    : ezMediaParser("*", anEnvironmentInfo, false),
      mMimeType(aMimeType),
      mItemClassName(anItemClassName),
      mExtension(anExtension),
      mName("ezGenericFileParser(" + anExtension + " -> " + aMimeType + "," + anItemClassName + ")") {}

ezGenericFileParser::~ezGenericFileParser() = default;

ezMediaInfo* ezGenericFileParser::Parse(ezMediaParserStream& aStream) {
    if (aStream.GetExtension() != mExtension) {
        return nullptr;
    }
    ezMediaInfo* info = new ezMediaInfo;
    info->Set(kezInfo_MimeType, mMimeType, true);
    info->Set(kezInfo_ClassName, mItemClassName, true);
    return info;
}
