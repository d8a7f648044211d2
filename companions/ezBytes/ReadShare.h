#pragma once

#include "ezBytes/BudgetedBytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// A share of a budget: bytes of which only so many reads may be made that others need not then do without.
/// What is buffered costs nothing.
class ReadShare : public ByteSource {
public:
    /// aBytes is borrowed.
    ReadShare(BudgetedBytes& aBytes, std::uint32_t aMaxReads) : mBytes(aBytes), mShare(aMaxReads) {}
    ~ReadShare() override;

    std::optional<std::uint64_t> GetSize() const override { return mBytes.GetSize(); }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override;

private:
    BudgetedBytes& mBytes;
    ReadBudget mShare;
};
