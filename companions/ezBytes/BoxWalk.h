#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// The boxes of one that holds boxes, or of a file, one after the other (ISO/IEC 14496-12, 4.2).
class BoxWalk {
public:
    /// aBudget, borrowed, counts down the boxes of all walks.
    BoxWalk(const ByteReader& aReader, std::uint32_t& aBudget) : mReader(aReader), mBudget(aBudget) {}

    /// The next box and a reader of its content; false behind the last one, where one is damaged, and when
    /// the budget is used up.
    bool Next(ezCString* aType, ByteReader* aContent);

    /// The first of a type from here on.
    bool Find(const char* aType, ByteReader* aContent);

private:
    ByteReader mReader;
    std::uint32_t& mBudget;
};

/// Steps over the version and flags of a "meta" box. QuickTime's has none: it holds boxes at once.
void SkipMetaVersion(ByteReader& aMeta);
