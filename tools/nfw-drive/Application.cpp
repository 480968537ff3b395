#include "Application.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "DisplayComponent.h"
#include "DriveLog.h"
#include "NfwConfig.h"
#include "PositioningComponent.h"
#include "SourceComponent.h"
#include "TableView.h"

namespace drive {

namespace {

const unsigned int COMPONENT_NUM = 3;

void complain(const std::string& nWhat) { std::fprintf(stderr, "nfw-drive: %s\n", nWhat.c_str()); }

void initializeFramework(int nLogLevel) {
  static const nfw::MsgLogInfoMap NO_MESSAGES(1, false);
  nfw::Config lConfig;
  lConfig.pMsgLogInfoMap = &NO_MESSAGES;
  nfw::initializeNaviAppFramework(lConfig);
  nfw::registerLogType(LOG_TYPE_DRIVE, "<NAVI>DRIVE  ", nLogLevel);
  nfw::setAllFilterLevel(nLogLevel);
}

}  // namespace

Application::Application(const Options& nOptions)
    : mOptions(nOptions),
      mOutput(STDOUT_FILENO),
      mThread(nfw::ComponentManager::getMaxMsgDataSize(), 64, 0, "nfw-drive_App_Thread", 0),
      mManager(COMPONENT_NUM),
      mPhases(mManager, mEvents) {}

// The road's thread ends before the dispatchers; components that were never finalised are released by the manager.
Application::~Application() {
  mRoad.stop();
  if (mThread.isRunning()) mThread.stop(1, 30000);
  nfw::finalizeNaviAppFramework();
}

int Application::run() {
  initializeFramework(mOptions.mLogLevel);
  if (!setUp()) {
    complain("the components cannot be set up");
    return EXIT_RUNTIME;
  }
  if (startUp()) waitForEnd();
  return driveDown(STOP) && driveDown(SHUTDOWN) && driveDown(FINALIZE) ? finish() : EXIT_RUNTIME;
}

bool Application::setUp() {
  return mThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) == 0 &&
         mManager.setStatusListener(&mPhases) && addComponents() && mManager.initializeThread(&mThread);
}

// The phases run in this order: what the source delivers to is initialised before the source starts.
bool Application::addComponents() {
  auto* const lpPositioning = new PositioningComponent(mRoad, mProgress);
  const utl::SmartPointer<nfw::Component> lPositioning(lpPositioning);
  const utl::SmartPointer<nfw::Component> lDisplay(
      new DisplayComponent(mRoad, createView(mOptions, mProgress, mOutput), mProgress, mOutput, mEvents));
  const utl::SmartPointer<nfw::Component> lSource(
      new SourceComponent(mOptions, *lpPositioning, mRoad, mProgress, mEvents, &mSourceFailure));
  return mManager.addComponent(lPositioning) && mManager.addComponent(lDisplay) && mManager.addComponent(lSource);
}

// False when the run ended before everything was started.
bool Application::startUp() {
  if (!drive(BEFORE_QUICK_BOOT) || !drive(AFTER_QUICK_BOOT)) return false;
  if (mOptions.mWallLimitMs) mDeadline = Events::Clock::now() + std::chrono::milliseconds(*mOptions.mWallLimitMs);
  return drive(START);
}

void Application::waitForEnd() {
  while (mEnd.empty()) noteEnd(mEvents.wait(mDeadline));
}

bool Application::drive(Phase nPhase) {
  if (!mPhases.begin(nPhase)) {
    mEnd = fmt::format("the phase \"{}\" cannot be begun", phaseName(nPhase));
    return false;
  }
  while (!mPhases.isComplete(nPhase) && !mIsCutShort) noteEnd(mEvents.wait(mDeadline));
  return mEnd.empty();
}

// On the way down only a further signal is heeded, and not one that came with the first: some parents send two.
bool Application::driveDown(Phase nPhase) {
  if (!mPhases.begin(nPhase)) {
    complain(fmt::format("the phase \"{}\" cannot be begun", phaseName(nPhase)));
    return false;
  }
  if (nPhase == STOP) mStopTime = Events::Clock::now();
  while (!mPhases.isComplete(nPhase)) {
    const bool lIsSignalled = (mEvents.wait(std::nullopt) & Events::SIGNALLED) != 0;
    if (lIsSignalled && Events::Clock::now() - mStopTime > std::chrono::seconds(1)) abandon();
  }
  return true;
}

// A source that ended completes its start all the same; every other end cuts a phase short.
void Application::noteEnd(unsigned int nEvents) {
  mIsCutShort = (nEvents & (Events::SIGNALLED | Events::OUTPUT_LOST | Events::TIME_UP)) != 0;
  if ((nEvents & Events::SIGNALLED) != 0) {
    mEnd = "stopped by a signal";
  } else if ((nEvents & Events::SOURCE_ENDED) != 0) {
    mEnd = mSourceFailure.empty() ? "the source ended" : "the source cannot be read";
  } else if ((nEvents & Events::OUTPUT_LOST) != 0) {
    mEnd = "the output is gone";
  } else if ((nEvents & Events::TIME_UP) != 0) {
    mEnd = "the time is up";
  }
}

int Application::finish() {
  if (!mSourceFailure.empty()) {
    complain(mSourceFailure);
    return EXIT_USAGE;
  }
  const Summary lSummary = {mOptions.mSource.mName, mEnd, mProgress, mPhases};
  mOutput.write(mOptions.mFormat == FORMAT_JSON ? lSummary.toJson() : lSummary.toText());
  mOutput.flush();
  return judge();
}

// A reader of the output that went away is no failure.
int Application::judge() const {
  if (mOutput.getState() == tool::Output::FAILED) {
    complain(fmt::format("standard output: {}", std::strerror(mOutput.getError())));
    return EXIT_RUNTIME;
  }
  if (!mProgress.addsUp()) complain("the counts do not add up");
  if (!mProgress.isAllDelivered()) complain("not everything that was accepted was delivered");
  return mProgress.addsUp() && mProgress.isAllDelivered() ? EXIT_DONE : EXIT_RUNTIME;
}

// A phase hangs, perhaps because nobody reads the output, and the user insists.
void Application::abandon() {
  if (mOutput.isTerminal()) std::fputs(TableView::SHOW_CURSOR, stderr);
  complain("stopped at once");
  ::_exit(EXIT_RUNTIME);
}

}  // namespace drive
