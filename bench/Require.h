#pragma once

/// Ends the program where a benchmark would otherwise measure something else than it says.
void Require(bool afHolds, const char* aText);
