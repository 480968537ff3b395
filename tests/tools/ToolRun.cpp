#include "ToolRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include <csignal>
#include <deque>
#include <sstream>

namespace {

const int LIMIT_MS = 120000;  // ends a test that would hang

// An emulator's words first, where the program is for another processor.
ToolRun::Words commandLine(const ToolRun::Words& nArguments) {
  std::istringstream lEmulator(NFW_EMULATOR);
  ToolRun::Words lWords{std::istream_iterator<std::string>(lEmulator), {}};
  lWords.push_back(NFW_DRIVE_PROGRAM);
  lWords.insert(lWords.end(), nArguments.begin(), nArguments.end());
  return lWords;
}

}  // namespace

ToolRun::ToolRun(const Words& nArguments, int nRead) : mErrorFd(::memfd_create("errors", MFD_CLOEXEC)) {
  Words lWords = commandLine(nArguments);
  std::vector<char*> lArgv;
  for (std::string& lWord : lWords) lArgv.push_back(lWord.data());
  lArgv.push_back(nullptr);
  int lFds[2] = {-1, -1};
  const winsize lSize = {40, 100, 0, 0};
  if (nRead == TERMINAL) ::openpty(&lFds[0], &lFds[1], nullptr, nullptr, &lSize);  // our end first
  ::setenv("TERM", "vt100", 1);
  if (nRead != TERMINAL && ::pipe2(lFds, O_CLOEXEC) != 0) return;
  if (nRead == STDOUT_FILENO) ::fcntl(lFds[1], F_SETFL, O_NONBLOCK);  // as a parent may have left it
  posix_spawn_file_actions_t lActions;
  ::posix_spawn_file_actions_init(&lActions);
  ::posix_spawn_file_actions_addopen(&lActions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_adddup2(&lActions, mErrorFd, STDERR_FILENO);
  ::posix_spawn_file_actions_adddup2(&lActions, lFds[1], nRead == TERMINAL ? STDOUT_FILENO : nRead);
  if (nRead == TERMINAL) ::posix_spawn_file_actions_adddup2(&lActions, lFds[1], STDERR_FILENO);
  ::posix_spawnp(&mPid, lArgv[0], &lActions, nullptr, lArgv.data(), environ);
  ::posix_spawn_file_actions_destroy(&lActions);
  ::close(lFds[1]);
  mFd = lFds[0];
}

ToolRun::~ToolRun() {
  if (mFd >= 0) ::close(mFd);
  ::close(mErrorFd);
  if (mPid > 0) {
    ::kill(mPid, SIGKILL);
    ::waitpid(mPid, nullptr, 0);
  }
}

std::string ToolRun::readLine() {
  size_t lEnd = std::string::npos;
  while ((lEnd = mUnread.find('\n')) == std::string::npos) {
    pollfd lFd = {mFd, POLLIN, 0};
    char lText[4096];
    const ssize_t lSize = ::poll(&lFd, 1, LIMIT_MS) == 1 ? ::read(mFd, lText, sizeof(lText)) : -1;
    if (lSize <= 0) return {};
    mUnread.append(lText, static_cast<size_t>(lSize));
  }
  const std::string lLine = mUnread.substr(0, lEnd);
  mUnread.erase(0, lEnd + 1);
  return lLine;
}

std::string ToolRun::readAll() {
  std::string lAll;
  for (std::string lLine = readLine(); !lLine.empty(); lLine = readLine()) lAll += lLine + "\n";
  return lAll;
}

// -1 would be every process there is.
void ToolRun::signal(int nSignal) const {
  ASSERT_GT(mPid, 0) << "not started";
  ::kill(mPid, nSignal);
}

int ToolRun::wait() {
  int lStatus = 0;
  ::waitpid(mPid, &lStatus, 0);
  mPid = -1;
  return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -WTERMSIG(lStatus);
}

std::string ToolRun::errors() const {
  std::string lText(1 << 16, '\0');
  lText.resize(static_cast<size_t>(std::max<ssize_t>(0, ::pread(mErrorFd, lText.data(), lText.size(), 0))));
  return lText;
}

std::vector<Outcome> runAll(const std::vector<ToolRun::Words>& nRuns) {
  std::deque<ToolRun> lRuns;
  for (const ToolRun::Words& lArguments : nRuns) lRuns.emplace_back(lArguments);
  std::vector<Outcome> lOutcomes;
  for (ToolRun& lRun : lRuns) {
    const std::string lOutput = lRun.readAll();
    const int lExit = lRun.wait();
    const size_t lLast = lOutput.rfind("{\"type\":\"summary\"");
    lOutcomes.push_back({lExit, lOutput, lRun.errors(),
                         lLast == std::string::npos ? nlohmann::json() : nlohmann::json::parse(lOutput.substr(lLast))});
  }
  return lOutcomes;
}

Outcome run(const ToolRun::Words& nArguments) { return runAll({nArguments}).front(); }

Outcome runQuietly(ToolRun::Words nArguments) {
  nArguments.insert(nArguments.end(), {"--log-level", "0"});
  return run(nArguments);
}
