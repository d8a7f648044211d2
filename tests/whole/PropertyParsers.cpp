#include "PropertyParsers.h"

#include "PropertyMapper.h"
#include "PropertyPackets.h"
#include "PropertyTypes.h"

#include "ez/FileMediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ez/StreamMediaParserStream.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "support/AwkwardStream.h"
#include "support/Catchers.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t kMostParsers = 10;

const char* const kTypes[] = {"aaa", "bbb", "*", "ccc", "AAA", "odd", "pcm", "other"};
const char* const kClaims[] = {"A", "B", "C", "AB", "", "ABCD"};
const char* const kAnswers[] = {"audio/x-a", "video/x-b", "", "image/x-c", "audio/wav"};
const char* const kFields[] = {"", "DLNA.ORG_PN=PA", "DLNA.ORG_PN=PB;DLNA.ORG_OP=01", "DLNA.ORG_PN=LPCM"};
const char* const kStreamTypes[] = {"", "audio/x-a", "VIDEO/X-B", "audio/x-a;rate=1", "text/plain"};
const std::size_t kLengths[] = {5, 1, 0, 300, 8192, 8193, 9000};
constexpr std::size_t kChunk = 5000;

ParserPlan PlanOf(const Operation& anOperation, unsigned aNumber) {
    ParserPlan plan;
    plan.mNumber = aNumber;
    plan.mType = Chosen(kTypes, anOperation.mA);
    plan.mClaims = Chosen(kClaims, anOperation.mB);
    plan.mMimeType = Chosen(kAnswers, anOperation.mC);
    plan.mDLNA = Chosen(kFields, anOperation.mC / 5);
    plan.mAudioRate = anOperation.mC / 20 % 2 != 0 ? 128000 : 0;
    plan.mfCoverArt = anOperation.mD % 2 != 0;
    plan.mfAdjusts = anOperation.mD / 2 % 3 == 2;
    plan.mfReadsAll = anOperation.mD / 6 % 2 != 0;
    if (anOperation.mB / 6 % 3 != 0) {
        plan.mDeclared.emplace_back(Chosen(kStreamTypes, 1 + anOperation.mB / 6 % 3 % 2));
    }
    if (anOperation.mB / 18 % 2 != 0) {
        plan.mDeclared.emplace_back("image/x-c");
    }
    return plan;
}

std::string ExtensionAskedFor(const Operation& anOperation) {
    return NameParts(MediaNameOf(0, anOperation.mA)).mExtension;
}

std::string TypeAskedFor(const Operation& anOperation) {
    return anOperation.mB % 2 != 0 ? Chosen(kAnswers, anOperation.mC) : Chosen(kStreamTypes, anOperation.mC);
}

MediaPlan MediaOf(const Operation& anOperation) {
    MediaPlan media;
    media.mName = MediaNameOf(anOperation.mA, anOperation.mB);
    media.mWay = static_cast<MediaPlan::Way>(anOperation.mC % MediaPlan::kWays);
    media.mContent = LettersOf(Chosen(kLengths, anOperation.mC / 7), anOperation.mD);
    if (media.mWay == MediaPlan::Memory) {
        media.mMimeType = Chosen(kStreamTypes, anOperation.mD / 4);
    }
    if (media.mWay == MediaPlan::NotSeekable) {
        media.mContent.resize(std::min<std::size_t>(media.mContent.size(), 300)); // the buffer holds it
    }
    return media;
}

std::string InWords(const MediaPlan& aMedia) {
    static const char* const kInWords[] = {"a file",       "a trickle", "of unknown size", "failing once",
                                           "not seekable", "in memory", "fed in packets"};
    return aMedia.mName + " (" + std::to_string(aMedia.mContent.size()) + " bytes from '" +
           aMedia.mContent.substr(0, 5) + "', " + kInWords[aMedia.mWay] +
           (aMedia.mMimeType.empty() ? ")" : ", " + aMedia.mMimeType + ")");
}

