#include "ezFormats/asf/ASFHeader.h"

#include "ezBytes/LanguageTags.h"
#include "ezFormats/asf/ASFLimits.h"
#include "ezFormats/asf/ASFVideo.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/TextBytes.h"

#include <algorithm>
#include <bitset>
#include <iterator>

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

/// A subtype that is a codec of its own goes before the tag, which recorders of television leave as anything.
bool ReadSound(const ASFStream& aStream, WaveFormat& aFormat) {
    const bool fWave = aStream.mForm == ASFForm::Own || aStream.mForm == ASFForm::Wave;
    if (!fWave || !ReadWaveFormat(aStream.mFormat, false, &aFormat)) {
        return false;
    }
    if (aStream.mSubtype == kASF_SubtypeAC3) {
        aFormat.mCodec = "AC3";
    } else if (aStream.mSubtype == kASF_SubtypeMPEG2Audio) {
        aFormat.mCodec = "MP2";
    }
    return true;
}

void TakeStream(ASFHeader& aHeader, const ByteReader& aObject) {
    const std::optional<ASFStream> stream = ReadASFStream(aObject);
    ASFStreamFacts* const facts = stream ? StreamOf(aHeader, stream->mNumber) : nullptr;
    if (facts == nullptr || facts->mfDescribed) {
        return;
    }
    facts->mKind = stream->mKind;
    facts->mfEncrypted = stream->mfEncrypted;
    facts->mfDescribed = stream->mKind != ASFStreamKind::Sound || ReadSound(*stream, facts->mSound);
    if (stream->mKind == ASFStreamKind::Video) {
        facts->mVideo = ReadASFVideo(*stream);
        facts->mfRecorded = stream->mForm != ASFForm::Own;
    }
}

void TakeExtendedStream(ASFHeader& aHeader, const ByteReader& aObject, std::uint32_t& aBudget) {
    const std::optional<ASFExtendedStream> stream = ReadASFExtendedStream(aObject);
    ASFStreamFacts* const facts = stream ? StreamOf(aHeader, stream->mNumber) : nullptr;
    if (facts == nullptr) {
        return;
    }
    facts->mHighBitRate = stream->mBitRate;
    facts->mFrameTime = stream->mFrameTime;
    facts->mLanguage = stream->mLanguage;
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

void TakeExclusion(ASFHeader& aHeader, const ByteReader& aObject) {
    ASFExclusion exclusion(aObject);
    unsigned first = 0;
    for (unsigned number = 0; exclusion.IsByBitRate() && exclusion.Next(&number);) {
        first = first != 0 ? first : number;
        if (ASFStreamFacts* const facts = StreamOf(aHeader, number)) {
            facts->mFirstRival = first;
        }
    }
}

void TakeLanguages(ASFHeader& aHeader, const ByteReader& aObject) {
    ASFLanguages languages(aObject);
    ByteReader name = aObject;
    while (aHeader.mLanguages.size() < kASF_MaxLanguages && languages.Next(&name)) {
        aHeader.mLanguages.emplace_back();
        AddLanguages(aHeader.mLanguages.back(),
                     ReadCleanText(name, TextEncoding::Utf16Little, CodePage()).View());
    }
}

/// The first of a kind counts.
template <std::optional<ByteReader> ASFHeader::*Texts>
void TakeTexts(ASFHeader& aHeader, const ByteReader& aObject) {
    if (!(aHeader.*Texts)) {
        aHeader.*Texts = aObject;
    }
}

/// Objects, and what takes each of them.
struct Taker {
    ASFGuid mKind;
    void (*mTake)(ASFHeader& aHeader, const ByteReader& aObject);
};
constexpr Taker kTakers[] = {{kASF_StreamProperties, TakeStream},
                             {kASF_StreamBitRates, TakeBitRates},
                             {kASF_BitRateExclusion, TakeExclusion},
                             {kASF_AdvancedExclusion, TakeExclusion},
                             {kASF_LanguageList, TakeLanguages},
                             {kASF_ContentDescription, TakeTexts<&ASFHeader::mDescription>},
                             {kASF_ExtendedContent, TakeTexts<&ASFHeader::mContent>},
                             {kASF_Metadata, TakeTexts<&ASFHeader::mMetadata>},
                             {kASF_MetadataLibrary, TakeTexts<&ASFHeader::mLibrary>}};

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

const ASFStreamFacts* ASFHeader::FindLowest(ASFStreamKind aKind) const {
    const ASFStreamFacts* found = nullptr;
    for (const ASFStreamFacts& stream : mStreams) {
        if (stream.IsOf(aKind) && (found == nullptr || stream.mNumber < found->mNumber)) {
            found = &stream;
        }
    }
    return found;
}

const ASFStreamFacts* ASFHeader::Find(ASFStreamKind aKind) const {
    const ASFStreamFacts* const first = FindLowest(aKind);
    const ASFStreamFacts* found = nullptr;
    for (const ASFStreamFacts& stream : mStreams) {
        if (stream.IsOf(aKind) && stream.mLanguage == first->mLanguage &&
            (found == nullptr || stream.GetBitRate() > found->GetBitRate())) {
            found = &stream;
        }
    }
    return found;
}

std::uint32_t ASFHeader::Count(ASFStreamKind aKind) const {
    std::bitset<kASF_MaxStreamNumber + 1> counted;
    for (const ASFStreamFacts& stream : mStreams) {
        if (stream.IsOf(aKind)) {
            counted.set(stream.mFirstRival != 0 ? stream.mFirstRival : stream.mNumber);
        }
    }
    return static_cast<std::uint32_t>(counted.count());
}

std::string ASFHeader::GetLanguages(ASFStreamKind aKind) const {
    std::string languages;
    const auto add = [&](const ASFStreamFacts& aStream) {
        if (aStream.mLanguage < mLanguages.size()) {
            AddLanguages(languages, mLanguages[aStream.mLanguage]);
        }
    };
    if (const ASFStreamFacts* const first = Find(aKind)) {
        add(*first);
    }
    for (const ASFStreamFacts& stream : mStreams) {
        if (stream.IsOf(aKind)) {
            add(stream);
        }
    }
    return languages;
}

ASFHeader ReadASFHeaderObjects(const ByteReader& aObjects, std::uint32_t& aBudget) {
    ASFHeader header;
    ASFHeaderWalk walk(aObjects, aBudget);
    ASFGuid kind;
    bool fFile = false;
    for (ByteReader object = aObjects; walk.Next(&kind, &object);) {
        const auto* const taken = std::find_if(std::begin(kTakers), std::end(kTakers),
                                               [&](const Taker& aTaker) { return aTaker.mKind == kind; });
        if (taken != std::end(kTakers)) {
            taken->mTake(header, object);
        } else if (kind == kASF_FileProperties && !fFile) {
            ASFFileProperties file;
            fFile = ReadASFFileProperties(object, &file);
            header.mFile = fFile ? file : header.mFile;
        } else if (kind == kASF_ExtendedStreamProperties) {
            TakeExtendedStream(header, object, aBudget);
        } else if (IsEncryption(kind)) {
            header.mfEncrypted = true;
        }
    }
    return header;
}
