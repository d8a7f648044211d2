#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string_view>

/// The four characters that name a box, a brand or a kind of samples, compared as one number.
class BoxType {
public:
    /// Four NULs: not one that there is.
    constexpr BoxType() = default;
    constexpr explicit BoxType(std::uint32_t aCode) : mCode(aCode) {}
    // implicit: a type is compared with literals
    constexpr BoxType(const char (&aText)[5])
        : mCode(ByteOf(aText[0]) << 24 | ByteOf(aText[1]) << 16 | ByteOf(aText[2]) << 8 | ByteOf(aText[3])) {}

    /// The next four bytes; four NULs where they are not there.
    static BoxType Read(ByteReader& aReader) { return BoxType(aReader.ReadBig32()); }

    constexpr std::uint32_t GetCode() const { return mCode; }
    ezCString GetText() const;
    /// True when its first characters are these, four at most.
    constexpr bool StartsWith(std::string_view aText) const {
        std::uint32_t rest = mCode;
        for (const char character : aText) {
            if (rest >> 24 != ByteOf(character)) {
                return false;
            }
            rest <<= 8;
        }
        return true;
    }

    friend constexpr bool operator==(BoxType aLeft, BoxType aRight) { return aLeft.mCode == aRight.mCode; }
    friend constexpr bool operator!=(BoxType aLeft, BoxType aRight) { return aLeft.mCode != aRight.mCode; }

private:
    static constexpr std::uint32_t ByteOf(char aCharacter) { return static_cast<unsigned char>(aCharacter); }

    std::uint32_t mCode = 0;
};

/// The boxes of one that holds boxes, or of a file, one after the other (ISO/IEC 14496-12, 4.2).
class BoxWalk {
public:
    /// aBudget, borrowed, counts down the boxes of all walks. A box that reaches beyond the end by more than
    /// aMaxMissing bytes is damaged; by fewer, it is read as far as there are any.
    BoxWalk(const ByteReader& aReader, std::uint32_t& aBudget, std::uint64_t aMaxMissing = 0)
        : mReader(aReader), mBudget(aBudget), mMaxMissing(aMaxMissing) {}
    /// A walk within a box, whose own end is the end of all that stands in it: a size that says more is the
    /// one that is wrong.
    static BoxWalk Within(const ByteReader& aReader, std::uint32_t& aBudget) {
        return {aReader, aBudget, UINT64_MAX};
    }

    /// The next box and a reader of its content; false after the last one, where one is damaged, and when
    /// the budget is used up.
    bool Next(BoxType* aType, ByteReader* aContent);

    /// The first of a type from here on.
    bool Find(BoxType aType, ByteReader* aContent);

private:
    ByteReader mReader;
    std::uint32_t& mBudget;
    std::uint64_t mMaxMissing;
};

/// Steps over the version and flags of a "meta" box. QuickTime's has none: it holds boxes at once.
void SkipMetaVersion(ByteReader& aMeta);
