#include "mapper/MapperCheck.h"

#include "mapper/Limits.h"
#include "mapper/MapperFacts.h"

#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/files/TextFile.h"

#include <algorithm>
#include <array>
#include <map>
#include <tuple>

#include <sys/stat.h>

namespace {

constexpr std::size_t kPlaySpeedField = 4;
constexpr std::size_t kBitRateField = 6;
constexpr std::array<const char*, 13> kFieldNames = {
    "file name", "MIME type", "profile", "duration", "play speeds", "mandatory bits", "bit rate",
    "IFO file",  "largest",   "width",   "height",   "LP options",  "parameters"};

std::string Shortened(const std::string& aText) {
    return aText.size() <= kMapperCheck_RepeatedBytes ? aText
                                                      : aText.substr(0, kMapperCheck_RepeatedBytes) + "...";
}

std::string Quoted(const ezCString& aText) {
    return "'" + std::string(aText.View()) + "'";
}

constexpr std::array<ezCString DLNAMediaMapperEntry::*, 10> kTexts = {
    &DLNAMediaMapperEntry::mFileName,      &DLNAMediaMapperEntry::mMimeType,
    &DLNAMediaMapperEntry::mProfile,       &DLNAMediaMapperEntry::mDuration,
    &DLNAMediaMapperEntry::mMandatoryBits, &DLNAMediaMapperEntry::mIFOFileName,
    &DLNAMediaMapperEntry::mLargest,       &DLNAMediaMapperEntry::mWidth,
    &DLNAMediaMapperEntry::mHeight,        &DLNAMediaMapperEntry::mLPOptions};

/// The 4th-field parameter that carries the flag word: its domain is fixed when the library is built, so it
/// is taken from a line that the library writes.
ezCString FlagWordName() {
    DLNAMediaMapperEntry entry;
    return entry.Get().AfterLast(';').BeforeLast('=');
}

/// One speed as the library reads it; "" when it drops it.
ezCString AcceptedSpeed(const ezCString& aSpeed) {
    ezCSVStringList list = ezCSVStringList::WithSeparator(',');
    list.Add(aSpeed.c_str());
    DLNAMediaMapperEntry::ValidatePlaySpeedList(list, true);
    return list.GetAt(0);
}

class Checker {
public:
    explicit Checker(MapperCheck& aCheck) : mCheck(aCheck), mFlagWordName(FlagWordName()) {}

    void Line(std::size_t aNumber, const ezCString& aLine, bool afCut) {
        mLine = aNumber;
        mfLineLost = false;
        const ezCString text = aLine.TrimLeftRight();
        if (text.IsEmpty() || text.View().front() == '#') {
            return;
        }
        if (afCut) {
            Lost("longer than " + std::to_string(DLNAMediaMapperBadLines::kMaximumLineLength) +
                 " bytes: skipped");
            return;
        }
        const ezCSVStringList fields = ezCSVStringList::FromText(text);
        DLNAMediaMapperEntry entry;
        if (!entry.Set(text)) {
            Lost(WhyBad(fields) + ": skipped");
            return;
        }
        ++mCheck.mEntryCount;
        CheckFields(fields);
        CheckSpeeds(fields, entry);
        CheckNumbers(fields, entry);
        CheckSaved(entry);
        Remember(text, entry);
    }

    /// Tells that this line and those after it are not checked.
    void End(std::size_t aNumber) {
        mLine = aNumber;
        mfLineLost = false;
        Lost("not checked, nor is what follows: a check ends after " + std::to_string(kMapperCheck_MaxLines) +
             " lines");
    }

    void Finish() {
        for (auto& [base, candidates] : mByBaseName) {
            CheckCandidates(base, candidates);
        }
        std::stable_sort(mCheck.mFindings.begin(), mCheck.mFindings.end(),
                         [](const MapperFinding& aLeft, const MapperFinding& aRight) {
                             return aLeft.mLine < aRight.mLine;
                         });
    }

private:
    /// An entry among those of one base name, in the order in which a search meets them.
    struct Candidate {
        std::string mProfile;
        std::size_t mLine;
        bool mfPcm;

