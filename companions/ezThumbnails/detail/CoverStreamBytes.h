#pragma once

#include "ezBytes/ByteSource.h"

class ezStream;

/// The bytes of a stream that is looked through for its cover, read kCover_MaxBlocks times at most.
class CoverStreamBytes : public BlockwiseBytes {
public:
    /// aStream is borrowed. One that is not open, fails or waits has no bytes.
    explicit CoverStreamBytes(ezStream& aStream);
    ~CoverStreamBytes() override;

    std::uint64_t GetSize() const override { return mSize; }

protected:
    std::size_t Fetch(std::uint64_t aPosition, unsigned char* aBlock, std::size_t aSize) override;

private:
    ezStream& mStream;
    std::uint64_t mSize;
};
