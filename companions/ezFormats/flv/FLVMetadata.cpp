#include "ezFormats/flv/FLVMetadata.h"

#include "ezBytes/TextBytes.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/flv/AMF0Walk.h"
#include "ezFormats/flv/FLVLimits.h"
#include "ezFormats/tags/TagNames.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>

namespace {

constexpr double kMicro = 1'000'000;
constexpr double kWholes = 9'007'199'254'740'992; // a double has no fractions, and gaps, from there on

/// A number as a whole one, rounded; 0 for one that is not above 0, is above a most, or is no number.
std::uint64_t WholeOf(double aNumber, double aMost) {
    constexpr double kHalf = 0.5;
    return aNumber > 0 && aNumber <= aMost ? static_cast<std::uint64_t>(aNumber + kHalf) : 0;
}

std::uint32_t SideOf(double aNumber) {
    return static_cast<std::uint32_t>(WholeOf(aNumber, kFLV_MaxSide));
}

/// "onMetaData", maybe after what asked a server to keep it.
bool IsMetadataName(const AMF0Value& aValue) {
    ByteReader text = aValue.mText;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(text.GetLeft(), kAMF0_MaxName));
    return aValue.mKind == AMF0Value::Kind::Text && text.ReadText(size) == "onMetaData";
}

} // namespace

void FLVMetadata::Take(const ByteReader& aContent, const CodePage& aCodePage) {
    AMF0Walk walk(aContent);
    bool fOurs = false;
    for (AMF0Value value(aContent); walk.Next(&value);) {
        fOurs = fOurs || (value.mDepth == 0 && IsMetadataName(value));
        if (!fOurs || value.mDepth != 1) {
            continue;
        }
        const TagField* const field = FindTagField(TagWords::Flash, value.mName.View());
        if (value.mKind == AMF0Value::Kind::Number) {
            TakeNumber(value.mName, value.mNumber);
        } else if (value.mKind == AMF0Value::Kind::Text && field != nullptr) {
            mTexts.Add(*field, ReadCleanText(value.mText, TextEncoding::Unstated, aCodePage));
        }
    }
}

void FLVMetadata::TakeNumber(const ezCString& aName, double aValue) {
    static constexpr Number kNumbers[] = {
        {"duration", &FLVMetadata::mDuration},       {"width", &FLVMetadata::mWidth},
        {"height", &FLVMetadata::mHeight},           {"framerate", &FLVMetadata::mFrameRate},
        {"audiodatarate", &FLVMetadata::mSoundRate}, {"filesize", &FLVMetadata::mFileSize}};
    for (const Number& number : kNumbers) {
        if (ezIsEqualNoCase(aName.View(), number.mName) && !(this->*number.mValue > 0)) {
            this->*number.mValue = aValue;
        }
    }
}

std::uint64_t FLVMetadata::GetMicroseconds() const {
    return WholeOf(mDuration * kMicro, static_cast<double>(kMedia_MaxSeconds) * kMicro);
}

std::uint32_t FLVMetadata::GetFrameRate() const {
    constexpr double kThousand = 1000;
    return static_cast<std::uint32_t>(WholeOf(mFrameRate * kThousand, kVideo_MaxFrameRate));
}

std::uint32_t FLVMetadata::GetWidth() const {
    return SideOf(mHeight) != 0 ? SideOf(mWidth) : 0;
}

std::uint32_t FLVMetadata::GetHeight() const {
    return SideOf(mWidth) != 0 ? SideOf(mHeight) : 0;
}

std::uint32_t FLVMetadata::GetSoundRate() const {
    constexpr double kKilo = 1000;
    return static_cast<std::uint32_t>(WholeOf(mSoundRate * kKilo, kSound_MaxBitRate));
}

std::uint64_t FLVMetadata::GetFileSize() const {
    return WholeOf(mFileSize, kWholes);
}

MusicTexts FLVMetadata::GetTexts() const {
    MusicTexts texts;
    mTexts.Store(texts);
    return texts;
}
