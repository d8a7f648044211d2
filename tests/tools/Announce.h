#pragma once

#include "support/RunProgram.h"

#include <string>
#include <vector>

/// Runs the tool as it is called, in an environment that states no width unless the options do.
inline ProgramResult RunTool(const std::vector<std::string>& anArguments,
                             const ProgramOptions& anOptions = ProgramOptions()) {
    ProgramOptions options = anOptions;
    options.mEnvironment.insert(options.mEnvironment.begin(), "COLUMNS");
    return RunProgram(EZANNOUNCE, anArguments, options);
}

/// Runs the tool with the samples' configuration.
inline ProgramResult Announce(std::vector<std::string> anArguments,
                              const ProgramOptions& anOptions = ProgramOptions()) {
    anArguments.insert(anArguments.begin(), {"--config", EZ_SAMPLES});
    return RunTool(anArguments, anOptions);
}
