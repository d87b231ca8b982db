#include "orn/os/Window.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

namespace ORN::os {

namespace {

DWORD const invalidWindow = 1400, notEnoughQuota = 1816;

struct Free {
    void operator()(void* block) const noexcept { std::free(block); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

/// The process's connection to its display, made at the first use; none where there is no display. xcb lets every thread
/// use it.
class Display {
public:
    static xcb_connection_t* connection() noexcept {
        std::lock_guard const lock{mutex_};
        if (connection_ != nullptr && xcb_connection_has_error(connection_) != 0) close();
        if (connection_ == nullptr && std::getenv("DISPLAY") != nullptr) {
            connection_ = xcb_connect(nullptr, nullptr);
            if (xcb_connection_has_error(connection_) != 0) close();
        }
        return connection_;
    }

private:
    static void close() noexcept {
        xcb_disconnect(connection_);
        connection_ = nullptr;
    }

    static constinit std::mutex mutex_;
    static constinit xcb_connection_t* connection_;
};

constinit std::mutex Display::mutex_;
constinit xcb_connection_t* Display::connection_ = nullptr;

xcb_window_t idOf(HWND window) noexcept { return static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(window)); }
HWND windowOf(xcb_window_t id) noexcept { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(id)); }

/// A window's place in the tree; empty when the window is gone.
class Tree {
public:
    explicit Tree(xcb_window_t window) noexcept {
        xcb_connection_t* const display = window != XCB_NONE ? Display::connection() : nullptr;
        if (display != nullptr) reply_.reset(xcb_query_tree_reply(display, xcb_query_tree(display, window), nullptr));
    }

    xcb_window_t parent() const noexcept { return reply_ ? reply_->parent : XCB_NONE; }
    xcb_window_t root() const noexcept { return reply_ ? reply_->root : XCB_NONE; }

    /// Number 0 is the front-most child; the server tells the back-most first.
    int count() const noexcept { return reply_ ? xcb_query_tree_children_length(reply_.get()) : 0; }
    xcb_window_t child(int number) const noexcept {
        return xcb_query_tree_children(reply_.get())[count() - 1 - number];
    }

private:
    Reply<xcb_query_tree_reply_t> reply_;
};

xcb_window_t rootWindow() noexcept {
    xcb_connection_t* const display = Display::connection();
    return display != nullptr ? xcb_setup_roots_iterator(xcb_get_setup(display)).data->root : XCB_NONE;
}

void visitChildren(xcb_window_t window, std::function<bool(HWND)> const& visitor) {
    Tree const tree{window};
    for (int i = 0; i < tree.count(); ++i)
        if (!visitor(windowOf(tree.child(i)))) return;
}

}

HWND parentWindow(HWND window) noexcept { return windowOf(Tree{idOf(window)}.parent()); }

HWND firstSibling(HWND window) noexcept {
    Tree const siblings{Tree{idOf(window)}.parent()};
    return siblings.count() > 0 ? windowOf(siblings.child(0)) : nullptr;
}

HWND nextSibling(HWND window) noexcept {
    Tree const siblings{Tree{idOf(window)}.parent()};
    for (int i = 0; i + 1 < siblings.count(); ++i)
        if (siblings.child(i) == idOf(window)) return windowOf(siblings.child(i + 1));
    return nullptr;
}

void visitTopLevelWindows(std::function<bool(HWND)> const& visitor) { visitChildren(rootWindow(), visitor); }
void visitChildWindows(HWND window, std::function<bool(HWND)> const& visitor) { visitChildren(idOf(window), visitor); }

bool postMessage(HWND window, unsigned int message, unsigned long long wParam, long long lParam) noexcept {
    if (ORN_OS_REFUSED("PostMessage")) {
        setLastError(notEnoughQuota);
        return false;
    }
    xcb_connection_t* const display = Display::connection();
    if (display == nullptr || window == nullptr) {
        setLastError(invalidWindow);
        return false;
    }

    auto const low = [](auto value) { return static_cast<std::uint32_t>(value); };
    auto const high = [](auto value) { return static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) >> 32); };
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = idOf(window);
    event.type = XCB_ATOM_INTEGER;
    event.data.data32[0] = message;
    event.data.data32[1] = low(wParam);
    event.data.data32[2] = high(wParam);
    event.data.data32[3] = low(lParam);
    event.data.data32[4] = high(lParam);

    // An empty mask sends to the client that made the window.
    xcb_void_cookie_t const sent = xcb_send_event_checked(display, 0, event.window, XCB_EVENT_MASK_NO_EVENT,
                                                          reinterpret_cast<char const*>(&event));
    Reply<xcb_generic_error_t> const error{xcb_request_check(display, sent)};
    if (error == nullptr && xcb_connection_has_error(display) == 0) return true;
    setLastError(invalidWindow);
    return false;
}

}
