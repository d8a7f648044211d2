#include "ezHosting/HostPool.h"

#include "ezHosting/detail/PoolCrew.h"

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace {

std::size_t ThreadsOf(const ezHostPoolOptions& anOptions) {
    const std::size_t asked =
        anOptions.mThreads != 0 ? anOptions.mThreads : std::thread::hardware_concurrency();
    return std::clamp<std::size_t>(asked, 1, ezHostPool::kMaxThreads); // 0: the machine does not say
}

} // namespace

ezHostPool::ezHostPool(std::string_view aConfigFolder, const ezHostOptions& anOptions,
                       const ezHostPoolOptions& aPoolOptions, Callback aCallback)
    : mCrew(std::make_shared<PoolCrew>(aPoolOptions, std::move(aCallback))) {
    std::vector<PoolCrew::Identify> identifies;
    for (std::size_t i = 0; i < ThreadsOf(aPoolOptions); ++i) {
        const auto host = std::make_shared<ezHost>(aConfigFolder, anOptions);
        if (!host->IsReady()) {
            mError = host->GetError();
            return;
        }
        identifies.emplace_back([host](ezMediaParserStream& aStream, std::string* anError) {
            std::unique_ptr<ezMediaInfo> info = host->Identify(aStream);
            *anError = host->GetError();
            return info;
        });
    }
    mError = mCrew->Start(identifies);
}

ezHostPool::~ezHostPool() {
    mCrew->Dismiss();
}

ezHostPool::Submitted ezHostPool::Submit(std::string_view aPath) {
    return IsReady() ? mCrew->Submit(aPath, {}) : Submitted::NotReady;
}

ezHostPool::Submitted ezHostPool::Submit(std::string_view aName, StreamMaker aMaker) {
    if (!aMaker) {
        aMaker = [](ezCancellation&) { return nullptr; };
    }
    return IsReady() ? mCrew->Submit(aName, std::move(aMaker)) : Submitted::NotReady;
}

bool ezHostPool::Wait() {
    return mCrew->Wait();
}

bool ezHostPool::WaitFor(std::chrono::milliseconds aTime) {
    return mCrew->WaitFor(aTime);
}

void ezHostPool::Cancel() {
    mCrew->Cancel();
}

bool ezHostPool::IsCancelled() const {
    return mCrew->IsCancelled();
}

ezHostPoolProgress ezHostPool::GetProgress() const {
    return mCrew->GetProgress();
}

std::size_t ezHostPool::GetThreadCount() const {
    return mCrew->GetThreadCount();
}
