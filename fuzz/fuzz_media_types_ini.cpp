// The door: the media types ini file. The input is the file; what follows a form feed in it is the read-write
// file that lies over it.

#include "fuzz/support/Check.h"
#include "fuzz/support/WriteFile.h"

#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;
using Texts = std::vector<std::string>;

constexpr const char* kFileName = kezMediaTypesFileName;
constexpr const char* kUnknownMimeType = "application/octet-stream";
constexpr char kFileEnd = '\f';

/// Bounds on what is asked of one input, so that a long one does not take for ever.
constexpr std::size_t kMaximumEntries = 24;
constexpr std::size_t kMaximumRequests = 4;
constexpr std::size_t kMaximumParsers = 4;

/// The two folders of a configuration.
struct Folders {
    MemoryFolder mRoot;
    std::string mReadOnly = mRoot.MakeFolder("ro");
    std::string mReadWrite = mRoot.MakeFolder("rw");

    void Write(std::string_view anInput) const {
        const std::size_t end = std::min(anInput.find(kFileEnd), anInput.size());
        WriteFile(mReadOnly + "/" + kFileName, anInput.substr(0, end));
        WriteFile(mReadWrite + "/" + kFileName, anInput.substr(std::min(end + 1, anInput.size())));
    }
};

Texts ToTexts(const ezPtrList* aList) {
    Texts texts;
    for (const char* text : ezItems<const char>(aList)) {
        texts.emplace_back(text);
    }
    return texts;
}

Texts ToTexts(const ezCSVStringList& aList) {
    Texts texts;
    for (std::size_t i = 0; i < aList.GetCount(); ++i) {
        texts.emplace_back(aList.GetAt(i).View());
    }
    return texts;
}

std::vector<Entry*> ToEntries(const ezPtrList* aList) {
    std::vector<Entry*> entries;
    for (Entry* entry : ezItems<Entry>(aList)) {
        entries.push_back(entry);
    }
    return entries;
}

template <typename T>
bool Contains(const std::vector<T>& aList, const T& anItem) {
    return std::find(aList.begin(), aList.end(), anItem) != aList.end();
}

template <typename T>
bool AreDistinct(const std::vector<T>& aList) {
    return std::set<T>(aList.begin(), aList.end()).size() == aList.size();
}

std::string LowerText(const std::string& aText) {
    return std::string(ezCString(std::string_view(aText)).Lower().View());
}

/// An entry as one text.
std::string Dump(const Entry& anEntry) {
    std::string text;
    for (const ezPtrList* list :
         {anEntry.mTypes, anEntry.mExtensions, anEntry.mMimeTypes, anEntry.mUPnPClasses}) {
        for (const std::string& item : ToTexts(list)) {
            text += item + ",";
        }
        text += "@";
    }
    return text;
}

std::string Dump(ExtensionMimeTypeMatcher& aMatcher) {
    std::string text;
    for (Entry* entry : ToEntries(aMatcher.AllEntries())) {
        text += (aMatcher.IsExcludedEntry(entry) ? "-" : "+") + Dump(*entry) + "\n";
    }
    return text;
}

std::string Dump(const ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return "none";
    }
    std::string text;
    for (std::size_t i = 0; i < anInfo->GetCount(); ++i) {
        const ezCString key = anInfo->GetKeyAt(i);
        text +=
            std::string(key.View()) + "=" + std::string(anInfo->GetCString(key.c_str(), "").View()) + "\n";
    }
    return text;
}

// The table

void CheckItems(const ezPtrList* aList, bool afLower) {
    for (const std::string& item : ToTexts(aList)) {
        FuzzCheck(!item.empty());
        FuzzCheck(ezTrimmed(item) == item);
        FuzzCheck(item.find('@') == std::string::npos && item.find(',') == std::string::npos);
        FuzzCheck(!afLower || LowerText(item) == item);
    }
}

void CheckEntry(const Entry& anEntry) {
    CheckItems(anEntry.mExtensions, true);
    CheckItems(anEntry.mMimeTypes, true);
    CheckItems(anEntry.mUPnPClasses, false);
    const Texts types = ToTexts(anEntry.mTypes);
    FuzzCheck(!types.empty());
    for (const std::string& type : types) {
        FuzzCheck(LowerText(type) == type);
    }
}

/// The first string of the first entry that has one.
std::string FirstOfEntries(const std::vector<Entry*>& anEntries, ezPtrList* Entry::*aList,
                           const char* aDefault) {
    for (const Entry* entry : anEntries) {
        const Texts texts = ToTexts(entry->*aList);
        if (!texts.empty()) {
            return texts.front();
        }
    }
    return aDefault;
}

