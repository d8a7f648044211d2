#include "arguments/MapperWords.h"

#include "arguments/Arguments.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

struct NamedMapperVerb {
    std::string_view mName;
    MapperVerb mVerb;
    std::size_t mMinimum; ///< operands, the word after speeds not counted
    std::size_t mMaximum;
    const char* mMissing; ///< what to say below the minimum
    bool mfOnlyLooks;
    bool mfJson;
};

constexpr std::size_t kAnyNumber = SIZE_MAX;
constexpr const char* kNoProfile = "no profile given";

constexpr std::array<NamedMapperVerb, 8> kMapperVerbs = {{
    {"list", MapperVerb::List, 0, 0, "", true, true},
    {"show", MapperVerb::Show, 1, kAnyNumber, "no file name given", true, true},
    {"profiles", MapperVerb::Profiles, 0, 0, "", true, true},
    {"check", MapperVerb::Check, 0, 1, "", true, false},
    {"enable", MapperVerb::Enable, 1, kAnyNumber, kNoProfile, false, false},
    {"disable", MapperVerb::Disable, 1, kAnyNumber, kNoProfile, false, false},
    {"speeds", MapperVerb::Speeds, 1, kAnyNumber, kNoProfile, false, false},
    {"save", MapperVerb::Save, 0, 0, "", false, false},
}};

const NamedMapperVerb& Described(MapperVerb aVerb) {
    return *std::find_if(kMapperVerbs.begin(), kMapperVerbs.end(),
                         [&](const NamedMapperVerb& aNamed) { return aNamed.mVerb == aVerb; });
}

} // namespace

std::string TakeMapperVerb(std::vector<std::string>& aWords, Arguments& anArguments) {
    if (aWords.empty()) {
        return "mapper: no verb given";
    }
    const auto* verb =
        std::find_if(kMapperVerbs.begin(), kMapperVerbs.end(),
                     [&](const NamedMapperVerb& aNamed) { return aNamed.mName == aWords.front(); });
    if (verb == kMapperVerbs.end()) {
        return "mapper: not a verb: " + aWords.front();
    }
    anArguments.mMapperVerb = verb->mVerb;
    aWords.erase(aWords.begin());
    if (verb->mVerb == MapperVerb::Speeds) {
        if (aWords.empty() || (aWords.front() != "on" && aWords.front() != "off")) {
            return "mapper speeds: neither on nor off";
        }
        anArguments.mfSpeedsOn = aWords.front() == "on";
        aWords.erase(aWords.begin());
    }
    return {};
}

std::string CheckMapperVerb(const Arguments& anArguments) {
    const NamedMapperVerb& verb = Described(anArguments.mMapperVerb);
    const std::string name = "mapper " + std::string(verb.mName);
    if (anArguments.mfJson && !verb.mfJson) {
        return "--json goes with parse, mapper list, mapper show and mapper profiles only";
    }
    if (anArguments.mfNoCopy && !verb.mfOnlyLooks) {
        return "--no-copy does not go with " + name + ", which writes the file";
    }
    if (anArguments.mOperands.size() < verb.mMinimum) {
        return name + ": " + verb.mMissing;
    }
    if (anArguments.mOperands.size() > verb.mMaximum) {
        return name + (verb.mMaximum == 0 ? " takes no operand" : " takes one operand");
    }
    return {};
}
