// The door: the name of a file, taken apart and read by the conformance test rules. The input is the name.

#include "fuzz/support/Check.h"

#include "ez/DLNAFileParser.h"
#include "ez/Environment.h"
#include "ez/FileMediaParserStream.h"
#include "ez/LPCMParser.h"
#include "ez/MediaParserStream.h"
#include "ezPlatform/base/System.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// A file of a name and a size, without content.
class NamedStream : public ezMediaParserStream {
public:
    NamedStream(const ezCString& aPath, const ezuint64& aSize) {
        SetFullPath(aPath);
        mMediaSize = aSize;
    }
};

/// Everything that a record holds, as one text.
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

std::string ParseByName(ezBaseParser& aParser, const ezCString& aPath, const ezuint64& aSize) {
    NamedStream stream(aPath, aSize);
    const std::unique_ptr<ezMediaInfo> info(aParser.Parse(stream));
    FuzzCheck(stream.Tell() == 0);
    return Dump(info.get());
}

bool HasSeparator(std::string_view aText) {
    return aText.find_first_of("/\\") != std::string_view::npos;
}

void CheckPathName(const ezCString& aText) {
    const ezPathName path = ezPathName::MakeFilePath(aText);
    const ezCString full = path.GetFullName();
    const ezCString name = path.GetFileName();
    const ezCString extension = path.GetExtension();

    FuzzCheck(path.GetFullPath() == aText);
    FuzzCheck(path.IsValid() == !aText.IsEmpty());
    FuzzCheck(!HasSeparator(full.View()));
    const std::size_t folder = aText.GetLength() - full.GetLength();
    FuzzCheck(aText.Mid(folder) == full);
    FuzzCheck(folder == 0 || HasSeparator(aText.Mid(folder - 1, 1).View()));
    FuzzCheck(extension.View().find('.') == std::string_view::npos);
    // A dot at the very start is part of the name; one at the end parts an empty extension.
    const std::size_t dot = full.View().rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        FuzzCheck(name == full && extension.IsEmpty());
    } else {
        FuzzCheck(name + "." + extension == full);
    }
    if (HasSeparator(aText.Left(1).View())) {
        FuzzCheck(path.IsAbsolute());
    }
}

void CheckConformanceRules(const ezCString& aPath, uint32 aContext) {
    ezEnvironment environment;
    environment.SetCTTContext(aContext);
    DLNAFileParser parser(environment.Get());
    LPCMParser samples(environment.Get());

    const ezPathName path = ezPathName::MakeFilePath(aPath);
    for (const ezuint64& size : {ezuint64(0), ezuint64(UINT64_MAX)}) {
        NamedStream stream(aPath, size);
        const std::unique_ptr<ezMediaInfo> info(parser.Parse(stream));
        if (aContext == 0) {
            FuzzCheck(info == nullptr && parser.GetDLNAInfo().IsEmpty());
        }
        if (info != nullptr) {
            FuzzCheck(info->IsValid());
            FuzzCheck(info->GetCString(kezInfo_DLNA, "").StartsWith("DLNA.ORG_PN="));
            FuzzCheck(info->GetCString(kezInfo_ClassName, "").StartsWith("item."));
            FuzzCheck(!path.GetExtension().IsEmpty());
        }
        const std::string record = Dump(info.get());
        FuzzCheck(ParseByName(parser, aPath, size) == record);
        // Neither the case nor the folder of a name counts.
        FuzzCheck(ParseByName(parser, aPath.Upper(), size) == record);
        FuzzCheck(ParseByName(parser, aPath.Lower(), size) == record);
        FuzzCheck(ParseByName(parser, "/media/" + path.GetFullName(), size) == record);

        const std::string sampled = ParseByName(samples, aPath, size);
        if (path.GetExtension().Lower() == "pcm") {
            FuzzCheck(sampled == record);
        } else {
            FuzzCheck(sampled == "none");
        }
    }
}

std::string gAskedPath;

/// A file stream on a name of any bytes. The system is asked nothing: a name could be that of a device.
void CheckFileStream(const ezCString& aPath) {
    ezSystemCalls calls = ezSystem_Real();
    calls.mStat = [](const char* aText, struct stat* /*aStatus*/) {
        gAskedPath = aText;
        errno = ENOENT;
        return -1;
    };
    calls.mOpen = [](const char* aText, int /*aFlags*/, mode_t /*aMode*/) {
        gAskedPath = aText;
        errno = ENOENT;
        return -1;
    };
    ezSystem_Replace(&calls);
    const bool fHasNUL = aPath.View().find('\0') != std::string_view::npos;

    gAskedPath = "not asked";
    ezFileMediaParserStream stream(ezPathName::MakeFilePath(aPath));
    FuzzCheck(!stream.Open());
    // Only the whole name may reach the system: a part of it is the name of another file.
    FuzzCheck(gAskedPath == (fHasNUL ? std::string_view("not asked") : aPath.View()));
    ezMediaInfo info;
    stream.CopyInfo(&info);
    FuzzCheck(info.mFullPath == stream.GetFullPath());
    FuzzCheck(!info.Has(kezInfo_FileSize) && !info.mLastModificationTime.IsSet());
    FuzzCheck(stream.GetExtension() == ezPathName::MakeFilePath(stream.GetFullPath()).GetExtension().Lower());
    std::array<char, 16> bytes = {};
    FuzzCheck(!stream.Read(bytes.size(), bytes.data()));
    ezSystem_Replace(nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    std::string bytes(aSize, '\0');
    std::copy_n(aData, aSize, bytes.begin());
    const ezCString path{std::string_view(bytes)};
    CheckPathName(path);
    for (const uint32 context : {0U, 1U, 2U}) {
        CheckConformanceRules(path, context);
    }
    CheckFileStream(path);
    return 0;
}
