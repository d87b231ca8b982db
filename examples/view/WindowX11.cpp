#include "view/ViewTask.h"
#include "view/Window.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include <cairo-xcb.h>
#include <poll.h>
#include <xcb/xcb.h>

namespace view {

namespace {

constexpr int statusHeight = 22, leastWidth = 120;

struct Free {
    void operator()(void* block) const noexcept { std::free(block); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

class SystemWindow;

/// The connection to the X server, and what all windows share.
class Display {
public:
    static Display& get() {
        static Display display;
        return display;
    }

    xcb_connection_t* connection() const { return connection_.get(); }
    xcb_screen_t const& screen() const { return *screen_; }
    xcb_visualtype_t* visual() const { return visual_; }
    xcb_keysym_t symbolOf(xcb_keycode_t code, bool shifted) const;
    bool isManaged() const;  ///< a window manager is there

    /// The number by which clients of the server speak of a name.
    xcb_atom_t atom(std::string_view name);

    /// Waits until the server has handled all requests so far: any request with an answer does that.
    void synchronise() const {
        Reply<xcb_get_input_focus_reply_t>{
            xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr)};
    }

    std::map<xcb_window_t, SystemWindow*> windows;

private:
    Display();

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
    xcb_screen_t* screen_ = nullptr;
    xcb_visualtype_t* visual_ = nullptr;
    Reply<xcb_get_keyboard_mapping_reply_t> keys_;
    std::map<std::string, xcb_atom_t, std::less<>> atoms_;
};

Display::Display() : connection_{xcb_connect(nullptr, nullptr), xcb_disconnect} {
    if (xcb_connection_has_error(connection()) != 0) {
        throw ORN::OrnError{L"orn-view: there is no X server to show windows on (DISPLAY)"};
    }
    xcb_setup_t const* const setup = xcb_get_setup(connection());
    screen_ = xcb_setup_roots_iterator(setup).data;
    // Cairo wants the description of the visual; the screen only has its number.
    for (auto depth = xcb_screen_allowed_depths_iterator(screen_); depth.rem != 0; xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem != 0; xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == screen_->root_visual) visual_ = visual.data;
        }
    }
    auto const count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    keys_.reset(xcb_get_keyboard_mapping_reply(
        connection(), xcb_get_keyboard_mapping(connection(), setup->min_keycode, count), nullptr));
}

xcb_keysym_t Display::symbolOf(xcb_keycode_t code, bool shifted) const {
    if (keys_ == nullptr || keys_->keysyms_per_keycode == 0) return 0;
    int const first = (code - xcb_get_setup(connection())->min_keycode) * keys_->keysyms_per_keycode;
    int const at = first + (shifted && keys_->keysyms_per_keycode > 1 ? 1 : 0);
    return at < xcb_get_keyboard_mapping_keysyms_length(keys_.get()) ? xcb_get_keyboard_mapping_keysyms(keys_.get())[at]
                                                                     : 0;
}

xcb_atom_t Display::atom(std::string_view name) {
    auto const found = atoms_.find(name);
    if (found != atoms_.end()) return found->second;
    Reply<xcb_intern_atom_reply_t> const reply{xcb_intern_atom_reply(
        connection(), xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr)};
    return atoms_[std::string{name}] = reply != nullptr ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

// A window manager announces itself by a property of the root window (Extended Window Manager Hints).
bool Display::isManaged() const {
    xcb_atom_t const check = get().atom("_NET_SUPPORTING_WM_CHECK");
    Reply<xcb_get_property_reply_t> const reply{xcb_get_property_reply(
        connection(), xcb_get_property(connection(), 0, screen_->root, check, XCB_ATOM_WINDOW, 0, 1), nullptr)};
    return reply != nullptr && xcb_get_property_value_length(reply.get()) > 0;
}

class SystemWindow final : public Window {
public:
    SystemWindow(std::wstring const& title, Corner corner, WindowOwner& owner);
    ~SystemWindow() override;

    HWND handle() const override { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window_)); }
    drawing::PageSize pictureSize() const override { return {width_, std::max(0, height_ - statusHeight)}; }
    bool isMinimised() const override { return minimised_; }
    void show() override;
    void activate() override;
    bool resize(drawing::PageSize size) override;
    bool move(Corner corner) override;
    void minimise() override;
    void restore() override;
    void invalidate(int top, int bottom) override;
    void showNow() override;
    void setStatus(std::wstring const& text) override;
    void checkLayer(std::size_t, bool) override {}

