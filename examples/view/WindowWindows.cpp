#include "drawing/Program.h"
#include "view/ViewTask.h"
#include "view/Window.h"

#include "orn/foundation/Error.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

#include <windows.h>

#include <cderr.h>
#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>
#include <windowsx.h>

namespace view {

namespace {

constexpr unsigned int commandRedraw = 1, commandFit = 2, commandOpen = 3, commandFirstLayer = 100;
constexpr std::size_t mostLayersInMenu = 1000;
constexpr wchar_t const* className = L"orn-view";
// WS_CLIPCHILDREN: paint() never draws over the status line.
constexpr DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

template <typename Result>
Result checked(Result result, wchar_t const* call) {
    if (!result) throw WinError{call, GetLastError()};
    return result;
}

/// The program's icon in one of the system's sizes; null when it has none, and the system shows its own.
HICON icon(int width, int height) {
    return static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON,
                                         GetSystemMetrics(width), GetSystemMetrics(height), LR_SHARED));
}

// What an owner threw in a call that came through the system, which exceptions must not pass. handleEvent throws it on.
std::exception_ptr failure;

class SystemWindow final : public Window {
public:
    SystemWindow(std::wstring const& title, Corner corner, std::vector<std::wstring> const& layers, WindowOwner& owner);
    ~SystemWindow() override;

    HWND handle() const override { return window_; }
    drawing::PageSize pictureSize() const override;
    bool isMinimised() const override { return IsIconic(window_) != FALSE; }
    void show() override { ShowWindow(window_, SW_SHOWNORMAL); }
    void activate() override;
    bool resize(drawing::PageSize size) override;
    bool move(Corner corner) override;
    void minimise() override { ShowWindow(window_, SW_SHOWMINNOACTIVE); }
    void restore() override { ShowWindow(window_, SW_RESTORE); }
    void invalidate(int top, int bottom) override;
    void showNow() override { UpdateWindow(window_); }
    void setStatus(std::wstring const& text) override { SetWindowTextW(bar_, text.c_str()); }
    void checkLayer(std::size_t layer, bool shown) override;
    void askForFiles() override;

private:
    static void registerClass();
    static HMENU menu(std::vector<std::wstring> const& layers);
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT command(unsigned int command);
    void key(WPARAM key);
    void wheel(WPARAM wParam, LPARAM lParam);
    void drag(WPARAM wParam, LPARAM lParam);
    void drop(HDROP dropped);
    void paint();

    WindowOwner& owner_;
    HWND window_ = nullptr, bar_ = nullptr;
    Corner dragged_{0, 0};
};

void SystemWindow::registerClass() {
    static bool const registered = [] {
        InitCommonControls();
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.hIcon = icon(SM_CXICON, SM_CYICON);
        description.hIconSm = icon(SM_CXSMICON, SM_CYSMICON);
        description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
        description.lpszClassName = className;
        return checked(RegisterClassExW(&description), L"RegisterClassEx") != 0;
    }();
    static_cast<void>(registered);
}

SystemWindow::SystemWindow(std::wstring const& title, Corner corner, std::vector<std::wstring> const& layers,
                           WindowOwner& owner)
    : owner_{owner} {
    registerClass();
    // The window will own the menu and destroy it together with itself. resize() gives it its size later.
    HMENU const bar = menu(layers);
    HWND const window = CreateWindowExW(0, className, title.c_str(), style, corner.x, corner.y, 100, 100, nullptr, bar,
                                        GetModuleHandleW(nullptr), this);
    if (window == nullptr) {
        DWORD const error = GetLastError();
        DestroyMenu(bar);
        throw WinError{L"CreateWindowEx", error};
    }
    bar_ =
        CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, window, nullptr, nullptr, nullptr);
    if (bar_ == nullptr) {
        DWORD const error = GetLastError();
        DestroyWindow(window);
        throw WinError{L"CreateWindowEx", error};
    }
    DragAcceptFiles(window, TRUE);
    // The member comes last: the procedure gives messages to the owner as soon as it is set.
    window_ = window;
}

