#include "ezFormats/ProfileRules.h"

struct ProfileRules::Rule {};

ProfileRules::ProfileRules() = default;
ProfileRules::~ProfileRules() = default;

std::shared_ptr<const ProfileRules> ProfileRules::BuiltIn() {
    static const std::shared_ptr<const ProfileRules> sRules(new ProfileRules);
    return sRules;
}

std::string_view ProfileRules::BuiltInText() {
    return {};
}

std::shared_ptr<const ProfileRules> ProfileRules::FromText(std::string_view,
                                                           std::vector<ProfileRulesProblem>*) {
    return BuiltIn();
}

std::shared_ptr<const ProfileRules> ProfileRules::FromFile(const ezCString&,
                                                           std::vector<ProfileRulesProblem>*) {
    return BuiltIn();
}

ezCString ProfileRules::FindProfile(const ezMediaInfo&) const {
    return {};
}

ezCString ProfileRules::GetProfileInfo(std::string_view) const {
    return {};
}
