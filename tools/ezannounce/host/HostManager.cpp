#include "host/HostManager.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <typeinfo>

ezMediaInfo* HostManager::Parse(ezMediaParserStream& aStream) {
    mAttempts.clear();
    mAnswers.clear();
    return ezMediaParserManager::Parse(aStream);
}

std::vector<const ezBaseParser*> HostManager::TriedSince(const ezParserList* aList, std::size_t aDoneCount,
                                                         std::size_t anAttemptCount) const {
    std::vector<const ezBaseParser*> tried;
    if (aList == nullptr) {
        return tried;
    }
    for (std::size_t i = aDoneCount; i < mDoneParsers.size(); ++i) {
        const auto inList = std::find(aList->begin(), aList->end(), mDoneParsers[i]);
        if (inList == aList->end()) {
            continue; // of another type, asked for by one of these parsers
        }
        const auto firstAttempt = mAttempts.begin() + static_cast<std::ptrdiff_t>(anAttemptCount);
        const bool fTakenDown = std::any_of(firstAttempt, mAttempts.end(), [&](const Attempt& anAttempt) {
            return anAttempt.mParser == *inList;
        });
        if (!fTakenDown) {
            tried.push_back(*inList);
        }
    }
    return tried;
}

ezMediaInfo* HostManager::ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) {
    if (!mfTracing) {
        return ezMediaParserManager::ParseFromType(aType, aStream);
    }
    const std::size_t doneCount = mDoneParsers.size();
    const std::size_t attemptCount = mAttempts.size();
    ++mDepth;
    ezMediaInfo* info = ezMediaParserManager::ParseFromType(aType, aStream);
    --mDepth;

    const ezParserList* list = ParserListFromType(aType, false);
    const std::string type = aType.c_str();
    std::vector<Attempt> attempts;
    for (const ezBaseParser* parser : TriedSince(list, doneCount, attemptCount)) {
        attempts.push_back({type, parser, Outcome::Declined, mDepth});
    }
    if (attempts.empty()) {
        attempts.push_back(
            {type, nullptr, list == nullptr ? Outcome::NoParser : Outcome::TriedBefore, mDepth});
    } else if (info != nullptr) {
        // The walk over the list ends with the parser that answers.
        attempts.back().mOutcome = Outcome::Answered;
        mAnswers.push_back(
            {type, attempts.back().mParser, mDepth, std::unique_ptr<ezMediaInfo>(info->Duplicate())});
    }
    // Before the attempts that these parsers made in their turn.
    mAttempts.insert(mAttempts.begin() + static_cast<std::ptrdiff_t>(attemptCount), attempts.begin(),
                     attempts.end());
    return info;
}

std::string HostManager::NameOf(const ezBaseParser& aParser) {
    const char* mangled = typeid(aParser).name();
    int status = 0;
    char* demangled = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
    std::string name = demangled != nullptr ? demangled : mangled;
    std::free(demangled);
    return name;
}
