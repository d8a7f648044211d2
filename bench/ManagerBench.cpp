#include "bench/Benches.h"
#include "bench/Measure.h"

#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"
#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace {

constexpr std::array<std::size_t, 4> kParserCounts = {0, 1, 10, 100};
constexpr std::size_t kTries = 400000;           ///< of parsers in a round
constexpr std::size_t kMaximumRequests = 100000; ///< in a round

class DecliningParser : public ezMediaParser {
public:
    explicit DecliningParser(std::size_t& aTries) : ezMediaParser("clip", nullptr, false), mTries(aTries) {}

    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override {
        ++mTries;
        return nullptr;
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

private:
    std::size_t& mTries;
};

/// A media without content: what is measured is the manager alone.
class EmptyStream : public ezMediaParserStream {
public:
    EmptyStream() {
        SetFullPath("/media/a.clip");
        SetExtension("clip");
    }

protected:
    bool MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) override { return true; }
    ezFileOffset MediaRead(void* /*aBuffer*/, std::size_t /*aSize*/) override { return 0; }
};

/// A host with a number of parsers of one type, none of which knows any media.
class Host {
public:
    explicit Host(std::size_t aParserCount) : mParserCount(aParserCount), mEnvironment(ezPropertyList_New()) {
        // Without a class: no record is made of the entry, so that the request ends with the parsers.
        mFolder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nclip=clip@video/mpeg\n");
        ezPropertyList_Set_charPtr(mEnvironment, "ReadOnlyConfigPath", mFolder.GetPath().c_str());
        ezPropertyList_Set_charPtr(mEnvironment, "ReadWriteConfigPath", mFolder.GetPath().c_str());
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment);
        mManager->AddStandardParsers(kParseOption_Default);
        for (std::size_t i = 0; i < aParserCount; ++i) {
            mManager->Add(new DecliningParser(mTries));
        }
    }

    ~Host() {
        mManager.reset();
        ezPropertyList_Delete(mEnvironment);
    }

    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Nanoseconds a request.
    double RequestCost() {
        const std::size_t count =
            mParserCount == 0 ? kMaximumRequests : std::min(kTries / mParserCount, kMaximumRequests);
        mTries = 0;
        const double cost = TimeOf([&] {
            for (std::size_t i = 0; i < count; ++i) {
                Require(mManager->Parse(mStream) == nullptr, "every parser declines");
            }
        });
        Require(mTries == count * mParserCount, "every parser is tried once a request");
        return cost / static_cast<double>(count);
    }

private:
    TemporaryFolder mFolder;
    std::size_t mParserCount;
    std::size_t mTries = 0;
    ezPropertyList* mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager;
    EmptyStream mStream;
};

/// What one parser of a request adds to a request without any.
double CostOfParser(const Costs& aCosts, std::size_t aSide) {
    return (aCosts[aSide] - aCosts[0]) / static_cast<double>(kParserCounts[aSide]);
}

} // namespace

void AddManagerBenches() {
    AddComparison(
        "Manager/Declining",
        [] {
            std::vector<Side> sides;
            for (const std::size_t count : kParserCounts) {
                const auto host = std::make_shared<Host>(count);
                sides.push_back({std::to_string(count), [host] { return host->RequestCost(); }});
            }
            return sides;
        },
        {{"a declining parser of 10 / of 1",
          [](const Costs& aCosts) { return CostOfParser(aCosts, 2) / CostOfParser(aCosts, 1); }, 1.5},
         {"a declining parser of 100 / of 1",
          [](const Costs& aCosts) { return CostOfParser(aCosts, 3) / CostOfParser(aCosts, 1); }, 1.5},
         {"a declining parser of 100 / of 10",
          [](const Costs& aCosts) { return CostOfParser(aCosts, 3) / CostOfParser(aCosts, 2); }, 0}});
}
