#pragma once

class ezMediaInfo;

/// Derives the bit rates that a record lacks from those that it holds, and writes them into it: maximum,
/// estimated and whole rates from the rates of audio and video. Sums wrap at 32 bits.
void CompleteBitRates(ezMediaInfo& anInfo);
