#include "Keys.h"

#include <unistd.h>

#include "TerminalGuard.h"

namespace drive {

bool Keys::begin() {
  termios lSettings;
  const bool lIsOurs = ::isatty(STDIN_FILENO) == 1 && TerminalGuard::isForeground(STDIN_FILENO);
  if (!lIsOurs || ::tcgetattr(STDIN_FILENO, &lSettings) != 0) return false;
  lSettings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  lSettings.c_cc[VMIN] = 0;
  lSettings.c_cc[VTIME] = 0;
  mHasBegun = TerminalGuard::setSettings(lSettings);
  return mHasBegun;
}

void Keys::end() {
  if (mHasBegun) TerminalGuard::endSettings();
  mHasBegun = false;
}

// A job that comes into the foreground while it runs gets no signal.
bool Keys::isOurs() {
  const bool lIsForeground = mHasBegun && TerminalGuard::isForeground(STDIN_FILENO);
  if (lIsForeground && !mWasForeground) TerminalGuard::setSettingsAgain();
  mWasForeground = lIsForeground;
  return lIsForeground;
}

Keys::Key Keys::next() {
  char lText[32];
  const ssize_t lSize = isOurs() ? ::read(STDIN_FILENO, lText, sizeof(lText)) : 0;
  if (lSize > 0) mText.append(lText, static_cast<size_t>(lSize));
  if (mText.empty()) return NONE;
  static const struct {
    const char* mpText;
    Key mKey;
  } KEYS[] = {{"\x1b[A", FASTER}, {"\x1b[B", SLOWER},  {"\x1b[C", FORWARD}, {"\x1b[D", BACK}, {"\x1bOA", FASTER},
              {"\x1bOB", SLOWER}, {"\x1bOC", FORWARD}, {"\x1bOD", BACK},    {" ", PAUSE},     {".", STEP},
              {"k", KEEP},        {"s", SATELLITES},   {"l", LOG},          {"q", QUIT}};
  for (const auto& lKey : KEYS) {
    const std::string lWhole = lKey.mpText;
    if (mText.compare(0, lWhole.size(), lWhole) == 0) return take(lWhole.size(), lKey.mKey);
    if (lWhole.compare(0, mText.size(), mText) == 0) return NONE;  // the rest is on its way
  }
  return take(1, OTHER);
}

Keys::Key Keys::take(size_t nSize, Key nKey) {
  mText.erase(0, nSize);
  return nKey;
}

}  // namespace drive
