#include "ezFormats/detail/MagicParser.h"

#include "ezFormats/detail/FormatMagic.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"

MagicParser::MagicParser() : ezMediaParser("any", nullptr, false) {}

MagicParser::~MagicParser() = default;

ezMediaInfo* MagicParser::Parse(ezMediaParserStream& aStream) {
    if (mManager == nullptr) {
        return nullptr;
    }
    const ezuint64 start = aStream.Tell();
    const char* type = nullptr;
    {
        MediaBytes bytes(aStream, kMagic_MaxReads, kMagic_MaxBytes); // whose memory the parsers can have
        type = FormatMagic_Find(bytes);
    }
    if (type == nullptr) {
        return nullptr;
    }
    // A parser of the host's own may read on from where the stream stands.
    aStream.Seek(start, ezMediaParserStream::SeekFromStart, true);
    return mManager->ParseFromType(type, aStream);
}

bool MagicParser::AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) {
    return false;
}

ezCString MagicParser::GetDLNAInfo() {
    return ezCString();
}
