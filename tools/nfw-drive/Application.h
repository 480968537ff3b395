#pragma once

#include "GnssRoad.h"
#include "PhaseDriver.h"
#include "Summary.h"
#include "View.h"

namespace drive {

/// The whole run: builds the components, drives them through the six phases, and tells how it went.
class Application {
 public:
  explicit Application(const Options& nOptions);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  int run();  ///< the exit code

 private:
  bool setUp();
  bool addComponents();
  bool startUp();
  void waitForEnd();
  bool drive(Phase nPhase);
  bool driveDown(Phase nPhase);
  void noteEnd(unsigned int nEvents);
  int finish();
  int judge() const;
  [[noreturn]] void abandon();

  const Options& mOptions;
  Events mEvents;  // before every thread: it blocks signals
  Progress mProgress;
  tool::Output mOutput;
  std::string mSourceFailure;
  std::string mEnd;  // why the run ends, empty while it goes on
  bool mIsCutShort = false;
  std::optional<Events::Clock::time_point> mDeadline;
  Events::Clock::time_point mStopTime;
  utl::MsgDrivenSharedThread mThread;  // of the phases
  GnssRoad mRoad;
  nfw::ComponentManager mManager;
  PhaseDriver mPhases;
};

}  // namespace drive
