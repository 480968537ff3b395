#pragma once

#include <mutex>
#include <string>

#include "KeptFiles.h"
#include "NfwLogRecordCounts.h"
#include "NfwLogRetention.h"
#include "Spell.h"

namespace drive {

/// What became of one log of the recording, for people. Any thread.
class LogReport {
 public:
  explicit LogReport(const char* npName) : mName(npName) {}

  const std::string& getName() const { return mName; }

  /// From here on the log is wanted: it is told of, and what is missing in it is a failure.
  /// @param nPlace where it is recorded
  void want(const std::string& nPlace);
  bool isWanted() const;

  /// Looks at the counts. What is to be said about them now, or nothing.
  std::string look(const nfw::LogRecordCounts& nCounts, Spell::Clock::time_point nNow);
  /// Something apart from its records is not as it should be; the first stands.
  void noteFault(const std::string& nFault);

  /// What was deleted of the recording's files to keep them within limits.
  void noteDeleted(const nfw::LogRetentionCounts& nCounts);
  nfw::LogRetentionCounts getDeleted() const;
  /// What was marked as kept, once more. What could not be is a fault.
  void noteKept(const KeptCounts& nCounts);
  unsigned int getKeptNum() const;  ///< files, in all

  nfw::LogRecordCounts getCounts() const;
  /// What is wrong with the log in the end, on one line; empty when it is whole.
  std::string getVerdict() const;

 private:
  std::string missing() const;
  std::string label() const { return mName + (mPlace.empty() ? "" : " in " + mPlace); }

  const std::string mName;
  mutable std::mutex mMutex;  // guards what follows
  bool mIsWanted = false;
  std::string mPlace;
  nfw::LogRecordCounts mCounts;
  nfw::LogRetentionCounts mDeleted;
  unsigned int mKeptNum = 0;
  std::string mSince;  // the time of day when records first were missing
  std::string mFault;
  Spell mSpell;
};

}  // namespace drive
