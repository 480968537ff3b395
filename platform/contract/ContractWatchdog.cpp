// A platform that keeps a caller for ever must fail the suite: the alarm ends it behind the name of the case that runs.
// It is the kernel's and no thread's: what hangs may be the threads.
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

class Watchdog : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { alarm(120); }
  void OnTestEnd(const testing::TestInfo&) override { alarm(0); }
};

[[maybe_unused]] const bool gIsWatching = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
  return true;
}();

}  // namespace
