#include "ez/MediaParser.h"

#include "ez/MediaParserStream.h"

#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/containers/DataBuffer.h"

#include <algorithm>
#include <optional>

namespace {

/// The size of a block to read: no more than the media has, when that is known.
std::size_t BlockSize(std::size_t aWanted, const std::optional<std::uint64_t>& aMediaSize) {
    return static_cast<std::size_t>(std::min<std::uint64_t>(aWanted, aMediaSize.value_or(aWanted)));
}

} // namespace

ezMediaParser::ezMediaParser(const char* aType, ezPropertyList* anEnvironmentInfo, bool afCanExtractCoverArt)
    : ezBaseParser(aType, anEnvironmentInfo, afCanExtractCoverArt) {}

ezMediaParser::~ezMediaParser() = default;

ezMediaInfo* ezMediaParser::ParseFromStream(ezMediaParserStream& aMediaStream, std::size_t aBeginBufferSize,
                                            std::size_t aEndBufferSize) {
    const std::optional<std::uint64_t> size = ezKnownSize(aMediaStream.GetMediaSize());
    const std::size_t begin = BlockSize(aBeginBufferSize, size);
    std::size_t end = BlockSize(aEndBufferSize, size);

    const ezDataBuffer beginBuffer(begin);
    const ezDataBuffer endBuffer(end);
    if (beginBuffer.GetSize() != begin || endBuffer.GetSize() != end) {
        return nullptr;
    }
    if (begin != 0 && !aMediaStream.Read(begin, beginBuffer.data())) {
        return nullptr;
    }
    if (end != 0 && !aMediaStream.ReadFromEnd(end, static_cast<char*>(endBuffer.data()))) {
        ezLog_F(EZLOGLEVEL_WARNING, "ezMediaParser: Unable to read from end\n");
        end = 0;
    }
    return Read(static_cast<uint8*>(beginBuffer.data()), begin, static_cast<uint8*>(endBuffer.data()), end,
                ezSizeOrZero(size));
}

ezMediaInfo* ezMediaParser::Read(uint8* /*aBegin*/, std::size_t /*aBeginSize*/, uint8* /*aEnd*/,
                                 std::size_t /*aEndSize*/, const ezuint64& /*aMediaSize*/) {
    return nullptr;
}

bool ezMediaParser::IsBigEndianPlatform() {
    return __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__;
}
