#include "ezFormats/asf/ASFHeader.h"

#include "ezFormats/asf/ASFLimits.h"

#include <algorithm>

namespace {

/// The stream of a number, which objects name in any order; null where there are too many.
ASFStreamFacts* StreamOf(ASFHeader& aHeader, unsigned aNumber) {
    std::vector<ASFStreamFacts>& streams = aHeader.mStreams;
    const auto stream =
        std::find_if(streams.begin(), streams.end(),
                     [aNumber](const ASFStreamFacts& aStream) { return aStream.mNumber == aNumber; });
    if (stream != streams.end()) {
        return &*stream;
    }
    if (streams.size() == kASF_MaxStreams) {
        return nullptr;
    }
    streams.emplace_back();
    streams.back().mNumber = aNumber;
    return &streams.back();
}

void TakeStream(ASFHeader& aHeader, const ByteReader& aObject) {
    const std::optional<ASFStream> stream = ReadASFStream(aObject);
    ASFStreamFacts* const facts = stream ? StreamOf(aHeader, stream->mNumber) : nullptr;
    if (facts == nullptr || facts->mfDescribed) {
        return;
    }
    facts->mKind = stream->mKind;
    facts->mfEncrypted = stream->mfEncrypted;
    facts->mfDescribed =
        stream->mKind != ASFStreamKind::Sound || ReadWaveFormat(stream->mFormat, false, &facts->mSound);
}

void TakeExtendedStream(ASFHeader& aHeader, const ByteReader& aObject, std::uint32_t& aBudget) {
    const std::optional<ASFExtendedStream> stream = ReadASFExtendedStream(aObject);
    ASFStreamFacts* const facts = stream ? StreamOf(aHeader, stream->mNumber) : nullptr;
    if (facts == nullptr) {
        return;
    }
    facts->mHighBitRate = stream->mBitRate;
    ASFWalk walk(stream->mObjects, aBudget);
    ASFGuid kind;
    for (ByteReader content = stream->mObjects; walk.Next(&kind, &content);) {
        if (kind == kASF_StreamProperties) {
            TakeStream(aHeader, content);
        }
    }
}

void TakeBitRates(ASFHeader& aHeader, const ByteReader& aObject) {
    ASFBitRates rates(aObject);
    for (ASFBitRate rate; rates.Next(&rate);) {
        if (ASFStreamFacts* const facts = StreamOf(aHeader, rate.mNumber)) {
            facts->mMeanBitRate = rate.mBitRate;
        }
    }
}

void TakeFirst(std::optional<ByteReader>& aTexts, const ByteReader& aObject) {
    if (!aTexts) {
        aTexts = aObject;
    }
}

void TakeTexts(ASFHeader& aHeader, const ASFGuid& aKind, const ByteReader& aObject) {
    if (aKind == kASF_ContentDescription) {
        TakeFirst(aHeader.mDescription, aObject);
    } else if (aKind == kASF_ExtendedContent) {
        TakeFirst(aHeader.mContent, aObject);
    } else if (aKind == kASF_Metadata) {
        TakeFirst(aHeader.mMetadata, aObject);
    } else if (aKind == kASF_MetadataLibrary) {
        TakeFirst(aHeader.mLibrary, aObject);
    }
}

bool IsEncryption(const ASFGuid& aKind) {
    return aKind == kASF_ContentEncryption || aKind == kASF_ExtendedContentEncryption ||
           aKind == kASF_AdvancedContentEncryption;
}

} // namespace

std::uint32_t ASFStreamFacts::GetBitRate() const {
    if (mMeanBitRate != 0) {
        return mMeanBitRate;
    }
    const std::uint64_t bits = std::uint64_t{mSound.mAverageBytes} * 8;
    return mHighBitRate != 0 ? mHighBitRate
                             : static_cast<std::uint32_t>(std::min<std::uint64_t>(bits, UINT32_MAX));
}

const ASFStreamFacts* ASFHeader::Find(ASFStreamKind aKind) const {
    const ASFStreamFacts* found = nullptr;
    for (const ASFStreamFacts& stream : mStreams) {
        if (stream.IsOf(aKind) && (found == nullptr || stream.GetBitRate() > found->GetBitRate())) {
            found = &stream;
        }
    }
    return found;
}

std::uint32_t ASFHeader::Count(ASFStreamKind aKind) const {
    const auto count = std::count_if(mStreams.begin(), mStreams.end(),
                                     [aKind](const ASFStreamFacts& aStream) { return aStream.IsOf(aKind); });
    return static_cast<std::uint32_t>(count);
}

ASFHeader ReadASFHeaderObjects(const ByteReader& aObjects, std::uint32_t& aBudget) {
    ASFHeader header;
    ASFHeaderWalk walk(aObjects, aBudget);
    ASFGuid kind;
    bool fFile = false;
    for (ByteReader object = aObjects; walk.Next(&kind, &object);) {
        if (kind == kASF_FileProperties && !fFile) {
            ASFFileProperties file;
            fFile = ReadASFFileProperties(object, &file);
            header.mFile = fFile ? file : header.mFile;
        } else if (kind == kASF_StreamProperties) {
            TakeStream(header, object);
        } else if (kind == kASF_ExtendedStreamProperties) {
            TakeExtendedStream(header, object, aBudget);
        } else if (kind == kASF_StreamBitRates) {
            TakeBitRates(header, object);
        } else if (IsEncryption(kind)) {
            header.mfEncrypted = true;
        } else {
            TakeTexts(header, kind, object);
        }
    }
    return header;
}
