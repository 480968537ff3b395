#include "utl/Event.h"

#include "Clock.h"

namespace utl {

struct Event::State {
  explicit State(bool nOn) : mIsOn(nOn) {}

  Mutex mMutex;
  ClockCondition mTurnedOn{mMutex};
  bool mIsOn ZTS_ANNOTATION(guarded_by(mMutex));
};

Event::Event(bool nOn) : mpState(new State(nOn)) {}

Event::~Event() = default;

void Event::on() {
  MutexLock lLock(mpState->mMutex);
  mpState->mIsOn = true;
  mpState->mTurnedOn.broadcast();  // under the lock: a waiter that returns may destroy the event
}

void Event::off() {
  MutexLock lLock(mpState->mMutex);
  mpState->mIsOn = false;
}

bool Event::isOn() const {
  MutexLock lLock(mpState->mMutex);
  return mpState->mIsOn;
}

bool Event::waitToOn(unsigned int nTimeoutMs) {
  const int64_t lDeadline = nTimeoutMs == 0 ? Clock::NEVER : Clock::nowNs() + nTimeoutMs * Clock::NS_PER_MS;
  MutexLock lLock(mpState->mMutex);
  while (!mpState->mIsOn && (lDeadline == Clock::NEVER || Clock::nowNs() < lDeadline)) {
    mpState->mTurnedOn.waitForClock(mpState->mMutex, lDeadline);
  }
  return mpState->mIsOn;
}

}  // namespace utl
