// Step 8: what the server tells its clients: what it may serve, and each media:
// step-8-announcing CONFIG_FOLDER BASE_URL FILE...
#include "OwnHost.h"

#include "ezPlatform/dlna/DLNAField.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

namespace {

ezCString ProtocolInfoOf(const ezMediaInfo& anInfo) {
    const ezDLNAField field(anInfo.GetCString(kezInfo_DLNA, "*").View()); // written in the mandatory order
    return "http-get:*:" + anInfo.GetCString(kezInfo_MimeType, "*") + ":" + field.GetText();
}

std::string Escaped(std::string_view aText) {
    std::string escaped;
    for (const char character : aText) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

/// A number of the record; "" when it is not known.
std::string Number(const ezMediaInfo& anInfo, const char* aKey) {
    const std::uint64_t number = anInfo.GetUInt64(aKey, 0).ToUInt64();
    return number != 0 ? std::to_string(number) : "";
}

std::string DurationOf(const ezMediaInfo& anInfo) {
    const uint32 fine = anInfo.GetUInt32(kezInfo_DurationMilliseconds, 0);
    const uint32 seconds = fine != 0 ? fine / 1000 : anInfo.GetUInt32(kezInfo_Duration, 0);
    char text[32];
    std::snprintf(text, sizeof text, "%u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60);
    const std::string whole = fine != 0 || seconds != 0 ? text : "";
    return fine != 0 ? whole + "." + std::to_string(1000 + fine % 1000).substr(1) : whole;
}

/// The attribute is called bitrate, and counts bytes a second.
std::string ByteRateOf(const ezMediaInfo& anInfo) {
    const uint32 bits = anInfo.GetUInt32(kezInfo_BitRate, 0);
    return bits != 0 && bits != kezMediaInfo_VariableRate ? std::to_string(bits / 8) : "";
}

std::string ResolutionOf(const ezMediaInfo& anInfo) {
    const std::string width = Number(anInfo, kezInfo_PictureWidth);
    const std::string height = Number(anInfo, kezInfo_PictureHeight);
    return !width.empty() && !height.empty() ? width + "x" + height : "";
}

/// The line that stands for a media item in what a client gets when it browses.
std::string ResOf(const ezMediaInfo& anInfo, const std::string& aURL) {
    const std::pair<const char*, std::string> attributes[] = {
        {"protocolInfo", std::string(ProtocolInfoOf(anInfo).View())},
        {"size", Number(anInfo, kezInfo_FileSize)},
        {"duration", DurationOf(anInfo)},
        {"bitrate", ByteRateOf(anInfo)},
        {"sampleFrequency", Number(anInfo, kezInfo_AudioSamplingRate)},
        {"nrAudioChannels", Number(anInfo, kezInfo_AudioChannelCount)},
        {"resolution", ResolutionOf(anInfo)}};
    std::string res = "<res";
    for (const auto& [name, text] : attributes) {
        if (!text.empty()) {
            res.append(" ").append(name).append("=\"").append(Escaped(text)).append("\"");
        }
    }
    return res + ">" + Escaped(aURL) + "</res>";
}

} // namespace

int main(int anArgCount, char** anArgs) {
    if (anArgCount < 3) {
        std::fprintf(stderr, "usage: step-8-announcing CONFIG_FOLDER BASE_URL FILE...\n");
        return 2;
    }
    ezHost host(anArgs[1], OwnOptions());
    for (const std::string& capability : host.GetCapabilities()) {
        std::printf("%s\n", capability.c_str());
    }
    for (int i = 3; i < anArgCount; ++i) {
        if (const std::unique_ptr<ezMediaInfo> info = host.Identify(anArgs[i])) {
            const std::string extension(info->GetCString(kezInfo_FileExtension, "").View());
            const std::string url = std::string(anArgs[2]) + "/" + std::to_string(i - 2) + "." + extension;
            std::printf("%s\n", ResOf(*info, url).c_str());
        }
    }
    return 0;
}