    void handle(xcb_generic_event_t const& event);
    bool isInvalid() const { return invalidTop_ < invalidBottom_; }
    void paint();

private:
    xcb_connection_t* connection() const { return display_.connection(); }
    void configure(std::uint16_t what, std::vector<std::uint32_t> const& values) const;
    void setText(xcb_atom_t property, xcb_atom_t type, std::string const& text) const;
    void askManager(xcb_atom_t what, std::uint32_t first) const;
    void takeGeometry();
    bool hasFocus() const;
    bool isMapped() const;
    void message(xcb_client_message_event_t const& message);
    void key(xcb_key_press_event_t const& key);
    void button(xcb_button_press_event_t const& button);
    void drag(xcb_motion_notify_event_t const& motion);
    void minimisedBecomes(bool minimised);
    std::optional<Corner> cornerOnScreen() const;

    Display& display_;
    WindowOwner& owner_;
    xcb_window_t window_;
    cairo_surface_t* surface_;
    int width_ = leastWidth, height_ = 100;
    int invalidTop_ = 0, invalidBottom_ = 0;
    bool minimised_ = false, mapped_ = false, statusChanged_ = true;
    std::wstring status_;
    Corner dragged_{0, 0};
};

SystemWindow::SystemWindow(std::wstring const& title, Corner corner, WindowOwner& owner)
    : display_{Display::get()}, owner_{owner}, window_{xcb_generate_id(display_.connection())} {
    // What the window holds stays at its top left corner when its size changes.
    std::uint32_t const values[] = {XCB_GRAVITY_NORTH_WEST,
                                    XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS |
                                        XCB_EVENT_MASK_BUTTON_1_MOTION | XCB_EVENT_MASK_EXPOSURE |
                                        XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE};
    // The values stand in the order of their bits in the mask.
    xcb_create_window(
        connection(), XCB_COPY_FROM_PARENT, window_, display_.screen().root, static_cast<std::int16_t>(corner.x),
        static_cast<std::int16_t>(corner.y), static_cast<std::uint16_t>(width_), static_cast<std::uint16_t>(height_), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, display_.screen().root_visual, XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK, values);
    // WM_NAME only has Latin 1, which does not hold every name of a file. WM_CLASS is two texts, each with its zero.
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "orn-view");
    setText(display_.atom("_NET_WM_NAME"), display_.atom("UTF8_STRING"), utf8(title));
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string{"orn-view\0orn-view\0", 18});
    // The window manager then sends a message when the user closes the window, and does not cut the connection.
    xcb_atom_t const deletion = display_.atom("WM_DELETE_WINDOW");
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, display_.atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32,
                        1, &deletion);
    // The flags say that position, least size and gravity are given. With static gravity the position is that of the
    // picture, not that of the frame around it.
    std::uint32_t const hints[18] = {
        1 << 2 | 1 << 4 | 1 << 9, 0, 0, 0, 0, leastWidth, statusHeight + 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
        XCB_GRAVITY_STATIC};
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
                        32, 18, hints);
    surface_ = cairo_xcb_surface_create(connection(), window_, display_.visual(), width_, height_);
    display_.windows[window_] = this;
}

SystemWindow::~SystemWindow() {
    display_.windows.erase(window_);
    // Cairo must not use the window any more when it goes, even where something else still holds the surface.
    cairo_surface_finish(surface_);
    cairo_surface_destroy(surface_);
    xcb_destroy_window(connection(), window_);
    display_.synchronise();
}

/// The values stand in the order of their bits: x, y, width, height, stacking.
void SystemWindow::configure(std::uint16_t what, std::vector<std::uint32_t> const& values) const {
    xcb_configure_window(connection(), window_, what, values.data());
}

