#include "orn/os/Window.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
#include "orn/os/Status.h"
#include "orn/os/posix/ServiceLibrary.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

namespace ORN::os {

namespace {

// clang-format off
#define ORN_LIBXCB_FUNCTIONS(use) \
    use(xcb_connect) use(xcb_connection_has_error) use(xcb_disconnect) use(xcb_get_setup) use(xcb_query_tree) \
    use(xcb_query_tree_children) use(xcb_query_tree_children_length) use(xcb_query_tree_reply) \
    use(xcb_request_check) use(xcb_send_event_checked) use(xcb_setup_roots_iterator)
// clang-format on
ORN_SERVICE_LIBRARY(libxcb, ORN_LIBXCB_FUNCTIONS)

struct Free {
    void operator()(void* block) const noexcept { std::free(block); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

using Connection = std::shared_ptr<xcb_connection_t>;

/// The process's connection to its display, made at the first use; null where there is no display. Every thread may use
/// it. It ends when the library is unloaded and no thread uses it any more. A thread that still runs then, as happens
/// when the process ends, finds no display.
class Display {
public:
    static Connection connection() noexcept {
        std::lock_guard const lock{mutex_};
        try {
            return current();
        } catch (std::bad_alloc const&) {
            return nullptr;
        }
    }

private:
    static Connection current() {
        Connection& connection = last_.connection;
        // A connection with an error never works again, so the next call makes a new one.
        if (connection != nullptr && xcb_connection_has_error(connection.get()) != 0) connection = nullptr;
        if (connection == nullptr && !unloaded_ && std::getenv("DISPLAY") != nullptr && libxcb.open()) {
            // xcb_connect never gives null. A connection that it could not make has an error, and must be ended all the
            // same. The plus turns the opened library's function into a plain pointer.
            connection = Connection{xcb_connect(nullptr, nullptr), +xcb_disconnect};
            if (xcb_connection_has_error(connection.get()) != 0) connection = nullptr;
        }
        return connection;
    }

    /// Never destroyed, because other threads may read it at any time.
    union Kept {
        constexpr Kept() noexcept : connection{} {}
        ~Kept() {}
        Connection connection;
    };
    struct Unload {
        ~Unload() {
            std::lock_guard const lock{mutex_};
            unloaded_ = true;
            last_.connection = nullptr;
        }
    };

    static constinit std::mutex mutex_;
    static constinit Kept last_;
    static constinit bool unloaded_;
    static Unload const unload_;
};

constinit std::mutex Display::mutex_;
constinit Display::Kept Display::last_;
constinit bool Display::unloaded_ = false;
Display::Unload const Display::unload_;

xcb_window_t idOf(HWND window) noexcept { return static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(window)); }
HWND windowOf(xcb_window_t id) noexcept { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(id)); }

/// A window's place in the tree; empty when the window is gone.
class Tree {
public:
    explicit Tree(xcb_window_t window) noexcept {
        if (window == XCB_NONE || ORN_OS_REFUSED("QueryTree")) return;
        if (Connection const display = Display::connection())
            reply_.reset(xcb_query_tree_reply(display.get(), xcb_query_tree(display.get(), window), nullptr));
    }

    xcb_window_t parent() const noexcept { return reply_ ? reply_->parent : XCB_NONE; }
    xcb_window_t root() const noexcept { return reply_ ? reply_->root : XCB_NONE; }

    /// Number 0 is the front-most child; the server lists the back-most first.
    int count() const noexcept { return reply_ ? xcb_query_tree_children_length(reply_.get()) : 0; }
    xcb_window_t child(int number) const noexcept {
        return xcb_query_tree_children(reply_.get())[count() - 1 - number];
    }

private:
    Reply<xcb_query_tree_reply_t> reply_;
};

xcb_window_t rootWindow() noexcept {
    Connection const display = Display::connection();
    return display != nullptr ? xcb_setup_roots_iterator(xcb_get_setup(display.get())).data->root : XCB_NONE;
}

void visitChildren(xcb_window_t window, std::function<bool(HWND)> const& visitor) {
    Tree const tree{window};
    for (int i = 0; i < tree.count(); ++i)
        if (!visitor(windowOf(tree.child(i)))) return;
}

}

HWND parentWindow(HWND window) noexcept {
    if (window == windowOf(rootWindow())) return nullptr;  // which needs no request
    return windowOf(Tree{idOf(window)}.parent());
}

// The server tells a window's children only, so the siblings are the children of the parent.
void visitSiblings(HWND, HWND parent, std::function<bool(HWND)> const& visitor) {
    visitChildren(idOf(parent), visitor);
}

void visitTopLevelWindows(std::function<bool(HWND)> const& visitor) { visitChildren(rootWindow(), visitor); }
void visitChildWindows(HWND window, std::function<bool(HWND)> const& visitor) { visitChildren(idOf(window), visitor); }

bool postMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam) noexcept {
    if (ORN_OS_REFUSED("PostMessage")) {
        setLastError(errorNotEnoughQuota);
        return false;
    }
    Connection const display = Display::connection();
    if (display == nullptr || window == nullptr) {
        setLastError(libxcb.open() ? errorInvalidWindow : libxcb.missing());
        return false;
    }

    auto const low = [](auto value) { return static_cast<std::uint32_t>(value); };
    auto const high = [](auto value) { return static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) >> 32); };
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = idOf(window);
    // Every server has this atom from its start, so it costs no request.
    event.type = XCB_ATOM_INTEGER;
    event.data.data32[0] = message;
    event.data.data32[1] = low(wParam);
    event.data.data32[2] = high(wParam);
    event.data.data32[3] = low(lParam);
    event.data.data32[4] = high(lParam);

    // An empty mask sends to the client that made the window.
    xcb_void_cookie_t const sent = xcb_send_event_checked(display.get(), 0, event.window, XCB_EVENT_MASK_NO_EVENT,
                                                          reinterpret_cast<char const*>(&event));
    // The check waits for the server, so that a window that is gone is known before this call returns.
    Reply<xcb_generic_error_t> const error{xcb_request_check(display.get(), sent)};
    if (error == nullptr && xcb_connection_has_error(display.get()) == 0) return true;
    setLastError(errorInvalidWindow);
    return false;
}

}
