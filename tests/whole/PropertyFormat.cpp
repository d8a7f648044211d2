#include "PropertyFormat.h"

#include "PropertyPackets.h"

#include "support/Record.h"

#include <sstream>

namespace {

EltScript ScriptOf(const FormatPlan& aPlan) {
    return {aPlan.mfAppends ? EltStep::OfAppend(aPlan.mFirst) : EltStep::OfRead(aPlan.mFirst),
            aPlan.mfSkips ? EltStep::OfSkip(aPlan.mSecond) : EltStep::OfAppend(aPlan.mSecond),
            aPlan.mfFails ? EltStep::OfFailure() : EltStep::OfCompletion()};
}

const char* LastingName(char aName) {
    static const char* const kNames[] = {"A", "B", "C", "D"};
    return kNames[aName - 'A'];
}

} // namespace

FormatPlan FormatPlan::Of(char aName, unsigned aNumber) {
    FormatPlan plan;
    plan.mName = aName;
    plan.mFirst = 1 + aNumber % 6;
    plan.mSecond = 1 + aNumber / 6 % 5;
    plan.mfAppends = aNumber % 4 == 3;
    plan.mfSkips = aNumber / 30 % 2 != 0;
    plan.mfFails = aNumber / 60 % 2 != 0;
    plan.mLimit = aNumber / 120 % 2 != 0 ? 6 : 1000;
    return plan;
}

std::string FormatPlan::InWords() const {
    std::ostringstream text;
    text << mName << " (" << mFirst << (mfAppends ? " bytes appended, then " : " bytes, then ") << mSecond
         << (mfSkips ? " passed over" : " more") << (mfFails ? ", fails" : "") << ", limit " << mLimit << ")";
    return text.str();
}

// ---- the model ----

void FormatModel::Open() {
    Note("opened");
    mTotal = 0;
    Reset();
}

void FormatModel::Reset() {
    mTaken.clear();
    mfFirstTold = false;
    mStatus = kInProgress;
}

int FormatModel::Take(const std::string& aPacket, bool afLost) {
    Note("took " + std::to_string(aPacket.size()) + (afLost ? " after a loss" : ""));
    if (mStatus != kInProgress) {
        return mStatus;
    }
    if (afLost) {
        Reset();
    }
    mTaken += aPacket;
    mTotal += static_cast<unsigned>(aPacket.size());
    const unsigned whole = mPlan.mFirst + mPlan.mSecond;
    if (!mfFirstTold && mTaken.size() >= mPlan.mFirst) {
        mfFirstTold = true;
        Note("got " + mTaken.substr(0, mPlan.mFirst));
    }
    if (mTaken.size() < whole) {
        mStatus = mTotal >= mPlan.mLimit ? kFailed : kInProgress;
        return mStatus;
    }
    Note(mPlan.mfSkips ? "passed over " + std::to_string(mPlan.mSecond) : "got " + mTaken.substr(0, whole));
    mStatus = mPlan.mfFails ? kFailed : kCompleted;
    return mStatus;
}

// ---- the host's ----

PlannedFormat::PlannedFormat(const FormatPlan& aPlan, ezMediaInfo* anInfo, FormatJournal& aJournal)
    : ScriptedEltStreamParser(ScriptOf(aPlan), aPlan.mLimit, LastingName(aPlan.mName), anInfo, &aJournal),
      mOfAll(aJournal) {}

ezElementaryStreamParser::parsing_status_t PlannedFormat::ContinueParsing(const unsigned char* aBuffer,
                                                                          uint32 aSize) {
    mOfAll.push_back(GetName() + (IsSkipping() ? " passed over " + std::to_string(aSize)
                                               : " got " + std::string(aBuffer, aBuffer + aSize)));
    return ScriptedEltStreamParser::ContinueParsing(aBuffer, aSize);
}

FormatSubject::FormatSubject() = default;
FormatSubject::~FormatSubject() = default;

std::string FormatSubject::Describe(const Operation& anOperation) {
    switch (anOperation.mVerb) {
    case Verb::OpenFormat:
        return anOperation.mB % 3 == 2 ? "open the format that is there once more"
                                       : "open the format " + FormatPlan::Of('D', anOperation.mA).InWords();
    case Verb::PushToFormat:
        return "push " + std::to_string(anOperation.mA % 8) + " bytes to the format" +
               (anOperation.mB % 6 == 5 ? " after a loss" : "");
    case Verb::GiveUpFormat:
        return "give the format up";
    case Verb::ResetFormat:
        return "start the format anew";
    default:
        return "close the format";
    }
}

void FormatSubject::Apply(const Operation& anOperation) {
    if (anOperation.mVerb == Verb::OpenFormat) {
        Open(anOperation);
    } else if (mfOpen && anOperation.mVerb == Verb::PushToFormat) {
        Push(anOperation);
    } else if (mfOpen && anOperation.mVerb == Verb::GiveUpFormat) {
        GiveUp();
    } else if (mfOpen && anOperation.mVerb == Verb::ResetFormat) {
        Reset();
    } else if (mfOpen && anOperation.mVerb == Verb::CloseFormat) {
        Close();
    }
}

void FormatSubject::Open(const Operation& anOperation) {
    if (mFormat == nullptr || anOperation.mB % 3 != 2) {
        const FormatPlan plan = FormatPlan::Of('D', anOperation.mA);
        mFormat = std::make_unique<PlannedFormat>(plan, new ezMediaInfo, mJournal);
        if (mModel != nullptr) {
            mModel->Note("deleted");
        }
        mModel = std::make_unique<FormatModel>(plan, mModelJournal);
        mfRecord = true;
    }
    mFormat->Open();
    mModel->Open();
    mfOpen = true;
    Compare("after opening a format");
}

void FormatSubject::Push(const Operation& anOperation) {
    const std::string packet = LettersOf(anOperation.mA % 8, mPackets++);
    const bool fLost = anOperation.mB % 6 == 5;
    Agree("what a packet makes of a format", static_cast<int>(mFormat->Push(packet, fLost)),
          mModel->Take(packet, fLost));
    Met(mModel->Status() == FormatModel::kInProgress ? "a format goes on" : "a format has decided");
    Compare("after a packet to a format");
}

void FormatSubject::GiveUp() {
    Met(mModel->Status() == FormatModel::kInProgress ? "a format is given up"
                                                     : "a format that decided is given up");
    mFormat->InterruptParsing();
    mModel->GiveUp();
    Agree("bytes that a format holds that was given up", mFormat->ReadBufferSize(), uint32{0});
    Compare("after giving a format up");
}

void FormatSubject::Reset() {
    Met(mModel->Status() == FormatModel::kInProgress ? "a format is started anew"
                                                     : "a format that is not at work is started anew");
    mFormat->ResetParsing(false);
    mModel->Reset();
    Compare("after starting a format anew");
}

void FormatSubject::Close() {
    const Record record(mFormat->Close());
    mModel->Note("closed");
    mModel->GiveUp();
    Agree("the format has a record", record != nullptr, mfRecord);
    Met(mfRecord ? "a format gives its record" : "a format has given its record before");
    mfRecord = false;
    mfOpen = false;
    Compare("after closing a format");
}

void FormatSubject::Compare(const std::string& aWhen) {
    Agree("what the format met with " + aWhen, mJournal, mModelJournal);
    Agree("the status of the format " + aWhen, static_cast<int>(mFormat->GetParserStatus()),
          mModel->Status());
    mJournal.clear();
    mModelJournal.clear();
}
