// Plays one log type id of a log record file.
#pragma once

#include "TimedReplay.h"

namespace nfw {

class Logger;
class LogPlayListener;

/// The replay of the data logger. A record older than the file's first one is not played.
class LogPlayDataDispatcher : public TimedReplay {
 public:
  LogPlayDataDispatcher(int nLogTypeId, LogPlayListener* npListener, Logger* npLogger, unsigned int nMaxLogDataSize);
  ~LogPlayDataDispatcher() override;

  LogPlayListener* getListener() const { return mpPlayListener; }

 private:
  void deliver(const LogInfo& nInfo) override;
  void tellEnd() override;

  Logger* const mpLogger;
  LogPlayListener* const mpPlayListener;
};

}  // namespace nfw
