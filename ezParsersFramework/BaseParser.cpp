#include "ez/BaseParser.h"

#include "ez/Environment.h"

ezBaseParser::ezBaseParser(const char* aType, ezPropertyList* anEnvironmentInfo, bool afCanExtractCoverArt)
    : mEnvironmentInfo(anEnvironmentInfo), mType(aType), mCanExtractCoverArt(afCanExtractCoverArt) {}

ezBaseParser::~ezBaseParser() = default;

ezMediaInfo* ezBaseParser::Parse(ezMediaParserStream& /*aStream*/) {
    return nullptr;
}

ezCString ezBaseParser::GetDLNAInfo() {
    return ezCString();
}

uint32 ezBaseParser::GetSpecsLevel() const {
    return ezPropertyList_Get_uint32(mEnvironmentInfo, kProperty_Parser_SpecsLevel);
}

uint32 ezBaseParser::GetCTTContext() const {
    return ezPropertyList_Get_uint32(mEnvironmentInfo, kProperty_CTTContext);
}
