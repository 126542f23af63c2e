#pragma once

#include <string>

// Minimal loopback clients for the server tests and benches: no library of the servers needed.

struct HttpReply {
    int status = 0; // 0 when nothing answered
    std::string body;
};

// GET path from the server on port, connecting from and to address (a 127.x.y.z address).
HttpReply HttpGet(int port, const std::string& path, const std::string& address = "127.0.0.1");

// True when a MySQL server on 127.0.0.1:port accepts a connection and sends its greeting.
bool MysqlGreets(int port);