// The procedure sees that the member is null, and tells the owner nothing of the messages of this call.
SystemWindow::~SystemWindow() { DestroyWindow(std::exchange(window_, nullptr)); }

HMENU SystemWindow::menu(std::vector<std::wstring> const& names) {
    HMENU const bar = checked(CreateMenu(), L"CreateMenu");
    HMENU const picture = CreatePopupMenu(), layers = CreatePopupMenu();
    AppendMenuW(picture, MF_STRING, commandOpen, L"&Open...\tO");
    AppendMenuW(picture, MF_STRING, commandRedraw, L"&Redraw\tF5");
    AppendMenuW(picture, MF_STRING, commandFit, L"&Fit\tF");
    for (std::size_t i = 0; i < std::min(names.size(), mostLayersInMenu); ++i) {
        std::wstring name = names[i];
        // A single & would underline the letter behind it.
        for (std::size_t at = 0; (at = name.find(L'&', at)) != std::wstring::npos; at += 2) name.insert(at, 1, L'&');
        AppendMenuW(layers, MF_STRING | MF_CHECKED, commandFirstLayer + i, name.c_str());
    }
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(picture), L"&Picture");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(layers), L"&Layers");
    return bar;
}

LRESULT CALLBACK SystemWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        void* const self = reinterpret_cast<CREATESTRUCTW const*>(lParam)->lpCreateParams;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* const self = reinterpret_cast<SystemWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // While the window is made or destroyed, the owner is not ready for messages.
    if (self == nullptr || self->window_ == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    try {
        return self->handle(message, wParam, lParam);
    } catch (...) {
        if (!failure) failure = std::current_exception();
        return 0;
    }
}

/// The owner may destroy the window in closing(), pressed() and typed(): nothing of it is touched afterwards.
LRESULT SystemWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    HWND const window = window_;
    switch (message) {
        case WM_SIZE:
            // The status line then moves to the bottom by itself.
            SendMessageW(bar_, WM_SIZE, 0, 0);
            owner_.sized();
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) owner_.cameToFront();
            break;
        // The default procedure turns this message into WM_SIZE and others: it must get it, too.
        case WM_WINDOWPOSCHANGED:
            if ((reinterpret_cast<WINDOWPOS const*>(lParam)->flags & SWP_NOZORDER) == 0) owner_.cameToFront();
            break;
        case ViewTask::messageProgress: owner_.messageCame(); return 0;
        case WM_COMMAND: return command(LOWORD(wParam));
        case WM_KEYDOWN: key(wParam); return 0;
        case WM_CHAR: owner_.typed(static_cast<wchar_t>(wParam)); return 0;
        case WM_MOUSEWHEEL: wheel(wParam, lParam); return 0;
        case WM_LBUTTONDOWN:
            SetCapture(window_);
            dragged_ = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            return 0;
        case WM_MOUSEMOVE: drag(wParam, lParam); return 0;
        case WM_LBUTTONUP: ReleaseCapture(); return 0;
        case WM_DROPFILES: drop(reinterpret_cast<HDROP>(wParam)); return 0;
        case WM_ERASEBKGND: return 1;  // paint() fills everything
        case WM_PAINT: paint(); return 0;
        case WM_CLOSE: owner_.closing(); return 0;
        default: break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT SystemWindow::command(unsigned int command) {
    if (command == commandRedraw) owner_.pressed(Key::f5);
    if (command == commandOpen) askForFiles();
    if (command == commandFit) owner_.pressed(Key::home);
    if (command >= commandFirstLayer) owner_.layerChosen(command - commandFirstLayer);
    return 0;
}

