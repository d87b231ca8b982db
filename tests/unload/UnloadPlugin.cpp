// What a plugin of the suite does with the library while it is loaded.
#include "orn/diagnosis/DebugStream.h"
#include "orn/foundation/Error.h"
#include "orn/platform/RegistryKey.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/Encoding.h"
#include "orn/text/Quark.h"
#include "orn/text/Url.h"
#include "orn/threading/DrawThread.h"
#include "tests/support/Tally.h"

#include <clocale>
#include <cstdint>
#include <ostream>
#include <thread>

namespace {

/// A worker's first drawing is complete; another runs until it is aborted.
class Drawing final : public DrawTask {
public:
    void abort() override { ++aborts; }
    HWND key() const override { return reinterpret_cast<HWND>(std::uintptr_t{16}); }
    bool run() override {
        static_cast<void>(Quark::create(L"drawn"));
        if (++runs == 1) return true;
        aborts.reach(1);
        return false;
    }

    Tally runs, aborts;
};

class Drawer final : public DrawThread {
public:
    ~Drawer() override { finish(ORN::Threading::BoringWaiter{}); }

protected:
    void onThreadStart() override {}
    void onThreadExit() override {}
};

bool draw() {
    Drawing drawing;
    Drawer drawer;
    for (int runs : {1, 2}) {
        drawer.insert(drawing);
        drawing.runs.reach(runs);
    }
    drawer.cancel(drawing.key(), ORN::Threading::BoringWaiter{});
    return drawer.finish(ORN::Threading::BoringWaiter{});
}

/// A thread waits for the lock, and so the parking table is in use.
bool lockAmongThreads() {
    LONG volatile word = 0;
    int count = 0;
    auto const work = [&] {
        for (int time = 0; time < 1000; ++time) {
            ExclusiveLock const lock{word};
            ++count;
        }
    };
    std::thread other{work};
    work();
    other.join();
    return count == 2000;
}

/// Whether an address at which nobody answers is found out.
bool failToDownload() try {
    return downloadUrlToCache(L"http://127.0.0.1:1/a.b").empty();
} catch (ORN::OrnError const&) {
    return true;
}

bool useRegistry(std::wstring const& text) {
    auto const user = reinterpret_cast<HKEY>(std::intptr_t{INT32_MIN} + 1);
    RegWriteKey const software{user, L"Software", 0}, key{software, L"orn-unload-test", 0};
    std::wstring read;
    return key.setString(L"name", text) && key.getString(L"name", read) && read == text &&
           software.deleteSubKey(L"orn-unload-test");
}

}

/// 0 when all went well.
extern "C" __attribute__((visibility("default"))) int useLibrary(int round) {
    try {
        AutoLocale const guard{LC_ALL};
        std::wstring const name = L"round " + std::to_wstring(round);
        if (Quark::create(name.c_str()) != Quark::create(name.c_str())) return 1;
        if (getWCS(getMBS(name).c_str()) != name) return 2;
        if (DebugStream::isActive()) return 3;
        DebugStream::stream() << DebugStream::GCTID{} << L" in " << name << std::endl;
        if (!lockAmongThreads() || !failToDownload() || !draw()) return 4;
        return round < 3 && !useRegistry(name) ? 5 : 0;  // each waits for the disk
    } catch (std::exception const&) {
        return 6;
    }
}
