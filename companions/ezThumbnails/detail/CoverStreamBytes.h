#pragma once

#include "ezThumbnails/detail/CoverLimits.h"

#include "ezBytes/BudgetedBytes.h"

class ezStream;

/// The bytes of a stream that is looked through for its cover, read kCover_MaxBlocks times at most.
class CoverStreamBytes : public BudgetedBytes {
public:
    /// aStream is borrowed. One that is not open, of unknown size, fails or waits has no bytes.
    explicit CoverStreamBytes(ezStream& aStream);
    ~CoverStreamBytes() override;

protected:
    void Bring(std::uint64_t aPosition) override;
    std::size_t ReadAt(std::uint64_t aPosition, unsigned char* aPlace, std::size_t aSize,
                       bool* afFailed) override;

private:
    ezStream& mStream;
    unsigned char mBlock[kCover_BlockSize]; ///< here: a finder takes no memory for its file
};
