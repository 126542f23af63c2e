#pragma once

// The Windows headers in the order they need (Winsock 2 before windows.h), without the macro
// that would rename the platform's ReplaceFile to ReplaceFileW. Every Win32 file includes this
// first.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <windows.h>
#undef ReplaceFile
