#include "ezFormats/elementary/VideoCandidates.h"

#include "ezFormats/elementary/H264EltStreamParser.h"
#include "ezFormats/elementary/H265EltStreamParser.h"
#include "ezFormats/elementary/MPEG4EltStreamParser.h"
#include "ezFormats/elementary/MPEGVideoEltStreamParser.h"
#include "ezFormats/elementary/VC1EltStreamParser.h"

void AddVideoCandidates(ezUndeterminedEltStreamParser& aRace) {
    aRace.AddCandidate(new H264EltStreamParser);
    aRace.AddCandidate(new H265EltStreamParser);
    aRace.AddCandidate(new MPEGVideoEltStreamParser);
    aRace.AddCandidate(new VC1EltStreamParser);
    aRace.AddCandidate(new MPEG4EltStreamParser);
}
