#include "parse/ParseVerb.h"

#include "arguments/Arguments.h"
#include "arguments/Operands.h"
#include "host/Host.h"
#include "host/LiveMedia.h"
#include "host/Walk.h"
#include "output/Console.h"
#include "output/OutputWidth.h"
#include "parse/ExplainedOutput.h"
#include "parse/Json.h"
#include "parse/Table.h"
#include "parse/WideTable.h"

#include <memory>

namespace {

class Announcer : public WalkVisitor {
public:
    Announcer(Host& aHost, Output& anOutput, Console& aConsole)
        : mHost(aHost), mOutput(anOutput), mConsole(aConsole) {}

    void File(const std::string& aPath, const std::string& aFolder) override {
        const bool fNamed = aFolder.empty();
        if (!fNamed) {
            mConsole.Progress(aFolder);
        }
        Announcement announcement;
        std::string reason;
        if (!mHost.Announce(aPath, announcement, reason)) {
            Problem(aPath, reason);
            return;
        }
        // A folder holds all sorts of things, but who names a file takes it for media.
        mfFailed = mfFailed || (fNamed && !announcement.mfRecognised);
        mOutput.Put(announcement);
    }

    /// Standard input, or a URL.
    void Live(const std::string& anOperand, const Arguments& anArguments) {
        Announcement announcement;
        std::string reason;
        if (!AnnounceLive(anOperand, anArguments, mHost, announcement, reason)) {
            Problem(anOperand, reason);
            return;
        }
        mfFailed = mfFailed || !announcement.mfRecognised;
        mOutput.Put(announcement);
    }

    void Problem(const std::string& aPath, const std::string& aReason) override {
        mConsole.Error(aPath, aReason);
        mfFailed = true;
    }

    bool HasFailed() const { return mfFailed; }

private:
    Host& mHost;
    Output& mOutput;
    Console& mConsole;
    bool mfFailed = false;
};

std::unique_ptr<Output> NewOutput(const Arguments& anArguments, Console& aConsole) {
    if (anArguments.mfJson) {
        return std::make_unique<JsonOutput>(aConsole);
    }
    if (anArguments.mfExplain) {
        return std::make_unique<ExplainedOutput>(aConsole);
    }
    if (anArguments.mfWide) {
        return std::make_unique<WideTableOutput>(aConsole);
    }
    return std::make_unique<TableOutput>(aConsole, OutputWidth());
}

} // namespace

int RunParse(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    const std::unique_ptr<Output> output = NewOutput(anArguments, aConsole);
    Announcer announcer(aHost, *output, aConsole);
    for (const std::string& path : anArguments.mOperands) {
        if (IsLive(path)) {
            announcer.Live(path, anArguments);
        } else {
            Walk(path, announcer);
        }
    }
    output->Finish();
    return announcer.HasFailed() ? kExitSomeFailed : kExitSuccess;
}
