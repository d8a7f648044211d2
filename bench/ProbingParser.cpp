#include "bench/ProbingParser.h"

#include "ez/MediaParserStream.h"
#include "ez/UPnPClasses.h"
#include "ezPlatform/media/MediaInfo.h"

ProbingParser::~ProbingParser() = default;

ezMediaInfo* ProbingParser::Parse(ezMediaParserStream& aStream) {
    for (const Probe& probe : kProbes) {
        std::array<char, kLargestProbe> bytes;
        if (!aStream.ReadFrom(probe.mPosition, probe.mSize, bytes.data()) || bytes[0] != kMark) {
            return nullptr;
        }
    }
    ezMediaInfo* info = new ezMediaInfo;
    info->Set(kezInfo_MimeType, "video/mpeg", true);
    info->Set(kezInfo_ClassName, kezUPnPClass_VideoItem, true);
    return info;
}
