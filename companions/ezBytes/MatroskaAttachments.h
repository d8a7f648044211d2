#pragma once

#include "ezBytes/MatroskaSegment.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// A file that a Matroska file holds (RFC 9559, 5.1.6.1).
struct MatroskaAttachment {
    explicit MatroskaAttachment(const ByteReader& aData) : mData(aData) {}

    ezCString mName;
    ezCString mMimeType; ///< as it is stated
    ByteReader mData;    ///< all of it; of one that is cut, none
};

/// The files that an Attachments element holds, one after the other, without a look into them.
class MatroskaAttachments {
public:
    /// @param aBudget  borrowed, counts down elements
    MatroskaAttachments(const ByteReader& aContent, std::uint32_t& aBudget)
        : mWalk(aContent, aBudget), mBudget(aBudget) {}

    /// The next one. False after the last one, and after kMatroskaAttachments_MaxCount of them.
    bool Next(MatroskaAttachment* aFile);

private:
    EBMLWalk mWalk;
    std::uint32_t& mBudget;
    std::uint32_t mCount = 0;
};

/// Finds the cover among the attachments of a file (RFC 9559, 21): the picture that is called "cover", else
/// the first of "small_cover", "cover_land" and "small_cover_land", in any case and whatever stands after a
/// dot. What is no picture, by its first bytes or else by its type, is passed over. False where there is
/// none.
/// @param aBudget  borrowed, counts down elements
bool FindCoverAttachment(MatroskaSegment& aSegment, std::uint32_t& aBudget, MatroskaAttachment* aCover);