void SystemWindow::key(WPARAM key) {
    constexpr std::pair<WPARAM, Key> keys[] = {{VK_LEFT, Key::left},    {VK_RIGHT, Key::right}, {VK_UP, Key::up},
                                               {VK_DOWN, Key::down},    {VK_HOME, Key::home},   {VK_F5, Key::f5},
                                               {VK_ESCAPE, Key::escape}};
    for (auto const& [code, meaning] : keys) {
        if (code == key) return owner_.pressed(meaning);
    }
}

void SystemWindow::wheel(WPARAM wParam, LPARAM lParam) {
    POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    // Unlike other messages of the mouse, this one has its place on the screen.
    ScreenToClient(window_, &place);
    owner_.scaled(std::pow(1.25, GET_WHEEL_DELTA_WPARAM(wParam) / double{WHEEL_DELTA}), {place.x, place.y});
}

void SystemWindow::drag(WPARAM wParam, LPARAM lParam) {
    // Without the capture the button went down elsewhere, and dragged_ is an old place.
    if ((wParam & MK_LBUTTON) == 0 || GetCapture() != window_) return;
    Corner const before = dragged_;
    dragged_ = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (dragged_.x != before.x || dragged_.y != before.y) owner_.dragged(dragged_.x - before.x, dragged_.y - before.y);
}

void SystemWindow::drop(HDROP dropped) {
    struct Finish {
        void operator()(HDROP drop) const { DragFinish(drop); }
    };
    std::unique_ptr<std::remove_pointer_t<HDROP>, Finish> const owned{dropped};
    std::vector<std::wstring> files(DragQueryFileW(dropped, 0xFFFFFFFF, nullptr, 0));
    for (UINT i = 0; i < files.size(); ++i) {
        // The length is without the zero behind the name, and the size of the buffer is with it.
        files[i].resize(DragQueryFileW(dropped, i, nullptr, 0));
        DragQueryFileW(dropped, i, files[i].data(), static_cast<UINT>(files[i].size()) + 1);
    }
    owner_.filesCame(files);
}

/// The dialogue handles messages of all windows meanwhile. It disables this window, which therefore outlives it.
void SystemWindow::askForFiles() {
    // Room for some ten thousand names; the dialogue fails when they do not fit.
    std::vector<wchar_t> chosen(1 << 20);
    OPENFILENAMEW dialogue{};
    dialogue.lStructSize = sizeof dialogue;
    dialogue.hwndOwner = window_;
    dialogue.lpstrFilter = L"Drawings (*.dxf, *.csv)\0*.dxf;*.csv\0All files\0*.*\0";
    dialogue.lpstrFile = chosen.data();
    dialogue.nMaxFile = static_cast<DWORD>(chosen.size());
    // OFN_NOCHANGEDIR: names on the command line and in a script stay relative to the same folder.
    dialogue.Flags = OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (GetOpenFileNameW(&dialogue) == FALSE) {
        // The dialogue fails without an error when the user cancels it.
        if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL)
            drawing::complain(L"orn-view: too many files are chosen at once");
        return;
    }
    // The result is one path; or a folder and names in it, with a zero behind each.
    std::wstring const first = chosen.data();
    std::vector<std::wstring> files;
    for (wchar_t const* name = chosen.data() + first.size() + 1; *name != 0; name += files.back().size() + 1) {
        files.emplace_back(name);
    }
    for (std::wstring& file : files) file.insert(0, first.ends_with(L'\\') ? first : first + L'\\');
    if (files.empty()) files.push_back(first);
    owner_.filesCame(files);
}

drawing::PageSize SystemWindow::pictureSize() const {
    RECT inner{}, bar{};
    GetClientRect(window_, &inner);
    // The inner area has the status line in it; only the height of the line's rectangle on the screen counts.
    GetWindowRect(bar_, &bar);
    return {static_cast<int>(inner.right), std::max(0, static_cast<int>(inner.bottom - (bar.bottom - bar.top)))};
}

