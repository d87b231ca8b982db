#include "view/View.h"

#include "orn/foundation/Error.h"
#include "orn/text/Printf.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace view {

namespace {

constexpr double leastZoom = 1.0 / 64, greatestZoom = 1024;

std::vector<std::wstring> layerNames(Sheet const& sheet) {
    std::vector<std::wstring> names;
    for (Quark const layer : sheet.layers()) names.push_back(layer.value());
    return names;
}

}

View::View(Desk& desk, Sheet const& sheet, int number, drawing::PageSize size, Corner corner)
    : desk_{desk}, sheet_{sheet}, number_{number} {
    window_ = Window::create(sheet.name() + L" - orn-view", corner, layerNames(sheet), *this);
    task_ = std::make_unique<ViewTask>(window_->handle(), number, sheet, desk.log);
    // The status line shows this text when the picture is complete.
    std::size_t const layers = sheet.layers().size(), pieces = sheet.drawing().entities().size();
    status_.emplace(
        *window_, events_,
        stringPrintf(L"%llu %ls, %llu %ls", static_cast<unsigned long long>(layers), layers == 1 ? L"layer" : L"layers",
                     static_cast<unsigned long long>(pieces), pieces == 1 ? L"line or arc" : L"lines and arcs"));
    layersChanged_.emplace(desk.layers.changed(), [this](Quark layer) { layerChanged(layer); });
    for (std::size_t i = 0; i < layers; ++i) window_->checkLayer(i, desk.layers.shows(sheet.layers()[i]));
    // Sizes count only after start(): this one asks for no picture yet.
    if (!window_->resize(size)) {
        throw ORN::OrnError{
            stringPrintf(L"orn-view: no window has a picture of %dx%d pixels", size.width, size.height)};
    }
    window_->show();
    desk.log.write(stringPrintf(L"opened %d %ls", number, sheet.name().c_str()));
}

View::~View() {
    try {
        close();
    } catch (std::exception const&) {  // then the draw thread is at its end
    }
}

void View::start() {
    started_ = true;
    sized();
}

/// Lets the picture be drawn anew. The new request replaces one that is queued and interrupts one that is being drawn.
void View::request() {
    // This copy changes, too, because scripts look at it before the first message about the new picture comes.
    progress_.complete = false;
    progress_.failure.clear();
    task_->request({requested_, closeup_, desk_.layers.hidden()});
    desk_.thread.insert(*task_);
}

void View::sized() {
    if (!started_) return;
    if (window_->isMinimised()) {
        // Nobody sees the picture now, so others are drawn first. It is continued when the window is restored.
        if (!progress_.complete) desk_.thread.cancel(window_->handle());
        wasMinimised_ = true;
        return;
    }
    bool const restored = std::exchange(wasMinimised_, false);
    drawing::PageSize const size = window_->pictureSize();
    if (size.width == requested_.width && size.height == requested_.height) {
        if (restored && !progress_.complete) desk_.thread.insert(*task_);
        return;
    }
    requested_ = size;
    window_->invalidate(0, size.height);
    // A window may be so low that it has no room for a picture.
    if (size.width > 0 && size.height > 0) request();
}

/// A window that still waits for its picture may now be the one to be drawn first.
void View::cameToFront() {
    if (started_) desk_.thread.updateActive(window_->handle());
}

void View::messageCame() {
    if (!started_) return;
    int const before = progress_.rows;
    std::shared_ptr<Picture const> const old = progress_.picture;
    progress_ = task_->progress();
    if (!progress_.failure.empty()) {
        events_.failed->notify(progress_.failure);
        return;
    }
    if (progress_.picture == nullptr) return;

    int const height = progress_.picture->size().height;
    // Of the same picture only the new rows are shown; another one replaces all.
    bool const goesOn = progress_.picture == old;
    window_->invalidate(goesOn ? before : 0, goesOn ? progress_.rows : height);
    if (progress_.complete) {
        events_.finished->notify();
    } else {
        events_.bandsDone->notify(static_cast<int>(100LL * progress_.rows / height));
    }
}

void View::pressed(Key key) {
    constexpr int step = 48;
    switch (key) {
        case Key::left: return pan(step, 0);
        case Key::right: return pan(-step, 0);
        case Key::up: return pan(0, step);
        case Key::down: return pan(0, -step);
        case Key::home: return fit();
        case Key::f5: return redraw();
        case Key::escape: return close();
    }
}

