#include "view/ViewThread.h"

namespace view {

ViewThread::~ViewThread() { finish(ORN::Threading::BoringWaiter{}); }

}
