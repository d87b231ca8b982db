#include "tests/support/TestWindow.h"

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdlib>

namespace {

/// The tests' own connection, another client than the library.
xcb_connection_t* display() {
    static xcb_connection_t* const connection = [] {
        xcb_connection_t* made = std::getenv("DISPLAY") != nullptr ? xcb_connect(nullptr, nullptr) : nullptr;
        if (made != nullptr && xcb_connection_has_error(made) != 0) {
            xcb_disconnect(made);
            made = nullptr;
        }
        return made;
    }();
    return connection;
}

void waitForServer() { std::free(xcb_get_input_focus_reply(display(), xcb_get_input_focus(display()), nullptr)); }

}

struct TestWindow::Imp {
    xcb_window_t window;
};

bool TestWindow::possible() { return display() != nullptr; }

TestWindow::TestWindow(TestWindow const* parent) : imp_{std::make_unique<Imp>()} {
    xcb_screen_t const* const screen = xcb_setup_roots_iterator(xcb_get_setup(display())).data;
    imp_->window = xcb_generate_id(display());
    xcb_create_window(display(), XCB_COPY_FROM_PARENT, imp_->window,
                      parent != nullptr ? parent->imp_->window : screen->root, 10, 10, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    xcb_map_window(display(), imp_->window);
    waitForServer();
}

TestWindow::~TestWindow() {
    xcb_destroy_window(display(), imp_->window);
    waitForServer();
}

HWND TestWindow::handle() const { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(imp_->window)); }

void TestWindow::raise() {
    std::uint32_t const above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(display(), imp_->window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    waitForServer();
}

bool TestWindow::receives(unsigned int number, std::uint64_t wParam, std::int64_t lParam) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(display())) {
            std::unique_ptr<xcb_generic_event_t, void (*)(void*)> const owner{event, std::free};
            if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
            auto const& client = *reinterpret_cast<xcb_client_message_event_t const*>(event);
            auto const both = [&](int low) {
                return client.data.data32[low] | std::uint64_t{client.data.data32[low + 1]} << 32;
            };
            return client.data.data32[0] == number && both(1) == wParam &&
                   both(3) == static_cast<std::uint64_t>(lParam);
        }
        pollfd connection{xcb_get_file_descriptor(display()), POLLIN, 0};
        poll(&connection, 1, 10);
    }
    return false;
}