        bool operator<(const Candidate& anOther) const {
            return std::tie(mProfile, mLine) < std::tie(anOther.mProfile, anOther.mLine);
        }
    };

    void Found(const std::string& aText) {
        if (mCheck.mFindings.size() < kMapperCheck_MaxFindings) {
            mCheck.mFindings.push_back({mLine, aText});
        } else {
            ++mCheck.mUnnamedCount;
        }
    }

    /// A finding of which a save does not keep what stands there.
    void Lost(const std::string& aText) {
        Found(aText);
        mCheck.mLostLineCount += mfLineLost ? 0 : 1;
        mfLineLost = true;
    }

    static std::string WhyBad(const ezCSVStringList& aFields) {
        constexpr std::size_t kRequiredCount = 3;
        if (aFields.GetCount() < kRequiredCount) {
            return "fewer than 3 fields";
        }
        for (std::size_t i = 0; i < kRequiredCount; ++i) {
            if (aFields.GetAt(i).TrimLeftRight().IsEmpty()) {
                return std::string("empty ") + kFieldNames[i];
            }
        }
        return "not a line";
    }

    void CheckFields(const ezCSVStringList& aFields) {
        for (std::size_t i = 0; i < std::min(aFields.GetCount(), kFieldNames.size()); ++i) {
            if (i != kPlaySpeedField && aFields.GetAt(i).Contains(",")) {
                Lost(std::string("comma in the ") + kFieldNames[i] +
                     ": a save writes it bare, and it then parts the field");
            }
        }
        // After another field it would have joined the two.
        const std::size_t last = std::min(aFields.GetCount(), kFieldNames.size()) - 1;
        const ezCString text = aFields.GetAt(last).TrimLeftRight();
        if (!text.IsEmpty() && text.View().back() == '\\') {
            Lost(std::string("backslash at the end of the ") + kFieldNames[last] +
                 ": a save joins it with the next field");
        }
        if (aFields.GetCount() > kFieldNames.size()) {
            Lost(std::to_string(aFields.GetCount()) + " fields: what stands after the 13th is not used");
        }
    }

    void CheckSpeeds(const ezCSVStringList& aFields, const DLNAMediaMapperEntry& anEntry) {
        const ezCSVStringList written =
            ezCSVStringList::FromText(aFields.GetAt(kPlaySpeedField).TrimLeftRight());
        std::size_t kept = 0; // those that are kept stay in their order
        std::size_t dropped = 0;
        for (std::size_t i = 0; i < written.GetCount(); ++i) {
            const ezCString speed = written.GetAt(i).TrimLeftRight();
            if (kept < anEntry.mSupportedPlaySpeeds.GetCount() &&
                anEntry.mSupportedPlaySpeeds.GetAt(kept) == speed) {
                ++kept;
            } else if (speed != "1" && ++dropped <= kMapperCheck_NamedSpeeds) { // which goes without saying
                const bool fTwice = !AcceptedSpeed(speed).IsEmpty();
                Lost("play speed " + Quoted(speed) + " is dropped: " +
                     (fTwice ? "listed before" : "not a non-zero integer or fraction other than 1"));
            }
        }
        if (dropped > kMapperCheck_NamedSpeeds) {
            Lost("play speeds that are dropped besides: " +
                 std::to_string(dropped - kMapperCheck_NamedSpeeds));
        }
    }

    void CheckNumbers(const ezCSVStringList& aFields, const DLNAMediaMapperEntry& anEntry) {
        if (!anEntry.mDuration.IsEmpty() && !SecondsOf(anEntry)) {
            Found("duration " + Quoted(anEntry.mDuration) + " does not convert: not used");
        }
        const ezCString bits = anEntry.mMandatoryBits;
        if (!bits.IsEmpty() &&
            (bits.GetLength() != 8 || bits.View().find_first_not_of("01") != std::string_view::npos)) {
            Found("mandatory bits " + Quoted(bits) + " are not eight of 0 and 1");
        }
        const ezCString rate = aFields.GetAt(kBitRateField);
        if (!rate.TrimLeftRight().IsEmpty()) {
            bool fReads = false;
            if (aFields.GetAtInt32(kBitRateField, 0, &fReads) < 0) {
                Lost("bit rate " + Quoted(rate) + " is negative");
            } else if (!fReads) {
                Lost("bit rate " + Quoted(rate) + " does not read: taken as not known");
            }
        }
        const ezCString word(ezDLNAField::ValueIn(anEntry.m4thFieldPart.View(), mFlagWordName.View())
                                 .value_or(std::string_view()));
        if (word.GetLength() > 8 ||
            word.View().find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
            Lost("flag word " + Quoted(word) + " does not read: taken as 00000000");
        }
    }