void SystemWindow::setText(xcb_atom_t property, xcb_atom_t type, std::string const& text) const {
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

/// Asks the window manager for something: such requests are messages to the root window.
void SystemWindow::askManager(xcb_atom_t what, std::uint32_t first) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = what;
    event.data.data32[0] = first;
    xcb_send_event(connection(), 0, display_.screen().root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<char const*>(&event));
}

void SystemWindow::show() {
    xcb_map_window(connection(), window_);
    mapped_ = true;
    activate();
}

void SystemWindow::activate() {
    configure(XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_ABOVE});
    if (display_.isManaged()) {
        askManager(display_.atom("_NET_ACTIVE_WINDOW"), 1);
    } else if (mapped_ && !minimised_) {
        // The server refuses the focus to a window that is not mapped.
        xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    }
    display_.synchronise();
}

void SystemWindow::takeGeometry() {
    Reply<xcb_get_geometry_reply_t> const now{
        xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), window_), nullptr)};
    // Nothing here tells the owner: the handler of the event does, and View::resize looks at the size by itself.
    if (now == nullptr || (now->width == width_ && now->height == height_)) return;
    width_ = now->width;
    height_ = now->height;
    cairo_xcb_surface_set_size(surface_, width_, height_);
    statusChanged_ = true;
    invalidate(0, height_);
}

// Both ask the server for the present state, because the event that reports a change may be an old one.

bool SystemWindow::hasFocus() const {
    Reply<xcb_get_input_focus_reply_t> const now{
        xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr)};
    return now != nullptr && now->focus == window_;
}

bool SystemWindow::isMapped() const {
    Reply<xcb_get_window_attributes_reply_t> const now{
        xcb_get_window_attributes_reply(connection(), xcb_get_window_attributes(connection(), window_), nullptr)};
    return now == nullptr || now->map_state != XCB_MAP_STATE_UNMAPPED;
}

/// Whether a condition holds now or, where a window manager has to act first, within half a second.
template <typename Condition>
bool soon(bool managed, Condition const& condition) {
    for (int attempt = 0; !condition(); ++attempt) {
        if (!managed || attempt == 100) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
    return true;
}

bool SystemWindow::resize(drawing::PageSize size) {
    int const height = size.height + statusHeight;
    bool const fits = size.width <= display_.screen().width_in_pixels && height <= display_.screen().height_in_pixels;
    // Without a window manager the server would accept any size, a window larger than the screen as well.
    if (!fits || size.width < leastWidth) return false;
    configure(XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
              {static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(height)});
    return soon(display_.isManaged(), [&] {
        takeGeometry();
        return width_ == size.width && height_ == height;
    });
}

std::optional<Corner> SystemWindow::cornerOnScreen() const {
    Reply<xcb_translate_coordinates_reply_t> const now{xcb_translate_coordinates_reply(
        connection(), xcb_translate_coordinates(connection(), window_, display_.screen().root, 0, 0), nullptr)};
    if (now == nullptr) return {};
    return Corner{now->dst_x, now->dst_y};
}

bool SystemWindow::move(Corner corner) {
    configure(XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
              {static_cast<std::uint32_t>(corner.x), static_cast<std::uint32_t>(corner.y)});
    return soon(display_.isManaged(), [&] {
        std::optional<Corner> const now = cornerOnScreen();
        return now && now->x == corner.x && now->y == corner.y;
    });
}

void SystemWindow::minimise() {
    if (display_.isManaged()) {
        askManager(display_.atom("WM_CHANGE_STATE"), 3);  // iconic
    } else {
        xcb_unmap_window(connection(), window_);
    }
    minimisedBecomes(true);
    display_.synchronise();
}

void SystemWindow::restore() {
    xcb_map_window(connection(), window_);
    minimisedBecomes(false);
    display_.synchronise();
}

void SystemWindow::minimisedBecomes(bool minimised) {
    // The event that comes after minimise() or restore() finds the state set already, and tells the owner nothing.
    if (minimised == minimised_ || !mapped_) return;
    minimised_ = minimised;
    owner_.sized();
}

void SystemWindow::invalidate(int top, int bottom) {
    invalidTop_ = isInvalid() ? std::min(invalidTop_, top) : top;
    invalidBottom_ = std::max(isInvalid() ? invalidBottom_ : bottom, bottom);
}

void SystemWindow::setStatus(std::wstring const& text) {
    status_ = text;
    statusChanged_ = true;
    invalidate(height_ - statusHeight, height_);
}

void SystemWindow::showNow() {
    paint();
    display_.synchronise();
}

void SystemWindow::paint() {
    // A minimised window forgets the rows, too: the server asks for all of it when it is shown again.
    int const top = std::exchange(invalidTop_, 0), bottom = std::exchange(invalidBottom_, 0);
    if (top >= bottom || minimised_) return;
    drawing::PageSize const size = pictureSize();
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> const owner{cairo_create(surface_), cairo_destroy};
    cairo_t* const context = owner.get();
    cairo_rectangle(context, 0, top, width_, bottom - top);
    cairo_clip(context);
    cairo_set_source_rgb(context, 0.67, 0.67, 0.67);
    auto const [bitmap, rows] = owner_.shown();
    int const drawn = bitmap != nullptr ? rows : 0;
    int const width = bitmap != nullptr ? bitmap->header()->bmiHeader.biWidth : 0;
    // What lies beside and below the finished rows is grey. The worker may be drawing the rows below just now.
    cairo_rectangle(context, width, 0, width_, drawn);
    cairo_rectangle(context, 0, drawn, width_, size.height - drawn);
    cairo_fill(context);
    if (drawn > 0) {
        auto* const pixels = const_cast<unsigned char*>(bitmap->bits());  // only read
        cairo_surface_t* const picture =
            cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_RGB24, width, drawn, width * 4);
        cairo_set_source_surface(context, picture, 0, 0);
        cairo_rectangle(context, 0, 0, std::min(width, size.width), std::min(drawn, size.height));
        cairo_fill(context);
        cairo_surface_destroy(picture);
    }
    cairo_set_source_rgb(context, 0.93, 0.93, 0.93);
    cairo_rectangle(context, 0, size.height, width_, statusHeight);
    cairo_fill(context);
    cairo_set_source_rgb(context, 0, 0, 0);
    cairo_set_font_size(context, 12);
    cairo_move_to(context, 6, size.height + 15);
    cairo_show_text(context, utf8(status_).c_str());
    cairo_surface_flush(surface_);
    xcb_flush(connection());
}