void CheckExtension(ExtensionMimeTypeMatcher& aMatcher, const ezCString& anExtension) {
    ezPtrList* list = aMatcher.EntriesFromExtension(anExtension);
    FuzzCheck(aMatcher.EntriesFromExtension(anExtension.Upper()) == list);
    const std::vector<Entry*> entries = ToEntries(list);
    const std::string lower(anExtension.Lower().View());
    for (const Entry* entry : entries) {
        FuzzCheck(Contains(ToTexts(entry->mExtensions), lower));
    }
    FuzzCheck(list == nullptr || !entries.empty());
    FuzzCheck(std::string(aMatcher.FileExtensionToMimeType(anExtension).View()) ==
              FirstOfEntries(entries, &Entry::mMimeTypes, kUnknownMimeType));

    const ezCSVStringList siblings = aMatcher.ExtensionToExtensionList(anExtension.Lower());
    FuzzCheck(AreDistinct(ToTexts(siblings)) && siblings.GetSeparator() == '\\');
    FuzzCheck(siblings.IsEmpty() || Contains(ToTexts(siblings), lower));
    const bool fPublished = std::any_of(entries.begin(), entries.end(),
                                        [&](Entry* anEntry) { return !aMatcher.IsExcludedEntry(anEntry); });
    FuzzCheck(siblings.IsEmpty() != fPublished);
}

void CheckMimeType(ExtensionMimeTypeMatcher& aMatcher, const ezCString& aMimeType) {
    ezPtrList* list = aMatcher.EntriesFromMimeType(aMimeType);
    FuzzCheck(aMatcher.EntriesFromMimeType(aMimeType.Upper()) == list);
    const std::vector<Entry*> entries = ToEntries(list);
    const std::string whole(aMimeType.Lower().View());
    const std::string bare(aMimeType.BeforeFirst(';').Lower().View());
    for (const Entry* entry : entries) {
        const Texts mimeTypes = ToTexts(entry->mMimeTypes);
        FuzzCheck(Contains(mimeTypes, whole) || Contains(mimeTypes, bare));
    }
    if (aMimeType == aMimeType.BeforeFirst(';')) {
        // No item of a table holds a comma.
        const ezPtrList* parametrised = aMatcher.EntriesFromMimeType(aMimeType + ";p=1,2");
        FuzzCheck(parametrised == list);
    }
    FuzzCheck(std::string(aMatcher.MimeTypeToFileExtension(aMimeType).View()) ==
              FirstOfEntries(entries, &Entry::mExtensions, ""));

    Texts firsts;
    for (const Entry* entry : entries) {
        const Texts extensions = ToTexts(entry->mExtensions);
        if (!extensions.empty() && !Contains(firsts, extensions.front())) {
            firsts.push_back(extensions.front());
        }
    }
    FuzzCheck(ToTexts(aMatcher.MimeTypeToFileExtensionList(aMimeType)) == firsts);
}

/// Asks every query for every key found, and for pieces of the input.
void CheckTable(ExtensionMimeTypeMatcher& aMatcher, std::string_view anInput) {
    const std::vector<Entry*> entries = ToEntries(aMatcher.AllEntries());
    bool fPublished = false;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool fExcluded = aMatcher.IsExcludedEntry(entries[i]);
        FuzzCheck(!(fPublished && fExcluded)); // excluded ones stand first
        fPublished = fPublished || !fExcluded;
        if (i >= kMaximumEntries) {
            continue;
        }
        CheckEntry(*entries[i]);
        for (const std::string& extension : ToTexts(entries[i]->mExtensions)) {
            FuzzCheck(Contains(ToEntries(aMatcher.EntriesFromExtension(extension.c_str())), entries[i]));
            CheckExtension(aMatcher, extension.c_str());
        }
        for (const std::string& mimeType : ToTexts(entries[i]->mMimeTypes)) {
            FuzzCheck(Contains(ToEntries(aMatcher.EntriesFromMimeType(mimeType.c_str())), entries[i]));
            CheckMimeType(aMatcher, mimeType.c_str());
        }
    }
    for (std::size_t size = 0; size <= anInput.size(); size = size * 2 + 1) {
        const ezCString head(anInput.substr(0, size));
        const ezCString tail(anInput.substr(anInput.size() - size));
        for (const ezCString& piece : {head, tail}) {
            CheckExtension(aMatcher, piece);
            CheckMimeType(aMatcher, piece);
        }
    }
    FuzzCheck(!aMatcher.IsExcludedEntry(nullptr));
}

