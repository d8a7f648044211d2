#include "host/MapperAnswer.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <memory>

namespace {

std::optional<Fact> FindFact(const std::vector<Fact>& aFacts, std::string_view aKey) {
    const auto fact =
        std::find_if(aFacts.begin(), aFacts.end(), [&](const Fact& aFact) { return aFact.mKey == aKey; });
    return fact != aFacts.end() ? std::optional<Fact>(*fact) : std::nullopt;
}

const Fact& AnyFact(const Override& anOverride) {
    return anOverride.mNew ? *anOverride.mNew : *anOverride.mOld;
}

/// Where the change of a key is told among others: first what the line of an entry states, then what follows.
std::size_t PlaceOf(std::string_view aKey) {
    constexpr std::array<std::string_view, 8> kFirst = {
        kezInfo_MimeType, kezInfo_ClassName,         kezInfo_DLNA,         kezInfo_Duration,
        kezInfo_BitRate,  kezInfo_AudioChannelCount, kezInfo_AudioBitRate, kezInfo_AudioBitsPerSample};
    return static_cast<std::size_t>(std::find(kFirst.begin(), kFirst.end(), aKey) - kFirst.begin());
}

/// What the record told before the changes.
std::vector<Fact> FactsBefore(const std::vector<MapperChange>& aChanges, const ezMediaInfo& anAfter) {
    const std::unique_ptr<ezMediaInfo> before(anAfter.Duplicate());
    // The seconds first: where they change, what is finer goes.
    for (const bool fSeconds : {true, false}) {
        for (const MapperChange& change : aChanges) {
            if ((change.mKey == kezInfo_Duration) == fSeconds) {
                before->Set(change.mKey.c_str(), change.mOld.value_or("").c_str(), true);
            }
        }
    }
    return FactsOf(*before);
}

} // namespace

std::vector<Override> OverridesOf(const std::vector<MapperChange>& aChanges, const ezMediaInfo& anAfter) {
    const std::vector<Fact> before = FactsBefore(aChanges, anAfter);
    const std::vector<Fact> after = FactsOf(anAfter);
    std::vector<Override> overrides;
    for (const MapperChange& change : aChanges) {
        Override shown = {change.mKey, FindFact(before, change.mKey), FindFact(after, change.mKey)};
        if (shown.mOld || shown.mNew) {
            overrides.push_back(std::move(shown));
        }
    }
    std::stable_sort(overrides.begin(), overrides.end(), [](const Override& aLeft, const Override& aRight) {
        return PlaceOf(aLeft.mKey) < PlaceOf(aRight.mKey);
    });
    return overrides;
}

const Override* FindOverride(const std::vector<Override>& anOverrides, std::string_view aKey) {
    const auto found = std::find_if(anOverrides.begin(), anOverrides.end(),
                                    [aKey](const Override& anOverride) { return anOverride.mKey == aKey; });
    return found != anOverrides.end() ? &*found : nullptr;
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
