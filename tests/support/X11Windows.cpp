#include "support/X11Windows.h"

#include <X11/Xatom.h>

#include <memory>
#include <vector>

namespace X11Windows {

namespace {

using Display_ = std::unique_ptr<Display, decltype(&XCloseDisplay)>;

std::vector<Window> TopLevelWindows(Display* display) {
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    std::vector<Window> windows;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count)) {
        windows.assign(children, children + count);
        XFree(children);
    }
    return windows;
}

} // namespace

std::vector<Window> ViewableWindowsOf(Display* display, long pid) {
    std::vector<Window> windows;
    for (Window window : TopLevelWindows(display)) {
        XWindowAttributes attributes;
        if (WindowPid(display, window) == pid &&
            XGetWindowAttributes(display, window, &attributes) &&
            attributes.map_state == IsViewable)
            windows.push_back(window);
    }
    return windows;
}

long WindowPid(Display* display, Window window) {
    const Atom pidAtom = XInternAtom(display, "_NET_WM_PID", True);
    Atom type = None;
    int format = 0;
    unsigned long count = 0, remaining = 0;
    unsigned char* data = nullptr;
    long pid = 0;
    if (pidAtom != None &&
        XGetWindowProperty(display, window, pidAtom, 0, 1, False, XA_CARDINAL, &type, &format,
                           &count, &remaining, &data) == Success &&
        data && count == 1 && format == 32)
        pid = static_cast<long>(*reinterpret_cast<unsigned long*>(data));
    if (data)
        XFree(data);
    return pid;
}

bool RequestClose(long pid) {
    Display_ display(XOpenDisplay(nullptr), &XCloseDisplay);
    if (!display)
        return false;
    const Atom protocols = XInternAtom(display.get(), "WM_PROTOCOLS", False);
    const Atom deleteWindow = XInternAtom(display.get(), "WM_DELETE_WINDOW", False);
    bool sent = false;
    for (Window window : ViewableWindowsOf(display.get(), pid)) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = protocols;
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(deleteWindow);
        event.xclient.data.l[1] = CurrentTime;
        sent = XSendEvent(display.get(), window, False, NoEventMask, &event) || sent;
    }
    XFlush(display.get());
    return sent;
}

size_t ViewableWindowCount(long pid) {
    Display_ display(XOpenDisplay(nullptr), &XCloseDisplay);
    return display ? ViewableWindowsOf(display.get(), pid).size() : 0;
}

} // namespace X11Windows
