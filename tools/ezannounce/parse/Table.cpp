#include "parse/Table.h"

#include "arguments/Operands.h"
#include "host/Facts.h"
#include "host/Host.h"
#include "output/Console.h"
#include "output/Limits.h"
#include "output/SafeText.h"

#include "ez/UPnPClasses.h"
#include "ezPlatform/dlna/DLNAField.h"

#include <algorithm>
#include <array>

namespace {

enum Column : std::size_t { kName, kKind, kLength, kSize, kCodecs, kProfile };

const std::vector<std::string> kHeader = {"NAME", "KIND", "LENGTH", "SIZE", "CODECS", "PROFILE"};

/// The last one is never cut, and a longer one than those that there are pushes nothing.
constexpr std::size_t kLongestKind = 10;
constexpr std::size_t kLongestCodecs = 20;
constexpr std::size_t kLongestProfile = 44;

/// Less of a name tells nothing: before that, columns are left out, in this order.
constexpr std::size_t kLeastName = 16;
constexpr std::array<Column, 4> kLeftOut = {kKind, kSize, kCodecs, kLength};

std::vector<ColumnStyle> Styles() {
    return {{SIZE_MAX}, {kLongestKind}, {16, true}, {16, true}, {kLongestCodecs}, {kLongestProfile}};
}

/// "audio" of "item.audioItem.musicTrack"; the whole of a class that is not one of an item.
std::string KindOf(const ezMediaInfo& anInfo) {
    constexpr std::string_view kEnd = "Item";
    const ezCString text = anInfo.GetCString(kezInfo_ClassName, "");
    std::string_view kind = text.View();
    constexpr std::string_view kItem = kezUPnPClass_Item;
    if (kind.substr(0, kind.find('.')) == kItem && kind.size() > kItem.size()) {
        kind = kind.substr(kItem.size() + 1);
        kind = kind.substr(0, kind.find('.'));
        const std::size_t end = kind.size() - std::min(kind.size(), kEnd.size());
        kind = kind.substr(end) == kEnd ? kind.substr(0, end) : kind;
    }
    return kind.empty() ? "-" : CutInMiddle(kind, kLongestKind);
}

std::string WordsOf(const std::vector<Fact>& aFacts, const char* aName) {
    const Fact* const fact = FindFactNamed(aFacts, aName);
    return fact != nullptr ? fact->mWords : "";
}

std::string ResolutionOf(const std::vector<Fact>& aFacts) {
    const std::string width = WordsOf(aFacts, "picture_width");
    const std::string height = WordsOf(aFacts, "picture_height");
    return width.empty() || height.empty() ? "" : ForTerminal(width + "x" + height);
}

std::string CodecsOf(const std::vector<Fact>& aFacts) {
    const std::string video = WordsOf(aFacts, "video_codec");
    const std::string audio = WordsOf(aFacts, "audio_codec");
    const std::string codecs = video + (video.empty() || audio.empty() ? "" : "+") + audio;
    return codecs.empty() ? "-" : CutInMiddle(codecs, kLongestCodecs);
}

std::string ProfileOf(const ezMediaInfo& anInfo) {
    const ezCString field = anInfo.GetCString(kezInfo_DLNA, "");
    const std::string_view profile = ezDLNAField::ProfileIn(field.View());
    return profile.empty() ? "-" : ForTerminal(profile);
}

} // namespace

std::string SizeCellOf(const Announcement& anAnnouncement) {
    // A file's record lacks the size when it is 0, a live media's when it is not known: that is never empty,
    // and a name given to standard input has no time as a file has.
    const ezMediaInfo& info = *anAnnouncement.mInfo;
    const bool fFile = !IsLive(anAnnouncement.mPath) && info.mLastModificationTime.IsSet();
    if (!fFile && !info.Has(kezInfo_FileSize)) {
        return "-";
    }
    return SizeInWords(info.GetUInt64(kezInfo_FileSize, 0).ToUInt64());
}

TableOutput::TableOutput(Console& aConsole, std::size_t aWidth)
    : mConsole(aConsole), mWidth(aWidth), mWidths(Styles()) {
    mWidths.Take(kHeader);
}

void TableOutput::Put(const Announcement& anAnnouncement) {
    const ezMediaInfo& info = *anAnnouncement.mInfo;
    const std::vector<Fact> facts = FactsOf(info);
    const std::string length = ForTerminal(WordsOf(facts, "duration"));
    const std::string resolution = ResolutionOf(facts);
    Row row;
    row.mName = anAnnouncement.mPath;
    row.mCells = {ForTerminal(row.mName),
                  KindOf(info),
                  length.empty() ? "-" : length,
                  resolution.empty() ? SizeCellOf(anAnnouncement) : resolution,
                  CodecsOf(facts),
                  anAnnouncement.mfRecognised ? ProfileOf(info) : "not recognised"};
    mWidths.Take(row.mCells);
    mRows.push_back(std::move(row));
    if (mRows.size() >= kOutput_RowsPerBatch) {
        Finish();
    }
}

/// The columns as they have room.
ColumnWidths TableOutput::Fitted() const {
    ColumnWidths fitted = mWidths;
    const std::size_t name = mWidths.GetWidth(kName);
    const std::size_t least = std::min(name, kLeastName);
    for (const Column column : kLeftOut) {
        if (fitted.GetLineWidth() - name + least > mWidth) {
            fitted.Hide(column);
        }
    }
    const std::size_t others = fitted.GetLineWidth() - name;
    fitted.Bound(kName, std::max(least, mWidth - std::min(mWidth, others)));
    return fitted;
}

void TableOutput::Finish() {
    if (mRows.empty()) {
        return;
    }
    const ColumnWidths fitted = Fitted();
    std::vector<bool> shown(kHeader.size());
    for (std::size_t column = 0; column < shown.size(); ++column) {
        shown[column] = !fitted.IsHidden(column);
    }
    if (shown != mShown) { // the first rows, or some that leave no room for a column that was shown
        mShown = shown;
        mConsole.Print(fitted.Line(kHeader));
    }
    for (Row& row : mRows) {
        row.mCells[kName] = CutInMiddle(row.mName, fitted.GetWidth(kName));
        mConsole.Print(fitted.Line(row.mCells));
    }
    mRows.clear();
}
