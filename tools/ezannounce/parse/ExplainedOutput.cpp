#include "parse/ExplainedOutput.h"

#include "host/Explanation.h"
#include "host/Host.h"
#include "host/MapperAnswer.h"
#include "output/Console.h"
#include "output/SafeText.h"

namespace {

std::string Padding(std::size_t aWidth, std::size_t aColumn) {
    return std::string(aWidth < aColumn ? aColumn - aWidth : 0, ' ');
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
