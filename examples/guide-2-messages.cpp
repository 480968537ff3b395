// Two components that work in messages on one thread: step 2 of docs/guide.md.
#include <cstdio>

#include "guide.h"

const int SPEED = 1, ASK = 2;  // ids of the application's messages

class SpeedMsg : public utl::Msg {  // carried by value: stored by the sender, restored by the receiver
 public:
  explicit SpeedMsg(int nSpeed = 0) : utl::Msg(SPEED), mSpeed(nSpeed) {}
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override { return nBroker.write(mSpeed); }
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override { return nBroker.read(&mSpeed); }

  int32_t mSpeed;
};

/// A component without work in the phases that it does not override.
class Worker : public nfw::SharedThreadComponent {
 public:
  using SharedThreadComponent::SharedThreadComponent;

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override { return nfw::PHASE_DONE; }
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
};

class Display : public Worker {
 public:
  explicit Display(utl::Event& nIsDone) : Worker("Display"), mIsDone(nIsDone) {}
  void setSource(Worker& nSource) { mpSource = &nSource; }

 private:
  int startImp() override {
    std::printf("Display: waits for a first speed\n");
    return nfw::PHASE_PENDING;  // setStartComplete() follows
  }
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override {
    SpeedMsg lMsg;
    if (!lMsg.restoreFrom(nMsg)) return;
    std::printf("Display: %d km/h\n", lMsg.mSpeed);
    setStartComplete();  // the first counts
    if (lMsg.mSpeed == 52) mIsDone.on();
    mpSource->postMsg(ASK);
  }

  utl::Event& mIsDone;
  Worker* mpSource = nullptr;
};

class Sensor : public Worker {
 public:
  explicit Sensor(Worker& nDisplay) : Worker("Sensor"), mDisplay(nDisplay) {}

 private:
  int startImp() override {
    setTimer(100, 1, 0, 0);  // once, after 100 ms
    return nfw::PHASE_DONE;
  }
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& /*nMsg*/) override {  // the timer's message, and ASK
    if (mSpeed < 52) mDisplay.postMsg(SpeedMsg(++mSpeed));
  }

  Worker& mDisplay;
  int mSpeed = 49;
};

int main() {
  Application lApplication;
  utl::Event lIsDone(false);
  auto* const lpDisplay = new Display(lIsDone);
  auto* const lpSensor = new Sensor(*lpDisplay);
  lpDisplay->setSource(*lpSensor);
  for (Worker* const lpWorker : {static_cast<Worker*>(lpDisplay), static_cast<Worker*>(lpSensor)}) {
    lpWorker->initializeThread(&lApplication.thread());
    lApplication.add(lpWorker);
  }
  lApplication.goUp();
  lIsDone.waitToOn(0);
  lApplication.goDown();
}
