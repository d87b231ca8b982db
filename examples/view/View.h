/// A window that shows a drawing.
#pragma once

#include "view/Layers.h"
#include "view/StatusLine.h"
#include "view/ViewTask.h"
#include "view/ViewThread.h"
#include "view/Window.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace view {

/// What all windows share.
struct Desk {
    Log& log;
    Layers layers{};
    ViewThread thread{log};
    std::vector<std::wstring> asked{};  ///< files that the user has opened and that have no window yet
};

/// The picture of a drawing in a window, with a status line below. The user or the program may close the window before
/// the object is destroyed. Only the thread that made the object may use it.
class View final : private WindowOwner {
public:
    /// Throws ORN::OrnError when the system refuses the window. The picture is not drawn before start() is called.
    View(Desk& desk, Sheet const& sheet, int number, drawing::PageSize size, Corner corner);
    ~View() override;
    View(View const&) = delete;
    View& operator=(View const&) = delete;

    void start();

    Sheet const& sheet() const noexcept { return sheet_; }
    int number() const noexcept { return number_; }
    bool isOpen() const noexcept { return window_ != nullptr; }
    bool isMinimised() const { return window_->isMinimised(); }
    Progress const& progress() const noexcept { return progress_; }  ///< as the latest message told it

    // For an open window. The size and the corner are those of the picture on the screen; resize and move return whether
    // the system has followed.
    void activate() { window_->activate(); }
    bool resize(drawing::PageSize size);
    bool move(Corner corner) { return window_->move(corner); }
    void minimise() { window_->minimise(); }
    void restore() { window_->restore(); }
    void redraw();  ///< draws the picture anew, from the first band
    void zoom(double factor, Corner about);
    void pan(int x, int y);
    void fit();
    void hold(int rows);
    void release() { task_->release(); }
    /// Returns when no thread draws for the window any more. Has no effect on a closed window.
    void close();
    /// Brings what is drawn to the screen before it returns.
    void showNow() { window_->showNow(); }

private:
    void sized() override;
    void cameToFront() override;
    void messageCame() override;
    void closing() override { close(); }
    void pressed(Key key) override;
    void typed(wchar_t character) override;
    void layerChosen(std::size_t layer) override;
    void scaled(double factor, Corner about) override { zoom(factor, about); }
    void dragged(int x, int y) override { pan(x, y); }
    void filesCame(std::vector<std::wstring> const& files) override;
    Shown shown() const override { return {bitmap(), progress_.rows}; }

    DIBitmap const* bitmap() const noexcept {
        return progress_.picture != nullptr ? &progress_.picture->bitmap() : nullptr;
    }
    void request();
    void shiftTo(Vector<2> const& shift);
    void layerChanged(Quark layer);
    void endDrawing();

    Desk& desk_;
    Sheet const& sheet_;
    int number_;
    std::unique_ptr<Window> window_;
    bool started_ = false;
    bool closing_ = false;
    bool wasMinimised_ = false;
    drawing::PageSize requested_{0, 0};
    drawing::Closeup closeup_;
    Progress progress_;
    PictureEvents events_;
    std::unique_ptr<ViewTask> task_;
    std::optional<StatusLine> status_;
    std::optional<Subscription<Quark>> layersChanged_;
};

}
