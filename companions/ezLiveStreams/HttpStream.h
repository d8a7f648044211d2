#pragma once

#include "ezLiveStreams/FeedStream.h"

#include <chrono>
#include <memory>

/// What a host chooses about a stream of a web server.
struct ezHttpOptions {
    ezFeedOptions mFeed; ///< of the window, and whether GetSize waits
    /// Milliseconds for which a server may bring nothing, while it is connected to as well as later: after
    /// them it has failed. Time in which the window is full does not count. The head of its answer, with
    /// redirects before it and trailers after the media, has to be there within four times this, however
    /// steadily it comes. Once the head is there only bytes of the media count as brought.
    std::chrono::milliseconds mStallTime = std::chrono::seconds(30);
    /// Redirects that are followed for one answer: one more is a failure of the stream. 0 follows none.
    int mMaxRedirects = 10;
};

/// A media stream of a web server, by HTTP or HTTPS, over libcurl; redirects to other schemes are not
/// followed.
///
/// The size is that of the headers, where they state it. A seek outside of the window asks the server anew,
/// for the rest from there (RFC 9110, section 14); a server without ranges sends all again, which is skipped
/// up to there. What a failure is (GetErrorText), and when a seek asks again: docs/live-streams.md.
///
/// A record receives the type that the server states as its MIME type, without parameters, where it has no
/// MIME type (application/octet-stream tells nothing and does not count), and the time of the last
/// modification where it has no time.
///
/// Where libcurl was missing when the library was built, this class does not exist; the target then lacks the
/// definition EZ_HAS_HTTP_STREAM.
class EZLIVESTREAMS_API ezHttpStream : public ezFeedStream {
public:
    /// Begins to fetch at once, on a thread of its own; a server that cannot be reached is told by the reads.
    /// @param aURL       absolute, escaped
    /// @param anOptions  copied
    explicit ezHttpStream(const ezCString& aURL, const ezHttpOptions& anOptions = ezHttpOptions());

    /// True for a text that begins with "http://" or "https://", in any case.
    static bool IsURL(const ezCString& aText);

    /// Of the last component of the URL's path; its query and fragment do not count.
    ezCString GetExtension() const override;
    ezCString GetURI() const override { return mURL; }
    /// The URL that the latest answer came from, after all redirects: what relative references in the media
    /// are resolved against (RFC 3986, section 5.1.3). The URL that was asked for until there is an answer
    /// with the media. May be called on any thread.
    ezCString GetFinalURI() const;
    void CopyInfo(ezMediaInfo* anInfo) override;

protected:
    ~ezHttpStream() override;
    void Feed(ezFeedBuffer& aBuffer) override;
    void Interrupt() override;

private:
    class Transfer;

    const ezCString mURL;
    std::unique_ptr<Transfer> mTransfer;
};
