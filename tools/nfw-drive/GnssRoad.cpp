#include "GnssRoad.h"

namespace drive {

GnssRoad::GnssRoad()
    : mThread(nfw::GnssDataDispatcher::getMaxMsgDataSize(), QUEUE_LENGTH, 0, "nfw-drive_Gnss_Thread", 1),
      mDispatcher(&mThread, LISTENERS, LISTENERS, LISTENERS, LISTENERS, LISTENERS, LISTENERS, LISTENERS, LISTENERS,
                  LISTENERS, LISTENERS) {}

bool GnssRoad::start() { return mThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) == 0; }

void GnssRoad::stop() {
  if (mThread.isRunning()) mThread.stop(1, 30000);
}

}  // namespace drive
