// Where the stand-ins can be made to fail.
#pragma once

namespace seams {

/// What can be made to fail.
enum Point {
  POST,               ///< postMsg and the sends refuse
  TIMER,              ///< setTimer gives -1
  THREAD_START,       ///< start gives non-zero
  THREAD_STOP,        ///< stop has no time to wait: -2 at once while a handler runs
  LOCAL_TIME,         ///< getLocalTime is false
  LOCAL_TIME_FIELDS,  ///< Time::get is false
  TICK,               ///< getTickTime gives all ones
  FILE_OPEN,
  FILE_READ,
  FILE_WRITE,
  FILE_SEEK,
  FILE_POSITION,
  FILE_SIZE,
  FILE_FLUSH,
  FILE_SYNC,
  LOG_TYPE,      ///< registerLogType is false
  BINARY_LOG,    ///< BinaryLogWrite gives -1
  REGISTRATION,  ///< the receivers and the mount service take no listener
  POINT_NUM
};

}  // namespace seams
