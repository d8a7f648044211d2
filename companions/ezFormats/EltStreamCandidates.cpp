#include "ezFormats/EltStreamCandidates.h"

#include "ezFormats/AC3EltStreamParser.h"
#include "ezFormats/ADTSEltStreamParser.h"
#include "ezFormats/EAC3EltStreamParser.h"
#include "ezFormats/H264EltStreamParser.h"
#include "ezFormats/MPEGAudioEltStreamParser.h"
#include "ezFormats/MPEGVideoEltStreamParser.h"

void AddEltStreamCandidates(ezUndeterminedEltStreamParser& aRace) {
    aRace.AddCandidate(new H264EltStreamParser);
    aRace.AddCandidate(new MPEGVideoEltStreamParser);
    aRace.AddCandidate(new AC3EltStreamParser);
    aRace.AddCandidate(new EAC3EltStreamParser);
    aRace.AddCandidate(new ADTSEltStreamParser);
    aRace.AddCandidate(new MPEGAudioEltStreamParser);
}
