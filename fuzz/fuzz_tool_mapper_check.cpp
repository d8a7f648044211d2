// The door: a media mapper file as the tool checks it, which tells what the library takes of it and what a
// save loses. The library itself is asked whether that is so.

#include "fuzz/support/Check.h"
#include "fuzz/support/WriteFile.h"
#include "tools/ezannounce/mapper/MapperCheck.h"

#include "ez/DLNAMediaMapper.h"
#include "ezPlatform/containers/Array.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

namespace {

constexpr const char* kFileName = "MediaMapper.txt";

/// What entries say, sorted: their order is that of the profiles, which the tool does not speak of.
using Facts = std::vector<std::string>;

std::string FactsOf(const DLNAMediaMapperEntry& anEntry) {
    std::string facts;
    for (const ezCString& text :
         {anEntry.mFileName, anEntry.mMimeType, anEntry.mProfile, anEntry.mDuration,
          anEntry.mSupportedPlaySpeeds.Join(), anEntry.mMandatoryBits, anEntry.mIFOFileName, anEntry.mLargest,
          anEntry.mWidth, anEntry.mHeight, anEntry.mLPOptions, anEntry.mFullProfile}) {
        facts += std::string(text.View()) + '\n';
    }
    return facts + std::to_string(anEntry.mBitRate) + ' ' + std::to_string(anEntry.mGoldenDMSFlags);
}

Facts FactsOf(DLNAMediaMapper& aMapper) {
    Facts facts;
    for (std::size_t i = 0; i < ezArray_GetCount(aMapper.GetArray()); ++i) {
        facts.push_back(FactsOf(*static_cast<DLNAMediaMapperEntry*>(ezArray_At(aMapper.GetArray(), i))));
    }
    std::sort(facts.begin(), facts.end());
    return facts;
}

/// The library's own reader over the file.
Facts Loaded(const std::string& aFolder, bool afSave) {
    DLNAMediaMapper mapper(nullptr, "", aFolder.c_str(), "", kFileName);
    FuzzCheck(!mapper.Load().IsError());
    const Facts facts = FactsOf(mapper);
    FuzzCheck(!afSave || !mapper.Save().IsError());
    return facts;
}

void CheckFindings(const MapperCheck& aCheck, std::size_t aLineCount) {
    std::size_t before = 1;
    for (const MapperFinding& finding : aCheck.mFindings) {
        FuzzCheck(finding.mLine >= before && finding.mLine <= aLineCount);
        FuzzCheck(!finding.mText.empty());
        before = finding.mLine;
    }
    FuzzCheck(aCheck.mLostLineCount <= aCheck.mFindings.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const std::string_view content(reinterpret_cast<const char*>(aData), aSize);
    const MemoryFolder folder;
    const std::string place = folder.MakeFolder("rw");
    const std::string path = place + "/_" + kFileName;
    WriteFile(path, content);

    MapperCheck check;
    FuzzCheck(CheckMapperFile(path, check));
    // A line ends with either character or with both.
    const auto ends = std::count_if(content.begin(), content.end(),
                                    [](char aByte) { return aByte == '\n' || aByte == '\r'; });
    CheckFindings(check, static_cast<std::size_t>(ends) + 1);

    const Facts facts = Loaded(place, true);
    FuzzCheck(facts.size() == check.mEntryCount);
    if (check.mLostLineCount == 0) {
        FuzzCheck(Loaded(place, false) == facts); // the tool said that a save keeps every line
    }
    MapperCheck saved;
    FuzzCheck(CheckMapperFile(path, saved));
    return 0;
}
