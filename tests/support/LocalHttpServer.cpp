#include "support/LocalHttpServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace {

// Looks like an answer to both lookups, so that a client reading error pages shows.
const char* const NOT_FOUND_BODY = "error = \"9.9\" for 10.9.9.9";

void SendAll(int fd, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t n = send(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (n <= 0)
            return;
        sent += static_cast<std::size_t>(n);
    }
}

std::string Response(const char* status, const std::string& body) {
    return std::string("HTTP/1.0 ") + status +
           "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

} // namespace

LocalHttpServer::LocalHttpServer(bool silent) : silent(silent) {
    listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int pipeFds[2];
    if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        listen(listener, 16) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
        pipe2(pipeFds, O_CLOEXEC) != 0) {
        if (listener >= 0)
            close(listener);
        throw std::runtime_error("LocalHttpServer: cannot listen on 127.0.0.1");
    }
    port = ntohs(address.sin_port);
    wakeRead = pipeFds[0];
    wakeWrite = pipeFds[1];
    thread = std::thread(&LocalHttpServer::Run, this);
}

LocalHttpServer::~LocalHttpServer() {
    const char stop = 'x';
    while (write(wakeWrite, &stop, 1) < 0 && errno == EINTR) {
    }
    thread.join();
    for (const Connection& connection : connections)
        close(connection.fd);
    close(listener);
    close(wakeRead);
    close(wakeWrite);
}

void LocalHttpServer::Serve(const std::string& path, const std::string& body) {
    std::lock_guard<std::mutex> guard(lock);
    bodies[path] = body;
}

wxString LocalHttpServer::HostAndPort() const {
    return wxString::Format("127.0.0.1:%d", port);
}

std::vector<std::string> LocalHttpServer::Requests() const {
    std::lock_guard<std::mutex> guard(lock);
    return requests;
}

void LocalHttpServer::Run() {
    for (;;) {
        std::vector<pollfd> watched{{wakeRead, POLLIN, 0}, {listener, POLLIN, 0}};
        for (const Connection& connection : connections)
            watched.push_back({connection.fd, POLLIN, 0});
        if (poll(watched.data(), watched.size(), -1) < 0 || watched[0].revents != 0 ||
            (watched[1].revents & (POLLERR | POLLNVAL)) != 0)
            return;
        for (std::size_t i = connections.size(); i-- > 0;) {
            if (watched[i + 2].revents != 0 && !Receive(connections[i])) {
                close(connections[i].fd);
                connections.erase(connections.begin() + static_cast<long>(i));
            }
        }
        if ((watched[1].revents & POLLIN) != 0)
            Accept();
    }
}

void LocalHttpServer::Accept() {
    const int fd = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (fd >= 0)
        connections.push_back({fd, std::string(), false});
}

bool LocalHttpServer::Receive(Connection& connection) {
    char buffer[4096];
    const ssize_t n = recv(connection.fd, buffer, sizeof buffer, 0);
    if (n <= 0)
        return false;
    if (connection.answered)
        return true;
    connection.received.append(buffer, static_cast<std::size_t>(n));
    const std::size_t end = connection.received.find("\r\n\r\n");
    if (end == std::string::npos)
        return true;
    connection.answered = true;
    Answer(connection, connection.received.substr(0, end));
    return silent;
}

void LocalHttpServer::Answer(Connection& connection, const std::string& head) {
    std::lock_guard<std::mutex> guard(lock);
    requests.push_back(head);
    if (silent)
        return;
    const std::string requestLine = head.substr(0, head.find("\r\n"));
    const std::size_t start = requestLine.find(' ') + 1;
    const auto body = bodies.find(requestLine.substr(start, requestLine.find(' ', start) - start));
    SendAll(connection.fd, body == bodies.end() ? Response("404 Not Found", NOT_FOUND_BODY)
                                                : Response("200 OK", body->second));
}
