#include "ezHosting/detail/PoolCrew.h"

#include "companions/ezHosting/PoolKit.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <gtest/gtest.h>
#include <pthread.h>
#include <system_error>

namespace {

/// What threads get without it is more than there is.
void LetNoThreadStart() {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, SIZE_MAX / 4);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
}

/// Lets no further thread start when it is copied for the second one.
class Spoiler {
public:
    explicit Spoiler(std::atomic<int>& aCopies) : mCopies(&aCopies) {}
    Spoiler(const Spoiler& anOther) : mCopies(anOther.mCopies) {
        if (++*mCopies == 2) {
            LetNoThreadStart();
        }
    }
    Spoiler& operator=(const Spoiler&) = delete;
    std::unique_ptr<ezMediaInfo> operator()(ezMediaParserStream& /*aStream*/,
                                            std::string* /*anError*/) const {
        return nullptr;
    }

private:
    std::atomic<int>* mCopies;
};

} // namespace

TEST(PoolThreads, SaysWhyAThreadCannotBeHadAndKeepsNone) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_getattr_default_np(&attributes), 0);
    std::atomic<int> copies{0};
    const std::vector<PoolCrew::Identify> identifies(4, Spoiler(copies));
    const auto crew = std::make_shared<PoolCrew>(ezHostPoolOptions(), nullptr);
    copies = 0;
    const std::string error = crew->Start(identifies);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(error, "no thread: " + std::generic_category().message(EAGAIN));
    EXPECT_EQ(copies, 2);
    EXPECT_EQ(crew->GetThreadCount(), 0U);
    EXPECT_EQ(crew->Submit("song.mp3", {}), ezHostPool::Submitted::Cancelled);
    EXPECT_TRUE(crew->Wait());
    EXPECT_EQ(crew.use_count(), 1) << "no thread owns it";
}

TEST(PoolThreads, ItsThreadsTakeNoSignals) {
    sigset_t blocked;
    sigemptyset(&blocked);
    const Crew crew(1, 8, true,
                    [&](const ezHostPoolResult&) { pthread_sigmask(SIG_SETMASK, nullptr, &blocked); });
    crew.SubmitZeros();
    crew->Wait();
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
        EXPECT_EQ(sigismember(&blocked, number), 1) << number;
    }
}
