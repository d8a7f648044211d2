#pragma once

#include "arguments/PlaylistOptions.h"
#include "arguments/ThumbnailOptions.h"

#include <optional>
#include <string>
#include <vector>

/// The exit statuses.
enum ExitStatus : int { kExitSuccess = 0, kExitSomeFailed = 1, kExitWrongUsage = 2 };

enum class Verb { Parse, Capabilities, Types, Mapper, Playlist, Profiles, Thumbnail, ContactSheet };

/// What is done with the media mapper.
enum class MapperVerb { List, Show, Profiles, Check, Enable, Disable, Speeds, Save };

/// The payload unit of a transport stream, in bytes.
constexpr unsigned kTransportPacketSize = 188;

/// What the person asked for.
struct Arguments {
    Verb mVerb = Verb::Parse;
    MapperVerb mMapperVerb = MapperVerb::List; ///< of Verb::Mapper
    bool mfSpeedsOn = false;                   ///< of MapperVerb::Speeds
    std::vector<std::string> mOperands;        ///< paths, extensions and MIME types, names, or profiles
    bool mfJson = false;
    bool mfExplain = false;
    bool mfWide = false;   ///< the table with all that is known
    bool mfMapper = false; ///< the media mapper is in force
    bool mfNoCopy = false; ///< its first load copies nothing
    bool mfDTCP = false;   ///< the link-protected capabilities
    unsigned mCTTContext = 0;
    int mParseOptions = 0; ///< a set of ezParseOption bits
    std::optional<std::string> mConfigFolder;
    std::optional<std::string> mStateFolder;
    std::optional<std::string> mProfiles;        ///< a file of profile rules
    std::optional<std::string> mCodePage;        ///< of texts that state none; one that the system knows
    std::optional<int> mLogLevel;                ///< for _ezLog_Level
    std::optional<std::string> mName;            ///< of standard input
    unsigned mTimeout = 30;                      ///< seconds for which a web server may send nothing
    bool mfElementary = false;                   ///< the operands are elementary streams
    unsigned mPacketSize = kTransportPacketSize; ///< bytes that are pushed at once; 0 for odd sizes
    PlaylistOptions mPlaylist;                   ///< of Verb::Playlist
    ThumbnailOptions mThumbnail;                 ///< of Verb::Thumbnail and Verb::ContactSheet
};

/// What came of reading the command line.
struct ArgumentsResult {
    bool mfRun = false; ///< true: go on with the arguments; false: end with the status
    int mStatus = 0;
    std::string mText;  ///< for standard output: help or version
    std::string mError; ///< for standard error: what is wrong
};

/// Reads the command line. The first word that is no option is the verb if it names one; everything after
/// "--" is an operand. After the verb mapper, the next word is what is done with it.
ArgumentsResult ReadArguments(int anArgCount, const char* const* anArgs, Arguments& anArguments);

/// Reads a set of parse options: names separated by ",", or one number from 0 to 15. False when it is
/// neither.
bool ReadParseOptions(const std::string& aText, int& anOptions);