void CheckReload(ExtensionMimeTypeMatcher& aMatcher, const Folders& aFolders) {
    const std::string before = Dump(aMatcher);
    FuzzCheck(aMatcher.Load());
    FuzzCheck(Dump(aMatcher) == before);
    aMatcher.Cleanup();
    aMatcher.Cleanup();
    FuzzCheck(Dump(aMatcher).empty());
    CheckExtension(aMatcher, "mp3");
    CheckMimeType(aMatcher, "audio/mpeg");
    FuzzCheck(aMatcher.Load());
    FuzzCheck(Dump(aMatcher) == before);

    ExtensionMimeTypeMatcher other(aFolders.mReadOnly.c_str(), aFolders.mReadWrite.c_str(), "");
    FuzzCheck(Dump(other).empty());
    FuzzCheck(other.Load() && Dump(other) == before);
}

// Requests

/// A parser of one type that answers always or never, and counts.
class KnowingParser : public ezMediaParser {
public:
    KnowingParser(const char* aType, bool afAnswers)
        : ezMediaParser(aType, nullptr, false), mfAnswers(afAnswers) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        ++mRuns;
        FuzzCheck(aStream.Tell() == 0); // the same place before every parser
        char byte = 0;
        aStream.Read(1, &byte);
        if (!mfAnswers) {
            return nullptr;
        }
        ezMediaInfo* info = new ezMediaInfo;
        info->mTitle = "answered";
        return info;
    }

    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return mfAnswers; }

    bool mfAnswers;
    std::size_t mRuns = 0;
};

class NamedStream : public ezMediaParserStream {
public:
    NamedStream(const ezCString& aPath, const ezCString& anExtension) {
        SetFullPath(aPath);
        SetExtension(anExtension);
    }

protected:
    bool MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) override { return true; }
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        std::memset(aBuffer, 'm', std::min<std::size_t>(aSize, 1));
        return aSize != 0 ? 1 : 0;
    }
};

/// What a request leads to, told from the entries alone.
class Expectation {
public:
    struct Outcome {
        const Entry* mEntry = nullptr; ///< that the record is completed from; null for no record
        bool mfAnswered = false;       ///< a parser answered; else the entry alone makes the record
    };

    Expectation(ExtensionMimeTypeMatcher& aTable, const std::set<std::string>& anAnsweringTypes)
        : mTable(aTable), mAnswering(anAnsweringTypes) {}

    Outcome Of(int anOptions, const ezCString& anExtension) {
        const bool fEverytime = (anOptions & kParseOption_ParseWithAllParserEverytime) != 0;
        const bool fIfFailed = (anOptions & kParseOption_ParseWithAllParserIfFailed) != 0;
        const bool fIfNoExtension =
            anExtension.IsEmpty() && (anOptions & kParseOption_ParseWithAllParserIfNoExtension) != 0;
        if (fEverytime || fIfFailed || fIfNoExtension) {
            if (const Entry* winner = Winner(ToEntries(mTable.AllEntries()))) {
                return {winner, true};
            }
        }
        if (anExtension.IsEmpty()) {
            return {};
        }
        const std::vector<Entry*> entries = ToEntries(mTable.EntriesFromExtension(anExtension));
        if (const Entry* winner = Winner(entries)) {
            return {winner, true};
        }
        const bool fTells = !mfExcluded && !entries.empty() &&
                            ezPtrList_GetCount(entries.back()->mMimeTypes) != 0 &&
                            ezPtrList_GetCount(entries.back()->mUPnPClasses) != 0;
        return {fTells ? entries.back() : nullptr, false};
    }

private:
    /// The entry whose parser answers. An answer for an excluded entry ends the pass without a result.
    const Entry* Winner(const std::vector<Entry*>& anEntries) {
        mfExcluded = false;
        for (Entry* entry : anEntries) {
            for (const std::string& type : ToTexts(entry->mTypes)) {
                if (mAnswering.erase(type) != 0) { // each parser runs once a request
                    mfExcluded = mTable.IsExcludedEntry(entry);
                    return mfExcluded ? nullptr : entry;
                }
            }
        }
        return nullptr;
    }

    ExtensionMimeTypeMatcher& mTable;
    std::set<std::string> mAnswering;
    bool mfExcluded = false; ///< the last pass ended at an excluded entry
};

/// The parsers of a host: for some types of the table, every other one answers.
struct Parsers {
    std::vector<KnowingParser*> mParsers; // the manager's
    std::set<std::string> mAnsweringTypes;

    Parsers(ezMediaParserManager& aManager, ExtensionMimeTypeMatcher& aTable) {
        std::set<std::string> types;
        for (const Entry* entry : ToEntries(aTable.AllEntries())) {
            for (const std::string& type : ToTexts(entry->mTypes)) {
                // "*" is filed among the parsers that are tried on any media.
                if (type == "*" || mParsers.size() == kMaximumParsers || !types.insert(type).second) {
                    continue;
                }
                const bool fAnswers = mParsers.size() % 2 == 1;
                mParsers.push_back(new KnowingParser(type.c_str(), fAnswers));
                FuzzCheck(aManager.Add(mParsers.back()));
                if (fAnswers) {
                    mAnsweringTypes.insert(type);
                }
            }
        }
    }

