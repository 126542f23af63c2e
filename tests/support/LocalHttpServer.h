#pragma once

#include <wx/string.h>

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A tiny HTTP/1.0 server on a free 127.0.0.1 port, serving fixed bodies by path (a 404 for the
// rest, whose body holds a dotted quad and a quoted assignment) on its own thread, and recording
// the head of every request. Silent, it accepts and reads requests but never answers, like a
// stalled web site. The destructor stops it and closes every connection, so a failing test cannot
// leave it behind.
class LocalHttpServer {
public:
    explicit LocalHttpServer(bool silent = false);
    ~LocalHttpServer();

    // Serves body (bytes as given) at path from now on.
    void Serve(const std::string& path, const std::string& body);
    int Port() const { return port; }
    // "127.0.0.1:port", the form the network lookup takes.
    wxString HostAndPort() const;
    // The request heads received so far (request line and header lines).
    std::vector<std::string> Requests() const;

private:
    // False once the server stops.
    bool Readable(int fd) const;
    void Run();
    void Answer(int fd, const std::string& head);

    const bool silent;
    int listener = -1;
    int wake[2] = {-1, -1};
    int port = 0;
    std::vector<int> held; // silent connections, left open until the end
    mutable std::mutex lock;
    std::map<std::string, std::string> bodies;
    std::vector<std::string> requests;
    std::thread thread;
};
