#pragma once

#include "ez/MediaParser.h"

#include <array>
#include <cstddef>

/// Where a parser looks.
struct Probe {
    std::size_t mPosition;
    std::size_t mSize;
};

/// Five places of the first 8 KiB, as the parsers of real formats look at them.
inline constexpr std::array<Probe, 5> kProbes = {{{0, 12}, {4, 8}, {512, 16}, {2048, 32}, {8000, 64}}};
inline constexpr std::size_t kLargestProbe = 64;

/// Takes a file for its own that has its mark wherever it looks.
class ProbingParser : public ezMediaParser {
public:
    static constexpr char kMark = 'c';

    ProbingParser() : ezMediaParser("clip", nullptr, false) {}
    ~ProbingParser() override;

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }
};
