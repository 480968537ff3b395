// Plays one log type id of a sensor system-log file.
#pragma once

#include "TimedReplay.h"

namespace nfw {

class SensorSysLoggerManager;
class SysLogPlayListener;

/// The replay of the sensor system log. Time stamps that go back begin a new stretch, one second after the old one.
class SysLogPlayDataDispatcher : public TimedReplay {
 public:
  SysLogPlayDataDispatcher(int nLogTypeId, SysLogPlayListener* npListener, SensorSysLoggerManager* npManager);
  ~SysLogPlayDataDispatcher() override;

  SysLogPlayListener* getListener() const { return mpPlayListener; }

 private:
  void deliver(const LogInfo& nInfo) override;
  void tellEnd() override;

  SensorSysLoggerManager* const mpManager;
  SysLogPlayListener* const mpPlayListener;
};

}  // namespace nfw
