#include "ezBytes/EBMLWalk.h"

#include "ezBytes/FloatBits.h"
#include "ezBytes/Limits.h"
#include "ezBytes/TextBytes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

/// Bytes of a number whose first byte is this: the marker is its first bit that is set. 9 where none is.
unsigned LengthOf(unsigned char aFirst) {
    unsigned length = 1;
    while (length <= 8 && (aFirst & 0x80U >> (length - 1)) == 0) {
        ++length;
    }
    return length;
}

/// How long it is shows in its first byte, which is read together with the others where these are buffered.
std::uint64_t ReadMarked(ByteReader& aReader, unsigned aMaxLength, unsigned* aLength) {
    ByteReader ahead = aReader;
    *aLength = LengthOf(ahead.ReadByte());
    aReader.Require(!ahead.HasFailed() && *aLength <= aMaxLength);
    return aReader.HasFailed() ? 0 : aReader.ReadBig(*aLength);
}

bool IsSteppedOver(EBMLId anId) {
    return anId == kEBML_Void || anId == kEBML_CheckSum;
}

} // namespace

bool ReadEBMLVariable(ByteReader& aReader, EBMLVariable* aNumber) {
    const std::uint64_t bytes = ReadMarked(aReader, 8, &aNumber->mBytes);
    if (aReader.HasFailed()) {
        return false;
    }
    const std::uint64_t ones = (std::uint64_t{1} << 7 * aNumber->mBytes) - 1;
    aNumber->mValue = bytes & ones;
    aNumber->mfAllOnes = aNumber->mValue == ones;
    return true;
}

EBMLId ReadEBMLId(ByteReader& aReader) {
    unsigned length = 0;
    return static_cast<EBMLId>(ReadMarked(aReader, 4, &length));
}

bool EBMLWalk::Next(EBMLElement* anElement) {
    while (*mBudget != 0 && mReader.GetLeft() != 0) {
        --*mBudget;
        ByteReader ahead = mReader;
        anElement->mStart = ahead.GetPosition();
        anElement->mId = ReadEBMLId(ahead);
        if (mIsMember != nullptr && !IsSteppedOver(anElement->mId) && !mIsMember(anElement->mId)) {
            mReader.Require(!ahead.HasFailed());
            return false;
        }
        EBMLVariable size;
        ReadEBMLVariable(ahead, &size);
        if (!mReader.Require(!ahead.HasFailed())) {
            return false;
        }
        const std::uint64_t left = ahead.GetLeft();
        anElement->mStatedSize = size.mValue;
        anElement->mfUnknownSize = size.mfAllOnes;
        anElement->mfCut = !size.mfAllOnes && size.mValue > left;
        anElement->mContent = ahead.Take(size.mfAllOnes ? left : std::min(size.mValue, left));
        mReader = ahead;
        if (!IsSteppedOver(anElement->mId)) {
            return true;
        }
    }
    return false;
}

bool EBMLWalk::Find(EBMLId anId, EBMLElement* anElement) {
    while (Next(anElement)) {
        if (anElement->mId == anId) {
            return true;
        }
    }
    return false;
}

std::uint64_t ReadEBMLNumber(ByteReader aContent, std::uint64_t aDefault) {
    const std::uint64_t count = aContent.GetLeft();
    if (count == 0 || count > 8) {
        return aDefault;
    }
    const std::uint64_t value = aContent.ReadBig(static_cast<unsigned>(count));
    return aContent.HasFailed() ? aDefault : value;
}

std::int64_t ReadEBMLSigned(ByteReader aContent, std::int64_t aDefault) {
    const std::uint64_t count = aContent.GetLeft();
    if (count == 0 || count > 8) {
        return aDefault;
    }
    std::uint64_t value = aContent.ReadBig(static_cast<unsigned>(count));
    const std::uint64_t sign = std::uint64_t{1} << (8 * count - 1);
    value = (value ^ sign) - sign;
    std::int64_t result = 0;
    std::memcpy(&result, &value, sizeof result);
    return aContent.HasFailed() ? aDefault : result;
}

double ReadEBMLFloat(ByteReader aContent, double aDefault) {
    const std::uint64_t count = aContent.GetLeft();
    if (count != 4 && count != 8) {
        return aDefault;
    }
    const double value =
        count == 4 ? Float_OfBits32(aContent.ReadBig32()) : Float_OfBits64(aContent.ReadBig(8));
    return aContent.HasFailed() || !std::isfinite(value) ? aDefault : value;
}

ezCString ReadEBMLText(ByteReader aContent) {
    const std::uint64_t count = std::min<std::uint64_t>(aContent.GetLeft(), kEBML_MaxText);
    const ezCString text = aContent.ReadText(static_cast<std::size_t>(count));
    return CleanText(text.View(), TextEncoding::Utf8);
}

std::optional<std::int64_t> ReadEBMLDate(ByteReader aContent) {
    if (aContent.GetLeft() != 8) {
        return std::nullopt;
    }
    const std::uint64_t bytes = aContent.ReadBig(8);
    std::int64_t value = 0;
    std::memcpy(&value, &bytes, sizeof value);
    return aContent.HasFailed() ? std::nullopt : std::optional<std::int64_t>(value);
}
