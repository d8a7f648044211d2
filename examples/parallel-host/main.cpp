// What the files below a folder are, found out on all processors: parallel-host FOLDER [CONFIG_FOLDER].
// Ctrl-C ends it.
#include "ezHosting/HostPool.h"

#include <csignal>
#include <filesystem>
#include <iostream>

namespace {

volatile std::sig_atomic_t gfStopped = 0;

void sStop(int /*aSignal*/) {
    gfStopped = 1;
}

// On the threads of the pool, but never twice at a time.
void Print(const ezHostPoolResult& aResult) {
    if (aResult.mInfo != nullptr) {
        std::cout << aResult.mName << ": " << aResult.mInfo->GetCString(kezInfo_MimeType, "").c_str() << '\n';
    }
}

} // namespace

int main(int anArgCount, char** anArgs) {
    ezHostPool pool(anArgCount > 2 ? anArgs[2] : "", {}, {}, Print);
    if (!pool.IsReady() || anArgCount < 2) {
        std::cerr << "parallel-host: " << pool.GetError() << '\n';
        return 2;
    }
    std::signal(SIGINT, sStop); // the threads of the pool take no signals
    for (const auto& entry : std::filesystem::recursive_directory_iterator(anArgs[1])) {
        if (gfStopped != 0) {
            break;
        }
        if (entry.is_regular_file()) {
            pool.Submit(entry.path().native()); // waits while the pool is full
        }
    }
    ezHostPoolProgress progress;
    do {
        if (gfStopped != 0) {
            pool.Cancel();
        }
        progress = pool.GetProgress();
        std::cerr << progress.mDone << " of " << progress.mSubmitted << " files\n";
    } while (!pool.WaitFor(std::chrono::milliseconds(200)));
    progress = pool.GetProgress();
    std::cerr << progress.mRecognised << " recognised, " << progress.mFailed << " not, "
              << progress.mCancelled << " cancelled\n";
    return gfStopped != 0 ? 130 : 0;
}
