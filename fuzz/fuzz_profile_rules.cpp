// The door: a table of profile rules.

#include "fuzz/support/Check.h"

#include "ezFormats/ProfileRules.h"
#include "ezFormats/detail/FormatMimeTypes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Problems = std::vector<ProfileRulesProblem>;

bool IsSame(const Problems& aLeft, const Problems& aRight) {
    return std::equal(aLeft.begin(), aLeft.end(), aRight.begin(), aRight.end(),
                      [](const ProfileRulesProblem& aOne, const ProfileRulesProblem& anOther) {
                          return aOne.mLine == anOther.mLine && aOne.mText == anOther.mText;
                      });
}

void CheckProblems(const Problems& aProblems, std::string_view aText) {
    const auto lines = static_cast<std::size_t>(std::count(aText.begin(), aText.end(), '\n')) + 1;
    std::size_t before = 0;
    for (const ProfileRulesProblem& problem : aProblems) {
        FuzzCheck(problem.mLine <= lines && problem.mLine >= before);
        before = problem.mLine;
        FuzzCheck(!problem.mText.empty() &&
                  std::all_of(problem.mText.begin(), problem.mText.end(),
                              [](char aByte) { return aByte >= ' ' && aByte <= '~'; }));
    }
}

/// Records of media as the parsers make them, and what rules of an operator may be about.
std::array<ezMediaInfo, 3>& Records() {
    static std::array<ezMediaInfo, 3> sRecords;
    return sRecords;
}

void FillRecords() {
    struct Fact {
        std::size_t mRecord;
        const char* mKey;
        const char* mValue;
    };
    constexpr std::array<Fact, 22> kFacts = {{
        {0, kezInfo_MimeType, "audio/mpeg"},     {0, kezInfo_AudioCodec, "MP3"},
        {0, kezInfo_AudioSamplingRate, "44100"}, {0, kezInfo_AudioChannelCount, "2"},
        {0, kezInfo_AudioBitRate, "128000"},     {1, kezInfo_MimeType, "IMAGE/JPEG; q=1"},
        {1, kezInfo_PictureProcess, "baseline"}, {1, kezInfo_PictureColours, "4:2:0"},
        {1, kezInfo_PictureWidth, "640"},        {1, kezInfo_PictureHeight, "480"},
        {2, kezInfo_MimeType, "video/mp4"},      {2, kezInfo_AudioCodec, "AAC"},
        {2, kezInfo_AudioSamplingRate, "48000"}, {2, kezInfo_AudioChannelCount, "6"},
        {2, kezInfo_AudioBitRate, "4294967295"}, {2, kezInfo_VideoCodec, "H264"},
        {2, kezInfo_VideoProfile, "High"},       {2, kezInfo_VideoLevel, "9"},
        {2, kezInfo_PictureWidth, "1920"},       {2, kezInfo_PictureHeight, "1080"},
        {2, kezInfo_FrameRate, "29970"},         {2, kezInfo_BitRate, "20000000"},
    }};
    for (const Fact& fact : kFacts) {
        Records()[fact.mRecord].Set(fact.mKey, fact.mValue, true);
    }
}

/// A profile that a file keeps is one that media of its type are announced with.
void CheckRules(const ProfileRules& aRules) {
    for (const ezMediaInfo& record : Records()) {
        std::string type(record.GetCString(kezInfo_MimeType, "").Lower().View());
        type = type.substr(0, type.find(';'));
        const std::string all = "," + std::string(aRules.GetProfileInfo(type).View()) + ",";
        const ProfileMatch match = aRules.FindMatch(record);
        const std::string announced(match.mMimeType.IsEmpty() ? std::string_view(type)
                                                              : match.mMimeType.View());
        FuzzCheck(match.mProfile.IsEmpty() ||
                  all.find("," + announced + ":DLNA.ORG_PN=" + std::string(match.mProfile.View()) + ",") !=
                      std::string::npos);
        FuzzCheck(aRules.FindProfile(record) == match.mProfile);
        FuzzCheck(all.size() >= type.size() + 4 &&
                  all.compare(all.size() - type.size() - 4, std::string::npos, "," + type + ":*,") == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    static const bool sfFilled = (FillRecords(), true);
    FuzzCheck(sfFilled);
    const std::string text(aData, aData + aSize);
    Problems problems = {{7, "of before"}};
    const auto rules = ProfileRules::FromText(text, &problems);
    FuzzCheck((rules != nullptr) == problems.empty());
    CheckProblems(problems, text);
    FuzzCheck((ProfileRules::FromText(text, nullptr) != nullptr) == problems.empty());
    // A comment after the table changes nothing.
    Problems again;
    const auto same = ProfileRules::FromText(text + "\n# the end", &again);
    FuzzCheck((same != nullptr) == (rules != nullptr) && IsSame(again, problems));
    if (rules != nullptr) {
        CheckRules(*rules);
        constexpr const char* kTypes = "video/mp4,audio/mp4,video/quicktime,audio/mpeg,image/jpeg";
        FuzzCheck(same->GetProfileInfo(kTypes) == rules->GetProfileInfo(kTypes));
    }
    return 0;
}
