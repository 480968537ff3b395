#include "Application.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "DeadReckoningComponent.h"
#include "DriveLog.h"
#include "LogIds.h"
#include "MountComponent.h"
#include "NfwConfig.h"
#include "PositioningComponent.h"
#include "ReplayComponent.h"
#include "TableView.h"

namespace drive {

namespace {

const unsigned int COMPONENT_NUM = 7;
const unsigned int LISTENERS = 4;
const unsigned int PLAYERS = 4;
const unsigned int LOG_TYPES = 4;
const unsigned int MAX_RECORD = 4096;  // bytes; a sentence, a line of the log, a note

void complain(const std::string& nWhat) { std::fprintf(stderr, "nfw-drive: %s\n", nWhat.c_str()); }

void initializeFramework(const Options& nOptions) {
  static const nfw::MsgLogInfoMap NO_MESSAGES(1, false);
  nfw::Config lConfig;
  lConfig.pMsgLogInfoMap = &NO_MESSAGES;
  lConfig.maxMountListenerNum = LISTENERS;
  lConfig.maxRecordEventListenerNum = LISTENERS;
  lConfig.maxPlayerNum = PLAYERS;
  lConfig.maxLogTypeNum = LOG_TYPES;
  lConfig.maxLogFieldSize = MAX_RECORD;
  lConfig.logBufferSize = nOptions.mRecord.mBufferSize;
  lConfig.maxLogFileSize = nOptions.mRecord.mMaxFileSize;
  for (unsigned int nfw::Config::*const lpNum :
       {&nfw::Config::maxParsedGgaDataListenerNum, &nfw::Config::maxParsedGllDataListenerNum,
        &nfw::Config::maxParsedGsaDataListenerNum, &nfw::Config::maxParsedGsvDataListenerNum,
        &nfw::Config::maxParsedVtgDataListenerNum, &nfw::Config::maxParsedZdaDataListenerNum,
        &nfw::Config::maxParsedRmcDataListenerNum, &nfw::Config::maxParsedPubxDataListenerNum,
        &nfw::Config::maxParsedNmeaDataListenerNum, &nfw::Config::maxNmeaDataListenerNum,
        &nfw::Config::maxDeadReckoningNmeaDataListenerNum}) {
    lConfig.*lpNum = LISTENERS;
  }
  lConfig.gnssLoggerId = LOG_ID_GNSS;
  lConfig.deadReckoningLoggerId = LOG_ID_DEAD_RECKONING;
  nfw::initializeNaviAppFramework(lConfig);
  nfw::registerLogType(LOG_TYPE_DRIVE, "<NAVI>DRIVE  ", nOptions.mLogLevel);
  nfw::setAllFilterLevel(nOptions.mLogLevel);
}

}  // namespace

Application::Application(const Options& nOptions)
    : mOptions(nOptions),
      mOutput(STDOUT_FILENO),
      mThread(nfw::ComponentManager::getMaxMsgDataSize(), 64, 0, "nfw-drive_App_Thread", 0),
      mManager(COMPONENT_NUM),
      mPhases(mManager, mEvents) {}

// Components that were never finalised are released by the manager.
Application::~Application() {
  if (mThread.isRunning()) mThread.stop(1, 30000);
  nfw::finalizeNaviAppFramework();
}

int Application::run() {
  initializeFramework(mOptions);
  if (!readReplay()) return EXIT_USAGE;
  if (!setUp()) {
    complain("the components cannot be set up");
    return EXIT_RUNTIME;
  }
  if (startUp()) waitForEnd();
  return driveDown(STOP) && awaitListeners() && driveDown(SHUTDOWN) && driveDown(FINALIZE) ? finish() : EXIT_RUNTIME;
}

// What a replay has to give is known before it begins.
bool Application::readReplay() {
  if (!isReplaying()) return true;
  std::string lReason;
  const ReplayOptions& lReplay = mOptions.mReplay;
  const bool lIsRead = lReplay.mFile.empty() ? mRecorded.readSensorLog(lReplay.mSensorFile, &lReason)
                                             : mRecorded.readLog(lReplay.mFile, &lReason);
  if (!lIsRead) complain(lReason);
  mLateness.begin(mRecorded.takeTicks(), mRecorded.getFirstTick());
  return lIsRead;
}

bool Application::setUp() {
  return mThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) == 0 &&
         mManager.setStatusListener(&mPhases) && addComponents() && mManager.initializeThread(&mThread);
}

