// A process that saves is killed at each of its system calls.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "SettingSamples.h"
#include "TempTree.h"

namespace {

const char OLD[] = "Scale=1\nName=old\n";
const char NEW[] = "Scale=6\nName=right\n";

/// A child that is stopped at the beginning and the end of every system call.
class TracedSave {
 public:
  explicit TracedSave(const char* npPath) : mChild(fork()) {
    if (mChild == 0) save(npPath);
    mIsTraced = wait() && WIFSTOPPED(mStatus);
  }
  bool isTraced() const { return mIsTraced; }

  /// False when the child ended by itself before.
  bool runTo(int nStop) {
    for (int i = 0; i < nStop; ++i) {
      if (ptrace(PTRACE_SYSCALL, mChild, nullptr, nullptr) != 0 || !wait() || !WIFSTOPPED(mStatus)) return false;
    }
    return true;
  }
  void kill() {
    ::kill(mChild, SIGKILL);
    wait();
  }
  bool hasSaved() const { return WIFEXITED(mStatus) && WEXITSTATUS(mStatus) == 0; }

 private:
  [[noreturn]] static void save(const char* npPath) {
    nfwtest::Settings lSettings(npPath);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(2);
    raise(SIGSTOP);
    _exit(lSettings.save() ? 0 : 1);
  }
  bool wait() { return waitpid(mChild, &mStatus, 0) == mChild; }

  int mStatus = 0;
  pid_t mChild;
  bool mIsTraced = false;
};

TEST(SettingFileCrash, LeavesTheOldOrTheNewFileWholeAtEverySystemCall) {
  const nfwtest::TempTree lTree;
  const std::string lPath = lTree.path("settings");
  int lOldNum = 0;
  int lNewNum = 0;
  for (int lStop = 1;; ++lStop) {
    lTree.write("settings", OLD);
    TracedSave lSave(lPath.c_str());
    if (!lSave.isTraced()) GTEST_SKIP() << "system calls cannot be traced here (ptrace is refused)";
    const bool lIsInside = lSave.runTo(lStop);
    if (lIsInside) lSave.kill();
    const std::string lContent = lTree.read("settings");
    ASSERT_TRUE(lContent == OLD || lContent == NEW) << "killed at stop " << lStop << ": " << lContent;
    ++(lContent == OLD ? lOldNum : lNewNum);
    if (lIsInside) continue;
    EXPECT_TRUE(lSave.hasSaved());
    EXPECT_EQ(1u, lTree.entryNum());  // what the killed ones left was used up
    break;
  }
  EXPECT_GT(lOldNum, 10);  // it was really met before,
  EXPECT_GT(lNewNum, 2);   // and behind the change
}

}  // namespace
