#pragma once

#include <termios.h>

#include <string_view>

#include "Events.h"

namespace drive {

/// Gives the terminal back as it was, however the program ends: its settings, and the place of a picture. A signal that
/// stops the program is told as an event, so that the terminal is given back in order; of one that kills it, as far as
/// it can be caught, the handler does so. Of one process there is one.
class TerminalGuard {
 public:
  /// From here on SIGTSTP and SIGCONT are events, until the object goes or release() is called.
  explicit TerminalGuard(Events& nEvents);
  ~TerminalGuard();
  TerminalGuard(const TerminalGuard&) = delete;
  TerminalGuard& operator=(const TerminalGuard&) = delete;

  void release();  ///< nobody asks for the events any more
  void stop();     ///< stops the process, as SIGTSTP does; returns when it goes on
  /// Settings of the terminal that standard input is, until endSettings(). False when it takes none.
  static bool setSettings(const termios& nSettings);
  static void endSettings();       ///< gives the settings back for good
  static void setSettingsAgain();  ///< after somebody else has had the terminal
  /// Gives the settings back for a while. Any thread, also in a signal's handler and more than once.
  static void restoreSettings();

  /// A picture is on the terminal that standard output is; the text takes it off.
  static void setPicture(std::string_view nLeave);
  static void clearPicture();

  /// Gives everything back at once, where the program ends in disorder. Any thread, also in a signal's handler.
  static void restore();

  /// Nobody else has the terminal of the descriptor. Also where it is none that could be had.
  static bool isForeground(int nFd);

 private:
  void install();
  bool mIsInstalled = false;
};

}  // namespace drive
