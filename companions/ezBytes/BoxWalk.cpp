#include "ezBytes/BoxWalk.h"

#include <algorithm>
#include <array>
#include <cstdint>

ezCString BoxType::GetText() const {
    const std::array<char, 4> letters = {
        static_cast<char>(mCode >> 24), static_cast<char>(mCode >> 16 & 0xFF),
        static_cast<char>(mCode >> 8 & 0xFF), static_cast<char>(mCode & 0xFF)};
    return {letters.data(), letters.size()};
}

bool BoxWalk::Next(BoxType* aType, ByteReader* aContent) {
    if (mBudget == 0 || mReader.GetLeft() == 0) {
        return false;
    }
    --mBudget;
    unsigned headSize = 8;
    const std::uint64_t head = mReader.ReadBig(headSize);
    std::uint64_t size = head >> 32;
    *aType = BoxType(static_cast<std::uint32_t>(head));
    if (size == 1) {
        headSize = 16;
        size = mReader.ReadBig(8);
    } else if (size == 0) { // up to the end
        size = headSize + mReader.GetLeft();
    }
    const std::uint64_t there = mReader.GetLeft();
    std::uint64_t left = size - headSize;
    if (!mReader.Require(size >= headSize) || (left > there && left - there > mMaxMissing)) {
        mReader.Require(false);
        left = 0;
    }
    *aContent = mReader.Take(std::min(left, there));
    return !mReader.HasFailed();
}

bool BoxWalk::Find(BoxType aType, ByteReader* aContent) {
    BoxType type;
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
    if (BoxType::Read(ahead) != "hdlr") {
        aMeta.Skip(4); // version and flags
    }
}
