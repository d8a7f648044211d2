#include "ezFormats/EltStreamCandidates.h"

#include "ezFormats/elementary/AC3EltStreamParser.h"
#include "ezFormats/elementary/ADTSEltStreamParser.h"
#include "ezFormats/elementary/EAC3EltStreamParser.h"
#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"
#include "ezFormats/elementary/VideoCandidates.h"

void AddEltStreamCandidates(ezUndeterminedEltStreamParser& aRace) {
    AddVideoCandidates(aRace);
    aRace.AddCandidate(new AC3EltStreamParser);
    aRace.AddCandidate(new EAC3EltStreamParser);
    aRace.AddCandidate(new ADTSEltStreamParser);
    aRace.AddCandidate(new MPEGAudioEltStreamParser);
}
