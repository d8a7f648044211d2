#pragma once

#include "PropertyOperation.h"

#include "support/RecordingObserver.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class MapperSubject;
struct Announcement;
struct TypesEntry;

/// A record: every value under its key, and the path under "path".
using RecordValues = std::map<std::string, std::string>;

/// What a parser of the property is made to do.
struct ParserPlan {
    unsigned mNumber = 0;
    std::string mType;       ///< in any case
    std::string mClaims;     ///< first bytes of the media that it answers for
    std::string mMimeType;   ///< of its answer; may be empty
    std::string mDLNA;       ///< of its answer; may be empty
    unsigned mAudioRate = 0; ///< of its answer; 0 for none
    bool mfCoverArt = false;
    bool mfAdjusts = false;
    bool mfReadsAll = false;
    std::vector<std::string> mDeclared; ///< MIME types
};

/// A file, and how it is delivered.
struct MediaPlan {
    enum Way { File, Trickle, SizeUnknown, FirstReadFails, NotSeekable, Memory, Fed, kWays };

    std::string mName;
    std::string mContent;
    std::string mMimeType; ///< that the stream knows; may be empty
    Way mWay = File;
};

/// The rules by which a winner is found, stated a second time.
class ParsersModel {
public:
    ParsersModel(const MapperSubject& aMapper, int anOptions) : mMapper(aMapper), mOptions(anOptions) {}

    void Add(const ParserPlan& aPlan);
    void AddAgain(std::size_t anIndex);
    bool AddStandardParsers(); ///< false when they are there
    bool UseMapper();          ///< false when it is in use
    std::optional<RecordValues> Parse(const MediaPlan& aMedia, const std::string& aPath);
    std::optional<RecordValues> ParseType(const std::string& aType, const MediaPlan& aMedia);
    std::optional<RecordValues> ParseCover(const std::string& aMimeType, const MediaPlan& aMedia);
    bool Adjust(RecordValues& aRecord);
    bool AdjustByType(const std::string& aType, RecordValues& aRecord);
    std::vector<Announcement> Announced() const;
    std::size_t Count() const { return mPlans.size(); }
    bool HasStandardParsers() const { return mfStandard; }
    std::vector<std::string> TakeCalls() { return std::exchange(mCalls, {}); }

private:
    static constexpr std::size_t kStandard = static_cast<std::size_t>(-1);
    using Type = std::pair<std::string, std::vector<std::size_t>>; ///< lower case; parsers in order

    std::vector<std::size_t> ListOf(const std::string& aType) const;
    void File(const std::string& aType, std::size_t anIndex);
    void Begin(const MediaPlan& aMedia);
    std::optional<RecordValues> FromType(const std::string& aType);
    std::optional<RecordValues> FromStandard();
    std::optional<RecordValues> FromEntries(const std::vector<const TypesEntry*>& anEntries, bool afForce);
    std::optional<RecordValues> FromParser(const ParserPlan& aPlan);
    std::optional<RecordValues> Validated(std::optional<RecordValues> aRecord) const;

    const MapperSubject& mMapper;
    int mOptions;
    std::vector<ParserPlan> mPlans;
    std::vector<Type> mTypes; ///< in the order in which they came
    std::map<std::string, std::vector<std::size_t>> mByMimeType;
    std::set<std::size_t> mDone; ///< in this request
    bool mfStandard = false;
    std::optional<std::vector<Announcement>> mMapperAnnounced; ///< while the mapper is in use
    std::vector<std::string> mCalls;

    const MediaPlan* mMedia = nullptr; ///< of the request
    std::size_t mPosition = 0;
    bool mfReadFails = false;
};

/// The manager of a host, its parsers and the requests to it, beside the model.
class ParsersSubject {
public:
    ParsersSubject(const TemporaryFolder& aFolder, MapperSubject& aMapper, int anOptions);
    ~ParsersSubject();

    static std::string Describe(const Operation& anOperation);
    void Apply(const Operation& anOperation);

private:
    void Start();
    void Stop();
    void ParseMedia(const Operation& anOperation);
    void ParseType(const Operation& anOperation);
    void ParseCover(const Operation& anOperation);
    void AdjustRecord(const Operation& anOperation);
    void AdjustByType(const Operation& anOperation);
    void Announce();
    void AnnounceProtected();
    void LookUpTypes(const Operation& anOperation);
    /// What the observer, if there is one, was told of a record's facts.
    void CompareTold(const ezMediaInfo* anInfo);
    void AddOnce(Verb aVerb);
    std::string PathOf(const MediaPlan& aMedia) const;
    void CompareRecords(const std::string& aWhat, std::unique_ptr<ezMediaInfo> anInfo,
                        const std::optional<RecordValues>& aModel);

    const TemporaryFolder& mFolder;
    MapperSubject& mMapper;
    int mOptions;
    ezEnvironment mEnvironment;
    ParserTrace mCalls;          ///< outlives the manager
    std::string mMediaBytes;     ///< of the request
    RecordingObserver mObserver; ///< likewise
    std::unique_ptr<ezMediaParserManager> mManager;
    std::unique_ptr<ParsersModel> mModel;
    std::vector<ezMediaParser*> mParsers; ///< the manager's
};