    void Reset() const {
        for (KnowingParser* parser : mParsers) {
            parser->mRuns = 0;
        }
    }

    void CheckRuns() const {
        for (const KnowingParser* parser : mParsers) {
            FuzzCheck(parser->mRuns <= 1);
        }
    }
};

/// Paths that lead to different ends: extensions of the table first, then none, unknown and conformance
/// names.
std::vector<NamedStream*> NewStreams(ExtensionMimeTypeMatcher& aTable) {
    std::vector<NamedStream*> streams;
    for (const Entry* entry : ToEntries(aTable.AllEntries())) {
        for (const std::string& extension : ToTexts(entry->mExtensions)) {
            if (streams.size() < kMaximumRequests) {
                streams.push_back(new NamedStream(("/media/a." + extension).c_str(), extension.c_str()));
            }
        }
    }
    streams.push_back(new NamedStream("/media/without", ""));
    streams.push_back(new NamedStream("/media/a.unheard-of", "unheard-of"));
    streams.push_back(new NamedStream("/media/b-lpcm-1.pcm", "pcm"));
    streams.push_back(new NamedStream("/media/B-MP2PS_N-1.mpg", "mpg"));
    return streams;
}

void CheckRequest(ezMediaParserManager& aManager, const Parsers& aParsers, ExtensionMimeTypeMatcher& aTable,
                  NamedStream& aStream, int anOptions, uint32 aContext) {
    aParsers.Reset();
    const std::unique_ptr<ezMediaInfo> info(aManager.Parse(aStream));
    FuzzCheck(aStream.Tell() == 0);
    aParsers.CheckRuns();
    FuzzCheck(info == nullptr || info->IsValid());
    if (aContext == 0) {
        const Expectation::Outcome expected =
            Expectation(aTable, aParsers.mAnsweringTypes).Of(anOptions, aStream.GetExtension());
        const Texts mimeTypes = expected.mEntry != nullptr ? ToTexts(expected.mEntry->mMimeTypes) : Texts();
        // The parsers here tell no MIME type: an entry without one makes no valid record.
        FuzzCheck((info != nullptr) == !mimeTypes.empty());
        if (info != nullptr) {
            FuzzCheck(info->GetCString(kezInfo_MimeType, "") == mimeTypes.front().c_str());
            FuzzCheck((info->mTitle == "answered") == expected.mfAnswered);
        }
    }
    aParsers.Reset();
    const std::unique_ptr<ezMediaInfo> again(aManager.Parse(aStream));
    FuzzCheck(Dump(again.get()) == Dump(info.get()));

    const std::unique_ptr<ezMediaInfo> adjusted(info != nullptr ? info->Duplicate() : nullptr);
    const bool fAdjusted = aManager.AdjustDLNAInfo(adjusted.get());
    FuzzCheck(!fAdjusted || !aParsers.mAnsweringTypes.empty());
}

void CheckRequests(const Folders& aFolders, ExtensionMimeTypeMatcher& aTable, int anOptions,
                   uint32 aContext) {
    ezEnvironment environment(aFolders.mReadOnly, aFolders.mReadWrite);
    environment.SetCTTContext(aContext);
    ezMediaParserManager manager(environment.Get());
    manager.AddStandardParsers(anOptions);
    const Parsers parsers(manager, aTable);
    for (NamedStream* stream : NewStreams(aTable)) {
        CheckRequest(manager, parsers, aTable, *stream, anOptions, aContext);
        delete stream;
    }
    const ezCString list = manager.GetDLNAInfo();
    FuzzCheck(list.IsEmpty() == (aContext == 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // A parser type "*" in the file leads to this assertion of the manager; then the answer is a plain false.
    const FuzzHouse house("aType.Compare(\"*\") != 0");
    static const Folders folders;
    std::string input(aSize, '\0');
    std::copy_n(aData, aSize, input.begin());
    folders.Write(input);

    ExtensionMimeTypeMatcher table(folders.mReadOnly.c_str(), folders.mReadWrite.c_str(), kFileName);
    FuzzCheck(table.Load());
    CheckTable(table, input);
    CheckReload(table, folders);
    // All of it in turn, by the size of the input: two complementary sets of options, and a conformance test
    // context.
    const int options = static_cast<int>(aSize % 8);
    CheckRequests(folders, table, options, 0);
    CheckRequests(folders, table, 7 - options, 0);
    CheckRequests(folders, table, options, static_cast<uint32>(1 + aSize / 8 % 2));
    return 0;
}
