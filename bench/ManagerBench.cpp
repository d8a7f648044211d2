#include "bench/Benches.h"
#include "bench/DecliningHost.h"
#include "bench/Measure.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace {

constexpr std::array<std::size_t, 4> kParserCounts = {0, 1, 10, 100};
constexpr std::size_t kTries = 400000;           ///< of parsers in a round
constexpr std::size_t kMaximumRequests = 100000; ///< in a round

/// Nanoseconds a request.
double RequestCost(DecliningHost& aHost, std::size_t aParserCount) {
    const std::size_t count =
        aParserCount == 0 ? kMaximumRequests : std::min(kTries / aParserCount, kMaximumRequests);
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < count; ++i) {
            aHost.Request();
        }
    });
    return cost / static_cast<double>(count);
}

/// What one parser of a request adds to a request without any.
double CostOfParser(const Costs& aCosts, std::size_t aSide) {
    return (aCosts[aSide] - aCosts[0]) / static_cast<double>(kParserCounts[aSide]);
}

} // namespace

void AddManagerBenches() {
    AddComparison(
        "Manager/Declining",
        [] {
            std::vector<Side> sides;
            for (const std::size_t count : kParserCounts) {
                const auto host = std::make_shared<DecliningHost>(count);
                sides.push_back({std::to_string(count), [host, count] { return RequestCost(*host, count); }});
            }
            return sides;
        },
        {{"a declining parser of 10 / of 1",
          [](const Costs& aCosts) { return CostOfParser(aCosts, 2) / CostOfParser(aCosts, 1); }, 1.5},
         {"a declining parser of 100 / of 1",
          [](const Costs& aCosts) { return CostOfParser(aCosts, 3) / CostOfParser(aCosts, 1); }, 1.5},
         {"a declining parser of 100 / of 10",
          [](const Costs& aCosts) { return CostOfParser(aCosts, 3) / CostOfParser(aCosts, 2); }, 0}});
}