// Each phase runs in this order: the logs are there before the services, which go before them; listeners are there
// before the sources, and stay until those have stopped.
bool Application::addComponents() {
  Windows* const lpWindows = isReplaying() ? nullptr : &mWindows;
  std::vector<nfw::Component*> lComponents;
  auto* const lpPositioning = new PositioningComponent(mFailure);
  auto* const lpRecording = new RecordingComponent(mOptions, mThread, mProgress, mFailure);
  lComponents = {
      lpPositioning,
      new DeadReckoningComponent(mFailure),
      new DisplayComponent({mThread, mProgress, mOutput, mEvents, mFailure, lpWindows, mLateness},
                           createView(mOptions, mProgress, mLogKinds, mOutput)),
      lpRecording,
      new MountComponent(mOptions.mRecord.mDrive, *lpRecording),
  };
  if (isReplaying()) lComponents.push_back(new ReplayComponent(mOptions.mReplay, mLateness, mEvents, mFailure));
  if (hasSource()) {
    lComponents.push_back(
        new SourceComponent(mOptions, {lpPositioning->getReceiver(), lpWindows, mProgress, mEvents, mFailure}));
  }
  bool lIsAdded = true;
  for (nfw::Component* const lpComponent : lComponents) {
    lIsAdded = mManager.addComponent(utl::SmartPointer<nfw::Component>(lpComponent)) && lIsAdded;
  }
  return lIsAdded;
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

// The sources have stopped; what they sent is still on its way to listeners, which a detach would overtake. What is
// lost is not waited for longer than the limit, and told afterwards.
bool Application::awaitListeners() {
  if (mFailure.isNoted() || (isReplaying() && (hasSource() || !mIsReplayWhole || mRecorded.isDamaged()))) {
    return true;
  }
  const auto lLimit = Events::Clock::now() + std::chrono::seconds(2);
  const StreamTally& lExpected = isReplaying() ? mRecorded.get() : mProgress.mExpected.get();
  while (!mProgress.hasReceived(lExpected) && Events::Clock::now() < lLimit) {
    mEvents.wait(Events::Clock::now() + std::chrono::milliseconds(5));
  }
  return true;
}

// A source that ended completes its start all the same; every other end cuts a phase short. A run with a replay and a
// source of its own goes on until the source ends.
void Application::noteEnd(unsigned int nEvents) {
  mIsSignalled = mIsSignalled || (nEvents & Events::SIGNALLED) != 0;
  mIsCutShort = (nEvents & (Events::SIGNALLED | Events::OUTPUT_LOST | Events::TIME_UP)) != 0;
  mIsReplayWhole = mIsReplayWhole || (nEvents & Events::REPLAY_ENDED) != 0;
  if ((nEvents & Events::FAILED) != 0) {
    mEnd = "it could not go on";
  } else if ((nEvents & Events::SIGNALLED) != 0) {
    mEnd = "stopped by a signal";
  } else if ((nEvents & Events::SOURCE_ENDED) != 0) {
    mEnd = "the source ended";
  } else if ((nEvents & Events::REPLAY_ENDED) != 0 && !hasSource()) {
    mEnd = "the replay ended";
  } else if ((nEvents & Events::OUTPUT_LOST) != 0) {
    mEnd = "the output is gone";
  } else if ((nEvents & Events::TIME_UP) != 0) {
    mEnd = "the time is up";
  }
}

int Application::finish() {
  mLog.tellRepeats();
  if (mFailure.isNoted()) {
    complain(mFailure.getText());
    return mFailure.getExit();
  }
  bool lIsReplaySame = true;
  writeSummary(compareReplay(&lIsReplaySame));
  return judge(lIsReplaySame);
}

void Application::writeSummary(const std::string& nVerdict) {
  const Summary lSummary = {mOptions.getName(), mEnd, hasSource(), nVerdict, mProgress, mLateness, mPhases};
  if (mOptions.mFormat == FORMAT_NMEA) {
    std::fputs(lSummary.toText().c_str(), stderr);
  } else {
    mOutput.write(mOptions.mFormat == FORMAT_JSON ? lSummary.toJson() : lSummary.toText());
  }
  mOutput.flush();
}

// Only what one replay alone gave can be compared.
std::string Application::compareReplay(bool* npIsSame) const {
  const ReplayOptions& lReplay = mOptions.mReplay;
  if (!isReplaying()) return {};
  if (hasSource() || (!lReplay.mFile.empty() && !lReplay.mSensorFile.empty()))
    return "one of several sources: not compared";
  if (!mIsReplayWhole) return "ended early: not compared";
  return mRecorded.compare(mProgress.delivered(), npIsSame);
}

// A reader of the output that went away is no failure.
int Application::judge(bool nIsReplaySame) const {
  if (mOutput.getState() == tool::Output::FAILED) {
    complain(fmt::format("standard output: {}", std::strerror(mOutput.getError())));
    return EXIT_RUNTIME;
  }
  if (!mProgress.addsUp()) complain("the counts do not add up");
  if (!isAllDelivered()) {
    complain("not everything was delivered: " + mProgress.delivered().difference(mProgress.expected(), "expected"));
  }
  if (!nIsReplaySame) {
    complain(mOptions.mReplay.getName() + (mRecorded.isDamaged() ? ": is damaged; nfw-log recover FILE -o NEW mends it"
                                                                 : ": what was played is not what was recorded"));
  }
  const std::string lSilence = silence();
  if (!lSilence.empty()) complain(lSilence);
  return mProgress.addsUp() && isAllDelivered() && nIsReplaySame && lSilence.empty() ? EXIT_DONE : EXIT_RUNTIME;
}

// Why nothing was there to be heard; empty when something was, or the user did not wait for it.
std::string Application::silence() const {
  const bool lIsHeard = mProgress.mSentences > 0 || mProgress.mReckonedSentences > 0;
  if (mIsSignalled || mOutput.getState() != tool::Output::OPEN) return {};
  if (!hasSource())
    return lIsHeard || mRecorded.isEmpty() ? "" : mOptions.getName() + ": ended before the first sentence";
  if (mProgress.accepted() + mProgress.ignored() > 0) return {};
  return fmt::format("{}: no sentence {}", mOptions.mSource.mName, mProgress.explainSilence());
}

// Listeners that follow a replay hear nothing of the source.
bool Application::isAllDelivered() const {
  return isReplaying() || (mProgress.delivered() == mProgress.expected() && mProgress.areReportsDelivered());
}

// A phase hangs, perhaps because nobody reads the output, and the user insists.
void Application::abandon() {
  if (mOutput.isTerminal()) std::fputs(TableView::SHOW_CURSOR, stderr);
  complain("stopped at once");
  ::_exit(EXIT_RUNTIME);
}

}  // namespace drive
