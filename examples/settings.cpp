// Settings of an application, kept in a file: copy the class, replace the parameters.
//   example_settings FILE [SOURCE]
#include <NaviAppFramework.h>

#include <cstdio>

#include "utl/StringUtil.h"

class AppSettings : public nfw::SettingFile {
 public:
  using SettingFile::SettingFile;  // the path, at most 259 bytes

  // The values that hold without a file, and for what the file does not tell.
  char mSource[201] = "sim";  // a value has at most 200 bytes
  unsigned short mSpeedPercent = 100;
  int mLogLevel = nfw::LOG_LEVEL_WARNING;

 private:
  // Called by load(). Read in the order of the file, where each search goes on behind the line before; any other order
  // works too. A parameter that is missing, or whose value does not fit, leaves its member as it is, so an older file
  // stays good; the log names values that do not fit. Return false when the application cannot do with what it read.
  bool readParameters(utl::File& nFile) override {
    char lSource[sizeof(mSource)];  // a failed read of a text empties its buffer
    if (readParam(nFile, "Source", lSource, sizeof(lSource))) utl::copyStr(mSource, sizeof(mSource), lSource);
    readParam(nFile, "SpeedPercent", &mSpeedPercent);
    readParam(nFile, "LogLevel", &mLogLevel);
    return true;
  }

  // Called by save(). The file is written anew: every parameter, and each failure ends it. Then the old file stays.
  bool writeParameters(utl::File& nFile) override {
    return nFile.writeLine("# Edited by hand or by the application. Without a line its default holds.") &&
           writeParam(nFile, "Source", mSource) && writeParam(nFile, "SpeedPercent", mSpeedPercent) &&
           writeParam(nFile, "LogLevel", mLogLevel);
  }
};

int main(int nArgNum, char** nppArgs) {
  if (nArgNum < 2) {
    std::fprintf(stderr, "usage: %s FILE [SOURCE]\n", nppArgs[0]);
    return 2;
  }
  AppSettings lSettings(nppArgs[1]);
  if (!lSettings.load()) std::printf("no settings yet: the defaults hold\n");
  // What the user says now beats the file.
  if (nArgNum > 2 && !utl::copyStr(lSettings.mSource, sizeof(lSettings.mSource), nppArgs[2])) return 2;
  std::printf("Source=%s SpeedPercent=%u LogLevel=%d\n", lSettings.mSource, lSettings.mSpeedPercent,
              lSettings.mLogLevel);
  return lSettings.save() ? 0 : 1;  // the file is never half-written, whatever happens
}
