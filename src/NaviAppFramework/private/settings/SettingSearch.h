// Looks for a key in a settings file.
#pragma once

#include "utl/File.h"

namespace nfw {

const unsigned int SETTING_KEY_MAX = 32;  // bytes, as the next
const unsigned int SETTING_VALUE_MAX = 200;
const unsigned int SETTING_LINE_SIZE = SETTING_KEY_MAX + 1 + SETTING_VALUE_MAX + 1;

/// What log lines call a file. One that is being saved has a temporary name, and is called by the name that it will
/// have while a SettingFileName for it lives on the calling thread.
class SettingFileName {
 public:
  SettingFileName(const utl::File& nFile, const char* npPath);
  ~SettingFileName();
  SettingFileName(const SettingFileName&) = delete;
  SettingFileName& operator=(const SettingFileName&) = delete;

  static const char* of(const utl::File& nFile);

 private:
  const utl::File& mFile;
  const char* const mpPath;
  const SettingFileName* const mpOuter;
};

/// One search from the file's position on. Failures are logged.
class SettingSearch {
 public:
  enum Result { FOUND, NOT_FOUND, FAILED };

  SettingSearch(utl::File& nFile, const char* npKey, char* npValue, unsigned int nValueSize)
      : mFile(nFile), mpKey(npKey), mpValue(npValue), mValueSize(nValueSize) {}

  /// To the first line of the key that begins before `nEndPosition`.
  Result run(unsigned long long nEndPosition);

 private:
  bool checkArguments();
  bool readPosition(unsigned long long* npPosition);
  Result readLine();
  Result takeValue(const char* npValue);
  const char* valueOfKey() const;

  utl::File& mFile;
  const char* const mpKey;
  char* const mpValue;
  const unsigned int mValueSize;
  char mLine[SETTING_LINE_SIZE] = {};
};

}  // namespace nfw
