#include "ezFormats/iso/ISOMatrix.h"

#include <cstdint>
#include <cstdlib>

namespace {

int SignOf(std::int64_t aNumber) {
    return aNumber < 0 ? -1 : 1;
}

/// True for what writers that work a turn out with sines leave of a zero.
bool IsNothingBeside(std::int64_t aNumber, std::int64_t aLarge) {
    constexpr std::int64_t kFraction = 128;
    return std::abs(aLarge) > std::abs(aNumber) * kFraction;
}

std::int64_t ReadSigned(ByteReader& aReader) {
    constexpr std::int64_t kHalf = INT64_C(1) << 31;
    const std::int64_t number = aReader.ReadBig32();
    return number < kHalf ? number : number - 2 * kHalf;
}

} // namespace

ISOMatrix ISOMatrix::Read(ByteReader& aReader) {
    const std::int64_t xOfX = ReadSigned(aReader); // a
    const std::int64_t yOfX = ReadSigned(aReader); // b
    aReader.Skip(4);                               // u
    const std::int64_t xOfY = ReadSigned(aReader); // c
    const std::int64_t yOfY = ReadSigned(aReader); // d
    aReader.Skip(16);                              // v, x, y, w
    if (aReader.HasFailed()) {
        return {};
    }
    if (IsNothingBeside(yOfX, xOfX) && IsNothingBeside(xOfY, yOfY)) {
        return {SignOf(xOfX), 0, 0, SignOf(yOfY)};
    }
    if (IsNothingBeside(xOfX, yOfX) && IsNothingBeside(yOfY, xOfY)) {
        return {0, SignOf(yOfX), SignOf(xOfY), 0};
    }
    return {};
}

ISOMatrix ISOMatrix::Then(const ISOMatrix& aNext) const {
    return {mXOfX * aNext.mXOfX + mYOfX * aNext.mXOfY, mXOfX * aNext.mYOfX + mYOfX * aNext.mYOfY,
            mXOfY * aNext.mXOfX + mYOfY * aNext.mXOfY, mXOfY * aNext.mYOfX + mYOfY * aNext.mYOfY};
}

unsigned ISOMatrix::GetOrientation() const {
    if (mXOfX != 0) {
        return mXOfX > 0 ? (mYOfY > 0 ? 1 : 4) : (mYOfY > 0 ? 2 : 3);
    }
    return mYOfX > 0 ? (mXOfY > 0 ? 5 : 6) : (mXOfY > 0 ? 8 : 7);
}
