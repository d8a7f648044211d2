#include "ezBytes/InflatedBytes.h"

#include "ezBytes/Limits.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#ifdef EZ_HAS_ZLIB
#include <zlib.h>
#endif

InflatedBytes::~InflatedBytes() = default;

std::size_t InflatedBytes::Borrow(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (aPosition >= mBytes.size()) {
        return 0;
    }
    *aBytes = mBytes.data() + aPosition;
    return mBytes.size() - static_cast<std::size_t>(aPosition);
}

#ifdef EZ_HAS_ZLIB

namespace {

/// Bytes that data of so many inflated ones can take: plain blocks cost a thousandth more, and a writer may
/// have flushed often. Empty blocks alone would go on for ever.
std::uint64_t MaxCompressedSize(std::size_t aMaxSize) {
    return 2 * std::uint64_t{aMaxSize} + kInflated_MaxOverhead;
}

/// Reads bytes up to the end of a reader, which does not know how many they are where some may be stuffing.
std::size_t ReadSome(ByteReader& aReader, unsigned char* aBlock, std::size_t aMaxCount) {
    std::size_t count = 0;
    if (!aReader.IsUnsynchronised()) {
        count = static_cast<std::size_t>(std::min<std::uint64_t>(aReader.GetLeft(), aMaxCount));
        return aReader.Read(aBlock, count) ? count : 0;
    }
    while (count < aMaxCount && aReader.GetLeft() != 0) {
        aBlock[count++] = aReader.ReadByte();
    }
    return aReader.HasFailed() ? 0 : count;
}

/// zlib's state, which goes with it.
class Inflater {
public:
    Inflater() : mfReady(inflateInit(&mState) == Z_OK) {}
    ~Inflater() {
        if (mfReady) {
            inflateEnd(&mState);
        }
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    bool IsReady() const { return mfReady; }
    bool NeedsInput() const { return mState.avail_in == 0; }
    bool NeedsRoom() const { return mState.avail_out == 0; }
    std::size_t GetRoomLeft() const { return mState.avail_out; }

    /// Of at most kInflated_InputSize bytes, borrowed.
    void Feed(unsigned char* aBytes, std::size_t aCount) {
        mState.next_in = aBytes;
        mState.avail_in = static_cast<uInt>(aCount);
    }
    void GiveRoom(unsigned char* aBytes, std::size_t aCount) {
        mState.next_out = aBytes;
        mState.avail_out = static_cast<uInt>(std::min<std::size_t>(aCount, UINT32_MAX));
    }
    int Step() { return inflate(&mState, Z_NO_FLUSH); }

private:
    z_stream mState = {};
    bool mfReady;
};

} // namespace

bool InflatedBytes::IsAvailable() {
    return true;
}

InflatedBytes::Result InflatedBytes::Run(ByteReader& aCompressed, std::size_t aMaxSize) {
    std::vector<unsigned char> output;
    std::array<unsigned char, kInflated_InputSize> input = {};
    std::uint64_t inputLeft = std::min(aCompressed.GetLeft(), MaxCompressedSize(aMaxSize));
    Inflater inflater;
    int status = inflater.IsReady() ? Z_OK : Z_MEM_ERROR;
    while (status == Z_OK) {
        if (inflater.NeedsInput()) {
            const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(inputLeft, input.size()));
            const std::size_t count = ReadSome(aCompressed, input.data(), most);
            if (count == 0) {
                return Result::Damaged;
            }
            inputLeft -= count;
            inflater.Feed(input.data(), count);
        }
        if (inflater.NeedsRoom()) {
            // One byte more than the bound tells that there is more.
            const std::size_t size = output.size();
            if (size > aMaxSize) {
                break;
            }
            const std::size_t larger = std::min(std::max(2 * size, kInflated_FirstSize), aMaxSize + 1);
            output.reserve(larger); // resize alone may take twice as much
            output.resize(larger);
            inflater.GiveRoom(output.data() + size, output.size() - size);
        }
        status = inflater.Step();
    }
    output.resize(output.size() - inflater.GetRoomLeft());
    if (status != Z_STREAM_END && status != Z_OK) { // Z_OK: it was left at the bound
        return Result::Damaged;
    }
    mBytes = std::move(output);
    return mBytes.size() > aMaxSize ? Result::TooLarge : Result::Whole;
}

#else

bool InflatedBytes::IsAvailable() {
    return false;
}

InflatedBytes::Result InflatedBytes::Run(ByteReader& /*aCompressed*/, std::size_t /*aMaxSize*/) {
    return Result::Unavailable;
}

#endif

InflatedBytes::Result InflatedBytes::Inflate(ByteReader& aCompressed, std::size_t aMaxSize) {
    const Result result = InflateHead(aCompressed, aMaxSize);
    if (result != Result::Whole) {
        mBytes.clear();
    }
    return result;
}

InflatedBytes::Result InflatedBytes::InflateHead(ByteReader& aCompressed, std::size_t aMaxSize) {
    mBytes.clear();
    const Result result = Run(aCompressed, aMaxSize);
    if (result == Result::TooLarge) {
        mBytes.resize(aMaxSize);
    }
    return result;
}
