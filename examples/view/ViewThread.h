/// The draw thread of the program.
#pragma once

#include "view/Log.h"

#include "orn/threading/DrawThread.h"

namespace view {

/// Records when its worker begins and ends. The log must outlive it.
class ViewThread final : public DrawThread {
public:
    explicit ViewThread(Log& log) : log_{log} {}
    ~ViewThread() override;

protected:
    void onThreadStart() override { log_.write(L"worker begins"); }
    void onThreadExit() override { log_.write(L"worker ends"); }

private:
    Log& log_;
};

}
