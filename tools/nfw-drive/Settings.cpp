#include "Settings.h"

namespace drive {

const Settings::Entry Settings::ENTRIES[6] = {
    {"SOURCE", "Source", &Settings::mSource},
    {"--speed", "Speed", &Settings::mSpeed},
    {"--record", "RecordDirectory", &Settings::mRecordDirectory},
    {"--prefix", "RecordPrefix", &Settings::mPrefix},
    {"--backup", "BackupDirectory", &Settings::mBackupDirectory},
    {"--log-level", "LogLevel", &Settings::mLogLevel},
};

bool Settings::readParameters(utl::File& nFile) {
  for (const Entry& lEntry : ENTRIES) readParam(nFile, lEntry.mpKey, this->*lEntry.mpValue, MAX_VALUE + 1);
  return true;
}

bool Settings::writeParameters(utl::File& nFile) {
  for (const Entry& lEntry : ENTRIES) {
    const char* const lpValue = this->*lEntry.mpValue;
    if (*lpValue != '\0' && !writeParam(nFile, lEntry.mpKey, lpValue)) return false;
  }
  return true;
}

}  // namespace drive
