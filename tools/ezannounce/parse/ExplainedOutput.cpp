#include "parse/ExplainedOutput.h"

#include "host/Explanation.h"
#include "host/Host.h"
#include "host/MapperAnswer.h"
#include "host/SubtitleWords.h"
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

/// Lines of which the first has a label.
std::string LinesOfExplanation(const char* aLabel, const std::vector<std::string>& aLines) {
    std::string text;
    for (const std::string& line : aLines) {
        text += LineOfExplanation(text.empty() ? aLabel : "", line, "");
    }
    return text;
}

std::string LinesOfSubtitles(const ezSubtitles& aSubtitles, const std::string& aFilm) {
    std::string text;
    const auto label = [&text] { return text.empty() ? "subtitle files" : ""; };
    for (const ezSubtitleFile& file : aSubtitles.mFiles) {
        text += LineOfExplanation(label(), NameOf(file, aFilm), InWords(file));
    }
    return aSubtitles.mfWhole ? text : text + LineOfExplanation(label(), "-", "more may be there");
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
    if (anAnnouncement.mSubtitles != nullptr) {
        text += LinesOfSubtitles(*anAnnouncement.mSubtitles, anAnnouncement.mPath);
    }
    text += LinesOfExplanation("entries", InWords(explanation.mEntries));
    std::vector<std::string> attempts;
    for (const ExplainedAttempt& attempt : explanation.mAttempts) {
        attempts.push_back(std::string(attempt.mDepth * 2, ' ') + InWords(attempt));
    }
    text += LinesOfExplanation("tried", attempts);
    mConsole.Print(text);
}
