/// Real windows for tests, of the test's own process and thread.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>
#include <memory>

class TestWindow {
public:
    /// A display is there to show windows on.
    static bool possible();

    explicit TestWindow(TestWindow const* parent = nullptr);  ///< in front of its siblings
    ~TestWindow();
    TestWindow(TestWindow const&) = delete;
    TestWindow& operator=(TestWindow const&) = delete;

    HWND handle() const;
    void raise();  ///< to the front of its siblings

    /// Whether the next posted message, of those from 0x8000 to 0xBFFF, is this one. Waits a second for it.
    bool receives(unsigned int number, std::uint64_t wParam, std::int64_t lParam);

private:
    struct Imp;
    std::unique_ptr<Imp> imp_;
};