    void CheckSaved(DLNAMediaMapperEntry& anEntry) {
        const ezCString saved = anEntry.Get();
        if (saved.GetLength() > DLNAMediaMapperBadLines::kMaximumLineLength) {
            Lost("longer than " + std::to_string(DLNAMediaMapperBadLines::kMaximumLineLength) +
                 " bytes as a save writes it: skipped from then on");
        } else if (!mfLineLost && !ReadsAs(saved, anEntry)) {
            Lost("reads otherwise once a save has written it");
        }
    }

    static bool ReadsAs(const ezCString& aLine, const DLNAMediaMapperEntry& anEntry) {
        DLNAMediaMapperEntry again;
        return aLine.View().front() != '#' && again.Set(aLine) &&
               std::all_of(
                   kTexts.begin(), kTexts.end(),
                   [&](ezCString DLNAMediaMapperEntry::*aText) { return again.*aText == anEntry.*aText; }) &&
               again.mSupportedPlaySpeeds.Join() == anEntry.mSupportedPlaySpeeds.Join() &&
               again.mBitRate == anEntry.mBitRate;
    }

    void Remember(const ezCString& aText, const DLNAMediaMapperEntry& anEntry) {
        const auto [first, fNew] = mLines.emplace(aText.View(), mLine);
        if (!fNew) {
            Found("the same line as line " + std::to_string(first->second));
            return;
        }
        const bool fPcm = anEntry.mFileName.AfterLast('.').Lower() == "pcm";
        mByBaseName[std::string(anEntry.mFileName.BeforeLast('.').Lower().View())].push_back(
            {std::string(anEntry.mProfile.View()), mLine, fPcm});
    }

    /// Names the entries that never answer, since the search meets another of the base name first.
    void CheckCandidates(const std::string& aBaseName, std::vector<Candidate>& aCandidates) {
        std::sort(aCandidates.begin(), aCandidates.end());
        const Candidate& winner = aCandidates.front();
        bool fWavAnswered = !winner.mfPcm;
        for (std::size_t i = 1; i < aCandidates.size(); ++i) {
            const Candidate& candidate = aCandidates[i];
            const bool fForWav = !fWavAnswered && !candidate.mfPcm;
            fWavAnswered = fWavAnswered || fForWav;
            mLine = candidate.mLine;
            Found("'" + Shortened(aBaseName) + "' stands in line " + std::to_string(winner.mLine) +
                  " too, whose profile '" + Shortened(winner.mProfile) + "' comes first: this one " +
                  (fForWav ? "answers for .wav alone" : "never answers"));
        }
    }

    MapperCheck& mCheck;
    ezCString mFlagWordName;
    std::size_t mLine = 0;
    bool mfLineLost = false;                                ///< the line has such a finding already
    std::map<std::string, std::size_t, std::less<>> mLines; ///< a line to the first that it stands in
    std::map<std::string, std::vector<Candidate>> mByBaseName;
};

} // namespace

bool CheckMapperFile(const std::string& aPath, MapperCheck& aCheck) {
    ezTextFile file(ezCString(aPath), DLNAMediaMapperBadLines::kMaximumLineLength);
    struct stat status = {};
    if (!file.IsOpened() || stat(aPath.c_str(), &status) != 0 ||
        static_cast<std::uint64_t>(status.st_size) > kMapperCheck_MaxBytes) {
        return false;
    }
    Checker checker(aCheck);
    ezCString line;
    bool fCut = false;
    for (std::size_t number = 1; file.NextLine(&line, &fCut); ++number) {
        if (number > kMapperCheck_MaxLines) {
            checker.End(number);
            break;
        }
        checker.Line(number, line, fCut);
    }
    checker.Finish();
    return true;
}
