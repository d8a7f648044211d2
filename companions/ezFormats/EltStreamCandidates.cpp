#include "ezFormats/EltStreamCandidates.h"

#include "ezFormats/elementary/AC3EltStreamParser.h"
#include "ezFormats/elementary/ADTSEltStreamParser.h"
#include "ezFormats/elementary/EAC3EltStreamParser.h"
#include "ezFormats/elementary/H264EltStreamParser.h"
#include "ezFormats/elementary/H265EltStreamParser.h"
#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"
#include "ezFormats/elementary/MPEGVideoEltStreamParser.h"

void AddEltStreamCandidates(ezUndeterminedEltStreamParser& aRace) {
    aRace.AddCandidate(new H264EltStreamParser);
    aRace.AddCandidate(new H265EltStreamParser);
    aRace.AddCandidate(new MPEGVideoEltStreamParser);
    aRace.AddCandidate(new AC3EltStreamParser);
    aRace.AddCandidate(new EAC3EltStreamParser);
    aRace.AddCandidate(new ADTSEltStreamParser);
    aRace.AddCandidate(new MPEGAudioEltStreamParser);
}
