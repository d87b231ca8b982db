#include "view/ViewThread.h"

namespace view {

// The base's destructor would be too late: the worker calls onThreadExit at its end.
ViewThread::~ViewThread() { finish(ORN::Threading::BoringWaiter{}); }

}
