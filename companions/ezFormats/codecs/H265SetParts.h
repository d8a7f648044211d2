#pragma once

class ezBitReader;

// What stands between the sizes and the usability information of a sequence parameter set of H.265, and is
// read for its length alone.

/// scaling_list_data (ITU-T H.265, 7.3.4)
void H265_SkipScalingLists(ezBitReader& aBits);

/// The short-term reference picture sets of a sequence parameter set, with their count (7.3.7).
void H265_SkipRefPicSets(ezBitReader& aBits);
