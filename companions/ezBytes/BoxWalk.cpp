#include "ezBytes/BoxWalk.h"

#include <array>
#include <cstdint>

namespace {

ezCString TypeOf(std::uint32_t aCode) {
    const std::array<char, 4> letters = {
        static_cast<char>(aCode >> 24), static_cast<char>(aCode >> 16 & 0xFF),
        static_cast<char>(aCode >> 8 & 0xFF), static_cast<char>(aCode & 0xFF)};
    return {letters.data(), letters.size()};
}

} // namespace

bool BoxWalk::Next(ezCString* aType, ByteReader* aContent) {
    if (mBudget == 0 || mReader.GetLeft() == 0) {
        return false;
    }
    --mBudget;
    unsigned headSize = 8;
    const std::uint64_t head = mReader.ReadBig(headSize);
    std::uint64_t size = head >> 32;
    *aType = mReader.HasFailed() ? ezCString() : TypeOf(static_cast<std::uint32_t>(head));
    if (size == 1) {
        headSize = 16;
        size = mReader.ReadBig(8);
    } else if (size == 0) { // up to the end
        size = headSize + mReader.GetLeft();
    }
    mReader.Require(size >= headSize);
    *aContent = mReader.Take(mReader.HasFailed() ? 0 : size - headSize);
    return !mReader.HasFailed();
}

bool BoxWalk::Find(const char* aType, ByteReader* aContent) {
    ezCString type;
    while (Next(&type, aContent)) {
        if (type == aType) {
            return true;
        }
    }
    return false;
}

void SkipMetaVersion(ByteReader& aMeta) {
    // The type of the first box stands where the standard's "meta" has that box's size.
    ByteReader ahead = aMeta;
    ahead.Skip(4);
    if (ahead.ReadText(4) != "hdlr") {
        aMeta.Skip(4);
    }
}
