// Each step that may block tells the watchdog where it stands.
#include <set>

#include "NfwComponentManager.h"
#include "NfwDeadReckoningNmeaDataDispatcher.h"
#include "NfwGpsSdkPlayer.h"
#include "NfwNmeaDataDispatcher.h"
#include "NfwParsedGgaDataDispatcher.h"
#include "NfwSharedThreadComponent.h"
#include "Positioning.h"
#include "utl/ThreadManager.h"

namespace {

/// A keep-alive notice, as the unit's watchdog would see it.
struct Notice {
  std::string mFile, mFunction;
  int mLine, mPhase;
};
thread_local std::vector<Notice>* gpNotices = nullptr;  // those of a thread that keeps them

}  // namespace

/// Instead of the platform's.
void utl::ThreadManager::keepAliveWatchdog(const StatementInfo& n) {
  if (gpNotices != nullptr) gpNotices->push_back({n.getFile(), n.getFunction(), n.getLine(), n.getPhase()});
}

namespace {

const int HANDLED = 7;

class Component : public nfw::SharedThreadComponent {
 public:
  Component() : nfw::SharedThreadComponent("watched") {}
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override { return nfw::PHASE_DONE; }
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  void receiveMsg(int, utl::ThreadRawMsg&) override {}
};

class WatchedTest : public testing::Test {
 protected:
  WatchedTest() { gpNotices = &mNotices; }
  ~WatchedTest() override { gpNotices = nullptr; }

  /// The call makes `nSteps` steps in the operation `nName` ("X::operation") of the file NfwX.cpp, each at a line of
  /// its own unless a helper of the framework makes them.
  void expect(const std::string& nName, size_t nSteps, const std::function<void()>& nCall, bool nHasOwnLines = true) {
    SCOPED_TRACE(nName);
    mNotices.clear();
    nCall();
    ASSERT_EQ(2 * nSteps, mNotices.size());
    std::set<int> lLines;
    int lDepth = 0;
    for (const Notice& lNotice : mNotices) {
      const size_t lColons = nName.find("::");
      EXPECT_EQ("src/NaviAppFramework/private/Nfw" + nName.substr(0, lColons) + ".cpp", lNotice.mFile);
      EXPECT_EQ(nName.substr(lColons + 2), lNotice.mFunction);
      lDepth += lNotice.mPhase == 1 ? 1 : -1;
      lLines.insert(lNotice.mLine);
      EXPECT_TRUE(lDepth == 0 || lDepth == 1);
    }
    EXPECT_EQ(nHasOwnLines ? nSteps : 1, lLines.size());
  }
  template <class Dispatcher>
  void expectOf(const std::string& nClass, Dispatcher& nDispatcher, const std::function<void()>& nDispatch) {
    expect(
        nClass + "::attachListener", 2, [&] { EXPECT_TRUE(nDispatcher.attachListener(&mListener)); }, false);
    expect(nClass + "::dispatch", 1, nDispatch);
    expect(
        nClass + "::detachListener", 2, [&] { EXPECT_TRUE(nDispatcher.detachListener(&mListener)); }, false);
    nfwtest::RawMsg lMsg(nfw::DISPATCHER_DISPATCH);
    expect(nClass + "::receiveMsg", 1, [&] { nDispatcher.receiveMsg(0, lMsg); });
  }

  seams::CapturedLog mLog;
  nfwtest::Notes mNotes;
  nfwtest::AnyListener mListener{mNotes};
  nfwtest::SharedThread mThread{20000, 16};
  std::vector<Notice> mNotices;
};

TEST_F(WatchedTest, ASharedThreadComponentIsNamedByItsOperation) {
  auto lpComponent = std::make_unique<Component>();
  Component& lComponent = *lpComponent;
  ASSERT_TRUE(lComponent.initializeThread(mThread.get()));
  const utl::Msg lMsg(HANDLED);
  expect("SharedThreadComponent::postMsg", 2, [&] { lComponent.postMsg(HANDLED), lComponent.postMsg(lMsg); });
  expect("SharedThreadComponent::sendMsgSync", 2,
         [&] { lComponent.sendMsgSync(HANDLED), lComponent.sendMsgSync(lMsg); });
  expect("SharedThreadComponent::sendMsgInterrupt", 2,
         [&] { lComponent.sendMsgInterrupt(HANDLED), lComponent.sendMsgInterrupt(lMsg); });
  expect("SharedThreadComponent::~SharedThreadComponent", 1, [&] { lpComponent.reset(); });
}

TEST_F(WatchedTest, ADispatcherIsNamedByItsOperation) {
  nfw::NmeaDataDispatcher lRaw(1, mThread.get());
  nfw::ParsedGgaDataDispatcher lGga(1, mThread.get());
  nfw::DeadReckoningNmeaDataDispatcher lSets(1, mThread.get());
  expectOf("NmeaDataDispatcher", lRaw, [&] { lRaw.dispatch(nullptr, 0); });
  expectOf("ParsedGgaDataDispatcher", lGga, [&] { lGga.dispatch(nfw::GgaSentence()); });
  expectOf("DeadReckoningNmeaDataDispatcher", lSets, [&] { lSets.dispatch(nfw::DeadReckoningNmeaSentence()); });
  mThread.stop();
}

TEST_F(WatchedTest, EachCallOfTheGpsSdkIsAStepOfItsOwn) {
  nfw::GnssDataDispatcher lDispatcher(mThread.get(), 1, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  nfw::GpsSdkPlayer lPlayer(&lDispatcher, mThread.get(), 0, 0);
  expect("GpsSdkPlayer::initialize", 2, [&] { EXPECT_TRUE(lPlayer.initialize()); });
  expect("GpsSdkPlayer::finalize", 2, [&] { lPlayer.finalize(); });
}

}  // namespace
