#include "support/ScriptedEltStreamParser.h"

#include <algorithm>
#include <utility>

ScriptedEltStreamParser::ScriptedEltStreamParser(EltScript aScript, uint32 aMaxReadSize, const char* aName,
                                                 ezMediaInfo* aMediaInfo, std::vector<std::string>* aJournal)
    : ezElementaryStreamParser(aName, aMaxReadSize, nullptr, aMediaInfo),
      mScript(std::move(aScript)),
      mPlayed(&mScript),
      mJournal(aJournal) {}

ScriptedEltStreamParser::~ScriptedEltStreamParser() {
    Note("deleted");
}

void ScriptedEltStreamParser::Note(const std::string& aText) const {
    if (mJournal != nullptr) {
        mJournal->push_back(std::string(GetName()) + " " + aText);
    }
}

void ScriptedEltStreamParser::Open() {
    Note("opened");
    ezElementaryStreamParser::Open();
}

ezMediaInfo* ScriptedEltStreamParser::Close() {
    Note("closed");
    return ezElementaryStreamParser::Close();
}

ezElementaryStreamParser::parsing_status_t
ScriptedEltStreamParser::AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets) {
    Note("took " + std::to_string(aSize) + (afLostPackets ? " after a loss" : ""));
    return ezElementaryStreamParser::AddPacket(aBuffer, aSize, afLostPackets);
}

ezElementaryStreamParser::parsing_status_t ScriptedEltStreamParser::StartParsing(bool afFromError) {
    mStarts.push_back(afFromError);
    mPlayed = afFromError && !mScriptAfterLoss.empty() ? &mScriptAfterLoss : &mScript;
    mNextStep = 0;
    return PlayStep();
}

ezElementaryStreamParser::parsing_status_t
ScriptedEltStreamParser::ContinueParsing(const unsigned char* aBuffer, uint32 aSize) {
    mLastBlock = aBuffer;
    Satisfied satisfied{mSkipRead, aSize, ""};
    if (!mSkipRead) {
        satisfied.mBytes.assign(aBuffer, aBuffer + aSize);
    }
    mSatisfied.push_back(satisfied);
    return PlayStep();
}

ezElementaryStreamParser::parsing_status_t ScriptedEltStreamParser::PlayStep() {
    const EltStep step = (*mPlayed)[mNextStep];
    mNextStep = std::min(mNextStep + 1, mPlayed->size() - 1);
    switch (step.mVerb) {
    case EltStep::Read:
        RequestRead(step.mSize);
        break;
    case EltStep::Append:
        RequestAppend(step.mSize);
        break;
    case EltStep::Skip:
        RequestSkip(step.mSize);
        break;
    case EltStep::SkipAppended:
        RequestReadOrSkip(step.mSize, true, true);
        break;
    case EltStep::Nothing:
        break;
    case EltStep::Complete:
        return MSS_COMPLETED;
    case EltStep::Fail:
        return MSS_UNRECOVERABLE_ERROR;
    }
    return MSS_IN_PROGRESS;
}
