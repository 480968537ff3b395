// The last steps, and what they are called.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>

namespace schedule {

/// Nothing of it depends on addresses but the objects' numbers, which are given as they are printed.
class Trace {
 public:
  static constexpr unsigned int SHOWN = 200;
  explicit Trace(const char* (*npThreadName)(unsigned int)) : mpThreadName(npThreadName) {}

  /// The text is kept by the caller for the rest of the run.
  void add(int64_t nNowNs, unsigned int nThread, const char* npOperation, const void* npObject);
  /// Objects are named before a run as well.
  static void name(const void* npObject, const char* npName) { names()[npObject] = npName; }
  static void forget(const void* npObject) { names().erase(npObject); }
  static const char* nameOf(const void* npObject);
  /// The name of the object, or a number that stays with it while the report is printed.
  std::string describe(const void* npObject);

  void print(FILE* npTo);
  uint64_t steps() const { return mSteps; }
  uint64_t digest() const { return mDigest; }
  bool mIsLive = false;  ///< print each step as it is made

 private:
  struct Step {
    int64_t mNowNs;
    const char* mpOperation;
    const void* mpObject;
    unsigned int mThread;
  };
  void print(FILE* npTo, const Step& nStep);
  static std::map<const void*, const char*>& names();

  static constexpr unsigned int KEPT = 256;
  const char* (*mpThreadName)(unsigned int);
  Step mRing[KEPT] = {};
  uint64_t mSteps = 0;
  uint64_t mDigest = 0;
  std::map<const void*, unsigned int> mNumbers;
};

}  // namespace schedule
