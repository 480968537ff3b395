#include "Application.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "DeadReckoningComponent.h"
#include "DriveLog.h"
#include "Format.h"
#include "LogIds.h"
#include "MountComponent.h"
#include "NfwConfig.h"
#include "PositioningComponent.h"
#include "RealTime.h"
#include "RecordingComponent.h"
#include "ReplayComponent.h"

namespace drive {

namespace {

const unsigned int COMPONENT_NUM = 7;
const unsigned int LISTENERS = 4;
const unsigned int PLAYERS = 4;
const unsigned int LOG_TYPES = 4;
const std::chrono::seconds PHASE_LIMIT{60};         // services wait 30 s for a thread of theirs,
const std::chrono::seconds SILENT_PHASE_LIMIT{10};  // in vain when that waits for a medium
const unsigned int MAX_RECORD = 4096;               // bytes; a sentence, a line of the log, a note

// To standard error, unless nobody takes it: that holds nothing up for long.
void say(std::string_view nText) {
  while (!nText.empty()) {
    pollfd lFd = {STDERR_FILENO, POLLOUT, 0};
    const bool lIsTaken = ::poll(&lFd, 1, 2000) == 1 && (lFd.revents & POLLOUT) != 0;
    const ssize_t lSize = lIsTaken ? ::write(STDERR_FILENO, nText.data(), std::min<size_t>(nText.size(), 512)) : -1;
    if (lSize <= 0) return;
    nText.remove_prefix(static_cast<size_t>(lSize));
  }
}

void complain(const std::string& nWhat) { say("nfw-drive: " + nWhat + "\n"); }

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
      mRoads(nOptions.mServe),
      mRecorder(nOptions.mRecord, mProgress, mFailure),
      mThread(nfw::ComponentManager::getMaxMsgDataSize(), 64, 0, "nfw-drive_App_Thread", 0),
      mManager(COMPONENT_NUM),
      mPhases(mManager, mEvents) {
  for (const SourceAddress& lSource : mOptions.mSources) mProgress.addSource(lSource);
  if (mayHoldSource()) mWindows.mpOutput = &mOutput;
}

// A source that waits for the reader of the output loses no line, and nothing is recorded that would wait with it.
bool Application::mayHoldSource() const { return !mOptions.hasLiveSource() && !mOptions.mRecord.isWanted(); }

// Components that were never finalised are released by the manager.
Application::~Application() {
  if (mThread.isRunning()) mThread.stop(1, 30000);
  nfw::finalizeNaviAppFramework();
}

int Application::run() {
  mIsRealTime = mOptions.isPaced() && RealTime::begin();
  initializeFramework(mOptions);
  if (mIsRealTime) APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "threads have real-time priorities");
  if (!readReplay() || !openRoads()) return EXIT_USAGE;
  if (!mOutput.start() || !mRoads.start() || !setUp()) {
    complain("the components cannot be set up: too few threads or too little memory");
    return EXIT_RUNTIME;
  }
  if (startUp()) waitForEnd();
  mKeys.end();
  const bool lIsDown = driveDown(STOP) && awaitListeners() && driveDown(SHUTDOWN) && driveDown(FINALIZE);
  const int lExit = finish();
  leave(lIsDown ? lExit : EXIT_RUNTIME);
  return lIsDown ? lExit : EXIT_RUNTIME;
}

// What a replay has to give is known before it begins.
bool Application::readReplay() {
  if (!isReplaying()) return true;
  std::string lReason;
  const bool lIsRead = mRecorded.read(mOptions.mReplay, &lReason);
  if (!lIsRead) complain(lReason);
  mLateness.begin(mRecorded.takeDues(), mOptions.mReplay.mRate);
  mRounds.begin();
  return lIsRead;
}

bool Application::openRoads() {
  std::string lReason;
  const bool lIsOpen = mRoads.open(&lReason);
  if (!lIsOpen) complain("--serve " + lReason);
  return lIsOpen;
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
  lComponents = {
      lpPositioning,
      new DeadReckoningComponent(mFailure),
      new DisplayComponent({mThread, mProgress, mOutput, mEvents, mFailure, lpWindows, mLateness},
                           createViews(mOptions, {mProgress, mRecorder, mPages, mLogKinds, mScreen, mOutput, mRoads})),
      new RecordingComponent(mOptions.mRecord, mThread, mRecorder, mFailure),
      new MountComponent(mOptions.mRecord.mDrive, mRecorder),
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

// False when the run ended before everything was started. Whoever sees the first of it can press a key.
bool Application::startUp() {
  if (!drive(BEFORE_QUICK_BOOT) || !drive(AFTER_QUICK_BOOT)) return false;
  if (mOptions.mWallLimitMs) mDeadline = Events::Clock::now() + std::chrono::milliseconds(*mOptions.mWallLimitMs);
  if (isLive()) mTerminal.emplace(mEvents);
  mHasKeys = takesKeys() && mKeys.begin();
  if (mHasKeys) mPages.setHasKeys();
  return drive(START);
}

void Application::waitForEnd() {
  while (mEnd.empty()) noteEnd(awaitEvents());
}

void Application::heedKeys() {
  for (Keys::Key lKey = mKeys.next(); lKey != Keys::NONE; lKey = mKeys.next()) {
    mReplayKeys.on(lKey);
    mPages.on(lKey);
    if (lKey == Keys::KEEP) mRecorder.keep();
    if (lKey != Keys::QUIT) continue;
    mEnd = "stopped by a key";
    mIsSignalled = true;
  }
}

// A replay knows no end but that of its recording: that of a part is looked for, as keys are.
unsigned int Application::awaitEvents() {
  const std::optional<uint32_t>& lTo = mOptions.mReplay.mToMs;
  const auto lLook = Events::Clock::now() + std::chrono::milliseconds(20);
  if ((!lTo && !mHasKeys) || (mDeadline && *mDeadline <= lLook)) return mEvents.wait(mDeadline);
  const unsigned int lEvents = mEvents.wait(lLook) & ~Events::TIME_UP;
  if (mHasKeys) heedKeys();
  return lEvents | (lTo && mPlayback.hasCome(*lTo) ? Events::REPLAY_ENDED : 0u);
}

// Behind the last record of a round, or of the part that is wanted.
bool Application::goesRound() {
  awaitListeners();
  if (!mRounds.next()) return false;
  mIsReplayWhole = false;
  mEvents.putBack(mAside & ~Events::REPLAY_ENDED);
  mAside = 0;
  return true;
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
    mScreen.leave();
    complain(fmt::format("the phase \"{}\" cannot be begun", phaseName(nPhase)));
    return false;
  }
  if (nPhase == STOP) mStopTime = Events::Clock::now();
  const auto lLimit = Events::Clock::now() + (mRecorder.isSilent() ? SILENT_PHASE_LIMIT : PHASE_LIMIT);
  while (!mPhases.isComplete(nPhase) && Events::Clock::now() < lLimit) {
    const bool lIsSignalled = noteSignal(mEvents.wait(lLimit));
    if (lIsSignalled && Events::Clock::now() - mStopTime > std::chrono::seconds(1)) abandon();
  }
  if (mPhases.isComplete(nPhase)) return true;
  mScreen.leave();
  complain(fmt::format("the phase \"{}\" does not complete", phaseName(nPhase)));
  mIsLeftBehind = true;
  mRecorder.giveUp();
  return false;
}

// The sources have stopped; what they sent is still on its way to listeners, which a detach would overtake. What is
// lost is not waited for longer than the limit, and told afterwards.
bool Application::awaitListeners() {
  if (mFailure.isNoted() || (isReplaying() && !isComparable())) return true;
  const auto lLimit = Events::Clock::now() + std::chrono::seconds(2);
  const StreamTally& lExpected = isReplaying() ? mRecorded.get() : mProgress.mExpected.get();
  while (!mProgress.hasReceived(lExpected) && Events::Clock::now() < lLimit) {
    const unsigned int lEvents = mEvents.wait(Events::Clock::now() + std::chrono::milliseconds(5));
    noteSignal(lEvents);
    mAside |= lEvents & ~(Events::TIME_UP | Events::KEEP_ASKED | Events::STOP_ASKED | Events::CONTINUED);
  }
  return true;
}

bool Application::isComparable() const {
  return !hasSource() && !mOptions.mReplay.isOfBoth() && mIsReplayWhole && !mRecorded.isDamaged() &&
         !mRounds.isSpoilt();
}

// A source that ended completes its start all the same; every other end cuts a phase short. A run with a replay and a
// source of its own goes on until the source ends.
void Application::noteEnd(unsigned int nEvents) {
  noteSignal(nEvents);
  mIsCutShort = (nEvents & (Events::SIGNALLED | Events::OUTPUT_LOST | Events::TIME_UP)) != 0;
  mIsReplayWhole = mIsReplayWhole || (nEvents & Events::REPLAY_ENDED) != 0;
  if ((nEvents & Events::FAILED) != 0) {
    mEnd = "it could not go on";
  } else if ((nEvents & Events::SIGNALLED) != 0) {
    mEnd = "stopped by a signal";
  } else if ((nEvents & Events::SOURCE_ENDED) != 0) {
    mEnd = mOptions.mSources.size() == 1 ? "the source ended" : "the sources ended";
  } else if ((nEvents & Events::REPLAY_ENDED) != 0 && !hasSource() && !goesRound()) {
    mEnd = "the replay ended";
  } else if ((nEvents & Events::OUTPUT_LOST) != 0) {
    mEnd = "the output is gone";
  } else if ((nEvents & Events::TIME_UP) != 0) {
    mEnd = "the time is up";
  }
}

// Whenever one to end comes, the end waits for no reader any more.
bool Application::noteSignal(unsigned int nEvents) {
  if ((nEvents & Events::KEEP_ASKED) != 0) mRecorder.keep();
  if ((nEvents & Events::STOP_ASKED) != 0) standAside();
  if ((nEvents & Events::CONTINUED) != 0) comeBack();
  const bool lIsSignalled = (nEvents & Events::SIGNALLED) != 0;
  mIsSignalled = mIsSignalled || lIsSignalled;
  return lIsSignalled;
}

// The terminal gets everything back before the program stops. What it does not take for so long is not waited for.
void Application::standAside() {
  mScreen.leave();
  mOutput.drain(std::chrono::seconds(2));
  if (mHasKeys) TerminalGuard::restoreSettings();
  mTerminal->stop();
  comeBack();
}

void Application::comeBack() {
  if (mHasKeys) TerminalGuard::setSettingsAgain();
  mScreen.resume();
}

int Application::finish() {
  mScreen.leave();
  if (mTerminal) mTerminal->release();
  mRoads.finish(mIsSignalled ? std::chrono::milliseconds(200) : std::chrono::milliseconds(2000));
  mLog.tellRepeats();
  if (mFailure.isNoted()) {
    complain(mFailure.getText());
    judgeLogs();
    endOutput();
    return mFailure.getExit();
  }
  bool lIsReplaySame = true;
  const std::string lVerdict = compareReplay(&lIsReplaySame);
  if (mOptions.mFormat == FORMAT_NMEA) endOutput();
  writeSummary(lVerdict);
  if (mOptions.mFormat != FORMAT_NMEA) endOutput();
  return judge(lIsReplaySame);
}

void Application::endOutput() {
  awaitReader();
  mIsLeftBehind = !mOutput.finish(mPatience) || mIsLeftBehind;
}

// Where the source has waited for the reader, the end does, too, until a signal. Otherwise not for long.
void Application::awaitReader() {
  const auto STEP = std::chrono::milliseconds(200);
  auto lLimit = Events::Clock::now() + mPatience;
  while (!mIsSignalled && mayHoldSource() && !mOutput.drain(STEP)) {
    noteSignal(mEvents.wait(Events::Clock::now()));
    lLimit = Events::Clock::now() + mPatience;
  }
  if (!mOutput.drain(mPatience)) mPatience = STEP;
}

void Application::writeSummary(const std::string& nVerdict) {
  const Summary lSummary = {mOptions.getName(), mEnd,      hasSource(), mIsRealTime,        nVerdict,
                            mProgress,          mLateness, mPhases,     mRecorder.getLog(), mRecorder.getSensorLog(),
                            mOutput.lost(),     mRoads};
  if (mOptions.mFormat == FORMAT_NMEA) {
    say(lSummary.toText());
  } else {
    awaitReader();  // makes room
    const bool lIsJson = mOptions.mFormat == FORMAT_JSON || mOptions.mFormat == FORMAT_JSONL_RAW;
    mOutput.write(lIsJson ? lSummary.toJson() : lSummary.toText());
  }
}

// Only what one replay alone gave can be compared.
std::string Application::compareReplay(bool* npIsSame) const {
  if (!isReplaying()) return {};
  if (hasSource() || mOptions.mReplay.isOfBoth()) return "one of several sources: not compared";
  return mRounds.verdict(mIsReplayWhole, npIsSame);
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
    complain(mOptions.mReplay.mName + (mRecorded.isDamaged() ? ": is damaged; nfw-log recover FILE -o NEW mends it"
                                                             : ": what was played is not what was recorded"));
  }
  if (mOutput.lost() > 0) {
    complain(fmt::format("standard output: {} lines were not taken: its reader is too slow", mOutput.lost()));
  }
  const std::string lSilence = silence();
  if (!lSilence.empty()) complain(lSilence);
  const bool lAreLogsWhole = judgeLogs();
  const bool lAreRoadsWhole = judgeRoads();
  const int lExit = judgeSources();
  if (lExit != EXIT_DONE) return lExit;
  const bool lIsHeardWhole = mProgress.addsUp() && isAllDelivered() && nIsReplaySame && lSilence.empty();
  return lIsHeardWhole && mOutput.lost() == 0 && lAreLogsWhole && lAreRoadsWhole ? EXIT_DONE : EXIT_RUNTIME;
}

// Why nothing was there to be heard; empty when something was, or the user did not wait for it.
std::string Application::silence() const {
  const bool lIsHeard = mProgress.mSentences > 0 || mProgress.mReckonedSentences > 0;
  if (mIsSignalled || mOutput.getState() != tool::Output::OPEN) return {};
  if (!hasSource())
    return lIsHeard || mRecorded.isEmpty() ? "" : mOptions.getName() + ": ended before the first sentence";
  std::string lSilences;
  for (const SourceProgress& lSource : mProgress.mSources) {
    const std::string lSilence = lSource.mFailure.empty() ? lSource.silence() : "";
    lSilences += (lSilence.empty() || lSilences.empty() ? "" : "; ") + lSilence;
  }
  return lSilences;
}

// What failed beside others, which went on, and what came too fast.
int Application::judgeSources() const {
  int lExit = EXIT_DONE;
  for (const SourceProgress& lSource : mProgress.mSources) {
    if (!lSource.mFailure.empty()) complain(lSource.mFailure);
    if (lSource.mLost > 0) complain(lSource.lossText());
    lExit = std::max<int>({lExit, lSource.mExit, lSource.mLost > 0 ? EXIT_RUNTIME : EXIT_DONE});
  }
  return lExit;
}

bool Application::judgeLogs() const {
  bool lAreWhole = true;
  for (const LogReport* const lpLog : {&mRecorder.getLog(), &mRecorder.getSensorLog()}) {
    const std::string lVerdict = lpLog->getVerdict();
    if (!lVerdict.empty()) complain(lVerdict);
    lAreWhole = lAreWhole && lVerdict.empty();
  }
  return lAreWhole;
}

bool Application::judgeRoads() const {
  bool lAreWhole = true;
  for (const auto& lpRoad : mRoads.get()) {
    const std::string lLoss = lpRoad->getCounts().getLoss();
    if (!lLoss.empty()) complain(lpRoad->getName() + ": " + lLoss);
    lAreWhole = lAreWhole && lLoss.empty();
  }
  return lAreWhole;
}

// Listeners that follow a replay hear nothing of the source.
bool Application::isAllDelivered() const {
  return isReplaying() || (mProgress.delivered() == mProgress.expected() && mProgress.areReportsDelivered());
}

// A thread that cannot be ended still uses what would be destroyed.
void Application::leave(int nExit) {
  if (mIsLeftBehind || mRecorder.isLeftBehind()) ::_exit(nExit);
}

// A phase hangs, and the user insists.
void Application::abandon() {
  TerminalGuard::restore();
  complain("stopped at once");
  ::_exit(EXIT_RUNTIME);
}

}  // namespace drive