/// A parser that does what its plan says, and notes what it met with.
class PlannedParser : public ezMediaParser {
public:
    PlannedParser(ParserPlan aPlan, ParserTrace& aCalls, const std::string& aMediaBytes)
        : ezMediaParser(aPlan.mType.c_str(), nullptr, aPlan.mfCoverArt),
          mPlan(std::move(aPlan)),
          mCalls(aCalls),
          mMediaBytes(aMediaBytes) {
        ++sCount;
    }
    ~PlannedParser() override { --sCount; }
    static int Count() { return sCount; }

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        std::string call =
            "parse " + std::to_string(mPlan.mNumber) + " @" + std::to_string(aStream.Tell().ToUInt64());
        char seen = '\0';
        std::size_t count = 1;
        const bool fSeen = aStream.Read(&count, &seen) && count == 1;
        call += fSeen ? std::string(" sees ") + seen : " sees nothing";
        mCalls.push_back(call);
        if (fSeen && mPlan.mfReadsAll && mMediaBytes.size() > 1) {
            ReadAll(aStream);
        } else if (fSeen && mPlan.mfReadsAll && mMediaBytes.size() == 1) {
            mCalls.back() += " and 0 good bytes";
        }
        if (!fSeen || mPlan.mClaims.find(seen) == std::string::npos) {
            return nullptr;
        }
        auto* info = new ezMediaInfo;
        info->Set(kezInfo_MimeType, mPlan.mMimeType.c_str(), true);
        info->Set(kezInfo_DLNA, mPlan.mDLNA.c_str(), true);
        if (mPlan.mAudioRate != 0) {
            info->Set(kezInfo_AudioBitRate, mPlan.mAudioRate, true);
            info->Set(kezInfo_AudioTrackCount, 1, true);
        }
        return info;
    }
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override {
        mCalls.push_back("adjust " + std::to_string(mPlan.mNumber));
        if (mPlan.mfAdjusts) {
            anInfo->Set(kezInfo_DLNA, ("DLNA.ORG_PN=BY" + std::to_string(mPlan.mNumber)).c_str(), true);
        }
        return mPlan.mfAdjusts;
    }
    ezCString GetDLNAInfo() override {
        std::string text;
        for (const std::string& mimeType : mPlan.mDeclared) {
            text += (text.empty() ? "" : ",") + mimeType + ":DLNA.ORG_PN=N" + std::to_string(mPlan.mNumber);
        }
        return text.c_str();
    }

private:
    void ReadAll(ezMediaParserStream& aStream) {
        std::string bytes;
        std::string chunk(kChunk, '\0');
        std::size_t count = kChunk;
        while (aStream.Read(&count, chunk.data()) && count != 0) {
            bytes.append(chunk, 0, count);
            count = kChunk;
        }
        const bool fGood = bytes == mMediaBytes.substr(1);
        mCalls.back() += " and " + std::to_string(bytes.size()) + (fGood ? " good bytes" : " other bytes");
    }

    inline static int sCount = 0;
    ParserPlan mPlan;
    ParserTrace& mCalls;
    const std::string& mMediaBytes;
};

std::unique_ptr<ezMediaParserStream> MemoryMedia(const MediaPlan& aMedia, const std::string& aPath) {
    void* block = ezMalloc(aMedia.mContent.size() + 1);
    std::memcpy(block, aMedia.mContent.data(), aMedia.mContent.size());
    auto* stream = new ezMemoryStream(block, aMedia.mContent.size(), aMedia.mMimeType.c_str());
    stream->SetURI(aPath.c_str());
    return std::make_unique<ezStreamMediaParserStream>(stream, true);
}

/// The stream of a file, opened.
std::unique_ptr<ezMediaParserStream> Delivered(const MediaPlan& aMedia, const std::string& aPath,
                                               const TemporaryFolder& aFolder) {
    std::unique_ptr<ezMediaParserStream> stream;
    Delivery delivery;
    switch (aMedia.mWay) {
    case MediaPlan::File:
        aFolder.Write(aMedia.mName, aMedia.mContent);
        stream = std::make_unique<ezFileMediaParserStream>(ezCString(aPath.c_str()));
        break;
    case MediaPlan::Memory:
        stream = MemoryMedia(aMedia, aPath);
        break;
    case MediaPlan::Fed:
        stream = std::make_unique<ezStreamMediaParserStream>(
            new FedStream(aMedia.mContent, 1 + aMedia.mContent.size() / 7, 20000, aPath), true);
        break;
    default:
        delivery.mMaximumRead =
            aMedia.mWay == MediaPlan::Trickle ? 1 + aMedia.mContent.size() / 50 : Delivery::kNever;
        delivery.mFailingOffset = aMedia.mWay == MediaPlan::FirstReadFails ? 0 : Delivery::kNever;
        delivery.mfSizeKnown = aMedia.mWay != MediaPlan::SizeUnknown;
        delivery.mfSeekable = aMedia.mWay != MediaPlan::NotSeekable;
        stream = std::make_unique<AwkwardStream>(aMedia.mContent, delivery, aPath.c_str());
        stream->SetExtension(NameParts(aMedia.mName).mExtension.c_str());
        return stream;
    }
    Agree("the media opens", stream->Open(), true);
    return stream;
}

