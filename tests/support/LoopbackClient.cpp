#include "support/LoopbackClient.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

// Sends request (if any) on a connection from address to address:port and reads until the
// server closes, or until it has want bytes; empty when nothing connected.
std::string Exchange(const std::string& address, int port, const std::string& request,
                     size_t want = std::string::npos) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    timeval timeout{5, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    sockaddr_in local{}, remote{}, own{};
    local.sin_family = AF_INET;
    inet_pton(AF_INET, address.c_str(), &local.sin_addr);
    remote = local;
    remote.sin_port = htons(static_cast<uint16_t>(port));
    socklen_t ownLength = sizeof own;
    std::string answer;
    // A connection may be given the free port it connects to and connect to itself.
    if (bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) == 0 &&
        connect(fd, reinterpret_cast<sockaddr*>(&remote), sizeof remote) == 0 &&
        getsockname(fd, reinterpret_cast<sockaddr*>(&own), &ownLength) == 0 &&
        own.sin_port != remote.sin_port &&
        send(fd, request.data(), request.size(), MSG_NOSIGNAL) ==
            static_cast<ssize_t>(request.size())) {
        char buffer[16384];
        for (ssize_t got; answer.size() < want && (got = recv(fd, buffer, sizeof buffer, 0)) > 0;)
            answer.append(buffer, static_cast<size_t>(got));
    }
    close(fd);
    return answer;
}

} // namespace

HttpReply HttpGet(int port, const std::string& path, const std::string& address) {
    const std::string answer =
        Exchange(address, port, "GET " + path + " HTTP/1.0\r\nHost: localhost\r\n\r\n");
    // "HTTP/1.1 200 OK\r\n...\r\n\r\nbody"
    HttpReply reply;
    if (answer.compare(0, 5, "HTTP/") == 0 && answer.size() > 12)
        reply.status = std::atoi(answer.c_str() + answer.find(' ') + 1);
    const size_t bodyStart = answer.find("\r\n\r\n");
    if (bodyStart != std::string::npos)
        reply.body = answer.substr(bodyStart + 4);
    return reply;
}

// A packet header of 4 bytes, then the protocol version 10.
bool MysqlGreets(int port) {
    const std::string greeting = Exchange("127.0.0.1", port, "", 5);
    return greeting.size() >= 5 && greeting[4] == 10;
}
