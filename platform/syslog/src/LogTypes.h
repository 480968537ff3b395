// The registered sources of log lines.
#pragma once

#include <mutex>

namespace syslogservice {

/// A fixed table: nothing is allocated. Any thread may call.
class LogTypes {
 public:
  static constexpr unsigned int NAME_SIZE = 32;
  static constexpr unsigned int MAX_NUM = 256;

  /// Adds or replaces. A longer name is cut. False when the table is full.
  bool set(int nType, const char* npName, int nLevel);
  void setLevel(int nType, int nLevel);
  void setAllLevels(int nLevel);

  /// False, and nothing copied, for a type that is not registered.
  bool get(int nType, char (&nName)[NAME_SIZE], int* npLevel) const;

 private:
  struct Entry {
    int mType;
    int mLevel;
    char mName[NAME_SIZE];
  };

  unsigned int indexOfLocked(int nType) const;  // mNum: absent

  mutable std::mutex mMutex;  // guards what follows
  unsigned int mNum = 0;
  Entry mEntries[MAX_NUM] = {};
};

}  // namespace syslogservice
