// What a host compiles in: whoever allocates an exported class, derives from it or holds it as a member was
// compiled against its size. A size that changes on purpose is a change of the ABI, for which the SOVERSION
// stands; change its row with it, for both widths (the test fails with the figure of the width that it runs
// on).
//
// The sizes are those of libstdc++ and glibc, of which std::string, std::mutex and others are members. They
// do not depend on the optimisation, on assertions or on sanitizers. Left out are templates, whose sizes are
// those of what a host makes of them, nested classes, which count as members, and structs that headers only
// declare.

#include "ez/BaseParser.h"
#include "ez/DLNAFileParser.h"
#include "ez/DLNAMediaMapper.h"
#include "ez/DLNAMediaMapperBadLines.h"
#include "ez/DLNAMediaMapperEntry.h"
#include "ez/DLNAMediaMapperParser.h"
#include "ez/DLNAMediaMapperSearchInfo.h"
#include "ez/DLNAProfileEntry.h"
#include "ez/ElementaryStreamInfo.h"
#include "ez/ElementaryStreamParserBase.h"
#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/ExtensionMimeTypeMatcherEntry.h"
#include "ez/FileMediaParserStream.h"
#include "ez/FilePartThumbnailSource.h"
#include "ez/FileThumbnailSource.h"
#include "ez/GenericFileParser.h"
#include "ez/IndirectThumbnailProvider.h"
#include "ez/LPCMParser.h"
#include "ez/MediaParser.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ez/ParseObserver.h"
#include "ez/PictureThumbnailProvider.h"
#include "ez/PlaylistParser.h"
#include "ez/PlaylistParserEntry.h"
#include "ez/PlaylistParserFactory.h"
#include "ez/StreamMediaParserStream.h"
#include "ez/SubtitleParser.h"
#include "ez/ThumbnailGenerator.h"
#include "ez/ThumbnailInfo.h"
#include "ez/ThumbnailProviderBase.h"
#include "ez/ThumbnailProviderManager.h"
#include "ez/ThumbnailSource.h"
#include "ez/UndeterminedEltStreamParser.h"

#include "ezFormats/FormatParser.h"
#include "ezFormats/ProfileRules.h"
#include "ezHosting/CancellableStream.h"
#include "ezHosting/Host.h"
#include "ezHosting/HostPool.h"
#include "ezHosting/Subtitles.h"
#include "ezHosting/TypesTableParser.h"
#include "ezLiveStreams/DescriptorStream.h"
#include "ezLiveStreams/FeedBuffer.h"
#include "ezLiveStreams/FeedStream.h"
#include "ezLiveStreams/HttpStream.h"
#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezThumbnails/CostlyThumbnailProvider.h"
#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/JpegPicture.h"
#include "ezThumbnails/PictureFacts.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarListing.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"
#include "ezThumbnails/ThumbnailProviders.h"

#include "ezPlatform/base/Condition.h"
#include "ezPlatform/base/DateTime.h"
#include "ezPlatform/base/Error.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/LogDuration.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/config/Config.h"
#include "ezPlatform/containers/CustomHashTable.h"
#include "ezPlatform/containers/DataBuffer.h"
#include "ezPlatform/containers/VoidPtrList.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezPlatform/files/FileState.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/files/TextFile.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlatform/streams/Stream.h"
#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/StringList.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// Size and alignment in bytes.
struct Layout {
    std::size_t mSize;
    std::size_t mAlignment;
};

struct Row {
    const char* mName;
    Layout mHere; ///< as this build has it
    Layout m64;   ///< where pointers have 64 bits (LP64)
    Layout m32;   ///< where they have 32 bits (armhf)
};

template <typename Class>
Row RowOf(const char* aName, const Layout& a64, const Layout& a32) {
    return {aName, {sizeof(Class), alignof(Class)}, a64, a32};
}

