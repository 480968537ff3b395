#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Inputs.h"
#include "Problems.h"
#include "RecordStream.h"

namespace logtool {

/// Reads a recording that is still being written: waits at its end for more, and goes on with the next file of its
/// directory when the recorder does.
class Follower : private tool::RecordDamageListener {
 public:
  /// @param nWord as the user named the recording: a directory is looked through for later files
  Follower(const Recording& nRecording, const std::string& nWord, Problems& nProblems);
  ~Follower() override;
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  /// Waits as long as it takes; `nOnWait` is called before. False when the file cannot be read.
  bool next(tool::Record* npRecord, const std::function<void()>& nOnWait);

 private:
  bool openNext();
  bool isFollowed();
  void addNew(const std::vector<std::string>& nPaths);
  void wait() const;
  void onDamage(const tool::RecordDamage& nDamage) override;

  Recording mRecording;
  const std::string mWord;
  Problems& mProblems;
  int mWatch;  // of changes in the file's directory
  size_t mFile = 0;
  int mFd = -1;
  std::optional<tool::RecordStream> mStream;
};

}  // namespace logtool
