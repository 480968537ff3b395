// Every order of events from a seed. One thread runs at a time; at each lock, wait, wake, atomic, thread start, clock
// and file call the seed decides who goes on. Time moves only when every thread waits. docs/schedule.md is the manual.
#pragma once

#include <cstdint>
#include <string>

namespace schedule {

/// What a scenario asks for. All of it is called by threads of the scenario, while it runs.

void require(bool nHolds, const char* npWords);  ///< an invariant, in words of the user; ends the run when it is broken
void require(bool nHolds, const std::string& nWords);
void outward(const char* npCallback);  ///< from a callback: the framework must not hold a lock over it
unsigned int pick(unsigned int nNum);  ///< the seed's choice: 0 up to below `nNum`
inline bool flip() { return pick(2) != 0; }
int64_t nowMs();                      ///< virtual time since the scenario began
void sleepMs(unsigned int nMs);       ///< of virtual time
void note(const std::string& nText);  ///< into the trace

/// What is done while it lives must not take longer in virtual time. On one thread, one at a time, the inner one
/// counts.
class Within {
 public:
  Within(const char* npWhat, unsigned int nMs);
  ~Within();
  Within(const Within&) = delete;
  Within& operator=(const Within&) = delete;

 private:
  const char* mpOuterWhat;
  int64_t mOuterDueNs;
};

/// One scenario; it runs in a process of its own, in an empty directory of its own. A list of them is given to run().
struct Scenario {
  const char* mpName;
  void (*mpRun)();
  /// Seeds that found a fault once and are run before any other, ended by a zero.
  uint64_t mKept[8];
};

/// The program: [SCENARIO] [--seed N] [--count N] [--trace] [--check]. Its exit status: 0, 1 after a finding, 2 when
/// the arguments are wrong.
int run(int nArgCount, char** npArgs, const Scenario* npScenarios, unsigned int nNum);

}  // namespace schedule
