// The door: one line of the media mapper file. The input is the line; what follows a line end in it is a
// further line, set on the same entry.

#include "fuzz/support/Check.h"
#include "fuzz/support/MapperEntry.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using Entry = DLNAMediaMapperEntry;

/// The name of the parameter that carries the flag word, as an entry writes it.
std::string FlagWordName() {
    Entry entry;
    FuzzCheck(entry.Set("a,b/c,P"));
    const std::string line = MapperEntry_Text(entry.Get());
    const std::size_t start = line.rfind(';') + 1;
    const std::string name = line.substr(start, line.rfind('=') - start);
    FuzzCheck(line ==
              "a,b/c,P,,,,,,,,,,DLNA.ORG_FLAGS=00100000000000000000000000000000;" + name + "=00000000");
    return name;
}

std::string DumpAll(const Entry& anEntry) {
    return MapperEntry_Dump(anEntry) + "|" + MapperEntry_Text(anEntry.m4thFieldPart);
}

std::string ObjectText(const Entry& anEntry) {
    return MapperEntry_Taken(ezDLNAProtocolInfo_GetStr(anEntry.mDLNAProtocolInfo));
}

void CheckPredicates(Entry& anEntry) {
    const auto implies = [](bool afIf, bool afThen) { return !afIf || afThen; };
    const auto has = [&](uint32 aFlag) { return (anEntry.mGoldenDMSFlags & aFlag) != 0; };
    FuzzCheck(anEntry.ProfileEnabled() == !has(kDLNAMediaMapperProfile_Disabled));
    FuzzCheck(anEntry.CanSupportByteSeek() == !has(kDLNAMediaMapperByteSeek_MediaNotSupported));
    FuzzCheck(anEntry.GetPlaySpeedMediaSupported() == !has(kDLNAMediaMapperPlaySpeed_MediaNotSupported));
    FuzzCheck(anEntry.CanSupportPlaySpeed() ==
              (anEntry.CanSupportTimeSeek() && anEntry.GetPlaySpeedMediaSupported()));
    FuzzCheck(implies(anEntry.HasPlaySpeedDefined(), anEntry.CanSupportPlaySpeed()));
    FuzzCheck(implies(anEntry.GetPlaySpeedMediaEnabled(),
                      anEntry.HasPlaySpeedDefined() && has(kDLNAMediaMapperPlaySpeed_MediaEnabled)));
    FuzzCheck(implies(anEntry.GetPlaySpeedProfileEnabled(),
                      anEntry.CanSupportPlaySpeed() && has(kDLNAMediaMapperPlaySpeed_ProfileEnabled)));

    const uint32 flags = anEntry.mGoldenDMSFlags;
    for (const bool fEnable : {true, false}) {
        anEntry.SetPlaySpeedMediaEnabled(fEnable);
        anEntry.SetPlaySpeedProfileEnabled(fEnable);
        FuzzCheck(anEntry.GetPlaySpeedMediaEnabled() == (fEnable && anEntry.HasPlaySpeedDefined()));
        FuzzCheck(anEntry.GetPlaySpeedProfileEnabled() == (fEnable && anEntry.CanSupportPlaySpeed()));
        const uint32 own = kDLNAMediaMapperPlaySpeed_MediaEnabled | kDLNAMediaMapperPlaySpeed_ProfileEnabled;
        FuzzCheck((anEntry.mGoldenDMSFlags & ~own) == (flags & ~own));
    }
    anEntry.mGoldenDMSFlags = flags;
}

void CheckSpeeds(const Entry& anEntry) {
    ezCSVStringList speeds = anEntry.mSupportedPlaySpeeds;
    FuzzCheck(!speeds.Has("1", true));
    Entry::ValidatePlaySpeedList(speeds, false);
    FuzzCheck(speeds.Join() == anEntry.mSupportedPlaySpeeds.Join());
}

