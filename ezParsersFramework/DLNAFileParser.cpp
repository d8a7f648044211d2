#include "ez/DLNAFileParser.h"

#include "ez/LPCMParser.h"
#include "ez/MediaParserStream.h"
#include "ez/UPnPClasses.h"

#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <array>
#include <string_view>

namespace {

constexpr const char* kMPEG = "video/mpeg";
constexpr const char* kTTS = "video/vnd.dlna.mpeg-tts";
constexpr const char* kMP4 = "video/mp4";
constexpr const char* kMP4Audio = "audio/mp4";
constexpr const char* kADTS = "audio/vnd.dlna.adts";
constexpr const char* kJPEG = "image/jpeg";
constexpr const char* kPNG = "image/png";
constexpr const char* kWMV = "video/x-ms-wmv";
constexpr const char* kWMA = "audio/x-ms-wma";

constexpr const char* kVideo = kezUPnPClass_VideoItem;
constexpr const char* kAudio = kezUPnPClass_AudioItem;
constexpr const char* kImage = kezUPnPClass_ImageItem;

struct Advertised {
    const char* mMimeType;
    const char* mProfile;
};

// No JPEG, PNG, WMV or WMA, although files of these are recognised below.
constexpr std::array<Advertised, 22> kAdvertised = {{
    {kMP4, "AVC_MP4_BL_CIF15_AAC_520"},
    {kMP4Audio, "AAC_ISO_320"},
    {"audio/3gpp", "AAC_ISO_320"},
    {kADTS, "AAC_ADTS_320"},
    {kMPEG, "MPEG_PS_PAL"},
    {kMPEG, "MPEG_PS_NTSC"},
    {kTTS, "MPEG_TS_JP_T"},
    {kMPEG, "MPEG_TS_SD_EU_ISO"},
    {kMPEG, "MPEG_TS_SD_NA_ISO"},
    {kMPEG, "MPEG_TS_HD_NA_ISO"},
    {kTTS, "MPEG_TS_HD_NA"},
    {kTTS, "MPEG_TS_HD_NA_T"},
    {kTTS, "MPEG_TS_SD_NA_T"},
    {kTTS, "MPEG_TS_SD_KO_T"},
    {kTTS, "MPEG_TS_SD_EU"},
    {kTTS, "MPEG_TS_SD_EU_T"},
    {kTTS, "MPEG_TS_HD_KO_T"},
    {kTTS, "MPEG_TS_SD_NA"},
    {kTTS, "MPEG_TS_SD_KO"},
    {kTTS, "MPEG_TS_HD_KO"},
    {kMPEG, "MPEG_TS_HD_KO_ISO"},
    {kMPEG, "MPEG_TS_SD_KO_ISO"},
}};

/// One outcome of a rule: holds when the text at the rule's case position begins with mText; an empty text
/// always.
struct Case {
    std::string_view mText;
    const char* mProfile;
    const char* mMimeType;
};

enum class Subject {
    Name, ///< the whole file name
    Code  ///< the file name after its first two characters
};

constexpr std::size_t kMaximumAlternatives = 2;
constexpr std::size_t kMaximumCases = 20;

/// A rule holds when the extension and the beginning of its subject are among its alternatives (an empty
/// alternative in a later place does not count). The first of its cases that fits is then the answer, and no
/// fitting case ends the search.
struct Rule {
    std::array<std::string_view, kMaximumAlternatives> mExtensions;
    Subject mSubject;
    std::array<std::string_view, kMaximumAlternatives> mBeginnings;
    const char* mClassName;
    std::size_t mCasePosition; ///< in the subject
    std::array<Case, kMaximumCases> mCases;
};

constexpr std::array<Rule, 12> kRules = {{
    {{"mp4"},
     Subject::Code,
     {"AVCMP4_BC15A", "AVC_MP4_BL_CIF15_AAC_520"},
     kVideo,
     0,
     {{{"", "AVC_MP4_BL_CIF15_AAC_520", kMP4}}}},
    {{"mp4", "3gp"}, // "3gp" has become "mp4" before and never comes here
     Subject::Code,
     {"AAC_I"},
     kAudio,
     0,
     {{{"", "AAC_ISO_320", kMP4Audio}}}},
    {{"adts"}, Subject::Code, {"AAC_A"}, kAudio, 0, {{{"", "AAC_ADTS_320", kADTS}}}},
    {{"mpg"},
     Subject::Code,
     {"MP2PS_N", "MP2PS_P"},
     kVideo,
     6,
     {{{"P", "MPEG_PS_PAL", kMPEG}, {"", "MPEG_PS_NTSC", kMPEG}}}},
    {{"mpg"},
     Subject::Name, // the one rule about the name with its first two characters
     {"MPEG_PS_"},
     kVideo,
     8,
     {{{"P", "MPEG_PS_PAL", kMPEG}, {"", "MPEG_PS_NTSC", kMPEG}}}},
    {{"tts", "mpg"}, Subject::Code, {"MP2TS_JP-"}, kVideo, 0, {{{"", "MPEG_TS_JP_T", kTTS}}}},
    {{"mpg"},
     Subject::Code,
     {"MP2TS_"},
     kVideo,
     6,
     // Longer texts stand before the shorter ones that they begin with.
     {{{"SNT_I", "MPEG_TS_SD_NA_ISO", kMPEG},
       {"SNE_I", "MPEG_TS_SD_EU_ISO", kMPEG},
       {"SN_I", "MPEG_TS_SD_NA_ISO", kMPEG},
       {"SE_I", "MPEG_TS_SD_EU_ISO", kMPEG},
       {"HN_I", "MPEG_TS_HD_NA_ISO", kMPEG},
       {"HNT", "MPEG_TS_HD_NA_T", kTTS},
       {"HN_T", "MPEG_TS_HD_NA_T", kTTS},
       {"SNT", "MPEG_TS_SD_NA_T", kTTS},
       {"SKT", "MPEG_TS_SD_KO_T", kTTS},
       {"SK_I", "MPEG_TS_SD_KO_ISO", kMPEG},
       {"SET_I", "MPEG_TS_SD_EU_ISO", kMPEG},
       {"SE_I", "MPEG_TS_SD_EU_ISO", kMPEG}, // shadowed by the same text above
       {"SET-", "MPEG_TS_SD_EU_T", kTTS},
       {"HK_I", "MPEG_TS_HD_KO_ISO", kMPEG},
       {"HKT", "MPEG_TS_HD_KO_T", kTTS},
       {"HN", "MPEG_TS_HD_NA", kTTS},
       {"SN", "MPEG_TS_SD_NA", kTTS},
       {"SK", "MPEG_TS_SD_KO", kTTS},
       {"SE", "MPEG_TS_SD_EU", kTTS},
       {"HK", "MPEG_TS_HD_KO", kTTS}}}},
    {{"jpg"},
     Subject::Code,
     {"JPEG"},
     kImage,
     5,
     {{{"L-", "JPEG_LRG", kJPEG}, {"M-", "JPEG_MED", kJPEG}, {"S-", "JPEG_SM", kJPEG}}}},
    {{"png"},
     Subject::Code,
     {"PNG"},
     kImage,
     4,
     {{{"L-", "PNG_LRG", kPNG},
       {"T-", "PNG_LRG", kPNG},
       {"LI-", "PNG_LRG", kPNG},
       {"SI-", "PNG_LRG", kPNG}}}},
    {{"wmv"},
     Subject::Code,
     {"WVM"},
     kVideo,
     4,
     {{{"B-", "WMVMED_BASE", kWMV}, {"F-", "WMVMED_FULL", kWMV}, {"P-", "WMVMED_PRO", kWMV}}}},
    {{"wmv"},
     Subject::Code,
     {"WVH"},
     kVideo,
     4,
     {{{"B-", "WMVHM_BASE", kWMV}, {"F-", "WMVHIGH_FULL", kWMV}, {"P-", "WMVHIGH_PRO", kWMV}}}},
    {{"wma"},
     Subject::Code,
     {""},
     kAudio,
     0,
     {{{"WAB", "WMABASE", kWMA}, {"WAF", "WMAFULL", kWMA}, {"WAP", "WMAPRO", kWMA}}}},
}};

constexpr std::array<std::string_view, 4> kBeginnings = {"B-", "O-", "MP2TS_", "MPEG_PS_"};

struct ExtensionAlias {
    const char* mWritten;
    const char* mMeant;
};

constexpr std::array<ExtensionAlias, 4> kExtensionAliases = {
    {{"mpeg", "mpg"}, {"3gpp", "mp4"}, {"3gp", "mp4"}, {"m4a", "mp4"}}};

/// Whether a text has another at a position. Where it is too short it does not.
bool HasAt(std::string_view aText, std::size_t aPosition, std::string_view aWanted) {
    return aPosition <= aText.size() && aText.substr(aPosition, aWanted.size()) == aWanted;
}

bool Holds(const Rule& aRule, std::string_view anExtension, std::string_view aSubject) {
    const auto isAmong = [](const std::array<std::string_view, kMaximumAlternatives>& anAlternatives,
                            const auto& aTest) {
        return aTest(anAlternatives[0]) || (!anAlternatives[1].empty() && aTest(anAlternatives[1]));
    };
    return isAmong(aRule.mExtensions, [&](std::string_view aText) { return aText == anExtension; }) &&
           isAmong(aRule.mBeginnings, [&](std::string_view aText) { return HasAt(aSubject, 0, aText); });
}

ezMediaInfo* Answer(const Rule& aRule, std::string_view aSubject) {
    for (const Case& outcome : aRule.mCases) {
        if (outcome.mProfile == nullptr) {
            break; // the rest of the array is not used
        }
        if (HasAt(aSubject, aRule.mCasePosition, outcome.mText)) {
            ezMediaInfo* info = new ezMediaInfo;
            info->Set(kezInfo_ClassName, aRule.mClassName, true);
            info->Set(kezInfo_DLNA, ezDLNAField::TextOfProfile(outcome.mProfile), true);
            info->Set(kezInfo_MimeType, outcome.mMimeType, true);
            return info;
        }
    }
    return nullptr;
}

ezCString NormalisedExtension(const ezCString& anExtension) {
    for (const ExtensionAlias& alias : kExtensionAliases) {
        if (anExtension == alias.mWritten) {
            return alias.mMeant;
        }
    }
    return anExtension;
}

} // namespace

