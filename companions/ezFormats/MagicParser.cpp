#include "ezFormats/MagicParser.h"

#include "ezFormats/detail/FormatMagic.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ez/MediaParserManager.h"

MagicParser::MagicParser() : ezMediaParser("any", nullptr, false) {}

MagicParser::~MagicParser() = default;

ezMediaInfo* MagicParser::Parse(ezMediaParserStream& aStream) {
    if (mManager == nullptr) {
        return nullptr;
    }
    const char* type = nullptr;
    {
        MediaBytes bytes(aStream, kMagic_MaxReads, kMagic_MaxBytes); // whose memory the parsers can have
        type = FormatMagic_Find(bytes);
    }
    return type != nullptr ? mManager->ParseFromType(type, aStream) : nullptr;
}

bool MagicParser::AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) {
    return false;
}

ezCString MagicParser::GetDLNAInfo() {
    return ezCString();
}
