// The order of the locks, as docs/threads.md states it.
#pragma once

#include <map>
#include <set>
#include <string>

namespace schedule {

/// Read from the lines between "```lock-order" and "```": "A > B" allows B to be taken while A is held, and whatever
/// may be taken under B. A star in a name stands for anything.
class LockOrder {
 public:
  bool read(const char* npPath);  ///< false when there is no such block
  bool allows(const std::string& nHeld, const std::string& nTaken) const;

 private:
  bool reaches(const std::string& nFrom, const std::string& nTo, std::set<std::string>& nSeen) const;

  std::multimap<std::string, std::string> mInner;
  mutable std::map<std::string, bool> mKnown;
};

}  // namespace schedule
