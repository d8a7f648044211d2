#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

/// What a client asked for.
struct HttpRequest {
    std::string mTarget;                ///< "/song.mp3?x"
    std::optional<std::uint64_t> mFrom; ///< "Range: bytes=N-"
    std::string mHead;                  ///< all of it as it came
};

/// The way back to the client that is being answered.
class HttpConnection {
public:
    /// @param aStop  readable when the server is to end
    HttpConnection(int aSocket, int aStop) : mSocket(aSocket), mStop(aStop) {}

    /// False when the client is gone, or the server is to end.
    bool Send(const std::string& aBytes) const;
    /// Sends nothing until the client is gone or the server is to end.
    void Stall() const;
    /// Lets time pass. False as Send.
    bool Pause(int aMilliseconds) const;
    /// Makes the end of the connection a reset.
    void Reset() const;

private:
    int mSocket;
    int mStop;
};

/// A server on loopback that answers one request after the other, each on a connection of its own, as its
/// handler says. Not for more clients than one at a time.
class HttpServer {
public:
    using Handler = std::function<void(const HttpRequest&, HttpConnection&)>;

    explicit HttpServer(Handler aHandler);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// "http://127.0.0.1:PORT" and a path.
    std::string URL(const std::string& aPath) const;
    /// What was asked for so far: the targets, with " from N" where a range was.
    std::vector<std::string> GetRequests() const;

private:
    void Run();
    void Answer(int aSocket);

    Handler mHandler;
    int mListener = -1;
    int mStopRead = -1;
    int mStopWrite = -1;
    unsigned mPort = 0;
    mutable std::mutex mMutex;
    std::vector<std::string> mRequests;
    std::thread mThread;
};

/// How a file is served.
struct HttpMedia {
    std::string mBytes;
    std::string mFields;  ///< further header lines, each with its end
    bool mfRanges = true; ///< partial answers are given, and announced
    bool mfLength = true; ///< the size is stated
};

/// Answers every request with a file.
HttpServer::Handler Serving(const HttpMedia& aMedia);
/// The head of an answer: the status line, further lines as they are, and the empty one.
std::string HttpHead(const std::string& aStatus, const std::string& aFields);
