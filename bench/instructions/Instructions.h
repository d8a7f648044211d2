#pragma once

#include <valgrind/callgrind.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Instructions that a piece of work took, as callgrind counts them.
struct Instructions {
    std::uint64_t mOwn = 0; ///< of the code that is linked into this program: ours, and templates of others
    std::uint64_t mAll = 0; ///< of the C and C++ libraries too, which differ by version and by processor
};

/// What callgrind has counted since counting was last asked for.
Instructions Instructions_Take();

/// Once for its caches, lists and bindings, then once that counts.
template <typename Work>
Instructions Instructions_Of(const Work& aWork) {
    aWork();
    CALLGRIND_START_INSTRUMENTATION;
    aWork();
    CALLGRIND_STOP_INSTRUMENTATION;
    return Instructions_Take();
}

/// Prints a line of the figures: a key, the instructions of our own code for one of aUnits, and those of all
/// code.
void Instructions_Print(const std::string& aKey, const Instructions& aCount, std::size_t aUnits = 1);

/// The same of a piece of work.
template <typename Work>
void Instructions_PrintOf(const std::string& aKey, std::size_t aUnits, const Work& aWork) {
    Instructions_Print(aKey, Instructions_Of(aWork), aUnits);
}

/// Instructions of one unit of a piece of work, of all code.
template <typename Work>
double Instructions_OfUnit(std::size_t aUnits, const Work& aWork) {
    return static_cast<double>(Instructions_Of(aWork).mAll) / static_cast<double>(aUnits);
}

/// Prints how the cost of a unit grows from the first size to each later one, in percent of the first. All
/// code counts: a search that grows may well be one of the C library.
///
/// @param aCost  instructions of one unit at a size
void Instructions_PrintGrowth(const std::string& aKey, const std::vector<std::size_t>& aSizes,
                              const std::function<double(std::size_t aSize)>& aCost);

// Each prints the figures of one source.
void PrintParsing();
void PrintMapper();
void PrintPackets();
void PrintTables();
/// Only where the companion is built.
void PrintPlaylists();
/// The same.
void PrintThumbnails();
/// The same of the tool.
void PrintTool();