DLNAFileParser::DLNAFileParser(ezPropertyList* anEnvironmentInfo)
    : ezMediaParser("*", anEnvironmentInfo, false) {}

DLNAFileParser::~DLNAFileParser() = default;

ezMediaInfo* DLNAFileParser::Parse(ezMediaParserStream& aMediaStream) {
    if (GetCTTContext() == 0) {
        return nullptr;
    }
    const ezPathName path = ezPathName::MakeFilePath(aMediaStream.GetFullPath());
    const ezCString name = path.GetFileName().Upper();
    bool fKnownBeginning = false;
    for (const std::string_view beginning : kBeginnings) {
        fKnownBeginning = fKnownBeginning || name.StartsWith(beginning);
    }
    if (!fKnownBeginning) {
        return nullptr;
    }
    const ezCString extension = NormalisedExtension(path.GetExtension().Lower());
    if (extension == "pcm") {
        return LPCMParser(mEnvironmentInfo).Parse(aMediaStream);
    }
    // Two characters off whatever the beginning was: "MP2TS_..." leaves "2TS_...", which no rule knows.
    const ezCString code = name.Mid(2);
    for (const Rule& rule : kRules) {
        const std::string_view subject = rule.mSubject == Subject::Name ? name.View() : code.View();
        if (Holds(rule, extension.View(), subject)) {
            return Answer(rule, subject);
        }
    }
    return nullptr;
}

bool DLNAFileParser::AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) {
    return false;
}

ezCString DLNAFileParser::GetDLNAInfo() {
    if (GetCTTContext() == 0) {
        return ezCString();
    }
    ezCString text;
    for (const Advertised& item : kAdvertised) {
        text += item.mMimeType;
        text += ":" + ezDLNAField::TextOfProfile(item.mProfile) + ",";
    }
    return text + LPCMParser(mEnvironmentInfo).GetDLNAInfo();
}