/// Sets a line, and states what of the entry may change. False when the line is refused.
bool CheckSet(Entry& anEntry, const ezCString& aLine) {
    const std::string before = DumpAll(anEntry);
    const Entry fresh;
    const ezCSVStringList fields = ezCSVStringList::FromText(aLine);
    const ezCString names[] = {Entry::GetTrimmed(fields, 0), Entry::GetTrimmed(fields, 1),
                               Entry::GetTrimmed(fields, 2)};
    const bool fComplete = std::none_of(std::begin(names), std::end(names),
                                        [](const ezCString& aName) { return aName.IsEmpty(); });
    const bool fSet = anEntry.Set(aLine);
    if (MapperEntry_HasAny(aLine, std::string_view("\0", 1))) {
        return fSet; // how much of such a line counts is the entry's to say
    }
    FuzzCheck(fSet == fComplete);
    if (fields.GetCount() < 3) {
        FuzzCheck(DumpAll(anEntry) == before);
        return false;
    }
    FuzzCheck(anEntry.mFileName == names[0] && anEntry.mMimeType == names[1] && anEntry.mProfile == names[2]);
    if (fSet && fields.GetCount() > 12) {
        FuzzCheck(anEntry.mDuration == Entry::GetTrimmed(fields, 3));
        FuzzCheck(anEntry.m4thFieldPart == Entry::GetTrimmed(fields, 12));
    }
    return fSet;
}

void CheckLine(Entry& anEntry, const std::string& aFlagWordName) {
    FuzzCheck(anEntry.IsValid() && anEntry.mDLNAProtocolInfo != nullptr);
    FuzzCheck(ObjectText(anEntry) == MapperEntry_Text(anEntry.mFullProfile));
    if (MapperEntry_IsPlain(anEntry)) {
        FuzzCheck(anEntry.mProfile == ezDLNAProtocolInfo_GetProfile(anEntry.mDLNAProtocolInfo));
        FuzzCheck(anEntry.mMimeType == ezDLNAProtocolInfo_GetMimeType(anEntry.mDLNAProtocolInfo));
    }
    const ezCString field =
        ezCString::FromAllocatedString(ezDLNAProtocolInfo_Get4thFieldStr(anEntry.mDLNAProtocolInfo));
    FuzzCheck(ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(field.c_str(), aFlagWordName.c_str()) == nullptr);
    CheckSpeeds(anEntry);
    CheckPredicates(anEntry);

    const bool fSurvives = MapperEntry_SurvivesItsLine(anEntry);
    const std::string before = MapperEntry_Dump(anEntry);
    const ezCString line = anEntry.Get();
    FuzzCheck(anEntry.Get() == line);
    FuzzCheck(MapperEntry_Dump(anEntry) == before);
    FuzzCheck(*ezDLNAProtocolInfo_GetProfile(anEntry.mDLNAProtocolInfo) == '\0');

    Entry again;
    const bool fRead = again.Set(line);
    if (fSurvives) {
        FuzzCheck(fRead);
        FuzzCheck(MapperEntry_Dump(again) == before);
        FuzzCheck(again.Get() == line);
    }

    // The object itself is changed by Get, and restored by this.
    anEntry.ComputeDLNAProtocolInfo();
    FuzzCheck(MapperEntry_Dump(anEntry) == before);
    FuzzCheck(ObjectText(anEntry) == MapperEntry_Text(anEntry.mFullProfile));
    FuzzCheck(anEntry.Get() == line);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    static const std::string flagWordName = FlagWordName();
    std::string input(aSize, '\0');
    std::copy_n(aData, aSize, input.begin());

    Entry entry;
    std::string_view rest = input;
    for (int i = 0; i < 4; ++i) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        if (CheckSet(entry, ezCString(rest.substr(0, end)))) {
            CheckLine(entry, flagWordName);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    entry.Reset();
    FuzzCheck(DumpAll(entry) == DumpAll(Entry()) && entry.mDLNAProtocolInfo == nullptr);
    CheckPredicates(entry);
    // An entry that was never computed writes itself as one that was.
    Entry computed;
    computed.ComputeDLNAProtocolInfo();
    FuzzCheck(entry.Get() == computed.Get());
    return 0;
}
