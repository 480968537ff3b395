// The data logger under four writers: rotation, backup, flush, a full disk, stop, restart, shutdown, destroy.
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "NfwLogger.h"
#include "PlatformSeams.h"
#include "Scenarios.h"

namespace {

const int WRITERS = 4;

/// The numbers of each writer's records, as the files hold them, one file after the other.
std::map<int, std::vector<int>> readRecords() {
  std::set<std::filesystem::path> lFiles;
  for (const auto& lEach : std::filesystem::directory_iterator("log")) {
    if (lEach.is_regular_file()) lFiles.insert(lEach.path());
  }
  std::map<int, std::vector<int>> lRecords;
  for (const auto& lPath : lFiles) {
    size_t lRest = 0;
    std::ifstream lFile(lPath, std::ios::binary);
    for (const auto& lEach : nfwtest::parseLogRecords({std::istreambuf_iterator<char>(lFile), {}}, &lRest)) {
      lRecords[lEach.mId].push_back(std::stoi(lEach.mData));
    }
    schedule::require(lRest == 0, "records are whole");
  }
  return lRecords;
}

void control(nfw::Logger& nLogger) {
  const std::function<void()> WAYS[] = {
      [&] { nLogger.flush(); },
      [&] { nLogger.setSyncInterval(schedule::flip() ? 10 : 0); },
      [&] { nLogger.setMaxFileTime(schedule::flip() ? 1000 : 0, schedule::flip()); },
      [&] { nLogger.stopRecord(); },
      [&] { nLogger.startRecord("log", "s", schedule::flip() ? "old" : nullptr); },
      [] { schedule::sleepMs(schedule::pick(1500)); },
  };
  WAYS[schedule::pick(6)]();
}

}  // namespace

void logger() {
  using nfw::Logger;
  const unsigned int lBuffer = schedule::flip() ? 300 : 30000;
  sizeLogs(lBuffer, schedule::flip() ? 400 : 100000);
  std::filesystem::create_directory("log");
  std::filesystem::create_directory("old");
  writeFile("old/file", std::string(20000, 'x'));
  Logger& lLogger = *Logger::get();
  schedule::require(lLogger.initialize() && lLogger.startRecord("log", "s", nullptr), "a recording begins");
  nfw::LogRecordCounts lCounts;
  {
    const seams::Failing lFull(seams::FILE_WRITE, schedule::flip() ? schedule::pick(8) : 100000, 1 + schedule::pick(3));
    const bool lIsHurried = schedule::flip();  // writing without a pause, to the end and beyond
    std::atomic<bool> lIsGone{false};
    Crew lWriters, lOthers;
    for (int i = 0; i < WRITERS; ++i) {
      lWriters.add([&, i] {
        for (int k = 0; k < (lIsHurried ? 60 : 12) && !lIsGone; ++k, std::this_thread::yield()) {
          const std::string lText = std::to_string(k);
          Logger::write(i, lText.data(), static_cast<unsigned int>(lText.size()));
          if (!lIsHurried && schedule::pick(4) == 0) schedule::sleepMs(schedule::pick(300));
        }
      });
    }
    const auto lControl = [&lLogger] {
      for (int k = 0; k < 5; ++k) control(lLogger);
    };
    lOthers.add(lControl, lIsHurried ? 0 : 2);
    if (!lIsHurried && schedule::flip()) lWriters.join(), lOthers.join();
    const schedule::Within lWithin("the end of the logger", 40000);
    if (schedule::flip()) lLogger.stopRecord();
    if (schedule::flip()) lLogger.shutdown();
    lOthers.join();
    lLogger.shutdown();
    lCounts = lLogger.getRecordCounts();
    Logger::destroy();  // under the writers
    lIsGone = true;
  }
  unsigned long long lNum = 0;
  for (const auto& lWriter : readRecords()) {
    Ascending lOrder("a thread's records");
    for (const int lEach : lWriter.second) lOrder.see(lEach), ++lNum;
  }
  schedule::require(lNum == lCounts.mRecorded, "what counts as recorded is in the files: " + std::to_string(lNum) +
                                                   " of " + std::to_string(lCounts.mRecorded));
}
