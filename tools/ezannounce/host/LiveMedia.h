#pragma once

#include <memory>
#include <string>

struct Announcement;
struct Arguments;
class Host;
class ezFeedStream;
class ezMediaParserStream;
class ezStreamMediaParserStream;

/// What standard input or a web server brings.
class LiveMedia {
public:
    /// @param afWaitForSize  the size of a short one is waited for, so that every run knows it
    LiveMedia(const std::string& anOperand, const Arguments& anArguments, bool afWaitForSize);
    ~LiveMedia();
    LiveMedia(const LiveMedia&) = delete;
    LiveMedia& operator=(const LiveMedia&) = delete;

    /// False, with the reason, when it cannot be read, or is empty.
    bool Open(std::string& aReason);
    /// Only when open.
    ezMediaParserStream& GetStream();
    /// False, with the reason, when what was read so far is not all that was asked for.
    bool IsWhole(std::string& aReason) const;

private:
    std::string mRefusal;            ///< why there is no stream
    ezFeedStream* mSource = nullptr; ///< of the adapter
    std::unique_ptr<ezStreamMediaParserStream> mStream;
};

/// Identifies what standard input or a web server brings. False, with the reason, when it cannot be read to
/// where it was asked for, or is empty.
bool AnnounceLive(const std::string& anOperand, const Arguments& anArguments, Host& aHost,
                  Announcement& anAnnouncement, std::string& aReason);