void View::typed(wchar_t character) {
    constexpr double factor = 1.25;
    Corner const middle{requested_.width / 2, requested_.height / 2};
    switch (character) {
        case L'+': return zoom(factor, middle);
        case L'-': return zoom(1 / factor, middle);
        case L'f': return fit();
        case L'o': return window_->askForFiles();
        case L'q': return close();
        case L'a':
            // Each layer that was hidden requests a new picture, and each request replaces the one before.
            for (Quark const layer : sheet_.layers()) desk_.layers.show(layer, true);
            return;
        default:
            if (character >= L'0' && character <= L'9')
                layerChosen(character == L'0' ? 9 : static_cast<std::size_t>(character - L'1'));
    }
}

void View::filesCame(std::vector<std::wstring> const& files) {
    // They are only noted: the main loop reads the files and makes the windows, outside of any message.
    desk_.asked.insert(desk_.asked.end(), files.begin(), files.end());
}

void View::layerChosen(std::size_t layer) {
    if (layer >= sheet_.layers().size()) return;
    Quark const chosen = sheet_.layers()[layer];
    desk_.layers.show(chosen, !desk_.layers.shows(chosen));
}

void View::layerChanged(Quark layer) {
    if (!started_ || !sheet_.has(layer)) return;
    auto const at = std::find(sheet_.layers().begin(), sheet_.layers().end(), layer) - sheet_.layers().begin();
    window_->checkLayer(static_cast<std::size_t>(at), desk_.layers.shows(layer));
    redraw();
}

void View::redraw() {
    if (started_ && requested_.width > 0 && requested_.height > 0) request();
}

/// What lies at the place stays there: p goes to middle + (p - middle) zoom + shift.
void View::zoom(double factor, Corner about) {
    double const zoom = std::clamp(closeup_.zoom * factor, leastZoom, greatestZoom);
    Vector<2> const away{about.x - requested_.width * 0.5, about.y - requested_.height * 0.5};
    // away = (p - middle) zoom + shift holds before and after; p - middle of the one goes into the other.
    Vector<2> const shift = away - (away - closeup_.shift) * (zoom / closeup_.zoom);
    closeup_.zoom = zoom;
    shiftTo(shift);
}

void View::pan(int x, int y) { shiftTo(closeup_.shift + Vector<2>{static_cast<double>(x), static_cast<double>(y)}); }

void View::shiftTo(Vector<2> const& shift) {
    // Unmoved, the drawing fills nearly the whole page: farther away nothing of it is seen.
    double const most = std::max(closeup_.zoom, 1.0);
    double const x = requested_.width * most, y = requested_.height * most;
    closeup_.shift = {std::clamp(shift.x(), -x, x), std::clamp(shift.y(), -y, y)};
    redraw();
}

void View::fit() {
    closeup_ = {};
    redraw();
}

/// Waits for the worker, which may be drawing this window. Afterwards no thread refers to the task any more. Events that
/// come meanwhile find that nothing is started.
void View::endDrawing() {
    if (closing_) return;
    // The wait may deliver messages that others send, and one of them may ask for the end once more.
    closing_ = true;
    started_ = false;
    ORN::Threading::BoringWaiter const waiter;
    try {
        desk_.thread.cancel(window_->handle(), waiter);
    } catch (...) {
        // This drops the tasks of all windows and ends the worker: then nothing uses the task any more, either.
        desk_.thread.finish(waiter);
        throw;
    }
    // What calls the window and the task goes first.
    layersChanged_.reset();
    status_.reset();
    task_.reset();
    progress_ = {};
    desk_.log.write(stringPrintf(L"closed %d", number_));
}

bool View::resize(drawing::PageSize size) {
    bool const followed = window_->resize(size);
    sized();
    return followed;
}

void View::hold(int rows) {
    // The copy may tell of an earlier hold, and a script that waits for this one must not take it for the new one.
    progress_.held = false;
    task_->hold(rows);
}

/// Ends the drawing first: while the window is destroyed others come to the front, and the draw thread would still use it.
void View::close() {
    if (window_ == nullptr) return;
    endDrawing();
    window_.reset();
}

}