#define EZ_CLASS(Name, Size64, Alignment64, Size32, Alignment32)                                             \
    RowOf<Name>(#Name, {Size64, Alignment64}, {Size32, Alignment32})

// clang-format off
const std::vector<Row> kRows = {
    EZ_CLASS(ezCondition,                     96, 8,   80, 8),
    EZ_CLASS(ezDateTime,                      16, 8,   16, 8),
    EZ_CLASS(ezError,                         40, 8,   28, 4),
    EZ_CLASS(ezLogLine,                       32, 8,   20, 4),
    EZ_CLASS(ezLogDuration,                   56, 8,   48, 8),
    EZ_CLASS(ezuint64,                         8, 8,    8, 8),
    EZ_CLASS(ezConfig,                         8, 8,    4, 4),
    EZ_CLASS(ezConfigConfig,                   1, 1,    1, 1),
    EZ_CLASS(ezCustomHashTableValueFuncs,     16, 8,    8, 4),
    EZ_CLASS(ezDataBuffer,                    16, 8,    8, 4),
    EZ_CLASS(ezVoidPtrList,                   32, 8,   16, 4),
    EZ_CLASS(ezDLNAField,                    104, 8,   64, 4),
    EZ_CLASS(ezFile,                          80, 8,   72, 8),
    EZ_CLASS(ezFileCacheManager,             176, 8,  136, 8),
    EZ_CLASS(ezFileState,                     64, 8,   64, 8),
    EZ_CLASS(ezPathName,                      48, 8,   32, 4),
    EZ_CLASS(ezTextFile,                    4208, 8, 4184, 8),
    EZ_CLASS(ezMediaInfo,                    272, 8,  224, 8),
    EZ_CLASS(ezFilePartStream,               160, 8,  112, 8),
    EZ_CLASS(ezFileStream,                   160, 8,  112, 8),
    EZ_CLASS(ezMemoryStream,                 152, 8,   96, 4),
    EZ_CLASS(ezStream,                        64, 8,   36, 4),
    EZ_CLASS(ezStreamReleaser,                 1, 1,    1, 1),
    EZ_CLASS(ezCString,                       32, 8,   24, 4),
    EZ_CLASS(ezStringList,                    24, 8,   12, 4),
    EZ_CLASS(ezCSVStringList,                 32, 8,   16, 4),
    EZ_CLASS(ezBaseParser,                    56, 8,   36, 4),
    EZ_CLASS(DLNAFileParser,                  64, 8,   40, 4),
    EZ_CLASS(DLNAMediaMapper,                336, 8,  216, 8),
    EZ_CLASS(DLNAMediaMapperBadLine,          24, 8,   12, 4),
    EZ_CLASS(DLNAMediaMapperBadLines,         32, 8,   16, 4),
    EZ_CLASS(DLNAMediaMapperEntry,           448, 8,  320, 4),
    EZ_CLASS(DLNAMediaMapperParser,          104, 8,   68, 4),
    EZ_CLASS(DLNAMediaMapperSearchInfo,       40, 8,   28, 4),
    EZ_CLASS(DLNAProfileEntry,                24, 8,   16, 4),
    EZ_CLASS(ezElementaryStreamInfo,          24, 8,   12, 4),
    EZ_CLASS(ezElementaryStreamParser,        80, 8,   52, 4),
    EZ_CLASS(ezEnvironment,                    8, 8,    4, 4),
    EZ_CLASS(ExtensionMimeTypeMatcher,        48, 8,   24, 4),
    EZ_CLASS(ExtensionMimeTypeMatcherEntry,   32, 8,   16, 4),
    EZ_CLASS(ezFileMediaParserStream,       8456, 8, 8416, 8),
    EZ_CLASS(ezFilePartThumbnailSource,      112, 8,   88, 8),
    EZ_CLASS(ezFileThumbnailSource,           88, 8,   60, 4),
    EZ_CLASS(ezGenericFileParser,            192, 8,  136, 4),
    EZ_CLASS(ezIndirectThumbnailProvider,     32, 8,   16, 4),
    EZ_CLASS(LPCMParser,                      64, 8,   40, 4),
    EZ_CLASS(ezMediaParser,                   64, 8,   40, 4),
    EZ_CLASS(ezMediaParserManager,            88, 8,   44, 4),
    EZ_CLASS(ezMediaParserStream,           8312, 8, 8296, 8),
    EZ_CLASS(ezMimeTypesDotIniParser,         96, 8,   56, 4),
    EZ_CLASS(ezFactSource,                    24, 8,   12, 4),
    EZ_CLASS(ezParseObserver,                  8, 8,    4, 4),
    EZ_CLASS(ezPictureThumbnailProvider,      24, 8,   12, 4),
    EZ_CLASS(PlaylistParser,                 104, 8,   68, 4),
    EZ_CLASS(PlaylistParserEntry,            128, 8,  104, 8),
    EZ_CLASS(PlaylistParserAtEntry,           16, 8,   16, 8),
    EZ_CLASS(PlaylistParserFactoryInfo,       72, 8,   52, 4),
    EZ_CLASS(PlaylistParserFactory,            8, 8,    4, 4),
    EZ_CLASS(ezStreamMediaParserStream,     8440, 8, 8408, 8),
    EZ_CLASS(ezBaseSubtitleParser,            48, 8,   32, 4),
    EZ_CLASS(ezThumbnailGenerator,            16, 8,    8, 4),
    EZ_CLASS(ThumbnailInfo,                  192, 8,  140, 4),
    EZ_CLASS(ezThumbnailProvider,             16, 8,    8, 4),
    EZ_CLASS(ezThumbnailProviderManager,      40, 8,   20, 4),
    EZ_CLASS(ezThumbnailSource,               40, 8,   28, 4),
    EZ_CLASS(ezUndeterminedEltStreamParser,  120, 8,   72, 4),
    EZ_CLASS(FormatParser,                    88, 8,   52, 4),
    EZ_CLASS(ProfileMatch,                    64, 8,   48, 4),
    EZ_CLASS(ProfileRules,                    16, 8,    8, 4),
    EZ_CLASS(ProfileRulesProblem,             40, 8,   28, 4),
    EZ_CLASS(ezHost,                           8, 8,    4, 4),
    EZ_CLASS(ezHostFolders,                   88, 8,   60, 4),
    EZ_CLASS(ezHostOptions,                  192, 8,  136, 8),
    EZ_CLASS(TypesTableParser,                96, 8,   56, 4),
    EZ_CLASS(ezCancellation,                  72, 8,   40, 4),
    EZ_CLASS(ezHostPool,                      48, 8,   32, 4),
    EZ_CLASS(ezHostPoolOptions,               24, 8,   12, 4),
    EZ_CLASS(ezHostPoolProgress,              40, 8,   40, 8),
    EZ_CLASS(ezHostPoolResult,                88, 8,   64, 8),
    EZ_CLASS(ezInterruptibleStream,          120, 8,   64, 4),
    EZ_CLASS(ezSubtitleFile,                 176, 8,  128, 4),
    EZ_CLASS(ezSubtitleFinder,                 8, 8,    4, 4),
    EZ_CLASS(ezSubtitles,                     32, 8,   16, 4),
    EZ_CLASS(ezDescriptorStream,             576, 8,  424, 8),
    EZ_CLASS(ezFeedBuffer,                   432, 8,  328, 8),
    EZ_CLASS(ezFeedLimits,                    16, 8,    8, 4),
    EZ_CLASS(ezFeedOptions,                   24, 8,   12, 4),
    EZ_CLASS(ezFeedStream,                   512, 8,  376, 8),
    EZ_CLASS(ezHttpOptions,                   40, 8,   32, 8),
    EZ_CLASS(ezHttpStream,                   552, 8,  408, 8),
    EZ_CLASS(M3UPlaylistParser,              144, 8,   96, 8),
    EZ_CLASS(CostlyThumbnailProvider,         24, 8,   12, 4),
    EZ_CLASS(CoverThumbnailProvider,          48, 8,   24, 4),
    EZ_CLASS(DefaultThumbnailProvider,        24, 8,   12, 4),
    EZ_CLASS(JpegPicture,                     32, 8,   20, 4),
    EZ_CLASS(JpegRows,                         8, 8,    4, 4),
    EZ_CLASS(PictureFacts,                    16, 8,   12, 4),
    EZ_CLASS(PictureThumbnailGenerator,       88, 8,   60, 4),
    EZ_CLASS(SidecarListing,                   8, 8,    4, 4),
    EZ_CLASS(SidecarThumbnailProvider,        80, 8,   40, 4),
    EZ_CLASS(ThumbnailProviders,              40, 8,   20, 4),
};
// clang-format on

/// The classes and structs that a header defines at its outermost level; neither templates nor declarations.
std::set<std::string> ClassesOf(const std::string& aHeader) {
    std::set<std::string> classes;
    std::istringstream lines(aHeader);
    std::string previous;
    for (std::string line; std::getline(lines, line); previous = line) {
        if (line.rfind("class ", 0) != 0 && line.rfind("struct ", 0) != 0) {
            continue;
        }
        while (line.find_first_of("{;") == std::string::npos) { // its bases stand in further lines
            std::string more;
            if (!std::getline(lines, more)) {
                break;
            }
            line += "\n" + more;
        }
        const std::size_t end = line.find_first_of("{;");
        if (previous.rfind("template", 0) == 0 || end == std::string::npos || line[end] == ';') {
            continue;
        }
        std::istringstream words(line);
        std::string name;
        do {
            words >> name;
        } while (name == "class" || name == "struct" || name.rfind("EZ", 0) == 0);
        classes.insert(name);
    }
    return classes;
}

/// True for a header that is installed.
bool IsPublic(const fs::path& aHeader) {
    static const std::set<std::string> sInside = {EZ_INSIDE_HEADERS};
    return aHeader.extension() == ".h" && sInside.count(aHeader.filename().string()) == 0;
}

TEST(ClassSizes, AreThoseThatHostsWereCompiledAgainst) {
    for (const Row& row : kRows) {
        const Layout& pinned = sizeof(void*) == 8 ? row.m64 : row.m32;
        EXPECT_EQ(row.mHere.mSize, pinned.mSize) << "bytes of " << row.mName;
        EXPECT_EQ(row.mHere.mAlignment, pinned.mAlignment) << "alignment of " << row.mName;
    }
}

TEST(ClassSizes, EveryClassOfAPublicHeaderIsPinned) {
    std::set<std::string> pinned;
    for (const Row& row : kRows) {
        EXPECT_TRUE(pinned.insert(row.mName).second) << row.mName << " stands twice";
    }
    std::set<std::string> defined;
    const auto define = [&defined](const fs::directory_entry& aHeader) {
        if (IsPublic(aHeader.path())) {
            defined.merge(ClassesOf(ReadWholeFile(aHeader.path().string())));
        }
    };
    for (const char* folder : {EZ_SOURCES "/ezPlatform", EZ_SOURCES "/ezParsersFramework/ez"}) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
            define(entry);
        }
    }
    for (const fs::directory_entry& companion : fs::directory_iterator(EZ_SOURCES "/companions")) {
        if (!companion.is_directory() || companion.path().filename() == "ezBytes") {
            continue; // ezBytes is never installed
        }
        for (const fs::directory_entry& entry : fs::directory_iterator(companion)) {
            define(entry); // the folders below are the companion's own
        }
    }
    std::vector<std::string> only;
    std::set_symmetric_difference(defined.begin(), defined.end(), pinned.begin(), pinned.end(),
                                  std::back_inserter(only));
    EXPECT_EQ(only, (std::vector<std::string>{})) << "in a header or in the table alone";
}

TEST(ClassSizes, DefinitionsAreToldFromDeclarationsAndTemplates) {
    EXPECT_EQ(
        ClassesOf("class EZPARSERS_API A {\n    class Nested {};\n};\n"
                  "class Declared;\nstruct EZPLATFORM_API B\n    : public A,\n      private C {};\n"
                  "template <typename T>\nclass Template {};\n/// class Comment {\nstruct Plain { int a; };\n"
                  "struct Last final : A {};\n"),
        (std::set<std::string>{"A", "B", "Plain", "Last"}));
}

} // namespace
