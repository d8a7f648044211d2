#include "Table.h"

#include "Console.h"
#include "Explanation.h"
#include "Facts.h"
#include "Host.h"
#include "LiveMedia.h"
#include "MapperAnswer.h"
#include "SafeText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::size_t kRowsPerBatch = 1000;

enum Column : std::size_t { kName, kMimeType, kClass, kDLNA, kSize, kExtension, kRest };

constexpr std::array<const char*, 7> kHeader = {"NAME", "MIME TYPE", "CLASS", "DLNA", "SIZE", "EXT", "KNOWN"};

/// A longer text pushes its own row to the right instead of widening the column of all rows.
constexpr std::array<std::size_t, 7> kMaximumWidths = {60, 40, 32, 104, 10, 8, 0};

std::string Padding(std::size_t aWidth, std::size_t aColumn) {
    return std::string(aWidth < aColumn ? aColumn - aWidth : 0, ' ');
}

/// What the columns before the last have told already.
bool HasColumn(const Fact& aFact) {
    constexpr std::array<const char*, 5> kColumns = {"mime_type", "class", "dlna", "size", "extension"};
    return std::find(kColumns.begin(), kColumns.end(), aFact.mName) != kColumns.end();
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
    if (aFact.mName == "has_video" || aFact.mName == "duration_from" || aFact.mName == "duration_ms") {
        return ""; // the class tells; how sure the duration is, and how fine, is a matter of explanations
    }
    return aFact.mLabel + " " + aFact.mWords;
}

const Fact* FindFact(const std::vector<Fact>& aFacts, const std::string& aName) {
    const auto fact =
        std::find_if(aFacts.begin(), aFacts.end(), [&](const Fact& aFact) { return aFact.mName == aName; });
    return fact != aFacts.end() ? &*fact : nullptr;
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
        const Fact* other = anOther != name ? FindFact(aFacts, anOther) : nullptr;
        return other != nullptr && other->mWords == aFact.mWords;
    });
}

std::string RestInWords(const ezMediaInfo& anInfo) {
    const std::vector<Fact> facts = FactsOf(anInfo);
    std::string rest;
    for (const Fact& fact : facts) {
        if (fact.mName.empty() || fact.mName == "modified" || HasColumn(fact) ||
            IsRepeatedRate(fact, facts)) {
            continue;
        }
        std::string words;
        if (fact.mName == "picture_width") {
            const Fact* height = FindFact(facts, "picture_height");
            words = fact.mWords + "x" + (height != nullptr ? height->mWords : "?");
        } else if (fact.mName != "picture_height" || FindFact(facts, "picture_width") == nullptr) {
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
            words += words.empty() ? "media mapper: " : ", ";
            words += ForTerminal(LabelOf(change));
        }
    }
    return words;
}

std::string CellOf(const ezMediaInfo& anInfo, const char* aKey) {
    return ForTerminal(anInfo.GetCString(aKey, "-").View());
}

/// A file's record lacks the size when it is 0, a live media's when it is not known: that is never empty, and
/// a name given to standard input has no time as a file has.
std::string SizeCell(const Announcement& anAnnouncement) {
    const ezMediaInfo& info = *anAnnouncement.mInfo;
    const bool fFile = !IsLive(anAnnouncement.mPath) && info.mLastModificationTime.IsSet();
    if (!fFile && !info.Has(kezInfo_FileSize)) {
        return "-";
    }
    return SizeInWords(info.GetUInt64(kezInfo_FileSize, 0).ToUInt64());
}

std::string LineOfExplanation(const std::string& aLabel, const std::string& aWords,
                              const std::string& aSource) {
    constexpr std::size_t kLabelWidth = 16;
    constexpr std::size_t kWordsWidth = 32;
    const std::string label = ForTerminal(aLabel);
    const std::string words = ForTerminal(aWords);
    std::string line = "  " + label + Padding(TerminalWidth(label), kLabelWidth) + " " + words;
    if (!aSource.empty()) {
        line += Padding(TerminalWidth(words), kWordsWidth) + "  " + ForTerminal(aSource);
    }
    return line + "\n";
}

