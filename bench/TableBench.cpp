#include "bench/Benches.h"
#include "bench/Measure.h"
#include "bench/TypesTables.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::array<std::size_t, 3> kSizes = {1000, 10000, 100000};
constexpr std::size_t kLargest = kSizes.back();

/// Keys that a round of lookups asks for, the same number whatever the size of the table.
constexpr std::size_t kAskedKeys = 200;
constexpr std::size_t kLookups = 20000;

std::shared_ptr<TypesTables> MakeTables() {
    auto tables = std::make_shared<TypesTables>();
    for (const std::size_t size : kSizes) {
        tables->Write(size);
    }
    return tables;
}

/// Nanoseconds a key. Every size loads the same number of keys in a round.
double LoadCost(const TypesTables& aTables, std::size_t aSize) {
    double cost = 0;
    for (std::size_t loaded = 0; loaded < kLargest; loaded += aSize) {
        std::unique_ptr<ExtensionMimeTypeMatcher> matcher;
        cost += TimeOf([&] { matcher = aTables.Load(aSize); });
        Require(matcher->EntriesFromExtension(TypesTables_Extension(aSize - 1).c_str()) != nullptr,
                "the last key is loaded");
    }
    return cost / static_cast<double>(kLargest);
}

using Lookup = ezPtrList* (ExtensionMimeTypeMatcher::*)(const ezCString&);

/// What a lookup asks for.
struct Question {
    const char* mName;
    Lookup mLookup;
    ezCString (*mText)(std::size_t aKey);
};

const std::array<Question, 3> kQuestions = {{
    {"extension", &ExtensionMimeTypeMatcher::EntriesFromExtension,
     [](std::size_t aKey) { return ezCString(TypesTables_Extension(aKey).c_str()); }},
    {"MIME type", &ExtensionMimeTypeMatcher::EntriesFromMimeType,
     [](std::size_t aKey) { return ezCString(TypesTables_MimeType(aKey).c_str()); }},
    {"MIME type with parameters", &ExtensionMimeTypeMatcher::EntriesFromMimeType,
     [](std::size_t aKey) {
         return ezCString((TypesTables_MimeType(aKey) + ";codecs=\"avc1.42E01E\"").c_str());
     }},
}};

/// Nanoseconds a lookup, of keys that lie evenly over the table.
double LookupCost(ExtensionMimeTypeMatcher& aMatcher, const Question& aQuestion,
                  const std::vector<ezCString>& aTexts) {
    std::size_t found = 0;
    const double cost = TimeOf([&] {
        for (std::size_t done = 0; done < kLookups; done += aTexts.size()) {
            for (const ezCString& text : aTexts) {
                found += (aMatcher.*aQuestion.mLookup)(text) != nullptr ? 1 : 0;
            }
        }
    });
    Require(found >= kLookups && found % aTexts.size() == 0, "every key is found");
    return cost / static_cast<double>(found);
}

std::vector<ezCString> Texts(const Question& aQuestion, std::size_t aTableSize, std::size_t aCount) {
    std::vector<ezCString> texts;
    for (std::size_t i = 0; i < aCount; ++i) {
        // 7919 is a prime: the keys come in no order of the table, each once.
        texts.push_back(aQuestion.mText(i * (aTableSize / aCount) * 7919 % aTableSize));
    }
    return texts;
}

std::vector<Side> LookupSides(const Question& aQuestion, bool afAllKeys) {
    const std::shared_ptr<TypesTables> tables = MakeTables();
    std::vector<Side> sides;
    sides.reserve(kSizes.size());
    for (const std::size_t size : kSizes) {
        const std::shared_ptr<ExtensionMimeTypeMatcher> matcher = tables->Load(size);
        const std::vector<ezCString> texts = Texts(aQuestion, size, afAllKeys ? size : kAskedKeys);
        sides.push_back({std::to_string(size),
                         [matcher, texts, &aQuestion] { return LookupCost(*matcher, aQuestion, texts); }});
    }
    return sides;
}

/// The two larger sizes against the smallest.
std::vector<Claim> ClaimsOfSizes(const std::string& aText, double aBound, double aLargestBound) {
    return {
        {aText + ", 10,000 / 1,000 keys", [](const Costs& aCosts) { return aCosts[1] / aCosts[0]; }, aBound},
        {aText + ", 100,000 / 1,000 keys", [](const Costs& aCosts) { return aCosts[2] / aCosts[0]; },
         aLargestBound}};
}

} // namespace

void AddTableBenches() {
    AddComparison(
        "Table/Load",
        [] {
            const std::shared_ptr<TypesTables> tables = MakeTables();
            std::vector<Side> sides;
            sides.reserve(kSizes.size());
            for (const std::size_t size : kSizes) {
                sides.push_back({std::to_string(size), [tables, size] { return LoadCost(*tables, size); }});
            }
            return sides;
        },
        ClaimsOfSizes("load, cost of a key", 2, 2));
    for (const Question& question : kQuestions) {
        const std::string name = question.mName;
        AddComparison(
            "Table/Lookup by " + name, [&question] { return LookupSides(question, false); },
            ClaimsOfSizes("lookup by " + name, 1.5, 1.5));
    }
    AddComparison(
        "Table/Lookup of every key", [] { return LookupSides(kQuestions[0], true); },
        ClaimsOfSizes("lookup of every key in turn", 0, 0));
}
