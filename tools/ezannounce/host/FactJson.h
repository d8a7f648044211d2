#pragma once

#include <nlohmann/json.hpp>

#include <string>

struct Fact;

/// A fact's value for programs.
nlohmann::ordered_json ValueOf(const Fact& aFact);

/// Its name for programs: one without a name of its own goes by its key.
const std::string& NameOf(const Fact& aFact);
