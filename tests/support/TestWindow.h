/// Real windows for tests, of the test's own process and thread.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>
#include <memory>
#include <optional>

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

    struct Message {
        unsigned int number;
        std::uint64_t wParam;
        std::int64_t lParam;
    };
    std::optional<Message> nextMessage();  ///< of those posted from number 0x8000 (0x8000 to 0xBFFF) on; waits a second

private:
    struct Imp;
    std::unique_ptr<Imp> imp_;
};
