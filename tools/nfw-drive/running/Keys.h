#pragma once

#include <string>

namespace drive {

/// Keys of the terminal that standard input is, one by one and without an echo, as long as the program is in the
/// foreground. The terminal gets its settings back when this ends, when the program is stopped and when it is killed by
/// a signal that can be caught. One object at a time; one thread.
class Keys {
 public:
  enum Key { NONE, PAUSE, BACK, FORWARD, FASTER, SLOWER, STEP, KEEP, QUIT, OTHER };

  Keys() = default;
  ~Keys() { restore(); }
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;

  /// False where standard input is no terminal, or not ours to read.
  bool begin();
  Key next();  ///< that was pressed; NONE: no other

  static bool isForeground();
  /// Gives the terminal its settings back. Any thread, also in a signal's handler and more than once.
  static void restore();

 private:
  Key take(size_t nSize, Key nKey);

  std::string mText;  // read, and not yet understood
};

}  // namespace drive
