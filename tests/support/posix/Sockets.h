#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

namespace sockets {

using Native = int;
int const sendFlags = MSG_NOSIGNAL;

/// The loopback is not to be asked for through a proxy.
inline void start() { setenv("no_proxy", "127.0.0.1", 1); }
inline void close(Native socket) { ::close(socket); }

}
