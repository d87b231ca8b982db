#include "drawing/Render.h"

#include "drawing/Canvas.h"
#include "drawing/Flatten.h"

#include "orn/threading/Scheduler.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace drawing {

namespace {

// With the rounding of the strokes' points, a quarter of a pixel in all.
constexpr double flatness = 0.2;

/// A worker of the library that runs one job in the background. The job comes to its end by itself.
class Helper final : public ORN::Threading::SchedulerBase, private ORN::Threading::TaskBase {
public:
    explicit Helper(std::function<void()> job) : SchedulerBase{0}, job_{std::move(job)} {}
    /// Drops a job that has not begun, and waits for one that has.
    ~Helper() override { finish(ORN::Threading::BoringWaiter{}); }
    Helper(Helper const&) = delete;
    Helper& operator=(Helper const&) = delete;

    void start() {
        ExclusiveLock guard{lockWord()};
        startThread(guard);
        isQueued_ = true;
        wakeWorker(guard);
    }

private:
    void processTasks() override {
        ExclusiveLock guard{lockWord()};
        if (!isQueued_) return;
        isQueued_ = false;
        isRunning_ = true;
        setCancelled(false);
        guard.unlock();
        // The job catches all that it throws: nothing leaves the worker.
        job_();
        guard.lock();
        isRunning_ = false;
        tellStopped();
    }
    void abort() override {}
    void eraseWholeQueue() override { isQueued_ = false; }
    TaskBase* taskInProgress() const override { return isRunning_ ? const_cast<Helper*>(this) : nullptr; }
    char const* threadName() const override { return "drawing"; }
    void onThreadStart() override {}
    void onThreadExit() override {}

    std::function<void()> job_;
    bool isQueued_ = false, isRunning_ = false;  // under the lock
};

}

Renderer::Renderer(Drawing const& drawing, Page const& page) : drawing_{&drawing}, page_{&page} {
    // The pixel beside the line's width is for its soft edge, and for the rounding of the reach to float, which is far
    // less than a pixel near the page.
    double const stretch = largestStretch(page.transform()), margin = page.lineWidth() + 1;
    reaches_.reserve(drawing.entities().size());
    for (Entity const& entity : drawing.entities()) {
        Disc const disc = discAround(entity.arc);
        double const y = (disc.centre * page.transform()).y(), radius = disc.radius * stretch + margin;
        reaches_.push_back({static_cast<float>(y - radius), static_cast<float>(y + radius)});
    }
}

void Renderer::draw(Band const& band) const {
    auto* const pixels = reinterpret_cast<std::uint32_t*>(band.pixels);
    std::fill_n(pixels, std::ptrdiff_t{band.width} * band.height, 0xFF000000 | page_->paper());
    double const stretch = largestStretch(page_->transform());
    auto const top = static_cast<float>(band.top), bottom = static_cast<float>(band.top + band.height);
    Strokes strokes{band, page_->lineWidth()};
    std::vector<Point<2>> points;
    // Entities keep their order: what is drawn later covers what was drawn earlier. Most lie outside of a band, so that the
    // others are asked for, some at a time, before they are needed.
    std::array<std::size_t, 128> found;
    std::vector<Entity> const& entities = drawing_->entities();
    for (std::size_t next = 0; next < entities.size();) {
        std::size_t count = 0;
        for (std::size_t const end = std::min(next + found.size(), entities.size()); next < end; ++next) {
            if (!(reaches_[next].bottom >= top && reaches_[next].top <= bottom)) continue;
            __builtin_prefetch(&entities[next]);
            __builtin_prefetch(&entities[next].rgb);
            found[count++] = next;
        }
        for (std::size_t i = 0; i < count; ++i) {
            flatten(entities[found[i]].arc, page_->transform(), stretch, flatness, points);
            strokes.draw(points, 0xFF000000 | entities[found[i]].rgb);
        }
    }
}

void writePdf(Drawing const& drawing, Page const& page, ORN::RawWriter& file) {
    auto const [width, height] = page.size();
    auto const colourOf = [](std::uint32_t rgb) { return Colour::argb(0xFF000000 | rgb); };
    std::unique_ptr<Canvas> const canvas = pdfCanvas(file, width, height, colourOf(page.paper()));
    double const fine = flatness / 10;  // a PDF page may be enlarged when it is shown
    double const stretch = largestStretch(page.transform());
    std::vector<Point<2>> points;
    for (Entity const& entity : drawing.entities()) {
        flatten(entity.arc, page.transform(), stretch, fine, points);
        canvas->stroke(points, colourOf(entity.rgb), page.lineWidth());
    }
    canvas->finish();
}

DIBitmap renderPage(Drawing const& drawing, Page const& page, std::function<void(int perCent)> const& progress) {
    auto const [width, height] = page.size();
    DIBitmap bitmap{static_cast<unsigned int>(width), -height, 32, 0};
    Renderer const renderer{drawing, page};

    // A few bands for each processor: what crosses a border is drawn twice.
    int const threads = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    int const rows = std::max(1, height / (4 * threads));
    std::atomic<int> nextTop{0};
    std::mutex failing;
    std::exception_ptr failure;
    auto const work = [&, width = width, height = height](std::function<void(int)> const& tell) {
        try {
            for (int top; (top = nextTop.fetch_add(rows)) < height;) {
                unsigned char* const pixels = bitmap.bits() + std::ptrdiff_t{width} * top * 4;
                renderer.draw({pixels, width, top, std::min(rows, height - top)});
                // Only the calling thread has a function here, so `progress` is never called by two threads.
                if (tell) tell(static_cast<int>(100 * std::int64_t{std::min(top + rows, height)} / height));
            }
        } catch (...) {
            std::lock_guard const lock{failing};
            failure = std::current_exception();
            // The other threads find no further band and stop.
            nextTop = height;
        }
    };
    {
        std::vector<std::unique_ptr<Helper>> helpers;
        while (static_cast<int>(helpers.size()) + 1 < threads) {
            helpers.push_back(std::make_unique<Helper>([&] { work({}); }));
            helpers.back()->start();
        }
        // Behind this line the helpers are destroyed, which waits for them. Then the pixels and `failure` are final.
        work(progress);
    }
    if (failure) std::rethrow_exception(failure);
    return bitmap;
}

}
