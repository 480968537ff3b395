// Settings loaded and saved by several threads, through one object and through two of one path.
#include "NfwSettingFile.h"
#include "PlatformSeams.h"
#include "Scenarios.h"

namespace {

class Pair : public nfw::SettingFile {
 public:
  using SettingFile::SettingFile;

 private:
  bool readParameters(utl::File& nFile) override {
    int lFirst = -1, lSecond = -2;
    const bool lIsRead = readParam(nFile, "First", &lFirst) && readParam(nFile, "Second", &lSecond);
    schedule::require(lIsRead && lFirst == lSecond, "a file is one saver's, whole");
    mValue = lFirst;
    return true;
  }
  bool writeParameters(utl::File& nFile) override {
    const int lValue = mValue + 1;
    if (!writeParam(nFile, "First", lValue) || !writeParam(nFile, "Second", lValue)) return false;
    mValue = lValue;
    return true;
  }
  int mValue = 0;
};

}  // namespace

void settings() {
  Pair lOne("settings"), lOther("settings");
  schedule::require(lOne.save(), "the first save");
  const seams::Failing lFull(seams::FILE_WRITE, schedule::pick(6), 1);
  Crew lCrew;
  for (Pair* const lpEach : {&lOne, &lOne, &lOther}) {
    lCrew.add([lpEach] {
      for (int i = 0; i < 3; ++i) schedule::flip() ? lpEach->save() : lpEach->load();
    });
  }
  const schedule::Within lWithin("saving and loading", 10000);
  lCrew.join();
  schedule::require(lOne.load() && lOther.load(), "the file is there at the end");
}
