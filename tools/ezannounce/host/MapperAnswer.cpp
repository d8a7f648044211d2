#include "host/MapperAnswer.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/MediaParserStream.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace {

/// What a table can decide; the last three of LPCM only, where what it does not know becomes 0.
constexpr std::array<const char*, 8> kKeys = {
    kezInfo_MimeType, kezInfo_ClassName,         kezInfo_DLNA,         kezInfo_Duration,
    kezInfo_BitRate,  kezInfo_AudioChannelCount, kezInfo_AudioBitRate, kezInfo_AudioBitsPerSample};

std::optional<Fact> FindFact(const std::vector<Fact>& aFacts, std::string_view aKey) {
    const auto fact =
        std::find_if(aFacts.begin(), aFacts.end(), [&](const Fact& aFact) { return aFact.mKey == aKey; });
    return fact != aFacts.end() ? std::optional<Fact>(*fact) : std::nullopt;
}

const Fact& AnyFact(const Override& anOverride) {
    return anOverride.mNew ? *anOverride.mNew : *anOverride.mOld;
}

} // namespace

std::optional<MapperAnswer> FindMapperAnswer(DLNAMediaMapper& aMapper, ezMediaParserStream& aStream,
                                             const ezMediaInfo* aBefore, const ezMediaInfo& anAfter) {
    const DLNAMediaMapperEntry* entry =
        aMapper.GetFileEntry(ezPathName::MakeFilePath(aStream.GetFullPath()).GetFullName());
    if (entry == nullptr) {
        return std::nullopt;
    }
    MapperAnswer answer = {std::string(entry->mFileName.View()), std::string(entry->mProfile.View()), {}};
    const std::vector<Fact> before = aBefore != nullptr ? FactsOf(*aBefore) : std::vector<Fact>();
    const std::vector<Fact> after = FactsOf(anAfter);
    for (const char* key : kKeys) {
        // Between the two records only the table changes these keys.
        const ezCString old = aBefore != nullptr ? aBefore->GetCString(key, "") : ezCString();
        Override change = {key, FindFact(before, key), FindFact(after, key)};
        if (old != anAfter.GetCString(key, "") && (change.mOld || change.mNew)) {
            answer.mOverrides.push_back(std::move(change));
        }
    }
    return answer;
}

const std::string& LabelOf(const Override& anOverride) {
    return AnyFact(anOverride).mLabel;
}

const std::string& NameOf(const Override& anOverride) {
    const Fact& fact = AnyFact(anOverride);
    return fact.mName.empty() ? fact.mKey : fact.mName;
}

std::string InWords(const Override& anOverride) {
    const std::string nothing = anOverride.mKey == kezInfo_DLNA ? "*" : "nothing";
    return (anOverride.mOld ? anOverride.mOld->mWords : nothing) + " -> " +
           (anOverride.mNew ? anOverride.mNew->mWords : nothing);
}
