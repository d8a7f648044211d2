#pragma once

/// Ends the program, which the fuzzer takes as a finding, when something does not hold that a contract
/// promises.
#define FuzzCheck(aCondition)                                                                                \
    (static_cast<bool>(aCondition) ? static_cast<void>(0) : FuzzCheck_Failed(#aCondition, __FILE__, __LINE__))

[[noreturn]] void FuzzCheck_Failed(const char* aCondition, const char* aFile, int aLine);

/// While it lives, log lines of all levels are formatted and dropped, and a failed assertion is a finding:
/// assertions are for callers, never for what stands in a file. One assertion can be let through.
class FuzzHouse {
public:
    /// @param aToleratedAssertion  text of the assertion that may fail, whose handler then returns; null for
    /// none
    explicit FuzzHouse(const char* aToleratedAssertion = nullptr);
    ~FuzzHouse();
    FuzzHouse(const FuzzHouse&) = delete;
    FuzzHouse& operator=(const FuzzHouse&) = delete;

private:
    int mLevelBefore;
};
