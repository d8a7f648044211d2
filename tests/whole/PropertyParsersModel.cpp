#include "PropertyMapper.h"
#include "PropertyParsers.h"
#include "PropertyTypes.h"

#include <algorithm>

namespace {

std::string ValueOf(const RecordValues& aRecord, const std::string& aKey) {
    const auto found = aRecord.find(aKey);
    return found != aRecord.end() ? found->second : "";
}

/// An empty value is none.
void Put(RecordValues& aRecord, const std::string& aKey, const std::string& aValue) {
    if (aValue.empty()) {
        aRecord.erase(aKey);
    } else {
        aRecord[aKey] = aValue;
    }
}

void PutIfNone(RecordValues& aRecord, const std::string& aKey, const std::string& aValue) {
    if (ValueOf(aRecord, aKey).empty()) {
        Put(aRecord, aKey, aValue);
    }
}

std::string ProfileOf(const RecordValues& aRecord) {
    const std::string field = ValueOf(aRecord, "dl");
    const std::size_t at = field.find('=');
    return at == std::string::npos ? "" : field.substr(at + 1, field.find(';') - at - 1);
}

/// What the table says of a file, as a record.
RecordValues RecordOf(const Mapping& aMapping) {
    RecordValues record;
    Put(record, "mt", aMapping.mMimeType);
    const std::string kind = aMapping.mMimeType.substr(0, aMapping.mMimeType.find('/'));
    if (kind == "audio" || kind == "video" || kind == "image") { // to the letter
        Put(record, "cn", "item." + kind + "Item");
    }
    Put(record, "dl", "DLNA.ORG_PN=" + aMapping.mProfile);
    Put(record, "br", std::to_string(aMapping.mBitRate));
    static const std::map<std::string, std::string> kSeconds = {{"0:00:10", "10"}, {"1:00:00.000", "3600"}};
    const auto seconds = kSeconds.find(aMapping.mDuration);
    if (seconds != kSeconds.end()) {
        Put(record, "du", seconds->second);
    }
    if (aMapping.mProfile == "LPCM") {
        Put(record, "bs", "16");
        if (aMapping.mMimeType == "audio/L16;rate=44100;channels=2") {
            Put(record, "ar", "44100");
            Put(record, "ac", "2");
        }
    }
    return record;
}

/// The rates that follow where nothing or the audio's alone is known: all are the same then.
void CompleteRates(RecordValues& aRecord) {
    const std::string rate = ValueOf(aRecord, "ar").empty() ? "0" : ValueOf(aRecord, "ar");
    for (const char* key : {"ma", "ea", "mb", "br", "eb"}) {
        Put(aRecord, key, rate);
    }
    Put(aRecord, "mv", "0");
    Put(aRecord, "ev", "0");
}

} // namespace

std::vector<std::size_t> ParsersModel::ListOf(const std::string& aType) const {
    const auto found = std::find_if(mTypes.begin(), mTypes.end(),
                                    [&](const Type& anItem) { return anItem.first == Lower(aType); });
    return found != mTypes.end() ? found->second : std::vector<std::size_t>();
}

void ParsersModel::File(const std::string& aType, std::size_t anIndex) {
    for (auto& [type, list] : mTypes) {
        if (type == Lower(aType)) {
            return list.push_back(anIndex);
        }
    }
    mTypes.push_back({Lower(aType), {anIndex}});
}

void ParsersModel::Add(const ParserPlan& aPlan) {
    mPlans.push_back(aPlan);
    AddAgain(mPlans.size() - 1);
}

void ParsersModel::AddAgain(std::size_t anIndex) {
    const ParserPlan& plan = mPlans[anIndex];
    File(plan.mType, anIndex);
    for (const std::string& mimeType : plan.mDeclared) {
        std::vector<std::size_t>& list = mByMimeType[Lower(mimeType)];
        if (std::find(list.begin(), list.end(), anIndex) == list.end()) {
            list.push_back(anIndex);
        }
    }
}

bool ParsersModel::AddStandardParsers() {
    if (mfStandard) {
        return false;
    }
    mfStandard = true;
    File("*", kStandard);
    return true;
}

bool ParsersModel::UseMapper() {
    if (mMapperAnnounced) {
        return false;
    }
    mMapperAnnounced = mMapper.Model().Announced();
    return true;
}

void ParsersModel::Begin(const MediaPlan& aMedia) {
    mMedia = &aMedia;
    mPosition = 0;
    mfReadFails = aMedia.mWay == MediaPlan::FirstReadFails;
}

