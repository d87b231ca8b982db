#include "view/View.h"

#include "orn/foundation/Error.h"
#include "orn/text/Printf.h"

#include <algorithm>

namespace view {

namespace {

constexpr unsigned int commandRedraw = 1, commandFirstLayer = 100;
constexpr std::size_t mostLayersInMenu = 1000;
constexpr wchar_t const* className = L"orn-view";
constexpr DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

template <typename Result>
Result checked(Result result, wchar_t const* call) {
    if (!result) throw WinError{call, GetLastError()};
    return result;
}

}

void View::registerClass() {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
    description.lpszClassName = className;
    checked(RegisterClassExW(&description), L"RegisterClassEx");
}

View::View(Desk& desk, Sheet const& sheet, int number, drawing::PageSize size, POINT corner)
    : desk_{desk}, sheet_{sheet}, number_{number} {
    std::wstring const title = sheet.name() + L" - orn-view";
    HMENU const menu = layerMenu();
    HWND const window = CreateWindowExW(0, className, title.c_str(), style, corner.x, corner.y, 100, 100, nullptr, menu,
                                        GetModuleHandleW(nullptr), this);
    if (window == nullptr) {
        DWORD const error = GetLastError();
        DestroyMenu(menu);
        throw WinError{L"CreateWindowEx", error};
    }
    try {
        window_ = window;
        task_ = std::make_unique<ViewTask>(window, number, sheet, desk.log);
        status_.emplace(window, events_,
                        stringPrintf(L"%d layers, %llu lines and arcs", static_cast<int>(sheet.layers().size()),
                                     static_cast<unsigned long long>(sheet.drawing().entities().size())));
        layersChanged_.emplace(desk.layers.changed(), [this](Quark layer) { layerChanged(layer); });
        if (!resize(size)) {
            throw ORN::OrnError{
                stringPrintf(L"orn-view: no window has a picture of %dx%d pixels", size.width, size.height)};
        }
        ShowWindow(window, SW_SHOWNORMAL);
    } catch (...) {
        DestroyWindow(window);
        throw;
    }
    desk.log.write(stringPrintf(L"opened %d %ls", number, sheet.name().c_str()));
}

View::~View() {
    if (window_ != nullptr) DestroyWindow(window_);
}

void View::start() {
    started_ = true;
    sizeChanged(SIZE_RESTORED);
}

HMENU View::layerMenu() const {
    HMENU const bar = checked(CreateMenu(), L"CreateMenu");
    HMENU const picture = CreatePopupMenu(), layers = CreatePopupMenu();
    AppendMenuW(picture, MF_STRING, commandRedraw, L"&Redraw");
    std::size_t const count = std::min(sheet_.layers().size(), mostLayersInMenu);
    for (std::size_t i = 0; i < count; ++i) {
        std::wstring name = sheet_.layers()[i].value();
        for (std::size_t at = 0; (at = name.find(L'&', at)) != std::wstring::npos; at += 2) name.insert(at, 1, L'&');
        UINT const shown = desk_.layers.shows(sheet_.layers()[i]) ? MF_CHECKED : MF_UNCHECKED;
        AppendMenuW(layers, MF_STRING | shown, commandFirstLayer + i, name.c_str());
    }
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(picture), L"&Picture");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(layers), L"&Layers");
    return bar;
}

LRESULT CALLBACK View::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        void* const view = reinterpret_cast<CREATESTRUCTW const*>(lParam)->lpCreateParams;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view));
    }
    auto* const self = reinterpret_cast<View*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // While the window is created, the object is not ready for messages.
    if (self == nullptr || self->window_ == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    try {
        return self->handle(window, message, wParam, lParam);
    } catch (...) {
        if (!self->desk_.failure) self->desk_.failure = std::current_exception();
        return 0;
    }
}

LRESULT View::handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE: sizeChanged(wParam); return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) cameToFront();
            break;
        case WM_WINDOWPOSCHANGED:
            if ((reinterpret_cast<WINDOWPOS const*>(lParam)->flags & SWP_NOZORDER) == 0) cameToFront();
            break;
        case ViewTask::messageProgress: progressed(); return 0;
        case WM_COMMAND: chosen(LOWORD(wParam)); return 0;
        case WM_KEYDOWN:
            if (wParam == VK_F5) redraw();
            return 0;
        case WM_ERASEBKGND: return 1;  // paint() fills everything
        case WM_PAINT: paint(); return 0;
        case WM_CLOSE: close(); return 0;
        case WM_DESTROY: endDrawing(); return 0;
        case WM_NCDESTROY:
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            window_ = nullptr;
            break;
        default: break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

drawing::PageSize View::pictureSize() const {
    RECT inner{};
    GetClientRect(window_, &inner);
    return {static_cast<int>(inner.right), std::max(0, static_cast<int>(inner.bottom) - status_->height())};
}

/// Of a window whose picture has this size.
SIZE View::outerSize(drawing::PageSize size) const {
    RECT place{0, 0, size.width, size.height + status_->height()};
    checked(AdjustWindowRectEx(&place, style, TRUE, 0), L"AdjustWindowRectEx");
    return {place.right - place.left, place.bottom - place.top};
}

