// The gate of a service: nobody is inside behind a shut gate, and whoever waits for the last one inside is woken.
#include <atomic>

#include "NfwOperationControl.h"
#include "Scenarios.h"

void gate() {
  nfw::OperationControl lGate;
  std::atomic<int> lInside{0}, lShut{0};
  Crew lCrew;
  const unsigned int lRounds = 1 + schedule::pick(4);
  const auto lOperate = [&] {
    for (unsigned int k = 0; k < lRounds; ++k) {
      if (!lGate.start()) continue;
      const nfw::AutoCompleteOperation lEnd(lGate);
      ++lInside;
      schedule::require(lShut == 0, "no operation runs behind a shut gate");
      --lInside;
    }
  };
  const auto lShutAndOpen = [&] {
    for (unsigned int k = 0; k < lRounds; ++k) {
      schedule::require(lGate.prohibit(), "the gate shuts");
      ++lShut;
      schedule::require(lInside == 0, "nobody is inside a shut gate");
      schedule::require(!lGate.start(), "nobody enters a shut gate");
      --lShut;
      lGate.permit();
    }
  };
  lCrew.add(lOperate, 3);
  lCrew.add(lShutAndOpen, 2);
  const schedule::Within lWithin("the gate", 1000);
  lCrew.join();
  schedule::require(lGate.start(), "the gate is open again");
  lCrew.add([&] { lGate.complete(); }, 2);  // one too many
  lCrew.add([&] { lGate.prohibit(), lGate.permit(); });
  lCrew.join();
  schedule::require(lGate.prohibit() && !lGate.start(), "the gate shuts at the end");
}
