#pragma once

#include "bench/Require.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Times are only ever compared with times of the same round of the same run; what a run states are ratios,
/// which are this machine's, and counts, which are held.

/// The cost of each side in one round, in the order of the sides.
using Costs = std::vector<double>;

/// Something that is compared with something else.
struct Side {
    std::string mName;
    std::function<double()> mCost; ///< does one round of the work; nanoseconds for a unit of it
    const char* mUnits = nullptr;  ///< what units are called where their number a second is shown too
};

/// What is said about the sides of a comparison.
struct Claim {
    std::string mText;
    std::function<double(const Costs&)> mRatio; ///< of one round
    double mAim;                                ///< what it should not be above; 0 for none. Shown beside it
};

/// Makes the sides when their turn comes; they are dropped when the comparison is over.
using MakeSides = std::function<std::vector<Side>()>;

/// Adds a benchmark that runs all sides round by round, forward and backward in turn, after one round that
/// does not count. What comes of it is shown and never fails: what a system call or a read of memory costs
/// beside an instruction is the machine's.
void AddComparison(const std::string& aName, MakeSides aMakeSides, std::vector<Claim> aClaims);

/// Adds a benchmark that runs once and calls NoteCount.
void AddCounting(const std::string& aName, std::function<void()> aCount);

/// States a count that must not be above aBound.
void NoteCount(const std::string& aText, double aValue, double aBound);

/// Rounds of each comparison added from now on.
void SetRounds(std::size_t aRounds);

/// Prints what was measured. False when a count is above its bound.
bool PrintResults();

/// Processor time of the calling thread in nanoseconds, the system's part included: what others do on the
/// machine meanwhile does not count.
double Now();

/// Nanoseconds that a piece of work takes.
template <typename Work>
double TimeOf(const Work& aWork) {
    const double start = Now();
    aWork();
    return Now() - start;
}
