#pragma once

class ezUndeterminedEltStreamParser;

/// Adds a parser of every format of pictures to a race, in their order of AddEltStreamCandidates. Not while
/// the race is open.
void AddVideoCandidates(ezUndeterminedEltStreamParser& aRace);
