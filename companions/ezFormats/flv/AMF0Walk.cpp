#include "ezFormats/flv/AMF0Walk.h"

#include "ezBytes/FloatBits.h"

#include <algorithm>

namespace {

// Markers (Action Message Format 0, 2.1)
enum : std::uint8_t {
    kNumber = 0,
    kBoolean = 1,
    kString = 2,
    kObject = 3,
    kNull = 5,
    kUndefined = 6,
    kReference = 7,
    kEcmaArray = 8,
    kObjectEnd = 9,
    kStrictArray = 10,
    kDate = 11,
    kLongString = 12,
    kUnsupported = 13,
    kXMLDocument = 15,
    kTypedObject = 16
};

} // namespace

bool AMF0Walk::Next(AMF0Value* aValue) {
    *aValue = AMF0Value(mReader);
    while (LeaveEnded()) {
        if (mReader.GetLeft() == 0 || !TakeName(*aValue)) {
            return false;
        }
        aValue->mDepth = mDepth;
        const std::uint8_t marker = mReader.ReadByte();
        if (marker != kObjectEnd) {
            ReadContent(marker, *aValue);
            return !mReader.HasFailed();
        }
        mReader.Require(mDepth != 0);
        mDepth -= mDepth != 0 ? 1 : 0;
    }
    return false;
}

/// Leaves the lists that have no more values; false at the end of all.
bool AMF0Walk::LeaveEnded() {
    while (mDepth != 0 && !mContainers[mDepth - 1].mfNamed && mContainers[mDepth - 1].mLeft == 0) {
        --mDepth;
    }
    return !mReader.HasFailed();
}

/// The name of the next value where it has one. That of the end of a container is empty.
bool AMF0Walk::TakeName(AMF0Value& aValue) {
    aValue.mName = ezCString();
    if (mDepth == 0) {
        return true;
    }
    Container& container = mContainers[mDepth - 1];
    if (container.mfNamed) {
        const auto size = static_cast<std::size_t>(mReader.ReadBig(2));
        ByteReader name = mReader.Take(size);
        aValue.mName = name.ReadText(std::min(size, kAMF0_MaxName));
    } else {
        --container.mLeft;
    }
    return mReader.GetLeft() != 0;
}

void AMF0Walk::Enter(bool afNamed, std::uint32_t aCount) {
    if (mReader.Require(mDepth < mContainers.size())) {
        mContainers[mDepth++] = {afNamed, aCount};
    }
}

void AMF0Walk::ReadContent(std::uint8_t aMarker, AMF0Value& aValue) {
    using Kind = AMF0Value::Kind;
    switch (aMarker) {
    case kNumber:
        aValue.mKind = Kind::Number;
        aValue.mNumber = Float_OfBits64(mReader.ReadBig(8));
        break;
    case kBoolean:
        aValue.mKind = Kind::Boolean;
        aValue.mNumber = mReader.ReadByte() != 0 ? 1 : 0;
        break;
    case kString:
    case kLongString:
    case kXMLDocument:
        aValue.mKind = Kind::Text;
        aValue.mText = mReader.Take(mReader.ReadBig(aMarker == kString ? 2 : 4));
        break;
    case kObject:
    case kEcmaArray:
    case kTypedObject:
        aValue.mKind = Kind::Container;
        mReader.Skip(aMarker == kEcmaArray ? 4 : aMarker == kTypedObject ? mReader.ReadBig(2) : 0);
        Enter(true, 0);
        break;
    case kStrictArray:
        aValue.mKind = Kind::Container;
        Enter(false, mReader.ReadBig32());
        break;
    case kReference:
        mReader.Skip(2);
        break;
    case kDate: // milliseconds, and a time zone that is not used
        mReader.Skip(10);
        break;
    case kNull:
    case kUndefined:
    case kUnsupported:
        break;
    default:
        mReader.Require(false);
    }
}