/// The owner may destroy the window in closing(), pressed() and typed(): nothing of it is touched afterwards.
void SystemWindow::handle(xcb_generic_event_t const& event) {
    // The upper bit marks events that another client has sent.
    switch (event.response_type & 0x7F) {
        case XCB_EXPOSE: {
            auto const& expose = reinterpret_cast<xcb_expose_event_t const&>(event);
            return invalidate(expose.y, expose.y + expose.height);
        }
        case XCB_CONFIGURE_NOTIFY: takeGeometry(); return owner_.sized();
        case XCB_FOCUS_IN:
            if (hasFocus()) owner_.cameToFront();
            return;
        case XCB_UNMAP_NOTIFY:
        case XCB_MAP_NOTIFY: return minimisedBecomes(!isMapped());
        case XCB_KEY_PRESS: return key(reinterpret_cast<xcb_key_press_event_t const&>(event));
        case XCB_BUTTON_PRESS: return button(reinterpret_cast<xcb_button_press_event_t const&>(event));
        case XCB_MOTION_NOTIFY: return drag(reinterpret_cast<xcb_motion_notify_event_t const&>(event));
        case XCB_CLIENT_MESSAGE: return message(reinterpret_cast<xcb_client_message_event_t const&>(event));
        default: return;
    }
}

void SystemWindow::message(xcb_client_message_event_t const& message) {
    if (message.type == XCB_ATOM_INTEGER && message.data.data32[0] == ViewTask::messageProgress) {
        owner_.messageCame();
    } else if (message.type == display_.atom("WM_PROTOCOLS") &&
               message.data.data32[0] == display_.atom("WM_DELETE_WINDOW")) {
        owner_.closing();
    }
}

