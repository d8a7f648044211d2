// What the files below a folder are, found out on all processors: parallel-host FOLDER [CONFIG_FOLDER].
// Ctrl-C ends it.
#include "ezHosting/HostPool.h"

#include <csignal>
#include <filesystem>
#include <iostream>

namespace {

namespace fs = std::filesystem;

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
    if (anArgCount < 2) {
        std::cerr << "usage: parallel-host FOLDER [CONFIG_FOLDER]\n";
        return 2;
    }
    ezHostPool pool(anArgCount > 2 ? anArgs[2] : "", {}, {}, Print);
    if (!pool.IsReady()) {
        std::cerr << "parallel-host: " << pool.GetError() << '\n';
        return 2;
    }
    std::signal(SIGINT, sStop); // the threads of the pool take no signals
    std::error_code error;
    std::error_code ignored; // of a link that leads nowhere
    fs::recursive_directory_iterator entry(anArgs[1], fs::directory_options::skip_permission_denied, error);
    for (; gfStopped == 0 && entry != fs::end(entry); entry.increment(error)) {
        if (entry->is_regular_file(ignored)) {
            pool.Submit(entry->path().native()); // waits while the pool is full
        }
    }
    if (error) {
        std::cerr << "parallel-host: " << anArgs[1] << ": " << error.message() << '\n';
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
    if (gfStopped != 0) {
        return 130;
    }
    return error ? 1 : 0;
}
