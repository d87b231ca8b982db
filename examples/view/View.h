/// A window that shows a drawing.
#pragma once

#include "view/Layers.h"
#include "view/StatusLine.h"
#include "view/ViewTask.h"
#include "view/ViewThread.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include <windows.h>

namespace view {

/// What the windows share.
struct Desk {
    Log& log;
    Layers layers{};
    ViewThread thread{log};
    std::exception_ptr failure{};  ///< what a window procedure could not let pass through the system
};

/// A top-level window: the picture, a menu of the layers, and a status line below. The user or the program may close the
/// window before the object goes. To be used by the thread that made it.
class View {
public:
    static void registerClass();  ///< once, before the first window

    /// Throws WinError when the system refuses the window. The picture is asked for by start().
    View(Desk& desk, Sheet const& sheet, int number, drawing::PageSize size, POINT corner);
    ~View();
    View(View const&) = delete;
    View& operator=(View const&) = delete;

    void start();

    Sheet const& sheet() const noexcept { return sheet_; }
    bool isOpen() const noexcept { return window_ != nullptr; }
    bool isMinimised() const noexcept { return IsIconic(window_) != FALSE; }
    Progress const& progress() const noexcept { return progress_; }  ///< as far as the window has heard

    // For an open window. The size and the corner are those of the picture on the screen; resize and move return whether
    // the system has followed.
    void activate();
    bool resize(drawing::PageSize size);
    bool move(POINT corner);
    void minimise();
    void restore();
    void redraw();  ///< anew, from the first band
    void hold(int rows);
    void release() { task_->release(); }
    void close();    ///< returns when nothing draws for the window any more; nothing when it is closed
    void showNow();  ///< what is drawn comes to the screen before this returns

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    drawing::PageSize pictureSize() const;
    SIZE outerSize(drawing::PageSize size) const;
    HMENU layerMenu() const;
    void request();
    void sizeChanged(WPARAM how);
    void cameToFront();
    void progressed();
    void chosen(unsigned int command);
    void layerChanged(Quark layer);
    void paint();
    void endDrawing();

    Desk& desk_;
    Sheet const& sheet_;
    int number_;
    HWND window_ = nullptr;
    bool started_ = false;
    bool closing_ = false;
    drawing::PageSize requested_{0, 0};
    Progress progress_;
    PictureEvents events_;
    std::unique_ptr<ViewTask> task_;
    std::optional<StatusLine> status_;
    std::optional<Subscription<Quark>> layersChanged_;
};

}
