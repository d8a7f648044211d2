#include "host/Explanation.h"

#include <array>

namespace {

/// The words of a value of an enumeration whose values count from 0.
template <class Enum, std::size_t kCount>
const char* Word(const std::array<const char*, kCount>& aWords, Enum aValue) {
    return aWords.at(static_cast<std::size_t>(aValue));
}

/// What stands before the entries of a pass, where it is not that of the extension alone.
const char* LeadOf(ezParsePass aPass) {
    static constexpr std::array<const char*, 6> kLeads = {
        "all, tried first: ",     "of the MIME type: ", "all, without an extension: ",
        "all, after a failure: ", "of the extension: ", "of the record's MIME type: "};
    return Word(kLeads, aPass);
}

} // namespace

const char* CodeOf(ezParseStep aStep) {
    static constexpr std::array<const char*, 8> kCodes = {"parser", "file-name",  "entry",        "bit-rates",
                                                          "entry",  "types-file", "media-mapper", "stream"};
    return Word(kCodes, aStep);
}

const char* CodeOf(ezParsePass aPass) {
    static constexpr std::array<const char*, 6> kCodes = {"all-first", "mime-type", "no-extension",
                                                          "failed",    "extension", "adjust"};
    return Word(kCodes, aPass);
}

const char* CodeOf(ezEntryResult aResult) {
    static constexpr std::array<const char*, 4> kCodes = {"declined", "won", "excluded", "made-record"};
    return Word(kCodes, aResult);
}

const char* CodeOf(ezTypeResult aResult) {
    static constexpr std::array<const char*, 4> kCodes = {"answered", "declined", "no-parser",
                                                          "tried-before"};
    return Word(kCodes, aResult);
}

std::string InWords(const Source& aSource) {
    switch (aSource.mStep) {
    case ezParseStep::Parser:
        return "parser " + aSource.mDetail + " (" + aSource.mParserName + ")";
    case ezParseStep::EntryAlone:
    case ezParseStep::EntryNames:
        return "entry \"" + aSource.mDetail + "\" of the media types file";
    case ezParseStep::TypesExtension:
        return "first extension of " + aSource.mDetail + " in the media types file";
    case ezParseStep::TestFileName:
        return "file name (conformance test)";
    case ezParseStep::BitRates:
        return "derived from the other bit rates";
    case ezParseStep::MediaMapper:
        return "media mapper: " + aSource.mDetail;
    case ezParseStep::Stream:
        break;
    }
    return "stream";
}

std::string InWords(const ExplainedAttempt& anAttempt) {
    const std::string parser = anAttempt.mType + " (" + anAttempt.mParserName + ")";
    switch (anAttempt.mResult) {
    case ezTypeResult::Answered:
        return parser + ": answered";
    case ezTypeResult::Declined:
        if (!anAttempt.mReason.empty()) {
            return parser + ": declined: " + anAttempt.mReason;
        }
        return parser + (anAttempt.mfAsksOthers ? ": declined" : ": declined, no reason given");
    case ezTypeResult::NoParser:
        return anAttempt.mType + ": there is no such parser";
    case ezTypeResult::TriedBefore:
        break;
    }
    return anAttempt.mType + ": tried before";
}

std::string InWords(ezParseRefusal aCause, const char* aText) {
    static constexpr std::array<const char*, 4> kCauses = {"malformed", "unsupported", "limit", "read error"};
    return std::string(Word(kCauses, aCause)) + ": " + aText;
}

std::vector<std::string> InWords(const std::vector<ExplainedEntry>& anEntries) {
    std::vector<std::string> lines;
    const ExplainedEntry* before = nullptr;
    bool fExtensionAlone = true;
    for (const ExplainedEntry& entry : anEntries) {
        fExtensionAlone = fExtensionAlone && entry.mPass == ezParsePass::Extension;
    }
    for (const ExplainedEntry& entry : anEntries) {
        if (before == nullptr || before->mPass != entry.mPass) {
            lines.emplace_back(fExtensionAlone ? "" : LeadOf(entry.mPass));
        } else {
            lines.back() += ", ";
        }
        lines.back() += entry.mName + (entry.mfExcluded ? " (excluded)" : "");
        before = &entry;
    }
    return lines.empty() ? std::vector<std::string>{"none"} : lines;
}
