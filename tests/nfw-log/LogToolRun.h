// Runs nfw-log inside the test, as its main() does.
#pragma once

#include <string>
#include <vector>

namespace logtest {

/// The exit code; `npOutput` gets what it wrote to standard output, `npErrors` what it said on standard error.
int runTool(const std::vector<std::string>& nArguments, std::string* npOutput = nullptr,
            std::string* npErrors = nullptr);

}  // namespace logtest
