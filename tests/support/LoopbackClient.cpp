#include "support/LoopbackClient.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

// A connected socket from address to address:port, or -1.
int Connect(const std::string& address, int port) {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    timeval timeout{5, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    sockaddr_in local{}, remote{};
    local.sin_family = remote.sin_family = AF_INET;
    inet_pton(AF_INET, address.c_str(), &local.sin_addr);
    remote.sin_addr = local.sin_addr;
    remote.sin_port = htons(static_cast<uint16_t>(port));
    sockaddr_in own{};
    socklen_t ownLength = sizeof own;
    // A connection may be given the free port it connects to and connect to itself.
    if (bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0 ||
        connect(fd, reinterpret_cast<sockaddr*>(&remote), sizeof remote) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr*>(&own), &ownLength) != 0 ||
        own.sin_port == remote.sin_port) {
        close(fd);
        return -1;
    }
    return fd;
}

} // namespace

HttpReply HttpGet(int port, const std::string& path, const std::string& address) {
    HttpReply reply;
    int fd = Connect(address, port);
    if (fd < 0)
        return reply;
    const std::string request = "GET " + path + " HTTP/1.0\r\nHost: localhost\r\n\r\n";
    std::string answer;
    if (send(fd, request.data(), request.size(), MSG_NOSIGNAL) ==
        static_cast<ssize_t>(request.size())) {
        char buffer[16384];
        for (ssize_t got; (got = recv(fd, buffer, sizeof buffer, 0)) > 0;)
            answer.append(buffer, static_cast<size_t>(got));
    }
    close(fd);
    // "HTTP/1.1 200 OK\r\n...\r\n\r\nbody"
    if (answer.compare(0, 5, "HTTP/") == 0 && answer.size() > 12)
        reply.status = std::atoi(answer.c_str() + answer.find(' ') + 1);
    size_t bodyStart = answer.find("\r\n\r\n");
    if (bodyStart != std::string::npos)
        reply.body = answer.substr(bodyStart + 4);
    return reply;
}

bool MysqlGreets(int port) {
    int fd = Connect("127.0.0.1", port);
    if (fd < 0)
        return false;
    // A packet header of 4 bytes, then the protocol version 10.
    unsigned char greeting[5] = {};
    size_t have = 0;
    for (ssize_t got; have < sizeof greeting &&
                      (got = recv(fd, greeting + have, sizeof greeting - have, 0)) > 0;)
        have += static_cast<size_t>(got);
    close(fd);
    return have == sizeof greeting && greeting[4] == 10;
}
