#include "NfwAppLog.h"
#include "Scenarios.h"
#include "SysLogServiceHost.h"

namespace {

/// The lines of the system log, among the steps.
class LogInTrace : public syslogservice::Sink {
 public:
  void writeLine(int /*nType*/, int nLevel, const char* npText) override {
    schedule::note(std::string(nLevel == nfw::LOG_LEVEL_ERROR ? "logs the error: " : "logs: ") + npText);
  }
};

const schedule::Scenario SCENARIOS[] = {
    {"components", &components, {12486}},
};

}  // namespace

int main(int nArgCount, char** npArgs) {
  LogInTrace lLog;
  syslogservice::setSink(&lLog);
  return schedule::run(nArgCount, npArgs, SCENARIOS, sizeof SCENARIOS / sizeof SCENARIOS[0]);
}