std::string EntriesInWords(const std::vector<ExplainedEntry>& anEntries) {
    std::string words;
    for (const ExplainedEntry& entry : anEntries) {
        words += words.empty() ? "" : ", ";
        words += entry.mName;
        words += entry.mfExcluded ? " (excluded)" : "";
    }
    return words.empty() ? "none for this extension" : words;
}

} // namespace

std::string TableOutput::Line(const Row& aRow) const {
    std::string line;
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        const std::string padding = Padding(TerminalWidth(aRow[column]), mWidths[column]);
        line += column == kSize ? padding + aRow[column] : aRow[column] + padding;
        line += column + 1 < kColumnCount ? "  " : "";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

void TableOutput::Put(const Announcement& anAnnouncement) {
    const ezMediaInfo& info = *anAnnouncement.mInfo;
    Row row;
    row[kName] = ForTerminal(anAnnouncement.mPath);
    row[kMimeType] = CellOf(info, kezInfo_MimeType);
    row[kClass] = CellOf(info, kezInfo_ClassName);
    row[kDLNA] = anAnnouncement.mfRecognised ? ForTerminal(AnnouncedFourthField(info)) : "-";
    row[kSize] = SizeCell(anAnnouncement);
    row[kExtension] = CellOf(info, kezInfo_FileExtension);
    row[kRest] = anAnnouncement.mfRecognised ? RestInWords(info) : "not recognised";
    const std::string overrides = OverridesInWords(anAnnouncement.mMapperAnswer.get());
    if (!overrides.empty()) {
        row[kRest] += (row[kRest].empty() ? "" : "; ") + overrides;
    }
    mRows.push_back(std::move(row));
    if (mRows.size() >= kRowsPerBatch) {
        Finish();
    }
}

void TableOutput::Finish() {
    if (mRows.empty()) {
        return;
    }
    Row header;
    std::copy(kHeader.begin(), kHeader.end(), header.begin());
    if (!mfHeaderShown) {
        mRows.insert(mRows.begin(), header);
        mfHeaderShown = true;
    }
    for (const Row& row : mRows) {
        for (std::size_t column = 0; column < kColumnCount; ++column) {
            const std::size_t width = TerminalWidth(row[column]);
            if (width <= kMaximumWidths[column]) {
                mWidths[column] = std::max(mWidths[column], width);
            }
        }
    }
    for (const Row& row : mRows) {
        mConsole.Print(Line(row));
    }
    mRows.clear();
}

void ExplainedOutput::Put(const Announcement& anAnnouncement) {
    const Explanation& explanation = *anAnnouncement.mExplanation;
    std::string text = mfFirst ? "" : "\n";
    mfFirst = false;
    text += ForTerminal(anAnnouncement.mPath) + "\n";
    if (!anAnnouncement.mfRecognised) {
        text += "  not recognised\n";
    }
    bool fHasFourthField = false;
    for (const ExplainedFact& fact : explanation.mFacts) {
        text += LineOfExplanation(fact.mFact.mLabel, fact.mFact.mWords, InWords(fact.mSource));
        fHasFourthField = fHasFourthField || fact.mFact.mName == "dlna";
    }
    if (anAnnouncement.mMapperAnswer != nullptr) {
        for (const Override& change : anAnnouncement.mMapperAnswer->mOverrides) {
            if (!change.mNew) { // what is shown above does not have it any more
                text += LineOfExplanation(LabelOf(change), "-", "media mapper: " + InWords(change));
            }
        }
    }
    if (anAnnouncement.mfRecognised && !fHasFourthField) {
        text += LineOfExplanation("DLNA", "*", "nothing stated a 4th field");
    }
    text += LineOfExplanation("entries", EntriesInWords(explanation.mEntries), "");
    const char* label = "tried";
    for (const ExplainedAttempt& attempt : explanation.mAttempts) {
        text += LineOfExplanation(label, std::string(attempt.mDepth * 2, ' ') + InWords(attempt), "");
        label = "";
    }
    mConsole.Print(text);
}
