// A settings class for tests.
#pragma once

#include <functional>
#include <string>

#include "NfwSettingFile.h"

namespace nfwtest {

class Settings : public nfw::SettingFile {
 public:
  using SettingFile::SettingFile;

  int mScale = 6;
  std::string mName = "right";
  bool mResult = true;                 // of both operations, when they did not fail
  std::function<void()> mDuringWrite;  // called between the two parameters
  int mReadNum = 0;

 private:
  bool readParameters(utl::File& nFile) override {
    ++mReadNum;
    return readParam(nFile, "Scale", &mScale) && mResult;
  }
  bool writeParameters(utl::File& nFile) override {
    if (!writeParam(nFile, "Scale", mScale)) return false;
    if (mDuringWrite) mDuringWrite();
    return writeParam(nFile, "Name", mName.c_str()) && mResult;
  }
};

}  // namespace nfwtest
