#include "ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

namespace {

const int LIMIT_MS = 120000;  // ends a test that would hang

// An emulator's words first, where the program is for another processor.
std::vector<std::string> commandLine(const std::vector<std::string>& nArguments) {
  std::vector<std::string> lWords;
  std::istringstream lEmulator(NFW_EMULATOR);
  for (std::string lWord; lEmulator >> lWord;) lWords.push_back(lWord);
  lWords.push_back(NFW_DRIVE_PROGRAM);
  lWords.insert(lWords.end(), nArguments.begin(), nArguments.end());
  return lWords;
}

}  // namespace

ToolRun::ToolRun(const std::vector<std::string>& nArguments, int nRead, const std::string& nErrorFile) {
  std::vector<std::string> lWords = commandLine(nArguments);
  std::vector<char*> lArgv;
  for (std::string& lWord : lWords) lArgv.push_back(lWord.data());
  lArgv.push_back(nullptr);
  int lPipe[2] = {-1, -1};
  if (::pipe2(lPipe, O_CLOEXEC) != 0) return;
  posix_spawn_file_actions_t lActions;
  ::posix_spawn_file_actions_init(&lActions);
  ::posix_spawn_file_actions_addopen(&lActions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_adddup2(&lActions, lPipe[1], nRead);
  if (!nErrorFile.empty()) {
    ::posix_spawn_file_actions_addopen(&lActions, STDERR_FILENO, nErrorFile.c_str(), O_WRONLY | O_CREAT, 0600);
  }
  ::posix_spawnp(&mPid, lArgv[0], &lActions, nullptr, lArgv.data(), environ);
  ::posix_spawn_file_actions_destroy(&lActions);
  ::close(lPipe[1]);
  mFd = lPipe[0];
}

ToolRun::~ToolRun() {
  closeOutput();
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

void ToolRun::closeOutput() {
  if (mFd >= 0) ::close(mFd);
  mFd = -1;
}

void ToolRun::signal(int nSignal) const { ::kill(mPid, nSignal); }

int ToolRun::wait() {
  int lStatus = 0;
  ::waitpid(mPid, &lStatus, 0);
  mPid = -1;
  return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -WTERMSIG(lStatus);
}

std::string ToolRun::errors(const std::vector<std::string>& nArguments, int* npExit) {
  ToolRun lRun(nArguments, STDERR_FILENO);
  const std::string lErrors = lRun.readAll();
  *npExit = lRun.wait();
  return lErrors;
}

std::string ToolRun::output(const std::vector<std::string>& nArguments, int* npExit) {
  ToolRun lRun(nArguments);
  const std::string lOutput = lRun.readAll();
  *npExit = lRun.wait();
  return lOutput;
}
