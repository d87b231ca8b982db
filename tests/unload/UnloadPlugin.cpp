// What a plugin of the suite does with the library while it is loaded.
#include "orn/diagnosis/DebugStream.h"
#include "orn/foundation/Error.h"
#include "orn/platform/RegistryKey.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/Encoding.h"
#include "orn/text/Quark.h"
#include "orn/text/Url.h"
#include "tests/support/TestThread.h"

#include <clocale>
#include <cstdint>
#include <ostream>

namespace {

/// Two threads wait for the lock, and so the parking table is in use. A second drawing runs until it is aborted.
bool drawAndLock() {
    LONG volatile word = 0;
    int count = 0;
    auto const work = [&] {
        for (int time = 0; time < 1000; ++time) {
            ExclusiveLock const lock{word};
            ++count;
        }
    };
    TestTask drawing{window(1), [&](TestTask& task) {
                         static_cast<void>(Quark::create(L"drawn"));
                         if (task.runs == 1) return work(), true;
                         return task.aborts.reach(1), false;
                     }};
    TestThread thread;
    thread.insertAndReach(drawing);
    work();
    thread.insert(drawing);
    drawing.runs.reach(2);
    thread.cancel(drawing.window, ORN::Threading::BoringWaiter{});
    return thread.end() && count == 2000;
}

/// Whether the download fails where no server answers.
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
        if (!failToDownload() || !drawAndLock()) return 4;
        return round < 3 && !useRegistry(name) ? 5 : 0;  // each waits for the disk
    } catch (std::exception const&) {
        return 6;
    }
}
