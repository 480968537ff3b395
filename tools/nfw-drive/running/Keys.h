#pragma once

#include <string>

namespace drive {

/// Keys of the terminal that standard input is, one by one and without an echo, as long as the program is in the
/// foreground. The terminal gets its settings back when this ends; TerminalGuard sees to every other end. One object at
/// a time; one thread.
class Keys {
 public:
  enum Key { NONE, PAUSE, BACK, FORWARD, FASTER, SLOWER, STEP, KEEP, SATELLITES, LOG, QUIT, OTHER };

  Keys() = default;
  ~Keys() { end(); }
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;

  /// False where standard input is no terminal, or not ours to read.
  bool begin();
  Key next();  ///< that was pressed; NONE: no other
  void end();

 private:
  Key take(size_t nSize, Key nKey);
  bool isOurs();

  std::string mText;  // read, and not yet understood
  bool mHasBegun = false;
  bool mWasForeground = true;
};

}  // namespace drive
