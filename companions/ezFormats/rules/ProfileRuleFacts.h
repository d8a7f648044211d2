#pragma once

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>
#include <string_view>

class ezMediaInfo;

enum class ProfileFactKind {
    Word,
    Container, ///< a word that is one of kContainers
    Number,
    Size ///< of pictures: several numbers at once
};

/// A fact that a rule can ask for.
struct ProfileFact {
    std::string_view mName;
    std::string_view mKey; ///< its other name: the key that holds it, or the first choice; empty: none
    ProfileFactKind mKind;
    /// Where the record holds it: the first key that states a number counts. Null ends them.
    std::array<const char*, 3> mKeys = {};
    uint32 mScale = 1;         ///< the record holds this many times the number that a table states
    uint32 mTolerance = 0;     ///< how far below a stated number the record's may lie and meet it still
    bool mfZeroCounts = false; ///< 0 is a value, and not the lack of one
    bool mfMeasured = false; ///< it may lie kProfileFact_Excess above: limits are nominal, and it is measured
};

/// The part of a stated number by which a measured one may lie above it: 1 / this. So 256,164 bits a second
/// keep 256k, and 30.02 pictures a second keep 30.
inline constexpr uint32 kProfileFact_Excess = 1000;

inline constexpr std::size_t kProfileFactCount = 19;
extern const std::array<ProfileFact, kProfileFactCount> kProfileFacts;

/// @name Where the facts stand that need more than the table says
/// @{
inline constexpr std::size_t kProfileFact_AudioCodec = 0;
inline constexpr std::size_t kProfileFact_SamplingRate = 1;
inline constexpr std::size_t kProfileFact_AudioBitRate = 3;
inline constexpr std::size_t kProfileFact_Width = 9;
inline constexpr std::size_t kProfileFact_Height = 10;
inline constexpr std::size_t kProfileFact_FrameRate = 11;
inline constexpr std::size_t kProfileFact_Size = 18;
/// @}

/// The largest number that a fact can be.
inline constexpr uint32 kProfileFact_Maximum = 0xFFFFFFFE;
/// What stands for a fact that the record does not state, and of a rate that varies
/// (kezMediaInfo_VariableRate): in no range of numbers.
inline constexpr uint32 kProfileFact_NotStated = kProfileFact_Maximum + 1;

/// The index of a fact by one of its names; kProfileFactCount when there is none.
std::size_t ProfileFact_Find(std::string_view aName);

/// What a record states of a number.
uint32 ProfileFact_NumberOf(const ezMediaInfo& anInfo, std::size_t aFact);
/// What a record states of a word; empty when it does not.
ezCString ProfileFact_WordOf(const ezMediaInfo& anInfo, std::size_t aFact);
