/// Windows of the system: user32 on Windows, X11 elsewhere.
#pragma once

#include "drawing/Page.h"

#include "orn/colour/DIBitmap.h"
#include "orn/os/Types.h"

#include <memory>
#include <string>
#include <vector>

namespace view {

struct Corner {
    int x, y;
};

/// A key without a character.
enum class Key { left, right, up, down, home, f5, escape };

/// What a window tells its owner. All calls come on the thread that waits for events.
class WindowOwner {
public:
    virtual ~WindowOwner() = default;

    virtual void sized() = 0;        ///< the size changed, or the window was minimised or restored
    virtual void cameToFront() = 0;  ///< the window may have come to the front; it may be told when nothing has changed
    virtual void messageCame() = 0;  ///< ViewTask::messageProgress arrived
    virtual void closing() = 0;      ///< the user wants it to be closed; the owner may destroy it here, as in pressed()
    virtual void pressed(Key key) = 0;
    virtual void typed(wchar_t character) = 0;
    virtual void layerChosen(std::size_t layer) = 0;
    virtual void scaled(double factor, Corner about) = 0;                ///< by the wheel, about a place on the picture
    virtual void dragged(int x, int y) = 0;                              ///< by so many pixels
    virtual void filesCame(std::vector<std::wstring> const& files) = 0;  ///< drawings that the user wants to see

    /// What the window shows: the first rows of a bitmap, if there is one.
    struct Shown {
        DIBitmap const* bitmap = nullptr;
        int rows = 0;
    };
    virtual Shown shown() const = 0;
};

/// A top-level window with a picture above a line of text. Only the thread that made it may use it.
class Window {
public:
    /// Makes a window that is not shown yet. The names of the layers are for the menu, where the system has one. Throws
    /// ORN::OrnError when the system refuses it.
    static std::unique_ptr<Window> create(std::wstring const& title, Corner corner,
                                          std::vector<std::wstring> const& layers, WindowOwner& owner);

    Window() = default;
    Window(Window const&) = delete;
    Window& operator=(Window const&) = delete;
    virtual ~Window() = default;  ///< destroys it without telling the owner

    virtual HWND handle() const = 0;
    virtual drawing::PageSize pictureSize() const = 0;
    virtual bool isMinimised() const = 0;

    virtual void show() = 0;
    virtual void activate() = 0;
    virtual bool resize(drawing::PageSize size) = 0;  ///< to a size of the picture; false when the system refused
    virtual bool move(Corner corner) = 0;             ///< the picture's corner on the screen; false when refused
    virtual void minimise() = 0;
    virtual void restore() = 0;
    virtual void invalidate(int top, int bottom) = 0;  ///< lets these rows be painted again soon
    virtual void showNow() = 0;                        ///< paints them before it returns
    virtual void setStatus(std::wstring const& text) = 0;
    virtual void checkLayer(std::size_t layer, bool shown) = 0;

    /// Lets the user choose files, and gives their names to the owner. Has no effect where the system has no such dialogue.
    virtual void askForFiles() {}

    /// Waits for the next event of any window and handles it. A number of milliseconds that is not negative limits the
    /// wait. Returns false when no event will come any more. Throws what the owner threw.
    static bool handleEvent(int milliseconds);
};

}
