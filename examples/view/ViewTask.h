/// The background task of one window.
#pragma once

#include "view/Log.h"
#include "view/Picture.h"

#include "orn/threading/DrawThread.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace view {

/// How far a window's picture is.
struct Progress {
    std::shared_ptr<Picture const> picture;  ///< null before the first one is begun
    int rows = 0;                            ///< rows of the picture that are drawn
    bool complete = false;                   ///< all of it is drawn, and nothing else has been requested since
    bool held = false;                       ///< the drawing stands still, as hold asked
    std::wstring failure;                    ///< if not empty, why the picture cannot be drawn
};

/// Draws pictures of a sheet band by band. An interrupted picture is continued where it stopped, unless another one has
/// been requested since.
///
/// The draw thread calls the functions of DrawTask; the thread of the window calls all others. The window gets
/// messageProgress when progress() has something new, and never has more than one such message waiting.
class ViewTask final : public DrawTask {
public:
    static constexpr unsigned int messageProgress = 0x8000;  // the first of the numbers that are the application's

    /// The sheet and the log must outlive the task. The number names the window in the log.
    ViewTask(HWND window, int number, Sheet const& sheet, Log& log);
    ~ViewTask() override;

    /// Sets what the next run draws. The caller then inserts the task into the draw thread, which stops the present run.
    void request(Request request);

    Progress progress();

    /// Lets the drawing stand still once, as soon as so many rows are drawn, until it is aborted or released.
    void hold(int rows);
    void release();

    bool run() override;
    void abort() override;
    HWND key() const override { return window_; }

private:
    enum class Next { band, aborted, complete };

    void beginPicture();
    Next next();
    void finishBand(int row);
    void fail(std::wstring const& why);
    void tellWindow() noexcept;

    HWND window_;
    int number_;
    Sheet const& sheet_;
    Log& log_;

    // Only the worker uses these: the picture in work, and its first row that is not drawn.
    std::shared_ptr<Picture> drawn_;
    int row_ = 0;

    // Both threads use these, under the mutex. It is never held while a band is drawn, nor while the draw thread is called.
    std::mutex mutex_;
    std::condition_variable changed_;
    Request request_;
    unsigned int wanted_ = 0, begun_ = 0;  ///< numbers of the latest request and of the one in work
    Progress progress_;
    int heldRows_ = -1;
    bool aborted_ = false;
    bool messageWaits_ = false;
};

}
