#include "ezBytes/ASFPackets.h"

#include "ezBytes/ASFObjects.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kHeadSize = 16 + 8;         // of an object
constexpr std::uint64_t kDataHeadSize = 16 + 8 + 2; // an identity, the number of packets, reserved
constexpr unsigned kCorrection = 0x80;              // bytes about errors stand there
constexpr unsigned kSeveralPayloads = 0x01;

} // namespace

ASFData FindASFData(ByteReader aReader, std::uint32_t& aBudget) {
    while (aBudget != 0 && !aReader.HasFailed()) {
        --aBudget;
        const ASFGuid kind = ASFGuid::Read(aReader);
        const std::uint64_t size = aReader.ReadLittle(8);
        if (kind == kASF_Data) {
            aReader.Skip(kDataHeadSize); // of a broadcast, the size may be anything
            const std::uint64_t start = aReader.HasFailed() ? 0 : aReader.GetPosition();
            return {start, size > kHeadSize + kDataHeadSize ? size - kHeadSize - kDataHeadSize : 0};
        }
        aReader.Require(size >= kHeadSize);
        aReader.Skip(aReader.HasFailed() ? 0 : size - kHeadSize);
    }
    return {};
}

ByteReader TakeASFPacket(ByteSource& aBytes, std::uint64_t aPosition, std::uint32_t aSize) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader.Take(aSize);
}

ASFPacket::ASFPacket(const ByteReader& aPacket) : mReader(aPacket), mContent(aPacket) {
    unsigned lengths = mReader.ReadByte();
    if ((lengths & kCorrection) != 0) {
        mReader.Skip(lengths & 0x0FU);
        lengths = mReader.ReadByte();
    }
    mProperties = mReader.ReadByte();
    const std::uint64_t all = ByteReader(aPacket).GetLeft();
    const std::uint64_t own = ReadSized(lengths >> 5);
    ReadSized(lengths >> 1); // sequence
    // Where the packet is shorter than all are, the rest is padding, too.
    mPadding = ReadSized(lengths >> 3) + (own != 0 ? all - std::min(all, own) : 0);
    mReader.Skip(4 + 2); // when it is sent, and for how long
    mfSeveral = (lengths & kSeveralPayloads) != 0;
    const unsigned payloads = mfSeveral ? mReader.ReadByte() : 1;
    mSizeOfSize = payloads >> 6;
    mLeft = mReader.HasFailed() ? 0 : payloads & 0x3FU;
}

std::uint32_t ASFPacket::ReadSized(unsigned aSize) {
    const unsigned size = aSize & 3U;
    return size != 0 ? static_cast<std::uint32_t>(mReader.ReadLittle(size == 3 ? 4 : size)) : 0;
}

/// Of media objects in one payload, each after a byte with its size, that the payload states the first time
/// of.
void ASFPacket::TakeSeveral(ASFPayload& aPayload) {
    ByteReader objects = mContent;
    mContent = objects.Take(objects.ReadByte());
    while (objects.GetLeft() != 0) {
        aPayload.mTime = ezSaturating_Add(aPayload.mTime, aPayload.mStep);
        objects.Skip(objects.ReadByte());
    }
}

bool ASFPacket::Next(ASFPayload* aPayload) {
    if (mLeft == 0) {
        return false;
    }
    --mLeft;
    *aPayload = ASFPayload();
    aPayload->mStream = mReader.ReadByte() & kASF_MaxStreamNumber;
    aPayload->mObject = ReadSized(mProperties >> 4);
    const std::uint32_t offset = ReadSized(mProperties >> 2);
    const std::uint32_t count = ReadSized(mProperties);
    ByteReader replicated = mReader.Take(count);
    aPayload->mOffset = count != 1 ? offset : 0;
    if (count == 1) {
        aPayload->mTime = offset;
        aPayload->mStep = replicated.ReadByte();
        aPayload->mfTimed = true;
    } else if (count >= 8) {
        replicated.Skip(4); // bytes of the media object
        aPayload->mTime = replicated.ReadLittle32();
        aPayload->mfTimed = true;
    }
    const std::uint64_t left = mReader.GetLeft();
    const std::uint64_t size = mfSeveral ? ReadSized(mSizeOfSize) : left - std::min(left, mPadding);
    mContent = mReader.Take(size);
    if (mReader.HasFailed()) {
        mLeft = 0;
        return false;
    }
    if (count == 1) {
        TakeSeveral(*aPayload);
    }
    return true;
}
