#include "LogToolRun.h"

#include <gtest/gtest.h>

#include "CommandLine.h"

namespace logtest {

int runTool(const std::vector<std::string>& nArguments, std::string* npOutput, std::string* npErrors) {
  std::vector<const char*> lArgv = {"nfw-log"};
  for (const std::string& lArgument : nArguments) lArgv.push_back(lArgument.c_str());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int lExit = logtool::runProgram(static_cast<int>(lArgv.size()), lArgv.data());
  const std::string lOutput = testing::internal::GetCapturedStdout();
  const std::string lErrors = testing::internal::GetCapturedStderr();
  if (npOutput != nullptr) *npOutput = lOutput;
  if (npErrors != nullptr) *npErrors = lErrors;
  return lExit;
}

}  // namespace logtest
