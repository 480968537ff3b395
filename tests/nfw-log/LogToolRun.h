// Runs nfw-log inside the test, as its main() does.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CommandLine.h"
#include "TempDir.h"

namespace logtest {

/// The exit code; `npOutput` gets what it wrote to standard output, `npErrors` what it said on standard error.
inline int runTool(const std::vector<std::string>& nArguments, std::string* npOutput = nullptr,
                   std::string* npErrors = nullptr) {
  std::vector<const char*> lArgv = {"nfw-log"};
  for (const std::string& lArgument : nArguments) lArgv.push_back(lArgument.c_str());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int lExit = logtool::runProgram(static_cast<int>(lArgv.size()), lArgv.data());
  const std::string lOutput = testing::internal::GetCapturedStdout(), lErrors = testing::internal::GetCapturedStderr();
  if (npOutput != nullptr) *npOutput = lOutput;
  if (npErrors != nullptr) *npErrors = lErrors;
  return lExit;
}

inline testing::AssertionResult has(const std::string& nText, const std::string& nPart) {
  if (nText.find(nPart) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no " << nPart << " in " << nText;
}

/// Runs on files in a directory of its own.
class LogTool : public testing::Test {
 protected:
  /// What it writes to standard output.
  std::string output(const std::vector<std::string>& nArguments, int nExit = 0) {
    std::string lOutput;
    EXPECT_EQ(runTool(nArguments, &lOutput, &mErrors), nExit) << mErrors;
    return lOutput;
  }

  nfwtest::TempDir mDir;
  std::string mErrors;  ///< of the last run
};

}  // namespace logtest
