#include "support/HttpServer.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

/// Waits until a socket is ready for some events. False when the server is to end before.
bool WaitFor(int aSocket, short someEvents, int aStop, int aMilliseconds, bool* afReady) {
    std::array<pollfd, 2> descriptors = {{{aSocket, someEvents, 0}, {aStop, POLLIN, 0}}};
    while (poll(descriptors.data(), descriptors.size(), aMilliseconds) < 0 && errno == EINTR) {
    }
    *afReady = descriptors[0].revents != 0;
    return descriptors[1].revents == 0;
}

HttpRequest RequestOf(const std::string& aHead) {
    HttpRequest request;
    request.mHead = aHead;
    const std::size_t target = aHead.find(' ') + 1;
    request.mTarget = aHead.substr(target, aHead.find(' ', target) - target);
    const std::string field = "Range: bytes=";
    const std::size_t range = aHead.find(field);
    if (range != std::string::npos) {
        request.mFrom = std::stoull(aHead.substr(range + field.size()));
    }
    return request;
}

} // namespace

bool HttpConnection::Send(const std::string& aBytes) const {
    std::size_t sent = 0;
    while (sent < aBytes.size()) {
        bool fReady = false;
        if (!WaitFor(mSocket, POLLOUT, mStop, -1, &fReady)) {
            return false;
        }
        const ssize_t count =
            send(mSocket, aBytes.data() + sent, aBytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            return false;
        }
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

void HttpConnection::Stall() const {
    Pause(-1);
}

bool HttpConnection::Pause(int aMilliseconds) const {
    bool fGone = false; // a client that is content with its request sends nothing more but its end
    return WaitFor(mSocket, POLLIN, mStop, aMilliseconds, &fGone) && !fGone;
}

void HttpConnection::Reset() const {
    const linger atOnce = {1, 0};
    setsockopt(mSocket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

HttpServer::HttpServer(Handler aHandler) : mHandler(std::move(aHandler)) {
    setenv("no_proxy", "127.0.0.1", 1); // a proxy would not reach this server
    std::array<int, 2> ends = {};
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    mListener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (pipe2(ends.data(), O_CLOEXEC) != 0 || mListener < 0 || bind(mListener, generic, size) != 0 ||
        listen(mListener, SOMAXCONN) != 0 || getsockname(mListener, generic, &size) != 0) {
        throw std::runtime_error("no server");
    }
    mStopRead = ends[0];
    mStopWrite = ends[1];
    mPort = ntohs(address.sin_port);
    mThread = std::thread([this] { Run(); });
}

HttpServer::~HttpServer() {
    close(mStopWrite); // which makes the other end readable
    mThread.join();
    close(mStopRead);
    close(mListener);
}

std::string HttpServer::URL(const std::string& aPath) const {
    return "http://127.0.0.1:" + std::to_string(mPort) + aPath;
}

std::vector<std::string> HttpServer::GetRequests() const {
    const std::lock_guard<std::mutex> lock(mMutex);
    return mRequests;
}

void HttpServer::Run() {
    while (true) {
        bool fReady = false;
        if (!WaitFor(mListener, POLLIN, mStopRead, -1, &fReady)) {
            return;
        }
        const int client = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client >= 0) {
            Answer(client);
            close(client);
        }
    }
}

void HttpServer::Answer(int aSocket) {
    std::string head;
    while (head.find("\r\n\r\n") == std::string::npos) {
        bool fReady = false;
        if (!WaitFor(aSocket, POLLIN, mStopRead, -1, &fReady)) {
            return;
        }
        std::array<char, 4096> buffer = {};
        const ssize_t count = recv(aSocket, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            return;
        }
        head.append(buffer.data(), static_cast<std::size_t>(count));
    }
    const HttpRequest request = RequestOf(head);
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mRequests.push_back(request.mTarget +
                            (request.mFrom ? " from " + std::to_string(*request.mFrom) : ""));
    }
    HttpConnection connection(aSocket, mStopRead);
    mHandler(request, connection);
}

std::string HttpHead(const std::string& aStatus, const std::string& aFields) {
    return "HTTP/1.1 " + aStatus + "\r\nConnection: close\r\n" + aFields + "\r\n";
}

HttpServer::Handler Serving(const HttpMedia& aMedia) {
    return [aMedia](const HttpRequest& aRequest, HttpConnection& aConnection) {
        const std::string& bytes = aMedia.mBytes;
        const std::string size = std::to_string(bytes.size());
        std::string fields = aMedia.mFields + (aMedia.mfRanges ? "Accept-Ranges: bytes\r\n" : "");
        if (!aMedia.mfRanges || !aRequest.mFrom) {
            fields += aMedia.mfLength ? "Content-Length: " + size + "\r\n" : "";
            aConnection.Send(HttpHead("200 OK", fields) + bytes);
            return;
        }
        const std::uint64_t from = *aRequest.mFrom;
        if (from >= bytes.size()) {
            aConnection.Send(
                HttpHead("416 Range Not Satisfiable", "Content-Range: bytes */" + size + "\r\n"));
            return;
        }
        fields += "Content-Length: " + std::to_string(bytes.size() - from) + "\r\n";
        fields += "Content-Range: bytes " + std::to_string(from) + "-" + std::to_string(bytes.size() - 1) +
                  "/" + size + "\r\n";
        aConnection.Send(HttpHead("206 Partial Content", fields) +
                         bytes.substr(static_cast<std::size_t>(from)));
    };
}
