// The network lookup's thread under Windows' own thread calls: whether it has finished or hangs
// on a server that never answers, destroying it joins it once, within one time-out, and logs no
// error (Windows refuses a second join, and the panel showed that refusal in a box that kept
// kovix.exe from ending).
#include <winsock2.h> // before windows.h, which WindowsTesting.h includes

#include "core/net/HostNameLookupThread.h"
#include "windows/WindowsTesting.h"

#include <gtest/gtest.h>
#include <wx/log.h>
#include <wx/stopwatch.h>

#include <vector>

namespace {

// Collects the errors logged while it is the active log target.
class ErrorLog : public wxLog {
public:
    ErrorLog() : previous(wxLog::SetActiveTarget(this)) {}
    ~ErrorLog() override { wxLog::SetActiveTarget(previous); }

    std::vector<wxString> errors;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo&) override {
        if (level <= wxLOG_Error)
            errors.push_back(message);
    }

private:
    wxLog* previous;
};

// A loopback server that takes connections and never answers them.
class SilentServer {
public:
    SilentServer() {
        WSADATA data;
        WSAStartup(MAKEWORD(2, 2), &data);
        listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int length = sizeof address;
        if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
            listen(listener, 4) == 0 &&
            getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) == 0)
            port = ntohs(address.sin_port);
    }
    ~SilentServer() {
        for (SOCKET connection : taken)
            closesocket(connection);
        closesocket(listener);
        WSACleanup();
    }

    wxString HostAndPort() const { return wxString::Format("127.0.0.1:%d", port); }
    // Takes the next connection that arrives within milliseconds; false when none does.
    bool Take(int milliseconds) {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(listener, &readable);
        timeval wait{milliseconds / 1000, milliseconds % 1000 * 1000};
        if (select(0, &readable, nullptr, nullptr, &wait) != 1)
            return false;
        taken.push_back(accept(listener, nullptr, nullptr));
        return true;
    }

    int port = 0;

private:
    SOCKET listener = INVALID_SOCKET;
    std::vector<SOCKET> taken;
};

} // namespace

TEST(HostNameLookupJoin, AFinishedOrHangingLookupIsJoinedOnceWithoutAnError) {
    ErrorLog log;
    auto finished = HostNameLookupThread::Start({"127.0.0.1:1", "127.0.0.1:1"});
    ASSERT_TRUE(WaitUntil([&] { return finished->IsResolved(); }));
    finished.reset();
    EXPECT_TRUE(log.errors.empty()) << log.errors[0];

    SilentServer silent;
    ASSERT_NE(silent.port, 0);
    auto hanging = HostNameLookupThread::Start({silent.HostAndPort(), silent.HostAndPort()});
    ASSERT_TRUE(silent.Take(10000));
    wxStopWatch watch;
    hanging.reset();
    // It ends once the unanswered request times out, and asks the other host nothing.
    EXPECT_LT(watch.Time(), (HostNameLookupThread::TIMEOUT_SECONDS + 3) * 1000);
    EXPECT_FALSE(silent.Take(0));
    EXPECT_TRUE(log.errors.empty()) << log.errors[0];
}
