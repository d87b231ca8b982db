#pragma once

#include <winsock2.h>

namespace sockets {

using Native = SOCKET;
using socklen_t = int;
int const sendFlags = 0;

inline void start() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
}
inline void close(Native socket) { closesocket(socket); }

}
