#include "fuzz/support/EltStreamDoor.h"

#include "fuzz/support/Check.h"
#include "fuzz/support/FuzzInput.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Parser = ezElementaryStreamParser;

constexpr std::size_t kMaximumCuts = 16;
constexpr std::size_t kMaximumRepeats = 8;
constexpr std::size_t kMaximumStream = 256 * 1024; ///< well below what the formats search

constexpr uint32 kMaximumRate = 96000;
constexpr uint32 kMaximumChannels = 8;
constexpr uint32 kMaximumSide = 16384;

struct Result {
    Parser::parsing_status_t mStatus;
    std::string mRecord;

    bool operator==(const Result& anOther) const {
        return mStatus == anOther.mStatus && mRecord == anOther.mRecord;
    }
};

struct Format {
    MakeEltStreamParser mMake;
    const char* mCodecKey;
    std::initializer_list<const char*> mCodecs;
};

void CheckRange(const ezMediaInfo& anInfo, const char* aKey, uint32 aMaximum) {
    FuzzCheck(!anInfo.Has(aKey) || (anInfo.GetUInt32(aKey, 0) != 0 && anInfo.GetUInt32(aKey, 0) <= aMaximum));
}

void CheckRecord(const Format& aFormat, const ezMediaInfo& anInfo, Parser::parsing_status_t aStatus) {
    if (aStatus != Parser::MSS_COMPLETED) {
        FuzzCheck(anInfo.GetCount() == 0); // only what is sure is told
        return;
    }
    const ezCString codec = anInfo.GetCString(aFormat.mCodecKey, "");
    FuzzCheck(std::any_of(aFormat.mCodecs.begin(), aFormat.mCodecs.end(),
                          [&](const char* aCodec) { return codec == aCodec; }));
    CheckRange(anInfo, kezInfo_AudioSamplingRate, kMaximumRate);
    CheckRange(anInfo, kezInfo_AudioChannelCount, kMaximumChannels);
    CheckRange(anInfo, kezInfo_PictureWidth, kMaximumSide);
    CheckRange(anInfo, kezInfo_PictureHeight, kMaximumSide);
    const bool fPicture = std::strcmp(aFormat.mCodecKey, kezInfo_VideoCodec) == 0;
    FuzzCheck(anInfo.Has(kezInfo_PictureWidth) == fPicture && anInfo.Has(kezInfo_PictureHeight) == fPicture);
    FuzzCheck(anInfo.Has(kezInfo_AudioSamplingRate) != fPicture);
}

Result Finish(const Format& aFormat, Parser& aParser) {
    const Parser::parsing_status_t status = aParser.GetParserStatus();
    // Whatever the content, the formats go on searching up to their limit.
    FuzzCheck(status == Parser::MSS_IN_PROGRESS || status == Parser::MSS_COMPLETED);
    const std::unique_ptr<ezMediaInfo> info(aParser.Close());
    FuzzCheck(info != nullptr && aParser.GetMediaInfo() == nullptr);
    CheckRecord(aFormat, *info, status);
    return {status, std::string(info->GetOtherProperties().View())};
}

Result PlayWhole(const Format& aFormat, const std::string& aStream) {
    const std::unique_ptr<Parser> parser(aFormat.mMake(new ezMediaInfo));
    parser->Open();
    PushEltStream(*parser, aStream, 0, aStream.size(), false);
    return Finish(aFormat, *parser);
}

Result PlayPieces(const Format& aFormat, const EltStreamInput& anInput) {
    const std::unique_ptr<Parser> parser(aFormat.mMake(new ezMediaInfo));
    parser->Open();
    std::size_t position = 0;
    for (std::size_t i = 0; position < anInput.mStream.size(); ++i) {
        const std::size_t size = anInput.PacketSize(i, position);
        PushEltStream(*parser, anInput.mStream, position, size, false);
        position += size;
    }
    return Finish(aFormat, *parser);
}

/// A loss after the first part: the rest must come to what it comes to alone, unless the part has decided.
void CheckLoss(const Format& aFormat, const std::string& aStream, std::size_t aLossAt) {
    const std::unique_ptr<Parser> parser(aFormat.mMake(new ezMediaInfo));
    parser->Open();
    if (PushEltStream(*parser, aStream, 0, aLossAt, false) == Parser::MSS_IN_PROGRESS) {
        PushEltStream(*parser, aStream, aLossAt, aStream.size() - aLossAt, true);
        FuzzCheck(Finish(aFormat, *parser) == PlayWhole(aFormat, aStream.substr(aLossAt)));
    }
}

void CheckWithoutRecord(const Format& aFormat, const std::string& aStream, Parser::parsing_status_t aStatus) {
    const std::unique_ptr<Parser> parser(aFormat.mMake(nullptr));
    parser->Open();
    FuzzCheck(PushEltStream(*parser, aStream, 0, aStream.size(), false) == aStatus);
    FuzzCheck(parser->Close() == nullptr);
}

/// Small packets, and now and then one of some thousand bytes.
std::vector<std::size_t> DecodeCuts(FuzzInput& anInput) {
    std::vector<std::size_t> cuts(anInput.Byte() % (kMaximumCuts + 1));
    std::size_t sum = 0;
    for (std::size_t& cut : cuts) {
        const std::size_t byte = anInput.Byte();
        cut = byte < 224 ? byte : (byte - 223) * 500;
        sum += cut;
    }
    return sum != 0 ? cuts : std::vector<std::size_t>();
}

} // namespace

EltStreamInput::EltStreamInput(const std::uint8_t* aData, std::size_t aSize) {
    FuzzInput input(aData, aSize);
    const std::size_t repeats = 1 + input.Byte() % kMaximumRepeats;
    const std::uint64_t lossAt = input.Number(2);
    mCuts = DecodeCuts(input);
    std::string part;
    while (!input.IsEmpty()) {
        part.push_back(static_cast<char>(input.Byte()));
    }
    for (std::size_t i = 0; i < repeats && mStream.size() + part.size() <= kMaximumStream; ++i) {
        mStream += part;
    }
    mLossAt = static_cast<std::size_t>(lossAt % (mStream.size() + 1));
}

std::size_t EltStreamInput::PacketSize(std::size_t anIndex, std::size_t aPosition) const {
    return std::min(mCuts.empty() ? 1 : mCuts[anIndex % mCuts.size()], mStream.size() - aPosition);
}

ezElementaryStreamParser::parsing_status_t PushEltStream(ezElementaryStreamParser& aParser,
                                                         const std::string& aStream, std::size_t aFrom,
                                                         std::size_t aSize, bool afLost) {
    const std::unique_ptr<char[]> packet(new char[aSize]);
    std::copy_n(aStream.begin() + static_cast<std::ptrdiff_t>(aFrom), aSize, packet.get());
    return aParser.AddPacket(packet.get(), static_cast<uint32>(aSize), afLost);
}

void FuzzEltStream(const std::uint8_t* aData, std::size_t aSize, MakeEltStreamParser aMake,
                   const char* aCodecKey, std::initializer_list<const char*> aCodecs) {
    const FuzzHouse house;
    const Format format = {aMake, aCodecKey, aCodecs};
    const EltStreamInput input(aData, aSize);
    const Result whole = PlayWhole(format, input.mStream);
    FuzzCheck(PlayPieces(format, input) == whole);
    CheckLoss(format, input.mStream, input.mLossAt);
    CheckWithoutRecord(format, input.mStream, whole.mStatus);
}
