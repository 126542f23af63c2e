#include "support/LocalHttpServer.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

LocalHttpServer::LocalHttpServer(bool silent) : silent(silent) {
    listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        listen(listener, 16) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
        pipe2(wake, O_CLOEXEC) != 0)
        throw std::runtime_error("LocalHttpServer: cannot listen on 127.0.0.1");
    port = ntohs(address.sin_port);
    thread = std::thread(&LocalHttpServer::Run, this);
}

LocalHttpServer::~LocalHttpServer() {
    (void)!write(wake[1], "x", 1);
    thread.join();
    for (int fd : held)
        close(fd);
    for (int fd : {listener, wake[0], wake[1]})
        close(fd);
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

bool LocalHttpServer::Readable(int fd) const {
    pollfd watched[] = {{wake[0], POLLIN, 0}, {fd, POLLIN, 0}};
    return poll(watched, 2, -1) > 0 && watched[0].revents == 0;
}

// One connection at a time: every client here sends its whole request at once.
void LocalHttpServer::Run() {
    while (Readable(listener)) {
        const int fd = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        std::string head;
        char buffer[4096];
        ssize_t n = 0;
        while (fd >= 0 && head.find("\r\n\r\n") == std::string::npos && Readable(fd) &&
               (n = recv(fd, buffer, sizeof buffer, 0)) > 0)
            head.append(buffer, static_cast<std::size_t>(n));
        const std::size_t end = head.find("\r\n\r\n");
        if (end != std::string::npos)
            Answer(fd, head.substr(0, end));
        if (silent && end != std::string::npos)
            held.push_back(fd);
        else if (fd >= 0)
            close(fd);
    }
}

void LocalHttpServer::Answer(int fd, const std::string& head) {
    std::lock_guard<std::mutex> guard(lock);
    requests.push_back(head);
    if (silent)
        return;
    const std::size_t start = head.find(' ') + 1;
    const auto found = bodies.find(head.substr(start, head.find(' ', start) - start));
    // The 404 body looks like an answer to both lookups, so that a client reading error pages
    // shows.
    const std::string body = found == bodies.end() ? "error = \"9.9\" for 10.9.9.9" : found->second;
    const std::string reply = std::string("HTTP/1.0 ") +
                              (found == bodies.end() ? "404 Not Found" : "200 OK") +
                              "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
                              std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
    for (std::size_t sent = 0; sent < reply.size();) {
        const ssize_t n = send(fd, reply.data() + sent, reply.size() - sent, MSG_NOSIGNAL);
        if (n <= 0)
            return;
        sent += static_cast<std::size_t>(n);
    }
}
