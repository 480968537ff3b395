// Runs nfw-log inside the test, as its main() does.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace logtest {

/// The exit code; `npOutput` gets what it wrote to standard output, `npErrors` what it said on standard error.
int runTool(const std::vector<std::string>& nArguments, std::string* npOutput = nullptr,
            std::string* npErrors = nullptr);

inline testing::AssertionResult has(const std::string& nText, const std::string& nPart) {
  if (nText.find(nPart) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no " << nPart << " in " << nText;
}

}  // namespace logtest
