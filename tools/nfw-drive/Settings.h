#pragma once

#include "NfwSettingFile.h"

namespace drive {

/// What the tool keeps from run to run, as texts of the command line. An empty text is not set.
class Settings : public nfw::SettingFile {
 public:
  static constexpr unsigned int MAX_VALUE = 200;

  using nfw::SettingFile::SettingFile;

  char mSource[MAX_VALUE + 1] = {};
  char mSpeed[MAX_VALUE + 1] = {};
  char mRecordDirectory[MAX_VALUE + 1] = {};
  char mPrefix[MAX_VALUE + 1] = {};
  char mBackupDirectory[MAX_VALUE + 1] = {};
  char mLogLevel[MAX_VALUE + 1] = {};

  /// The settings by the names of their options; the source has the name "SOURCE".
  struct Entry {
    const char* mpOption;
    const char* mpKey;
    char (Settings::*mpValue)[MAX_VALUE + 1];
  };
  static const Entry ENTRIES[6];

 private:
  bool readParameters(utl::File& nFile) override;
  bool writeParameters(utl::File& nFile) override;
};

}  // namespace drive
