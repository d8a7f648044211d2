#include "detail/MediaMapperFile.h"

#include "ezPlatform/containers/Array.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/TextFile.h"
#include "ezPlatform/text/StringList.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace {

using Entry = DLNAMediaMapperEntry;
using Lines = DLNAMediaMapperBadLines;

constexpr int kErrorOpening = -3;
constexpr int kErrorWriting = -1;
constexpr const char* kTooLong = "longer than 1024 bytes";
static_assert(Lines::kMaximumLineLength == 1024, "the text says so");

// The two syntax lines run together; files in the field begin like this.
constexpr const char* kDLNAMediaMapper_Header =
    "# MediaMapper.txt\n# Used to map information about DLNA media\n#\n# Syntax for this is as follows\n"
    "# [FILENAME],[MIME TYPE],[DLNA.ORG_PN],[DURATION],[SUPPORTED PLAYSPEEDS],[MANDATORY (8 bit strings)],"
    "[BIT RATE PEAK OF FILE],[ASSOCIATED IFO FILE],[full protocolInfo 4th field]"
    "# [LARGEST if largest],[WIDTH],[HEIGHT],[ANY LP OPTIONS],[ANY GOLDENDMS OPTIONS]\n\n";

ezError FileError(int aCode, const char* aMessage, const ezPathName& aPath) {
    std::string text(aMessage);
    text += aPath.GetFullPath().c_str();
    text += '\'';
    return ezError(aCode, text);
}

/// Why Set refused a line; the entry holds what it then changed.
const char* WhyBad(const Entry& anEntry, const ezCString& aLine) {
    if (ezCSVStringList::FromText(aLine).GetCount() < 3) {
        return "fewer than 3 fields";
    }
    if (anEntry.mFileName.IsEmpty()) {
        return "empty file name";
    }
    return anEntry.mMimeType.IsEmpty() ? "empty MIME type" : "empty profile";
}

void Note(DLNAMediaMapperBadLines& aLines, const DLNAMediaMapperBadLine& aLine) {
    ++aLines.mCount;
    if (aLines.mLines.size() < DLNAMediaMapperBadLines::kMaximumKept) {
        aLines.mLines.push_back(aLine);
    }
}

} // namespace

ezError MediaMapperFile_Read(const ezPathName& aPath, bool afReadOnly,
                             std::vector<std::unique_ptr<Entry>>& anEntries,
                             DLNAMediaMapperBadLines& aSkippedLines) {
    ezTextFile file(aPath.GetFullPath(), Lines::kMaximumLineLength);
    if (!file.IsOpened()) {
        return FileError(kErrorOpening, "Unable to open media mapper file: '", aPath);
    }
    ezCString line;
    bool fCut = false;
    std::vector<std::unique_ptr<Entry>> loaded;
    for (std::size_t number = 1; file.NextLine(&line, &fCut); ++number) {
        const ezCString text = line.TrimLeftRight();
        if (text.IsEmpty() || text.View().front() == '#') {
            continue; // a remark may be as long as it likes
        }
        std::unique_ptr<Entry> entry = std::make_unique<Entry>();
        if (!fCut && entry->Set(text)) {
            loaded.push_back(std::move(entry));
        } else {
            Note(aSkippedLines, {number, fCut ? kTooLong : WhyBad(*entry, text), afReadOnly});
        }
    }
    if (file.HasFailed()) {
        // Nothing of it: a save of half a table would lose the other half.
        return FileError(kErrorOpening, "Unable to open media mapper file: '", aPath);
    }
    std::move(loaded.begin(), loaded.end(), std::back_inserter(anEntries));
    return ezError();
}

ezError MediaMapperFile_Write(const ezPathName& aPath, const ezArray* anEntries,
                              DLNAMediaMapperBadLines& aTooLongLines) {
    ezCString text = kDLNAMediaMapper_Header;
    const auto header = static_cast<std::size_t>(std::count(text.View().begin(), text.View().end(), '\n'));
    for (std::size_t i = 0; i < ezArray_GetCount(anEntries); ++i) {
        const ezCString line = static_cast<Entry*>(ezArray_At(anEntries, i))->Get();
        if (line.GetLength() > Lines::kMaximumLineLength) {
            Note(aTooLongLines, {header + i + 1, kTooLong, false});
        }
        text += line;
        text += "\n";
    }
    ezFile file;
    if (!file.Create(aPath.GetFullPath(), true, ezFileAccessMode_ReadWrite)) {
        return FileError(kErrorWriting, "Unable to create media mapper file :\n'", aPath);
    }
    const int written = file.Write(text.c_str(), text.GetLength());
    const bool fWhole = written >= 0 && static_cast<std::size_t>(written) == text.GetLength();
    if (!file.Close() || !fWhole) {
        return MediaMapperFile_WriteError(aPath);
    }
    return ezError();
}

ezError MediaMapperFile_WriteError(const ezPathName& aPath) {
    return FileError(kErrorWriting, "Unable to write media mapper file :\n'", aPath);
}