std::optional<RecordValues> ParsersModel::FromParser(const ParserPlan& aPlan) {
    const std::string call = "parse " + std::to_string(aPlan.mNumber) + " @" + std::to_string(mPosition);
    const std::string& content = mMedia->mContent;
    if (mPosition >= content.size() || mfReadFails) {
        mfReadFails = mfReadFails && content.empty(); // a file without bytes has none that fails
        mCalls.push_back(call + " sees nothing");
        return std::nullopt;
    }
    const char seen = content[mPosition];
    mCalls.push_back(call + " sees " + seen);
    if (mMedia->mWay == MediaPlan::NotSeekable) {
        ++mPosition; // and nobody puts it back
    } else if (aPlan.mfReadsAll) {
        mCalls.back() += " and " + std::to_string(content.size() - 1) + " good bytes";
    }
    if (aPlan.mClaims.find(seen) == std::string::npos) {
        return std::nullopt;
    }
    RecordValues record;
    Put(record, "mt", aPlan.mMimeType);
    Put(record, "dl", aPlan.mDLNA);
    if (aPlan.mAudioRate != 0) {
        Put(record, "ar", std::to_string(aPlan.mAudioRate));
        Put(record, "ta", "1");
    }
    return record;
}

std::optional<RecordValues> ParsersModel::FromType(const std::string& aType) {
    for (const std::size_t index : ListOf(aType)) {
        if (!mDone.insert(index).second) {
            continue;
        }
        std::optional<RecordValues> record = index == kStandard ? FromStandard() : FromParser(mPlans[index]);
        if (record) {
            return record;
        }
    }
    return std::nullopt;
}

std::optional<RecordValues> ParsersModel::FromEntries(const std::vector<const TypesEntry*>& anEntries,
                                                      bool afForce) {
    for (const TypesEntry* entry : anEntries) {
        std::optional<RecordValues> record = FromType(entry->mKey);
        for (const std::string& type : entry->mFurtherTypes) {
            if (!record) {
                record = FromType(type);
            }
        }
        if (!record) {
            continue;
        }
        if (entry->mfExcluded) {
            Met("an excluded entry refuses a winner");
            return std::nullopt;
        }
        Met("an entry of the table wins");
        CompleteRates(*record);
        PutIfNone(*record, "mt", entry->mMimeTypes.front());
        PutIfNone(*record, "cn", entry->mClass);
        const std::vector<const TypesEntry*> same = EntriesOfMimeType(ValueOf(*record, "mt"));
        PutIfNone(*record, "fe", same.empty() ? "" : same.front()->mExtensions.front());
        return record;
    }
    if (!afForce || anEntries.empty()) {
        return std::nullopt;
    }
    Met("an entry alone makes a record");
    const TypesEntry& last = *anEntries.back();
    return RecordValues{
        {"mt", last.mMimeTypes.front()}, {"cn", last.mClass}, {"fe", last.mExtensions.front()}};
}

std::optional<RecordValues> ParsersModel::FromStandard() {
    std::vector<const TypesEntry*> all;
    for (const TypesEntry& entry : TypesTable()) {
        all.push_back(&entry);
    }
    const std::string extension = NameParts(mMedia->mName).mExtension;
    const bool fEverytime = (mOptions & kParseOption_ParseWithAllParserEverytime) != 0;
    bool fAllTried = fEverytime;
    std::optional<RecordValues> record;
    if (fEverytime) {
        record = FromEntries(all, false);
    }
    if (!record && !fAllTried && !mMedia->mMimeType.empty()) {
        record = FromEntries(EntriesOfMimeType(mMedia->mMimeType), false);
    }
    if (!record && !fAllTried && extension.empty() &&
        (mOptions & kParseOption_ParseWithAllParserIfNoExtension) != 0) {
        record = FromEntries(all, false);
        fAllTried = true;
    }
    if (!record && !fAllTried && (mOptions & kParseOption_ParseWithAllParserIfFailed) != 0) {
        record = FromEntries(all, false);
    }
    if (!record && !extension.empty()) {
        record = FromEntries(EntriesOfExtension(extension), true);
    }
    return record;
}

