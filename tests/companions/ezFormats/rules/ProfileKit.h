#pragma once

#include "ezFormats/ProfileRules.h"
#include "ezFormats/detail/Formats.h"

#include "support/Str.h"
#include "support/WholeFile.h"

#include "ezPlatform/media/MediaInfo.h"

#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// A record of "key=value" words; what reads as a number is one, and the MIME type may hold a "=".
inline std::unique_ptr<ezMediaInfo> RecordOf(const std::string& aText) {
    auto info = std::make_unique<ezMediaInfo>();
    std::istringstream words(aText);
    std::string word;
    while (words >> word) {
        const std::size_t equals = word.find('=');
        info->Set(word.substr(0, equals).c_str(), word.substr(equals + 1).c_str(), true);
    }
    return info;
}

/// The problems of a table as "line: text".
inline std::vector<std::string> ProblemsOf(const std::string& aTable) {
    std::vector<ProfileRulesProblem> problems;
    ProfileRules::FromText(aTable, &problems);
    std::vector<std::string> texts;
    texts.reserve(problems.size());
    for (const ProfileRulesProblem& problem : problems) {
        texts.push_back(std::to_string(problem.mLine) + ": " + problem.mText);
    }
    return texts;
}

/// What a sound table gives a record.
inline std::string ProfileBy(const std::string& aTable, const std::string& aRecord) {
    const std::shared_ptr<const ProfileRules> rules = ProfileRules::FromText(aTable, nullptr);
    return rules == nullptr ? "a problem" : Str(rules->FindProfile(*RecordOf(aRecord)));
}

/// The MIME types of all formats, in the order of the list.
inline std::vector<std::string> StatedMimeTypes() {
    std::vector<std::string> types;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        types.insert(types.end(), format->mMimeTypes.begin(), format->mMimeTypes.end());
    }
    return types;
}

/// What the library's table gives a record.
inline std::string ProfileOf(const std::string& aRecord) {
    return Str(ProfileRules::BuiltIn()->FindProfile(*RecordOf(aRecord)));
}
