#include "support/PortHolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

PortHolder::PortHolder(int port) : fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) || listen(fd, 4))
        ADD_FAILURE() << "cannot hold port " << port;
}

PortHolder::~PortHolder() {
    close(fd);
}