RecordValues ValuesOf(const ezMediaInfo& anInfo) {
    RecordValues values;
    for (std::size_t i = 0; i < anInfo.GetCount(); ++i) {
        const ezCString key = anInfo.GetKeyAt(i);
        values[Str(key)] = Str(anInfo.GetCString(key.c_str(), ""));
    }
    if (!anInfo.mFullPath.IsEmpty()) {
        values["path"] = Str(anInfo.mFullPath);
    }
    return values;
}

} // namespace

ParsersSubject::ParsersSubject(const TemporaryFolder& aFolder, MapperSubject& aMapper, int anOptions)
    : mFolder(aFolder), mMapper(aMapper), mOptions(anOptions) {
    mEnvironment.Set("ReadOnlyConfigPath", aFolder.Path("types"));
    mEnvironment.Set("ReadWriteConfigPath", aFolder.Path("types"));
    Start();
}

ParsersSubject::~ParsersSubject() = default;

void ParsersSubject::Start() {
    mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
    mModel = std::make_unique<ParsersModel>(mMapper, mOptions);
}

void ParsersSubject::Stop() {
    Agree("the parsers that are there", PlannedParser::Count(), static_cast<int>(mParsers.size()));
    mManager.reset();
    mParsers.clear();
    Agree("the parsers that are left", PlannedParser::Count(), 0);
}

std::string ParsersSubject::Describe(const Operation& anOperation) {
    const ParserPlan plan = PlanOf(anOperation, 0);
    std::string declared;
    for (const std::string& mimeType : plan.mDeclared) {
        declared += ", declares " + mimeType;
    }
    switch (anOperation.mVerb) {
    case Verb::AddParser:
        return "add a parser of type '" + plan.mType + "' for '" + plan.mClaims + "' that answers '" +
               plan.mMimeType + "' '" + plan.mDLNA + "' rate " + std::to_string(plan.mAudioRate) + declared +
               (plan.mfCoverArt ? ", has cover art" : "") + (plan.mfAdjusts ? ", adjusts" : "") +
               (plan.mfReadsAll ? ", reads all" : "");
    case Verb::AddParserAgain:
        return "add parser " + std::to_string(anOperation.mA) + " (of those there) once more";
    case Verb::AddStandardParsers:
        return "add the standard parsers";
    case Verb::UseMapper:
        return "use the mapper";
    case Verb::ParseMedia:
        return "parse " + InWords(MediaOf(anOperation));
    case Verb::ParseType:
        return std::string("parse as type ") + Chosen(kTypes, anOperation.mD / 4) + " " +
               InWords(MediaOf(anOperation));
    case Verb::ParseCover:
        return std::string("find the cover for ") + Chosen(kStreamTypes, 1 + anOperation.mB % 3) + " in " +
               InWords(MediaOf(anOperation));
    case Verb::AdjustRecord:
        return std::string("adjust a record of '") + Chosen(kAnswers, anOperation.mA) + "'";
    case Verb::AdjustByType:
        return std::string("adjust a record of '") + Chosen(kAnswers, anOperation.mA) + "' by the type " +
               Chosen(kTypes, anOperation.mB);
    case Verb::Announce:
        return "announce";
    case Verb::AnnounceProtected:
        return "announce in the link-protected form";
    case Verb::Observe:
        return "be told why, or no longer";
    case Verb::LookUpTypes:
        return "look up the type of '" + ExtensionAskedFor(anOperation) + "' and the extensions of '" +
               TypeAskedFor(anOperation) + "'";
    default:
        return "begin again with nothing but the files";
    }
}

