#include "ezFormats/codecs/H265SetParts.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/detail/Limits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

// Clauses are those of ITU-T H.265.

namespace {

// --- Scaling lists (7.3.4)

constexpr unsigned kListSizes = 4; ///< 4x4, 8x8, 16x16, 32x32
constexpr unsigned kListsOfASize = 6;
constexpr unsigned kMaxCoefficients = 64;

void SkipScalingList(ezBitReader& aBits, unsigned aSizeID) {
    if (!aBits.ReadFlag()) {                 // scaling_list_pred_mode_flag
        aBits.ReadUEUpTo(kListsOfASize - 1); // scaling_list_pred_matrix_id_delta
        return;
    }
    if (aSizeID > 1) {
        aBits.ReadSEWithin(-7, 247); // scaling_list_dc_coef_minus8
    }
    const unsigned count = std::min(kMaxCoefficients, 1U << (4 + 2 * aSizeID));
    for (unsigned i = 0; i < count && !aBits.HasFailed(); ++i) {
        aBits.ReadSEWithin(-128, 127); // scaling_list_delta_coef
    }
}

// --- Short-term reference picture sets (7.3.7, 7.4.8)

/// The pictures of a set by their distance in the order of output, those before (S0) and then those after
/// (S1), each by how near they are.
struct RefPicSet {
    std::array<std::int32_t, kH265_MaxRefPictures> mDistances = {};
    std::size_t mCount = 0;

    /// False where there are too many.
    bool Add(std::int32_t aDistance) {
        if (mCount == mDistances.size()) {
            return false;
        }
        mDistances[mCount++] = aDistance;
        return true;
    }
};

constexpr std::uint32_t kMaxDistance = 1U << 15; ///< delta_poc_s0_minus1 and its like (7.4.8), and one more

/// Pictures of which each is so much farther than the one before.
void ReadDistances(ezBitReader& aBits, std::uint32_t aCount, std::int32_t aSign, RefPicSet& aSet) {
    std::int32_t distance = 0;
    for (std::uint32_t i = 0; i < aCount && !aBits.HasFailed(); ++i) {
        distance += aSign * static_cast<std::int32_t>(1 + aBits.ReadUEUpTo(kMaxDistance - 1));
        aBits.Skip(1); // used_by_curr_pic_s0_flag, used_by_curr_pic_s1_flag
        aBits.Require(aSet.Add(distance));
    }
}

void ReadExplicit(ezBitReader& aBits, RefPicSet& aSet) {
    const std::uint32_t before = aBits.ReadUEUpTo(kH265_MaxRefPictures);         // num_negative_pics
    const std::uint32_t after = aBits.ReadUEUpTo(kH265_MaxRefPictures - before); // num_positive_pics
    ReadDistances(aBits, before, -1, aSet);
    ReadDistances(aBits, after, 1, aSet);
}

/// As near ones come first on either side.
bool IsBefore(std::int32_t aDistance, std::int32_t anOther) {
    if ((aDistance < 0) != (anOther < 0)) {
        return aDistance < 0;
    }
    return aDistance < 0 ? aDistance > anOther : aDistance < anOther;
}

/// Predicted from the set before: its pictures and its own, all moved by a distance (equations 7-61, 7-62).
void ReadPredicted(ezBitReader& aBits, const RefPicSet& aReference, RefPicSet& aSet) {
    const bool fBack = aBits.ReadFlag(); // delta_rps_sign
    const auto distance =
        static_cast<std::int32_t>(1 + aBits.ReadUEUpTo(kMaxDistance - 1)); // abs_delta_rps_minus1
    const std::int32_t moved = fBack ? -distance : distance;
    for (std::size_t i = 0; i <= aReference.mCount && !aBits.HasFailed(); ++i) {
        const bool fKept = aBits.ReadFlag() || aBits.ReadFlag(); // used_by_curr_pic_flag, use_delta_flag
        const std::int32_t place = (i < aReference.mCount ? aReference.mDistances[i] : 0) + moved;
        if (fKept && place != 0) {
            aBits.Require(aSet.Add(place));
        }
    }
    std::sort(aSet.mDistances.begin(), aSet.mDistances.begin() + static_cast<std::ptrdiff_t>(aSet.mCount),
              IsBefore);
}

} // namespace

void H265_SkipScalingLists(ezBitReader& aBits) {
    for (unsigned size = 0; size < kListSizes; ++size) {
        const unsigned step = size == kListSizes - 1 ? 3 : 1; // the largest are for two of them
        for (unsigned i = 0; i < kListsOfASize && !aBits.HasFailed(); i += step) {
            SkipScalingList(aBits, size);
        }
    }
}

void H265_SkipRefPicSets(ezBitReader& aBits) {
    const std::uint32_t count = aBits.ReadUEUpTo(kH265_MaxRefPicSets); // num_short_term_ref_pic_sets
    RefPicSet last;
    for (std::uint32_t i = 0; i < count && !aBits.HasFailed(); ++i) {
        RefPicSet set;
        if (i != 0 && aBits.ReadFlag()) { // inter_ref_pic_set_prediction_flag
            ReadPredicted(aBits, last, set);
        } else {
            ReadExplicit(aBits, set);
        }
        last = set;
    }
}
