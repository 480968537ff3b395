#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace drive {

/// Which lines of the log are shown. The library tells of each sentence that it cannot use, and real receivers send
/// many of them: of its errors and warnings, one line of each kind is shown and the others are counted. Lines are of
/// one kind when they differ in numbers and in what stands in brackets only. Any thread; nothing is allocated.
class LogKinds {
 public:
  static constexpr int NO_KIND = -1;

  /// @param nFolds false: every line is shown
  explicit LogKinds(bool nFolds) : mFolds(nFolds) {}

  struct Verdict {
    bool mIsShown;
    int mKind;  ///< NO_KIND: it is shown for itself
  };
  Verdict judge(int nType, int nLevel, const char* npText);
  uint64_t count(int nKind) const;  ///< lines of a kind so far

  /// Calls `nTell(type, level, text, count)` for each kind of which more than one line came.
  template <class Tell>
  void eachRepeated(const Tell& nTell) const {
    const std::lock_guard<std::mutex> lLock(mMutex);
    for (size_t i = 0; i < mNum; ++i) {
      if (mKinds[i].mCount > 1) nTell(mKinds[i].mType, mKinds[i].mLevel, mKinds[i].mText, mKinds[i].mCount);
    }
  }

 private:
  static constexpr size_t MAX_KINDS = 64;  // further ones are one kind together
  struct Kind {
    uint64_t mSum;  // of the text that does not change
    int mType, mLevel;
    uint64_t mCount;
    char mText[200];  // of its first line
  };

  size_t find(uint64_t nSum) const;

  const bool mFolds;
  mutable std::mutex mMutex;
  std::array<Kind, MAX_KINDS> mKinds{};
  size_t mNum = 0;
};

/// While it lives, lines that the library writes on this thread are not shown: the tool reads sentences with its
/// parser, too, before the services do so and tell of them.
class LogMute {
 public:
  LogMute() { ++mDepth; }
  ~LogMute() { --mDepth; }
  LogMute(const LogMute&) = delete;
  LogMute& operator=(const LogMute&) = delete;

  static bool isOn() { return mDepth > 0; }

 private:
  static thread_local int mDepth;
};

}  // namespace drive
