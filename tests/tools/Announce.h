#pragma once

#include "support/RunProgram.h"

#include <string>
#include <vector>

/// Runs the tool with the samples' configuration.
inline ProgramResult Announce(std::vector<std::string> anArguments,
                              const ProgramOptions& anOptions = ProgramOptions()) {
    anArguments.insert(anArguments.begin(), {"--config", EZ_SAMPLES});
    return RunProgram(EZANNOUNCE, anArguments, anOptions);
}

/// Runs the tool as it is called.
inline ProgramResult RunTool(const std::vector<std::string>& anArguments,
                             const ProgramOptions& anOptions = ProgramOptions()) {
    return RunProgram(EZANNOUNCE, anArguments, anOptions);
}
