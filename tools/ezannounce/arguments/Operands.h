#pragma once

#include <string>

/// Standard input as an operand.
constexpr const char* kStandardInput = "-";

/// True for an operand that is read through a stream: standard input, or a URL of a web server.
bool IsLive(const std::string& anOperand);