std::optional<RecordValues> ParsersModel::Validated(std::optional<RecordValues> aRecord) const {
    const Mapping* mapping = mMapperAnnounced ? mMapper.Model().Find(mMedia->mName) : nullptr;
    if (mapping == nullptr) {
        return aRecord;
    }
    const RecordValues mapped = RecordOf(*mapping);
    if (!aRecord) {
        Met("the mapper supplies a record");
        return mapped;
    }
    Met("the mapper overrides a record");
    const bool fOtherType = ValueOf(*aRecord, "mt") != ValueOf(mapped, "mt");
    const bool fOtherProfile = ProfileOf(*aRecord) != ProfileOf(mapped);
    if (mapping->mProfile == "LPCM") {
        for (const char* key : {"ac", "ar", "bs"}) {
            const std::string value = ValueOf(mapped, key);
            Put(*aRecord, key, value.empty() ? "0" : value);
        }
    }
    if (fOtherProfile || fOtherType) {
        Put(*aRecord, "dl", ValueOf(mapped, "dl"));
        Put(*aRecord, "mt", ValueOf(mapped, "mt"));
    }
    for (const char* key : {"br", "du"}) {
        const std::string value = ValueOf(mapped, key);
        if (!value.empty() && value != "0") {
            Put(*aRecord, key, value);
        }
    }
    if (fOtherType) {
        Put(*aRecord, "cn", ValueOf(mapped, "cn"));
    }
    return aRecord;
}

std::optional<RecordValues> ParsersModel::Parse(const MediaPlan& aMedia, const std::string& aPath) {
    Begin(aMedia);
    mDone.clear();
    std::optional<RecordValues> record = Validated(FromType("*"));
    if (!record) {
        Met("an item is not recognised");
        return std::nullopt;
    }
    if (aMedia.mWay != MediaPlan::SizeUnknown && !aMedia.mContent.empty()) {
        Put(*record, "fs", std::to_string(aMedia.mContent.size()));
    }
    PutIfNone(*record, "fe", Lower(NameParts(aMedia.mName).mExtension));
    PutIfNone(*record, "mt", aMedia.mMimeType);
    Put(*record, "path", aPath);
    if (ValueOf(*record, "mt").empty()) {
        Met("a record without a MIME type is refused");
        return std::nullopt;
    }
    Met("an item is recognised");
    return record;
}

std::optional<RecordValues> ParsersModel::ParseType(const std::string& aType, const MediaPlan& aMedia) {
    Begin(aMedia);
    std::optional<RecordValues> record = FromType(aType);
    Met(record ? "a type answers" : "a type does not answer");
    return record;
}

std::optional<RecordValues> ParsersModel::ParseCover(const std::string& aMimeType, const MediaPlan& aMedia) {
    Begin(aMedia);
    const auto list = mByMimeType.find(Lower(aMimeType));
    if (list == mByMimeType.end()) {
        return std::nullopt;
    }
    mDone.clear();
    for (const std::size_t index : list->second) {
        if (!mPlans[index].mfCoverArt) {
            continue;
        }
        std::optional<RecordValues> record = FromParser(mPlans[index]);
        if (record) {
            Met("cover art is found");
            return record;
        }
    }
    return std::nullopt;
}

bool ParsersModel::AdjustByType(const std::string& aType, RecordValues& aRecord) {
    for (const std::size_t index : ListOf(aType)) {
        if (aType == "*" || !mDone.insert(index).second) {
            continue;
        }
        const ParserPlan& plan = mPlans[index];
        mCalls.push_back("adjust " + std::to_string(plan.mNumber));
        if (plan.mfAdjusts) {
            Put(aRecord, "dl", "DLNA.ORG_PN=BY" + std::to_string(plan.mNumber));
            return true;
        }
    }
    return false;
}

bool ParsersModel::Adjust(RecordValues& aRecord) {
    mDone.clear();
    if (!mfStandard) {
        return false;
    }
    for (const TypesEntry* entry : EntriesOfMimeType(ValueOf(aRecord, "mt"))) {
        std::vector<std::string> types = entry->mFurtherTypes;
        types.insert(types.begin(), entry->mKey);
        for (const std::string& type : types) {
            if (AdjustByType(type, aRecord)) {
                Met("a record is adjusted");
                return true;
            }
        }
    }
    Met("a record is not adjusted");
    return false;
}

std::vector<Announcement> ParsersModel::Announced() const {
    std::vector<Announcement> announced;
    for (const auto& [type, list] : mTypes) {
        for (const std::size_t index : list) {
            if (index != kStandard) {
                for (const std::string& mimeType : mPlans[index].mDeclared) {
                    announced.push_back({mimeType, "N" + std::to_string(mPlans[index].mNumber), ""});
                }
            }
        }
    }
    const std::vector<Announcement> mapped = mMapperAnnounced.value_or(std::vector<Announcement>());
    announced.insert(announced.end(), mapped.begin(), mapped.end());
    return announced;
}
