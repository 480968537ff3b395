#include "ReadCheck.h"

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "SeamState.h"

struct ReadCheck::State {
  enum Answer { NONE, READABLE, UNREADABLE };

  void answer(Answer nAnswer) {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mAnswer = nAnswer;
    mIsAnswered.notify_all();
  }

  const IsReadable mpIsReadable;
  const std::string mPoint;
  std::mutex mMutex;
  std::condition_variable mIsAnswered;
  Answer mAnswer = NONE;  // guarded by mMutex
};

void ReadCheck::begin(IsReadable npIsReadable, const std::string& nPoint, unsigned int nLimitMs) {
  mpState.reset(new State{npIsReadable, nPoint, {}, {}, State::NONE});
  std::unique_ptr<std::shared_ptr<State>> lpHeld(new std::shared_ptr<State>(mpState));
  pthread_t lThread;
  if (seams::fails(seams::THREAD_START) || pthread_create(&lThread, nullptr, &ReadCheck::enter, lpHeld.get()) != 0) {
    return mpState->answer(State::UNREADABLE);
  }
  pthread_detach(lThread);
  static_cast<void>(lpHeld.release());
  std::unique_lock<std::mutex> lLock(mpState->mMutex);
  mpState->mIsAnswered.wait_for(lLock, std::chrono::milliseconds(nLimitMs),
                                [this] { return mpState->mAnswer != State::NONE; });
}

bool ReadCheck::isUnderWay() const {
  if (mpState == nullptr) return false;
  const std::lock_guard<std::mutex> lLock(mpState->mMutex);
  return mpState->mAnswer == State::NONE;
}

bool ReadCheck::isReadable() const {
  if (mpState == nullptr) return true;
  const std::lock_guard<std::mutex> lLock(mpState->mMutex);
  return mpState->mAnswer == State::READABLE;
}

void* ReadCheck::enter(void* npState) {
  const std::unique_ptr<std::shared_ptr<State>> lpHeld(static_cast<std::shared_ptr<State>*>(npState));
  State& lState = **lpHeld;
  pthread_setname_np(pthread_self(), "ZTSMount_Check");
  lState.answer(lState.mpIsReadable(lState.mPoint.c_str()) ? State::READABLE : State::UNREADABLE);
  return nullptr;
}
