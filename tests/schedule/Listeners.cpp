// Listeners that attach and detach themselves and others, also while they are called.
#include <array>
#include <atomic>
#include <cstdlib>

#include "GpsHost.h"
#include "NfwGnss.h"
#include "NfwNmeaDataListener.h"
#include "Scenarios.h"

namespace {

const int SENTENCES = 40;

class Hearer : public nfw::NmeaDataListener {
 public:
  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override {
    mPlace.called("a listener of sentences");
    const int lNumber = std::atoi(std::string(reinterpret_cast<const char*>(npData), nSize).c_str() + 7);
    schedule::require(lNumber > mLast && (mLast < 0 || lNumber == mLast + 1), "no sentence is missed while attached");
    schedule::require(mLast >= 0 || !mPlace.isPresent() || lNumber <= mFed + 1, "none is missed behind the attach");
    mLast = lNumber;
    mOnCall();
  }
  void come() {
    mPlace.attach([this] {
      mLast = -1;
      const bool lIsDone = nfw::Gnss::get()->attachNmeaDataListener(this);
      mFed = sFed.load();
      return lIsDone;
    });
  }
  void go() {
    mPlace.detach([this] { nfw::Gnss::get()->detachNmeaDataListener(this); });
  }
  bool hasLast() const { return !mPlace.isPresent() || mLast == SENTENCES - 1 || mFed == SENTENCES - 1; }

  std::function<void()> mOnCall = [] {};
  static std::atomic<int> sFed;  // the last sentence that was begun

 private:
  Place mPlace;
  std::atomic<int> mLast{-1}, mFed{-1};
};

std::atomic<int> Hearer::sFed{-1};

}  // namespace

void listeners() {
  nfw::Gnss::initializeMaxNmeaDataListenerNum(3);
  std::array<Hearer, 3> lHearers;
  startLogs();
  nfw::Gnss& lGnss = *nfw::Gnss::get();
  schedule::require(lGnss.initialize(), "positioning starts");
  const auto lFeed = [] {
    while (Hearer::sFed < SENTENCES - 1) {
      const std::string lText = "$GPTXT," + std::to_string(++Hearer::sFed) + ",\r\n";
      gpshost::feedSentence(lText.data(), static_cast<unsigned int>(lText.size()));
    }
  };
  changeUnder({lFeed}, lHearers, 6);
  const schedule::Within lWithin("the shutdown", 30000);
  const bool lIsSettled = schedule::flip();
  for (Hearer& lEach : lHearers) {
    if (lIsSettled) lEach.come(), lEach.mOnCall = [] {};
  }
  lGnss.shutdown();
  for (const Hearer& lEach : lHearers)
    schedule::require(lEach.hasLast(), "what was queued is handed on before the end");
  nfw::Gnss::destroy();
  endLogs();
}
