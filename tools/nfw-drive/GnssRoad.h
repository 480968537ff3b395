#pragma once

#include "NfwGnssDataDispatcher.h"
#include "Window.h"
#include "utl/MsgDrivenSharedThread.h"

namespace drive {

/// The road of the data from the source to the listeners: the dispatchers, their thread, and the window that keeps the
/// thread's queue from overflowing. It outlives the components.
class GnssRoad {
 public:
  GnssRoad();
  ~GnssRoad() { stop(); }
  GnssRoad(const GnssRoad&) = delete;
  GnssRoad& operator=(const GnssRoad&) = delete;

  bool start();
  void stop();  ///< what is queued is still handled

  utl::MsgDrivenSharedThread& getThread() { return mThread; }
  nfw::GnssDataDispatcher& getDispatcher() { return mDispatcher; }
  tool::Window& getWindow() { return mWindow; }

 private:
  static constexpr unsigned int QUEUE_LENGTH = 256;
  static constexpr unsigned int IN_FLIGHT =
      192;  // the rest is for attaching, detaching and the components' own messages
  static constexpr unsigned int LISTENERS = 4;

  utl::MsgDrivenSharedThread mThread;
  nfw::GnssDataDispatcher mDispatcher;
  tool::Window mWindow{IN_FLIGHT};
};

}  // namespace drive
