#include "support/HttpServer.h"

#include <arpa/inet.h>
#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

int Connected(const std::string& aURL) {
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoul(aURL.substr(aURL.rfind(':') + 1))));
    EXPECT_EQ(connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return client;
}

/// The whole answer to one request.
std::string Ask(const std::string& aURL, const std::string& aRequest) {
    const int client = Connected(aURL);
    EXPECT_EQ(send(client, aRequest.data(), aRequest.size(), 0), static_cast<ssize_t>(aRequest.size()));
    std::string answer;
    std::array<char, 4096> buffer = {};
    for (ssize_t count = 0; (count = recv(client, buffer.data(), buffer.size(), 0)) > 0;) {
        answer.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(client);
    return answer;
}

} // namespace

TEST(HttpServer, AnswersWholePartAndBeyond) {
    HttpMedia media;
    media.mBytes = "0123456789";
    const HttpServer server(Serving(media));
    EXPECT_EQ(Ask(server.URL(""), "GET /a HTTP/1.1\r\n\r\n"),
              "HTTP/1.1 200 OK\r\nConnection: close\r\nAccept-Ranges: bytes\r\nContent-Length: 10\r\n\r\n"
              "0123456789");
    EXPECT_EQ(
        Ask(server.URL(""), "GET /b HTTP/1.1\r\nRange: bytes=7-\r\n\r\n"),
        "HTTP/1.1 206 Partial Content\r\nConnection: close\r\nAccept-Ranges: bytes\r\nContent-Length: 3\r\n"
        "Content-Range: bytes 7-9/10\r\n\r\n789");
    EXPECT_EQ(Ask(server.URL(""), "GET /c HTTP/1.1\r\nRange: bytes=10-\r\n\r\n"),
              "HTTP/1.1 416 Range Not Satisfiable\r\nConnection: close\r\nContent-Range: bytes */10\r\n\r\n");
    EXPECT_EQ(server.GetRequests(), (std::vector<std::string>{"/a", "/b from 7", "/c from 10"}));
}

TEST(HttpServer, EndsWhileItStalls) {
    auto server = std::make_unique<HttpServer>(
        [](const HttpRequest&, HttpConnection& aConnection) { aConnection.Stall(); });
    const int client = Connected(server->URL(""));
    ASSERT_EQ(send(client, "GET / HTTP/1.1\r\n\r\n", 18, 0), 18);
    while (server->GetRequests().empty()) {
        usleep(1000);
    }
    server.reset();
    char byte = 0;
    EXPECT_EQ(recv(client, &byte, 1, 0), 0);
    close(client);
}
