#include "bench/instructions/Instructions.h"

#include "bench/Require.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

/// The files that callgrind writes, numbered from 1, begin with what EZ_CALLGRIND_OUT names.
std::string NextDump() {
    static std::size_t sNumber = 0;
    const char* const base = std::getenv("EZ_CALLGRIND_OUT");
    Require(base != nullptr, "bench/instructions/measure has started this program");
    return std::string(base) + "." + std::to_string(++sNumber);
}

bool StartsWith(const std::string& aLine, const char* aStart) {
    return aLine.rfind(aStart, 0) == 0;
}

/// Sums the costs that functions have themselves. A line "calls=" is followed by one with the cost of what is
/// called, which stands with the function that is called, too.
Instructions SumOf(const std::string& aPath) {
    static const std::string kOwn = "ob=" + std::filesystem::read_symlink("/proc/self/exe").string();
    Instructions sum;
    std::ifstream file(aPath);
    bool fOwn = false;
    bool fCalled = false;
    for (std::string line; std::getline(file, line);) {
        if (StartsWith(line, "ob=")) {
            fOwn = line == kOwn;
        } else if (StartsWith(line, "calls=")) {
            fCalled = true;
        } else if (!line.empty() && line[0] >= '0' && line[0] <= '9') {
            const std::uint64_t cost = std::stoull(line.substr(line.rfind(' ') + 1));
            sum.mAll += fCalled ? 0 : cost;
            sum.mOwn += fCalled || !fOwn ? 0 : cost;
            fCalled = false;
        }
    }
    return sum;
}

} // namespace

Instructions Instructions_Take() {
    CALLGRIND_DUMP_STATS;
    const std::string path = NextDump();
    const Instructions sum = SumOf(path);
    Require(sum.mOwn > 0 && sum.mAll >= sum.mOwn, "callgrind counts");
    std::filesystem::remove(path);
    return sum;
}

void Instructions_Print(const std::string& aKey, const Instructions& aCount, std::size_t aUnits) {
    const auto unit = [&](std::uint64_t aSum) {
        return std::lround(static_cast<double>(aSum) / static_cast<double>(aUnits));
    };
    std::printf("%s %ld %ld\n", aKey.c_str(), unit(aCount.mOwn), unit(aCount.mAll));
}

void Instructions_PrintGrowth(const std::string& aKey, const std::vector<std::size_t>& aSizes,
                              const std::function<double(std::size_t aSize)>& aCost) {
    const double first = aCost(aSizes.front());
    for (std::size_t i = 1; i < aSizes.size(); ++i) {
        const long percent = std::lround(100 * aCost(aSizes[i]) / first);
        std::printf("growth.%s.%zu %ld %ld\n", aKey.c_str(), aSizes[i], percent, percent);
    }
}