/// Has the picture drawn anew. What is queued for the window is replaced, what is being drawn stops.
void View::request() {
    progress_.complete = false;
    progress_.failure.clear();
    task_->request({requested_, desk_.layers.hidden()});
    desk_.thread.insert(*task_);
}

void View::sizeChanged(WPARAM how) {
    if (!status_) return;
    status_->fitParent();
    if (!started_) return;
    if (how == SIZE_MINIMIZED) {
        // Nobody sees it: others first. A picture in work is continued when the window is restored.
        if (!progress_.complete) desk_.thread.cancel(window_);
        return;
    }
    drawing::PageSize const size = pictureSize();
    bool const same = size.width == requested_.width && size.height == requested_.height;
    if (same) {
        if (!progress_.complete) desk_.thread.insert(*task_);
        return;
    }
    requested_ = size;
    InvalidateRect(window_, nullptr, FALSE);
    if (size.width > 0 && size.height > 0) request();
}

/// A window that still waits for its picture may now be the one to be drawn first.
void View::cameToFront() {
    if (started_) desk_.thread.updateActive(window_);
}

void View::progressed() {
    if (!started_) return;
    int const before = progress_.rows;
    std::shared_ptr<Picture const> const old = progress_.picture;
    progress_ = task_->progress();
    if (!progress_.failure.empty()) {
        events_.failed->notify(progress_.failure);
        return;
    }
    if (progress_.picture == nullptr) return;

    auto const [width, height] = progress_.picture->size();
    RECT const news{0, progress_.picture == old ? before : 0, width,
                    progress_.picture == old ? progress_.rows : height};
    InvalidateRect(window_, &news, FALSE);
    if (progress_.complete) {
        events_.finished->notify();
    } else {
        events_.bandsDone->notify(static_cast<int>(100LL * progress_.rows / height));
    }
}

void View::chosen(unsigned int command) {
    if (command == commandRedraw) redraw();
    if (command < commandFirstLayer || command - commandFirstLayer >= sheet_.layers().size()) return;
    Quark const layer = sheet_.layers()[command - commandFirstLayer];
    desk_.layers.show(layer, !desk_.layers.shows(layer));
}

void View::layerChanged(Quark layer) {
    if (!started_ || !sheet_.has(layer)) return;
    auto const at = std::find(sheet_.layers().begin(), sheet_.layers().end(), layer) - sheet_.layers().begin();
    CheckMenuItem(GetMenu(window_), static_cast<UINT>(commandFirstLayer + at),
                  desk_.layers.shows(layer) ? MF_CHECKED : MF_UNCHECKED);
    redraw();
}

void View::redraw() {
    if (started_ && requested_.width > 0 && requested_.height > 0) request();
}

void View::paint() {
    PAINTSTRUCT painting;
    HDC const context = checked(BeginPaint(window_, &painting), L"BeginPaint");
    drawing::PageSize const size = pictureSize();
    RECT blank{0, 0, size.width, size.height};
    if (progress_.picture != nullptr && progress_.rows > 0) {
        DIBitmap const& bitmap = progress_.picture->bitmap();
        BITMAPINFO drawn = *bitmap.header();
        int const width = progress_.picture->size().width, rows = progress_.rows;
        drawn.bmiHeader.biHeight = -rows;  // what lies below may be drawn on just now
        SetDIBitsToDevice(context, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(rows), 0, 0, 0,
                          static_cast<UINT>(rows), bitmap.bits(), &drawn, DIB_RGB_COLORS);
        RECT const beside{width, 0, size.width, rows};
        if (width < size.width) FillRect(context, &beside, GetSysColorBrush(COLOR_APPWORKSPACE));
        blank.top = rows;
    }
    if (blank.top < blank.bottom) FillRect(context, &blank, GetSysColorBrush(COLOR_APPWORKSPACE));
    EndPaint(window_, &painting);
}

/// Waits for the worker, which may be drawing this window: afterwards nothing refers to the task any more. Messages that
/// come meanwhile find nothing to draw.
void View::endDrawing() {
    if (closing_) return;
    closing_ = true;
    started_ = false;
    ORN::Threading::BoringWaiter const waiter;
    try {
        desk_.thread.cancel(window_, waiter);
    } catch (...) {
        desk_.thread.finish(waiter);
        throw;
    }
    layersChanged_.reset();
    task_.reset();
    progress_ = {};
    desk_.log.write(stringPrintf(L"closed %d", number_));
}

void View::activate() {
    SetForegroundWindow(window_);
    SetActiveWindow(window_);
    BringWindowToTop(window_);
}

bool View::resize(drawing::PageSize size) {
    auto const [width, height] = outerSize(size);
    SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    drawing::PageSize const now = pictureSize();
    return now.width == size.width && now.height == size.height;
}

bool View::move(POINT corner) {
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

void View::hold(int rows) {
    progress_.held = false;
    task_->hold(rows);
}

void View::minimise() { ShowWindow(window_, SW_SHOWMINNOACTIVE); }
void View::restore() { ShowWindow(window_, SW_RESTORE); }
void View::showNow() { UpdateWindow(window_); }

/// The drawing ends first: DestroyWindow hides the window, activates another one, and would so have it drawn meanwhile.
void View::close() {
    if (window_ == nullptr) return;
    endDrawing();
    DestroyWindow(window_);
}

}
