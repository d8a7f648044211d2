#include "parse/WideTable.h"

#include "host/Facts.h"
#include "host/Host.h"
#include "host/MapperAnswer.h"
#include "output/Console.h"
#include "output/Limits.h"
#include "output/SafeText.h"
#include "parse/Table.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

enum Column : std::size_t { kName, kMimeType, kClass, kDLNA, kSize, kExtension, kRest };

const std::vector<std::string> kHeader = {"NAME", "MIME TYPE", "CLASS", "DLNA", "SIZE", "EXT", "KNOWN"};

std::vector<ColumnStyle> Styles() {
    return {{60}, {40}, {32}, {104}, {10, true}, {8}, {0}};
}

/// What the columns before the last have told already.
bool HasColumn(const Fact& aFact) {
    constexpr std::array<const char*, 5> kColumns = {"mime_type", "class", "dlna", "size", "extension"};
    return std::find(kColumns.begin(), kColumns.end(), aFact.mName) != kColumns.end();
}

/// What the row does not tell: the class tells of video; how sure the duration is, and how fine, is a matter
/// of explanations; and creator and genre have all names. Of a cover its type is enough.
bool IsLeftOut(const std::string& aName) {
    constexpr std::array<std::string_view, 7> kLeftOut = {
        "has_video", "duration_from", "duration_ms", "duration_bound_ms", "creators", "genres", "cover_size"};
    return std::find(kLeftOut.begin(), kLeftOut.end(), aName) != kLeftOut.end();
}

/// The words of a fact where its label need not be told: "128 kbit/s", "2 channels".
std::string ShortWords(const Fact& aFact) {
    constexpr std::array<std::string_view, 8> kPlain = {"duration",    "bit_rate",    "sampling_rate",
                                                        "audio_codec", "video_codec", "video_profile",
                                                        "process",     "colours"};
    const bool fPlain = std::find(kPlain.begin(), kPlain.end(), aFact.mName) != kPlain.end();
    if (fPlain && aFact.mWords != "variable") {
        return aFact.mWords;
    }
    if (aFact.mName == "frame_rate") {
        return aFact.mWords + " fps";
    }
    if (aFact.mName == "channels") {
        return aFact.mWords + (aFact.mNumber == 1 ? " channel" : " channels");
    }
    if (aFact.mName == "audio_tracks") {
        return aFact.mNumber == 1 ? "" : aFact.mWords + " audio tracks";
    }
    if (aFact.mName == "bits_per_sample" || aFact.mName == "bit_depth") {
        return aFact.mWords + " bit";
    }
    if (aFact.mName == "compilation") {
        return aFact.mLabel;
    }
    return aFact.mLabel + " " + aFact.mWords;
}

/// Rates that only repeat another: the maximum the rate, the estimate the maximum too, and the rate of a
/// track that of the whole media.
bool IsRepeatedRate(const Fact& aFact, const std::vector<Fact>& aFacts) {
    constexpr std::string_view kSuffix = "bit_rate";
    const std::string& name = aFact.mName;
    if (name.size() <= kSuffix.size() ||
        name.compare(name.size() - kSuffix.size(), kSuffix.size(), kSuffix) != 0) {
        return false;
    }
    const std::string track = name.substr(0, name.find('_') + 1); // "audio_", or what no rate begins with
    std::vector<std::string> others = {"bit_rate"};
    if (name.find("max_") != std::string::npos || name.find("estimated_") != std::string::npos) {
        others.push_back(track + "bit_rate");
    }
    if (name.find("estimated_") != std::string::npos) {
        others.insert(others.end(), {"max_bit_rate", track + "max_bit_rate"});
    }
    return std::any_of(others.begin(), others.end(), [&](const std::string& anOther) {
        const Fact* other = anOther != name ? FindFactNamed(aFacts, anOther) : nullptr;
        return other != nullptr && other->mWords == aFact.mWords;
    });
}

std::string RestInWords(const ezMediaInfo& anInfo) {
    const std::vector<Fact> facts = FactsOf(anInfo);
    std::string rest;
    for (const Fact& fact : facts) {
        if (fact.mName.empty() || fact.mName == "modified" || HasColumn(fact) ||
            IsRepeatedRate(fact, facts) || IsLeftOut(fact.mName)) {
            continue;
        }
        std::string words;
        if (fact.mName == "picture_width") {
            const Fact* height = FindFactNamed(facts, "picture_height");
            words = fact.mWords + "x" + (height != nullptr ? height->mWords : "?");
        } else if (fact.mName != "picture_height" || FindFactNamed(facts, "picture_width") == nullptr) {
            words = ShortWords(fact);
        }
        if (!words.empty()) {
            rest += rest.empty() ? "" : ", ";
            rest += ForTerminal(words);
        }
    }
    return rest;
}

/// "media mapper: DLNA, duration": the facts that it decided, whose values the row has.
std::string OverridesInWords(const MapperAnswer* anAnswer) {
    std::string words;
    if (anAnswer != nullptr) {
        for (const Override& change : anAnswer->mOverrides) {
            if (IsLeftOut(NameOf(change))) {
                continue;
            }
            words += words.empty() ? "media mapper: " : ", ";
            words += ForTerminal(LabelOf(change));
        }
    }
    return words;
}

std::string CellOf(const ezMediaInfo& anInfo, const char* aKey) {
    return ForTerminal(anInfo.GetCString(aKey, "-").View());
}

} // namespace

WideTableOutput::WideTableOutput(Console& aConsole) : mConsole(aConsole), mWidths(Styles()) {}

void WideTableOutput::Put(const Announcement& anAnnouncement) {
    const ezMediaInfo& info = *anAnnouncement.mInfo;
    std::vector<std::string> row(kHeader.size());
    row[kName] = ForTerminal(anAnnouncement.mPath);
    row[kMimeType] = CellOf(info, kezInfo_MimeType);
    row[kClass] = CellOf(info, kezInfo_ClassName);
    row[kDLNA] = anAnnouncement.mfRecognised ? ForTerminal(AnnouncedFourthField(info)) : "-";
    row[kSize] = SizeCellOf(anAnnouncement);
    row[kExtension] = CellOf(info, kezInfo_FileExtension);
    row[kRest] = anAnnouncement.mfRecognised ? RestInWords(info) : "not recognised";
    const std::string overrides = OverridesInWords(anAnnouncement.mMapperAnswer.get());
    if (!overrides.empty()) {
        row[kRest] += (row[kRest].empty() ? "" : "; ") + overrides;
    }
    mRows.push_back(std::move(row));
    if (mRows.size() >= kOutput_RowsPerBatch) {
        Finish();
    }
}

void WideTableOutput::Finish() {
    if (mRows.empty()) {
        return;
    }
    if (!mfHeaderShown) {
        mRows.insert(mRows.begin(), kHeader);
        mfHeaderShown = true;
    }
    for (const std::vector<std::string>& row : mRows) {
        mWidths.Take(row);
    }
    for (const std::vector<std::string>& row : mRows) {
        mConsole.Print(mWidths.Line(row));
    }
    mRows.clear();
}