void ParsersSubject::Apply(const Operation& anOperation) {
    switch (anOperation.mVerb) {
    case Verb::AddParser:
        if (mParsers.size() < kMostParsers) {
            const ParserPlan plan = PlanOf(anOperation, static_cast<unsigned>(mParsers.size()));
            mParsers.push_back(new PlannedParser(plan, mCalls, mMediaBytes));
            Agree("a parser is added", mManager->Add(mParsers.back()), true);
            mModel->Add(plan);
        }
        break;
    case Verb::AddParserAgain:
        if (!mParsers.empty()) {
            const std::size_t index = anOperation.mA % mParsers.size();
            Agree("a parser is added again", mManager->Add(mParsers[index]), true);
            mModel->AddAgain(index);
        }
        break;
    case Verb::AddStandardParsers:
    case Verb::UseMapper:
        AddOnce(anOperation.mVerb);
        break;
    case Verb::Observe:
        mManager->SetObserver(mManager->IsObserved() ? nullptr : &mObserver);
        break;
    case Verb::ParseMedia:
        ParseMedia(anOperation);
        break;
    case Verb::ParseType:
        ParseType(anOperation);
        break;
    case Verb::ParseCover:
        ParseCover(anOperation);
        break;
    case Verb::AdjustRecord:
        AdjustRecord(anOperation);
        break;
    case Verb::AdjustByType:
        AdjustByType(anOperation);
        break;
    case Verb::Announce:
        Announce();
        break;
    case Verb::AnnounceProtected:
        AnnounceProtected();
        break;
    case Verb::LookUpTypes:
        LookUpTypes(anOperation);
        break;
    default:
        Stop();
        mMapper.Restart();
        Start();
        break;
    }
    Agree("what the parsers met with", mCalls, mModel->TakeCalls());
    mCalls.clear();
}

void ParsersSubject::AddOnce(Verb aVerb) {
    const AssertCatcher asserts;
    std::vector<std::string> expected;
    if (aVerb == Verb::UseMapper) {
        mManager->AddDLNAMediaMapperParser(mMapper.Mapper());
        if (!mModel->UseMapper()) {
            expected = {"mDLNAMediaMapperParser == NULL @ MediaParserManager"};
        }
    } else {
        mManager->AddStandardParsers(mOptions);
        if (!mModel->AddStandardParsers()) {
            expected = {"mMimeTypesDotIniParser == NULL @ MediaParserManager"};
        }
    }
    Agree("assertions of what is done once", asserts.Failures(), AssertCatcher::Noted(expected));
}

std::string ParsersSubject::PathOf(const MediaPlan& aMedia) const {
    return mFolder.Path(aMedia.mName);
}

void ParsersSubject::CompareRecords(const std::string& aWhat, std::unique_ptr<ezMediaInfo> anInfo,
                                    const std::optional<RecordValues>& aModel) {
    Agree(aWhat + ": there is a record", anInfo != nullptr, aModel.has_value());
    if (anInfo != nullptr) {
        Agree(aWhat + ": the record", ValuesOf(*anInfo), *aModel);
    }
}

void ParsersSubject::ParseMedia(const Operation& anOperation) {
    const MediaPlan media = MediaOf(anOperation);
    mMediaBytes = media.mWay == MediaPlan::NotSeekable ? "" : media.mContent;
    const std::unique_ptr<ezMediaParserStream> stream = Delivered(media, PathOf(media), mFolder);
    mObserver.Clear();
    std::unique_ptr<ezMediaInfo> info(mManager->Parse(*stream));
    CompareTold(info.get());
    CompareRecords("parse", std::move(info), mModel->Parse(media, PathOf(media)));
    Met("an item is parsed, way " + std::to_string(media.mWay));
}

void ParsersSubject::CompareTold(const ezMediaInfo* anInfo) {
    std::set<std::string> told;
    for (const std::string& line : mObserver.LinesOf({"FactStated"})) {
        const std::size_t start = line.find(' ') + 1;
        told.insert(line.substr(start, line.find(' ', start) - start));
    }
    std::set<std::string> stated;
    if (anInfo != nullptr && mManager->IsObserved()) {
        for (const auto& [key, value] : ValuesOf(*anInfo)) {
            stated.insert(key == "path" ? "mFullPath" : key);
        }
        if (anInfo->mLastModificationTime.IsSet()) {
            stated.insert("mLastModificationTime");
        }
    }
    Agree("the facts that are told", told, stated);
    Agree("a request that is told", mObserver.Lines().empty(), !mManager->IsObserved());
    if (mManager->IsObserved()) {
        Met(anInfo != nullptr ? "an item is recognised and every fact of it told"
                              : "an item is not recognised and nothing of it told");
    }
}

void ParsersSubject::ParseType(const Operation& anOperation) {
    const MediaPlan media = MediaOf(anOperation);
    mMediaBytes = media.mWay == MediaPlan::NotSeekable ? "" : media.mContent;
    const std::string type = Chosen(kTypes, anOperation.mD / 4);
    const std::unique_ptr<ezMediaParserStream> stream = Delivered(media, PathOf(media), mFolder);
    std::unique_ptr<ezMediaInfo> info(mManager->ParseFromType(type.c_str(), *stream));
    CompareRecords("parse as " + type, std::move(info), mModel->ParseType(type, media));
}

