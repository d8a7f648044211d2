#include "ez/SubtitleParser.h"

ezBaseSubtitleParser::ezBaseSubtitleParser(const ezCString& aType, ezPropertyList* aEnvironmentInfo)
    : mType(aType), mEnvironmentInfo(aEnvironmentInfo) {}

ezBaseSubtitleParser::~ezBaseSubtitleParser() = default;
