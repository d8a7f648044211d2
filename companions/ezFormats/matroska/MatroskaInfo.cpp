#include "ezFormats/matroska/MatroskaInfo.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/EBMLWalk.h"

#include <cmath>

namespace {

/// @name Elements of Info (RFC 9559, 5.1.2)
/// @{
constexpr EBMLId kTimestampScale = 0x2AD7B1;
constexpr EBMLId kDuration = 0x4489;
constexpr EBMLId kTitle = 0x7BA9;
constexpr EBMLId kDateUTC = 0x4461;
constexpr EBMLId kMuxingApp = 0x4D80;
constexpr EBMLId kWritingApp = 0x5741;
/// @}

constexpr std::uint64_t kMicro = 1'000'000;
constexpr std::uint64_t kNanosInMicro = 1000;
constexpr std::uint64_t kYear = kMedia_MaxSeconds * kMicro;

} // namespace

std::uint64_t MatroskaInfo::GetMicroseconds(std::uint64_t aTicks) const {
    const std::uint64_t micros = MediaNumber_Scale(aTicks, mScale, kNanosInMicro);
    return micros <= kYear ? micros : 0;
}

std::uint64_t MatroskaInfo::GetStatedMicroseconds() const {
    const double micros =
        std::round(mTicks * static_cast<double>(mScale) / static_cast<double>(kNanosInMicro));
    return micros >= 1 && micros <= static_cast<double>(kYear) ? static_cast<std::uint64_t>(micros) : 0;
}

MatroskaInfo ReadMatroskaInfo(const ByteReader& aContent, std::uint32_t& aBudget) {
    MatroskaInfo info;
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        const ByteReader& content = element.mContent;
        if (element.mId == kTimestampScale) {
            const std::uint64_t scale = ReadEBMLNumber(content, info.mScale);
            info.mScale = scale != 0 ? scale : info.mScale;
        } else if (element.mId == kDuration) {
            info.mTicks = ReadEBMLFloat(content);
        } else if (element.mId == kTitle) {
            info.mTitle = ReadEBMLText(content);
        } else if (element.mId == kDateUTC) {
            info.mWriting.mDate = ReadEBMLDate(content);
        } else if (element.mId == kMuxingApp) {
            info.mWriting.mMuxingApp = ReadEBMLText(content);
        } else if (element.mId == kWritingApp) {
            info.mWriting.mWritingApp = ReadEBMLText(content);
        }
    }
    return info;
}