void ParsersSubject::ParseCover(const Operation& anOperation) {
    const MediaPlan media = MediaOf(anOperation);
    mMediaBytes = media.mWay == MediaPlan::NotSeekable ? "" : media.mContent;
    const std::string type = Chosen(kStreamTypes, 1 + anOperation.mB % 3);
    const std::unique_ptr<ezMediaParserStream> stream = Delivered(media, PathOf(media), mFolder);
    std::unique_ptr<ezMediaInfo> info(mManager->ParseCoverArt(type.c_str(), *stream));
    CompareRecords("cover for " + type, std::move(info), mModel->ParseCover(type, media));
}

void ParsersSubject::AdjustRecord(const Operation& anOperation) {
    ezMediaInfo info;
    RecordValues expected;
    const std::string type = Chosen(kAnswers, anOperation.mA);
    info.Set(kezInfo_MimeType, type.c_str(), true);
    if (!type.empty()) {
        expected["mt"] = type;
    }
    const AssertCatcher asserts;
    const bool fAdjusted = mManager->AdjustDLNAInfo(&info);
    if (!mModel->HasStandardParsers()) {
        Agree("assertions of an adjustment", asserts.Failures(),
              AssertCatcher::Noted({"mMimeTypesDotIniParser != NULL @ MediaParserManager"}));
    }
    Agree("a record is adjusted", fAdjusted, mModel->Adjust(expected));
    Agree("the adjusted record", ValuesOf(info), expected);
}

void ParsersSubject::AdjustByType(const Operation& anOperation) {
    ezMediaInfo info;
    RecordValues expected;
    const std::string mimeType = Chosen(kAnswers, anOperation.mA);
    const std::string type = Chosen(kTypes, anOperation.mB);
    info.Set(kezInfo_MimeType, mimeType.c_str(), true);
    if (!mimeType.empty()) {
        expected["mt"] = mimeType;
    }
    const AssertCatcher asserts;
    const bool fAdjusted = mManager->AdjustDLNAInfoFromType(type.c_str(), &info);
    Agree("assertions of an adjustment by type", asserts.Failures(),
          type == "*" ? AssertCatcher::Noted({"aType.Compare(\"*\") != 0 @ MediaParserManager"})
                      : std::vector<std::string>());
    Agree("a record is adjusted by type", fAdjusted, mModel->AdjustByType(type, expected));
    Agree("the record adjusted by type", ValuesOf(info), expected);
    Met(fAdjusted ? "a record is adjusted by type" : "a record is not adjusted by type");
}

void ParsersSubject::Announce() {
    std::string expected;
    for (const Announcement& item : mModel->Announced()) {
        expected += (expected.empty() ? "" : ",") + item.InWords();
    }
    Agree("what is announced", Str(mManager->GetDLNAInfo()), expected);
    Met(expected.empty() ? "nothing is announced" : "something is announced");
    Met(expected.find("ORG_PS") == std::string::npos ? "no speeds are announced" : "speeds are announced");
}

void ParsersSubject::AnnounceProtected() {
    std::string expected;
    for (const Announcement& item : mModel->Announced()) {
        expected += (expected.empty() ? "" : ",") + item.Protected().InWords();
    }
    Agree("what is announced link-protected", Str(mManager->GetDLNAInfoDTCP()), expected);
    Met(expected.empty() ? "nothing is announced link-protected" : "something is announced link-protected");
}

void ParsersSubject::LookUpTypes(const Operation& anOperation) {
    ezMimeTypesDotIniParser* types = mManager->GetMimeTypesDotIniParser();
    Agree("there is a types parser", types != nullptr, mModel->HasStandardParsers());
    if (types == nullptr) {
        return;
    }
    const std::string extension = ExtensionAskedFor(anOperation);
    const std::string type = TypeAskedFor(anOperation);
    const std::string known = Str(types->FileExtensionToMimeType(extension.c_str()));
    Agree("the MIME type of " + extension, known, MimeTypeOfExtension(extension));
    Agree("the extensions beside " + extension,
          Str(types->ExtensionToExtensionList(extension.c_str()).Join()),
          ExtensionsBesideExtension(extension));
    Agree("the extension of " + type, Str(types->MimeTypeToFileExtension(type.c_str())),
          ExtensionOfMimeType(type));
    Agree("the extensions of " + type, Str(types->MimeTypeToFileExtensionList(type.c_str()).Join()),
          ExtensionsOfMimeType(type));
    Met(known == "application/octet-stream" ? "an extension is unknown" : "an extension has a type");
    Met(ExtensionOfMimeType(type).empty() ? "a MIME type is unknown" : "a MIME type has an extension");
}