void SystemWindow::invalidate(int top, int bottom) {
    RECT const rows{0, top, pictureSize().width, bottom};
    InvalidateRect(window_, &rows, FALSE);
}

void SystemWindow::checkLayer(std::size_t layer, bool shown) {
    // Further layers have no line in the menu.
    if (layer >= mostLayersInMenu) return;
    CheckMenuItem(GetMenu(window_), static_cast<UINT>(commandFirstLayer + layer), shown ? MF_CHECKED : MF_UNCHECKED);
}

void SystemWindow::paint() {
    PAINTSTRUCT painting;
    HDC const context = checked(BeginPaint(window_, &painting), L"BeginPaint");
    drawing::PageSize const size = pictureSize();
    RECT blank{0, 0, size.width, size.height};
    auto const [bitmap, rows] = owner_.shown();
    if (bitmap != nullptr && rows > 0) {
        BITMAPINFO drawn = *bitmap->header();
        int const width = drawn.bmiHeader.biWidth;
        drawn.bmiHeader.biHeight = -rows;  // the worker may be drawing the rows below just now
        SetDIBitsToDevice(context, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(rows), 0, 0, 0,
                          static_cast<UINT>(rows), bitmap->bits(), &drawn, DIB_RGB_COLORS);
        RECT const beside{width, 0, size.width, rows};
        if (width < size.width) FillRect(context, &beside, GetSysColorBrush(COLOR_APPWORKSPACE));
        // Nothing is filled where the picture is drawn: it would flicker.
        blank.top = rows;
    }
    if (blank.top < blank.bottom) FillRect(context, &blank, GetSysColorBrush(COLOR_APPWORKSPACE));
    EndPaint(window_, &painting);
}

void SystemWindow::activate() {
    SetForegroundWindow(window_);
    SetActiveWindow(window_);
    BringWindowToTop(window_);
}

bool SystemWindow::resize(drawing::PageSize size) {
    RECT bar{};
    GetWindowRect(bar_, &bar);
    RECT place{0, 0, size.width, size.height + (bar.bottom - bar.top)};
    // The system counts one line for the menu. In a narrow window the menu takes two, and the size is missed.
    checked(AdjustWindowRectEx(&place, style, TRUE, 0), L"AdjustWindowRectEx");
    SetWindowPos(window_, nullptr, 0, 0, place.right - place.left, place.bottom - place.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    // WM_SIZE has come during the call, so the new size can be read at once.
    drawing::PageSize const now = pictureSize();
    return now.width == size.width && now.height == size.height;
}

bool SystemWindow::move(Corner corner) {
    // The frame is moved by as much as the picture has to be.
    POINT now{0, 0};
    RECT outer;
    ClientToScreen(window_, &now);
    GetWindowRect(window_, &outer);
    SetWindowPos(window_, nullptr, outer.left + corner.x - now.x, outer.top + corner.y - now.y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    now = {0, 0};
    ClientToScreen(window_, &now);
    return now.x == corner.x && now.y == corner.y;
}

}

std::unique_ptr<Window> Window::create(std::wstring const& title, Corner corner,
                                       std::vector<std::wstring> const& layers, WindowOwner& owner) {
    return std::make_unique<SystemWindow>(title, corner, layers, owner);
}

bool Window::handleEvent(int milliseconds) {
    DWORD const wait = milliseconds < 0 ? INFINITE : static_cast<DWORD>(milliseconds);
    MSG message;
    // MWMO_INPUTAVAILABLE: messages that an earlier look has left in the queue end the wait, too. There may be none
    // after the wait, because what other threads send is handled inside PeekMessage.
    if (MsgWaitForMultipleObjectsEx(0, nullptr, wait, QS_ALLINPUT, MWMO_INPUTAVAILABLE) == WAIT_OBJECT_0 &&
        PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) return false;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (failure) std::rethrow_exception(std::exchange(failure, nullptr));
    return true;
}

}
