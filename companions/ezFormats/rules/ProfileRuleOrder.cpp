#include "ezFormats/rules/ProfileRuleOrder.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace {

bool Share(const std::vector<ProfileMimeType>& aTypes, const std::vector<ProfileMimeType>& anOthers) {
    return std::any_of(aTypes.begin(), aTypes.end(), [&anOthers](ProfileMimeType aType) {
        return ProfileMimeTypes_Have(anOthers, aType.mStated);
    });
}

/// What is left of types without those of a rule.
std::vector<ProfileMimeType> Without(const std::vector<ProfileMimeType>& aTypes, const ProfileRule& aRule) {
    std::vector<ProfileMimeType> left;
    std::copy_if(aTypes.begin(), aTypes.end(), std::back_inserter(left), [&aRule](ProfileMimeType aType) {
        return !ProfileMimeTypes_Have(aRule.mMimeTypes, aType.mStated);
    });
    return left;
}

/// True when a rule is asked before another one that stands after it, whatever the table prefers.
bool IsAlwaysAskedBefore(const ProfileRule& aRule, const ProfileRule& aLater) {
    return (!aRule.mfInferred || aLater.mfInferred) &&
           (aLater.mRegion == ProfileRegion::None || aLater.mRegion == aRule.mRegion);
}

/// The last of the rules before this one that together, one for each of its types, win whenever it would;
/// null when they do not.
template <typename Order>
const ProfileRule* FindWinner(const std::vector<ProfileRule>& aRules, std::size_t aRule, Order anIsBefore) {
    const ProfileRule& rule = aRules[aRule];
    std::vector<ProfileMimeType> left = rule.mMimeTypes;
    for (std::size_t i = 0; i < aRule; ++i) {
        if (anIsBefore(aRules[i], rule) && Share(left, aRules[i].mMimeTypes) &&
            ProfileRule_Implies(rule, aRules[i])) {
            left = Without(left, aRules[i]);
            if (left.empty()) {
                return &aRules[i];
            }
        }
    }
    return nullptr;
}

/// A line with endings is several rules.
bool IsOneOfItsLine(const std::vector<ProfileRule>& aRules, std::size_t aRule) {
    const std::size_t line = aRules[aRule].mLine;
    return (aRule > 0 && aRules[aRule - 1].mLine == line) ||
           (aRule + 1 < aRules.size() && aRules[aRule + 1].mLine == line);
}

} // namespace

void ProfileRules_FindLosers(const std::vector<ProfileRule>& aRules,
                             std::vector<ProfileRulesProblem>* aProblems) {
    for (std::size_t i = 0; i < aRules.size(); ++i) {
        const ProfileRule* const winner = FindWinner(aRules, i, IsAlwaysAskedBefore);
        if (winner != nullptr) {
            const std::string name = IsOneOfItsLine(aRules, i)
                                         ? "the rule of " + std::string(aRules[i].mProfile.View())
                                         : "this rule";
            aProblems->push_back({aRules[i].mLine, name + " can never win: the one of line " +
                                                       std::to_string(winner->mLine) +
                                                       " wins whenever it would"});
        }
    }
}

ProfileRuleList ProfileRules_InForce(ProfileRuleList aList) {
    std::vector<ProfileRule> asked = std::move(aList.mRules);
    if (!aList.mfInferred) {
        asked.erase(std::remove_if(asked.begin(), asked.end(),
                                   [](const ProfileRule& aRule) { return aRule.mfInferred; }),
                    asked.end());
    }
    if (aList.mRegion != ProfileRegion::None) {
        std::stable_partition(asked.begin(), asked.end(),
                              [&aList](const ProfileRule& aRule) { return aRule.mRegion == aList.mRegion; });
    }
    aList.mRules.clear();
    // The check has compared the others.
    const auto isBeforeHere = [&aList](const ProfileRule& aRule, const ProfileRule& aLater) {
        return !IsAlwaysAskedBefore(aRule, aLater) ||
               (aRule.mRegion != ProfileRegion::None && aRule.mRegion == aList.mRegion);
    };
    std::vector<bool> wins;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        wins.push_back(FindWinner(asked, i, isBeforeHere) == nullptr);
    }
    for (std::size_t i = 0; i < asked.size(); ++i) { // moved only when all were compared
        if (wins[i]) {
            aList.mRules.push_back(std::move(asked[i]));
        }
    }
    return aList;
}
