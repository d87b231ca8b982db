/// The background job of one window.
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
    int rows = 0;                            ///< of it that are drawn
    bool complete = false;                   ///< it is drawn, and it is what was requested last
    bool held = false;                       ///< it stands still, as hold asked
    std::wstring failure;                    ///< why there is no picture, if there will be none
};

/// Draws pictures of a sheet band by band. An interrupted picture is continued where it stopped, unless another one has
/// been requested since.
///
/// The functions of DrawTask are the draw thread's; all others are the window's thread's. The window gets messageProgress
/// when there is something new in progress(), and never has more than one such message waiting.
class ViewTask final : public DrawTask {
public:
    static constexpr unsigned int messageProgress = 0x8000;  // the first of the numbers that are the application's

    /// The sheet and the log must outlive the task. The number names the window in the log.
    ViewTask(HWND window, int number, Sheet const& sheet, Log& log);
    ~ViewTask() override;

    /// What the next run is to draw. The caller then inserts the task into the draw thread, which stops the present run.
    void request(Request request);

    Progress progress();

    /// Where the drawing is to stand still, once, until it is aborted or released: where it first has so many rows.
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

    // The worker's alone: the picture in work, and its first row that is not drawn.
    std::shared_ptr<Picture> drawn_;
    int row_ = 0;

    // Both threads'. The mutex is held for moments, never while something is drawn nor around calls of the draw thread.
    std::mutex mutex_;
    std::condition_variable changed_;
    Request request_;
    unsigned int wanted_ = 0, begun_ = 0;  ///< requests are counted
    Progress progress_;
    int heldRows_ = -1;
    bool aborted_ = false;
    bool messageWaits_ = false;
};

}
