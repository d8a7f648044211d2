#include "bench/Require.h"
#include "bench/instructions/Instructions.h"
#include "support/TemporaryFolder.h"
#include "tools/ezannounce/mapper/MapperCheck.h"

namespace {

/// The check of a media mapper whose lines are all the same.
double EqualLinesCost(std::size_t aLines) {
    std::string text;
    for (std::size_t i = 0; i < aLines; ++i) {
        text += "film.mpg,video/mpeg,MPEG_PS_PAL,0:01:00,2,10110000,5000000\n";
    }
    const TemporaryFolder folder;
    const std::string path = folder.Write("table.txt", text);
    return Instructions_OfUnit(aLines, [&] {
        MapperCheck check;
        Require(CheckMapperFile(path, check) && check.mFindings.size() == aLines - 1,
                "the lines are checked");
    });
}

} // namespace

void PrintTool() {
    Instructions_PrintGrowth("mapper-check.equal-lines", {1000, 3000, 10000}, EqualLinesCost);
}
