#pragma once

#include <string>

struct RaceResult;

/// A race of elementary stream parsers as one object, with the end of its line.
std::string InJson(const RaceResult& aResult);
