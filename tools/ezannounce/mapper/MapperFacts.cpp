#include "mapper/MapperFacts.h"

#include "ezPlatform/text/Conversions.h"

#include <array>

namespace {

using Json = nlohmann::ordered_json;

struct NamedFlag {
    uint32 mFlag;
    const char* mWords;
    const char* mName; ///< for programs
};

constexpr std::array<NamedFlag, 5> kFlags = {{
    {kDLNAMediaMapperProfile_Disabled, "profile disabled", "profile_disabled"},
    {kDLNAMediaMapperPlaySpeed_ProfileEnabled, "speeds on for profile", "speeds_on_for_profile"},
    {kDLNAMediaMapperPlaySpeed_MediaEnabled, "speeds on for media", "speeds_on_for_media"},
    {kDLNAMediaMapperPlaySpeed_MediaNotSupported, "no speeds", "no_speeds"},
    {kDLNAMediaMapperByteSeek_MediaNotSupported, "no byte seek", "no_byte_seek"},
}};

std::string Hex(uint32 aWord) {
    return ezCString::Format("%08lX", static_cast<unsigned long>(aWord)).c_str();
}

Json TextOrNull(const ezCString& aText) {
    return aText.IsEmpty() ? Json(nullptr) : Json(std::string(aText.View()));
}

} // namespace

std::vector<std::string> FlagsInWords(uint32 aFlags) {
    std::vector<std::string> words;
    for (const NamedFlag& flag : kFlags) {
        if ((aFlags & flag.mFlag) != 0) {
            words.emplace_back(flag.mWords);
            aFlags &= ~flag.mFlag;
        }
    }
    if (aFlags != 0) {
        words.push_back("others " + Hex(aFlags));
    }
    return words;
}

std::optional<uint32> SecondsOf(const DLNAMediaMapperEntry& anEntry) {
    uint32 seconds = 0;
    if (ezConvert_dlnadurationstrtouint32(anEntry.mDuration.c_str(), &seconds, 0) != 0) {
        return std::nullopt;
    }
    return seconds;
}

std::vector<std::string> SpeedsOf(const DLNAMediaMapperEntry& anEntry) {
    std::vector<std::string> speeds;
    for (std::size_t i = 0; i < anEntry.mSupportedPlaySpeeds.GetCount(); ++i) {
        speeds.emplace_back(anEntry.mSupportedPlaySpeeds.GetAt(i).c_str());
    }
    return speeds;
}

std::string LineOf(DLNAMediaMapperEntry& anEntry) {
    std::string line(anEntry.Get().View());
    anEntry.ComputeDLNAProtocolInfo(); // gives back what writing the line takes away
    return line;
}

nlohmann::ordered_json JsonOf(const DLNAMediaMapperEntry& anEntry) {
    const std::optional<uint32> seconds = SecondsOf(anEntry);
    Json flags = {{"word", Hex(anEntry.mGoldenDMSFlags)}};
    for (const NamedFlag& flag : kFlags) {
        flags[flag.mName] = (anEntry.mGoldenDMSFlags & flag.mFlag) != 0;
    }
    return {{"file_name", std::string(anEntry.mFileName.View())},
            {"mime_type", std::string(anEntry.mMimeType.View())},
            {"profile", std::string(anEntry.mProfile.View())},
            {"duration", TextOrNull(anEntry.mDuration)},
            {"seconds", seconds ? Json(*seconds) : Json(nullptr)},
            {"play_speeds", SpeedsOf(anEntry)},
            {"mandatory_bits", TextOrNull(anEntry.mMandatoryBits)},
            {"bit_rate", anEntry.mBitRate != 0 ? Json(anEntry.mBitRate) : Json(nullptr)},
            {"ifo_file", TextOrNull(anEntry.mIFOFileName)},
            {"largest", TextOrNull(anEntry.mLargest)},
            {"width", TextOrNull(anEntry.mWidth)},
            {"height", TextOrNull(anEntry.mHeight)},
            {"lp_options", TextOrNull(anEntry.mLPOptions)},
            {"parameters", TextOrNull(anEntry.m4thFieldPart)},
            {"flags", std::move(flags)},
            {"protocol_info", std::string(anEntry.mFullProfile.View())}};
}

std::string Joined(const std::vector<std::string>& aTexts) {
    std::string joined;
    for (const std::string& text : aTexts) {
        joined += joined.empty() ? "" : ", ";
        joined += text;
    }
    return joined;
}
