#include "view/ViewTask.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"
#include "orn/threading/WindowMessage.h"

#include <new>
#include <utility>

namespace view {

ViewTask::ViewTask(HWND window, int number, Sheet const& sheet, Log& log)
    : window_{window}, number_{number}, sheet_{sheet}, log_{log} {}
ViewTask::~ViewTask() = default;

void ViewTask::request(Request request) {
    std::lock_guard const lock{mutex_};
    request_ = std::move(request);
    // The worker compares this number with that of its picture, and so sees a request that comes while it draws.
    ++wanted_;
    progress_.complete = false;
    progress_.failure.clear();
}

Progress ViewTask::progress() {
    std::lock_guard const lock{mutex_};
    // This is done under the same lock as the copy: what changes from now on sends a message of its own.
    messageWaits_ = false;
    return progress_;
}

void ViewTask::hold(int rows) {
    std::lock_guard const lock{mutex_};
    heldRows_ = rows;
}

void ViewTask::release() {
    std::lock_guard const lock{mutex_};
    progress_.held = false;
    changed_.notify_one();
}

void ViewTask::abort() {
    std::lock_guard const lock{mutex_};
    aborted_ = true;
    progress_.held = false;
    changed_.notify_one();
}

bool ViewTask::run() {
    try {
        beginPicture();
        for (;;) {
            switch (next()) {
                // The band is drawn without the mutex: only the worker changes the row and the picture.
                case Next::band: finishBand(drawn_->drawBand(row_)); break;
                case Next::aborted: return false;
                case Next::complete: return true;
            }
        }
    } catch (ORN::OrnError const& error) {
        fail(error.wWhat());
    } catch (std::bad_alloc const&) {
        fail(L"there is not enough memory for the picture");
    } catch (std::exception const& error) {
        fail(getWCS(error.what()));
    }
    return true;
}

/// Begins the picture that was requested last, or continues the present one. A request that comes later is for the next
/// run: its caller inserts the task, too.
void ViewTask::beginPicture() {
    std::unique_lock lock{mutex_};
    if (begun_ != wanted_) {
        Request const request = request_;
        unsigned int const begun = wanted_;
        // Making a picture looks at all entities: the window's thread must not wait for that.
        lock.unlock();
        auto picture = std::make_shared<Picture>(sheet_, request);
        lock.lock();
        drawn_ = std::move(picture);
        row_ = 0;
        begun_ = begun;
        progress_ = Progress{};
        progress_.picture = drawn_;
    }
    auto const [width, height] = drawn_->size();
    if (row_ < height) log_.write(stringPrintf(L"drawing %d %dx%d from row %d", number_, width, height, row_));
}

ViewTask::Next ViewTask::next() {
    std::unique_lock lock{mutex_};
    if (heldRows_ >= 0 && row_ >= heldRows_ && !aborted_) {
        heldRows_ = -1;
        progress_.held = true;
        tellWindow();
        changed_.wait(lock, [&] { return !progress_.held; });
    }
    // An abort may come when the last band is drawn, or even when the run is over. Then the next run ends at once and is
    // queued again: nothing is lost.
    bool const aborted = std::exchange(aborted_, false);
    if (row_ == drawn_->size().height) return Next::complete;
    if (!aborted) return Next::band;
    log_.write(stringPrintf(L"interrupted %d at row %d", number_, row_));
    return Next::aborted;
}

void ViewTask::finishBand(int row) {
    std::lock_guard const lock{mutex_};
    row_ = row;
    progress_.rows = row;
    if (row == drawn_->size().height) {
        // A picture that a request has overtaken is not what the user waits for.
        progress_.complete = begun_ == wanted_;
        log_.write(stringPrintf(L"drawn %d", number_));
    }
    tellWindow();
}

void ViewTask::fail(std::wstring const& why) {
    log_.write(stringPrintf(L"failed %d: %ls", number_, why.c_str()));
    std::lock_guard const lock{mutex_};
    progress_.failure = why;
    tellWindow();
}

/// The caller holds the mutex. One waiting message stands for all that happens until the window reads it, so that the
/// window's queue cannot fill up.
void ViewTask::tellWindow() noexcept {
    if (messageWaits_) return;
    try {
        ORN::OrnPostMessage(window_, messageProgress, 0, 0);
        messageWaits_ = true;
    } catch (std::exception const&) {
        // The window may be gone, or its queue full. The next band tries again, because no message waits.
        log_.write(L"a message is lost");
    }
}

}
