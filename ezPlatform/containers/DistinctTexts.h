#pragma once

#include "ezPlatform/containers/HashSlots.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

/// Tells which of many texts, which it borrows, it has met before. A few are compared one by one; beyond that
/// a table keeps the cost of one from growing with their number. Not installed.
class ezDistinctTexts {
public:
    /// Takes a text that was not met before. False for the others.
    bool Add(std::string_view aText) {
        if (mTexts.size() < kWalked) {
            if (std::find(mTexts.begin(), mTexts.end(), aText) != mTexts.end()) {
                return false;
            }
        } else {
            const std::uint32_t hash = ezHashSlots::Hash(aText);
            if (mSlots.Find(hash, [&](std::size_t anIndex) { return mTexts[anIndex] == aText; }) != 0) {
                return false;
            }
            mSlots.Add(hash);
        }
        mTexts.push_back(aText);
        if (mTexts.size() == kWalked) { // once: what is refused leaves the number as it is
            for (const std::string_view text : mTexts) {
                mSlots.Add(ezHashSlots::Hash(text));
            }
        }
        return true;
    }

private:
    static constexpr std::size_t kWalked = 8;

    std::vector<std::string_view> mTexts;
    ezHashSlots mSlots; ///< empty while the texts are walked over
};
