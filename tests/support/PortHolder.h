#pragma once

// A socket listening on a port on every local address, as another server would, until it is
// destroyed. A port it cannot hold fails the running test.
class PortHolder {
public:
    explicit PortHolder(int port);
    ~PortHolder();
    PortHolder(const PortHolder&) = delete;
    PortHolder& operator=(const PortHolder&) = delete;

private:
    int fd;
};
