#include "bench/Allocations.h"
#include "bench/Benches.h"
#include "bench/CountedSystem.h"
#include "bench/Measure.h"
#include "bench/ProbingParser.h"

#include "ez/Environment.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/ParseObserver.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFileCount = 1000;
constexpr std::size_t kFileSize = 16384; // above what a stream keeps

/// A folder of distinct files and a host that identifies them.
class Scene {
public:
    Scene() {
        mFolder.Write(kezMediaTypesFileName, "[MimeTypes]\nclip=clip@video/mpeg@item.videoItem\n");
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath());
        mEnvironment.Set(kProperty_ReadWriteConfigPath, mFolder.GetPath());
        for (std::size_t i = 0; i < kFileCount; ++i) {
            const std::string name = "clip-" + std::to_string(1000 + i) + ".clip";
            mPaths.emplace_back(mFolder.Write(name, std::string(kFileSize, ProbingParser::kMark)).c_str());
        }
        mByContent = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mByContent->AddStandardParsers(kParseOption_Default);
        mByContent->Add(new ProbingParser);
        mByExtension = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mByExtension->AddStandardParsers(kParseOption_Default);
    }

    ~Scene() {
        mByContent.reset();
        mByExtension.reset();
    }

    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    void IdentifyByContent() const {
        for (const ezCString& path : mPaths) {
            ezFileMediaParserStream stream(path);
            stream.Open();
            const std::unique_ptr<ezMediaInfo> info(mByContent->Parse(stream));
            Require(info != nullptr && info->Has(kezInfo_FileSize),
                    "every file is identified, with its size");
        }
    }

    void IdentifyByExtension() const {
        for (const ezCString& path : mPaths) {
            ezFileMediaParserStream stream(path);
            const std::unique_ptr<ezMediaInfo> info(mByExtension->Parse(stream));
            Require(info != nullptr && !info->Has(kezInfo_FileSize),
                    "every file is identified, without its size");
        }
    }

    /// The same by a host that is told why.
    void IdentifyObserved() const {
        mByContent->SetObserver(&mObserver);
        IdentifyByContent();
        mByContent->SetObserver(nullptr);
    }

    void BareCalls() const {
        for (const ezCString& path : mPaths) {
            struct stat status = {};
            std::array<char, kezMediaParserStreamBufferSize> buffer;
            Require(stat(path.c_str(), &status) == 0, "stat");
            const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
            Require(file >= 0 && fstat(file, &status) == 0, "open and fstat");
            Require(read(file, buffer.data(), buffer.size()) == static_cast<ssize_t>(buffer.size()), "read");
            close(file);
        }
    }

    void BareStat() const {
        for (const ezCString& path : mPaths) {
            struct stat status = {};
            Require(stat(path.c_str(), &status) == 0, "stat");
        }
    }

private:
    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    std::vector<ezCString> mPaths;
    std::unique_ptr<ezMediaParserManager> mByContent;
    std::unique_ptr<ezMediaParserManager> mByExtension;
    mutable ezParseObserver mObserver; ///< does nothing with what it is told
};

using Pass = void (Scene::*)() const;

Side MakeSide(const char* aName, const std::shared_ptr<Scene>& aScene, Pass aPass) {
    return {aName, [aScene, aPass] {
                return TimeOf([&] { (*aScene.*aPass)(); }) / static_cast<double>(kFileCount);
            }};
}

/// The most that a file may cost.
struct Budget {
    double mStat;
    double mOpen;
    double mFStat;
    double mRead;
    double mClose;
    double mAllocations;
};

void CountPass(const std::string& aName, const Scene& aScene, Pass aPass, const Budget& aBudget) {
    (aScene.*aPass)(); // lists that serve all requests have their memory after the first
    const CountedSystem system;
    const std::size_t before = Allocations_Count();
    (aScene.*aPass)();
    const std::size_t allocations = Allocations_Count() - before;
    const CountedSystem::Counts& counts = system.GetCounts();
    const auto note = [&](const char* aWhat, std::size_t aCount, double aBound) {
        NoteCount(aName + ", " + aWhat + " a file", static_cast<double>(aCount) / kFileCount, aBound);
    };
    note("stat", counts.mStat, aBudget.mStat);
    note("open", counts.mOpen, aBudget.mOpen);
    note("fstat", counts.mFStat, aBudget.mFStat);
    note("read", counts.mRead, aBudget.mRead);
    note("bytes read", counts.mReadBytes, aBudget.mRead * kezMediaParserStreamBufferSize);
    note("seeks", counts.mSeek, 0);
    note("close", counts.mClose, aBudget.mClose);
    note("allocations", allocations, aBudget.mAllocations);
}

} // namespace

void AddIdentifyBenches() {
    const auto ratio = [](const Costs& aCosts) { return aCosts[0] / aCosts[1]; };
    AddComparison("Identify/Content",
                  [] {
                      const auto scene = std::make_shared<Scene>();
                      return std::vector<Side>{MakeSide("parse", scene, &Scene::IdentifyByContent),
                                               MakeSide("calls", scene, &Scene::BareCalls)};
                  },
                  {{"identify by content / bare stat, open, fstat, read, close", ratio, 1.5}});
    AddComparison("Identify/Extension",
                  [] {
                      const auto scene = std::make_shared<Scene>();
                      return std::vector<Side>{MakeSide("parse", scene, &Scene::IdentifyByExtension),
                                               MakeSide("stat", scene, &Scene::BareStat)};
                  },
                  {{"identify by extension / bare stat", ratio, 0}});
    AddComparison("Identify/Observed",
                  [] {
                      const auto scene = std::make_shared<Scene>();
                      return std::vector<Side>{MakeSide("observed", scene, &Scene::IdentifyObserved),
                                               MakeSide("unobserved", scene, &Scene::IdentifyByContent)};
                  },
                  {{"identify by content, observed / unobserved", ratio, 0}});
    AddCounting("Identify/Counts", [] {
        const Scene scene;
        CountPass("identify by content", scene, &Scene::IdentifyByContent, {1, 1, 1, 1, 1, 8});
        CountPass("identify by extension", scene, &Scene::IdentifyByExtension, {1, 0, 0, 0, 0, 8});
        scene.IdentifyObserved();
        CountPass("identify by content, no longer observed", scene, &Scene::IdentifyByContent,
                  {1, 1, 1, 1, 1, 8});
    });
}