/// Numbers of symbols: characters of Latin 1 are themselves, others stand in the X protocol's list.
void SystemWindow::key(xcb_key_press_event_t const& key) {
    constexpr std::pair<xcb_keysym_t, Key> keys[] = {{0xFF51, Key::left},  {0xFF53, Key::right}, {0xFF52, Key::up},
                                                     {0xFF54, Key::down},  {0xFF50, Key::home},  {0xFFC2, Key::f5},
                                                     {0xFF1B, Key::escape}};
    xcb_keysym_t const symbol = display_.symbolOf(key.detail, (key.state & XCB_MOD_MASK_SHIFT) != 0);
    for (auto const& [number, meaning] : keys) {
        if (number == symbol) return owner_.pressed(meaning);
    }
    // The keypad's symbols hold their ASCII characters in the lower seven bits.
    bool const keypad = symbol >= 0xFFAA && symbol <= 0xFFB9;
    if (keypad || (symbol >= 0x20 && symbol < 0x7F)) owner_.typed(static_cast<wchar_t>(symbol & 0x7F));
}

void SystemWindow::button(xcb_button_press_event_t const& button) {
    Corner const place{button.event_x, button.event_y};
    if (button.detail == 1) dragged_ = place;
    // The wheel is buttons 4 and 5.
    if (button.detail == 4 || button.detail == 5) owner_.scaled(button.detail == 4 ? 1.25 : 1 / 1.25, place);
}

/// The window selects motion only while button 1 is down, so a press has set dragged_ before.
void SystemWindow::drag(xcb_motion_notify_event_t const& motion) {
    Corner const before = std::exchange(dragged_, {motion.event_x, motion.event_y});
    owner_.dragged(motion.event_x - before.x, motion.event_y - before.y);
}

/// Paints what has become invalid. It is called when no event waits, so that many changes are painted once.
void paintWindows() {
    for (auto const& [id, window] : Display::get().windows) {
        if (window->isInvalid()) window->paint();
    }
}

/// None for errors of requests, too, which arrive among the events: a request for a window that is gone has no effect.
xcb_window_t windowOf(xcb_generic_event_t const& event) {
    switch (event.response_type & 0x7F) {
        case XCB_EXPOSE: return reinterpret_cast<xcb_expose_event_t const&>(event).window;
        case XCB_CONFIGURE_NOTIFY: return reinterpret_cast<xcb_configure_notify_event_t const&>(event).window;
        case XCB_FOCUS_IN: return reinterpret_cast<xcb_focus_in_event_t const&>(event).event;
        case XCB_UNMAP_NOTIFY: return reinterpret_cast<xcb_unmap_notify_event_t const&>(event).window;
        case XCB_MAP_NOTIFY: return reinterpret_cast<xcb_map_notify_event_t const&>(event).window;
        case XCB_KEY_PRESS: return reinterpret_cast<xcb_key_press_event_t const&>(event).event;
        case XCB_BUTTON_PRESS: return reinterpret_cast<xcb_button_press_event_t const&>(event).event;
        case XCB_MOTION_NOTIFY: return reinterpret_cast<xcb_motion_notify_event_t const&>(event).event;
        case XCB_CLIENT_MESSAGE: return reinterpret_cast<xcb_client_message_event_t const&>(event).window;
        default: return XCB_NONE;
    }
}

}

std::unique_ptr<Window> Window::create(std::wstring const& title, Corner corner, std::vector<std::wstring> const&,
                                       WindowOwner& owner) {
    return std::make_unique<SystemWindow>(title, corner, owner);
}

bool Window::handleEvent(int milliseconds) {
    Display& display = Display::get();
    Reply<xcb_generic_event_t> event{xcb_poll_for_event(display.connection())};
    if (event == nullptr) {
        paintWindows();
        xcb_flush(display.connection());
        event.reset(xcb_poll_for_event(display.connection()));  // painting may have fetched some
    }
    if (event == nullptr) {
        pollfd connection{xcb_get_file_descriptor(display.connection()), POLLIN, 0};
        // The wait comes last, because xcb may have read events already, and then nothing arrives that would end it.
        poll(&connection, 1, milliseconds);
        event.reset(xcb_poll_for_event(display.connection()));
    }
    if (event == nullptr) return xcb_connection_has_error(display.connection()) == 0;
    // Events of a window that has been destroyed may still come.
    auto const found = display.windows.find(windowOf(*event));
    if (found != display.windows.end()) found->second->handle(*event);
    return true;
}

}
