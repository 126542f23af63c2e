// The child the Windows platform tests start (also copied as httpd.exe):
//   child print ARGS...  prints each argument, its working folder, KOVIX_PROBE and the first PATH
//                        entry, one "name:value" a line, then exits with 3;
//   child listen         listens on a free loopback port, prints "port:N" and waits;
//   child close TITLE    clicks the close box of the top-level window called TITLE (the system
//                        menu's Close, which becomes its WM_CLOSE); exits with 1 when none is;
//   child sleep          waits. Waiting ends after a minute at most.
#include <winsock2.h>

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

std::string Variable(const char* name) {
    char value[32768];
    const DWORD length = GetEnvironmentVariableA(name, value, sizeof value);
    return length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND ? "<unset>"
                                                                   : std::string(value, length);
}

int Print(int argc, char** argv) {
    for (int i = 2; i < argc; ++i)
        std::printf("arg:%s\n", argv[i]);
    char folder[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, folder);
    std::printf("cwd:%s\n", folder);
    std::printf("probe:%s\n", Variable("KOVIX_PROBE").c_str());
    const std::string path = Variable("PATH");
    std::printf("path:%s\n", path.substr(0, path.find(';')).c_str());
    return 3;
}

int Listen() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int length = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, 4) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return 1;
    std::printf("port:%d\n", ntohs(address.sin_port));
    std::fflush(stdout);
    Sleep(60000);
    return 0;
}

int CloseWindow(const char* title) {
    const HWND window = FindWindowA(nullptr, title);
    return window && PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "print")
        return Print(argc, argv);
    if (mode == "listen")
        return Listen();
    if (mode == "close" && argc > 2)
        return CloseWindow(argv[2]);
    Sleep(60000);
    return 0;
}
