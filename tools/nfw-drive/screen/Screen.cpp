#define NCURSES_NOMACROS 1
#include "Screen.h"

#include <curses.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <term.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <string_view>

#include "TerminalGuard.h"

namespace drive {

namespace {

const short GREEN = 1, YELLOW = 2, RED = 3, CYAN = 4;  // pairs of colours

bool isSet(const char* npName) {
  const char* const lpValue = std::getenv(npName);
  return lpValue != nullptr && *lpValue != '\0';
}

// ncurses heeds signals that are not its own to heed here.
class KeptSignals {
 public:
  KeptSignals() {
    for (size_t i = 0; i < NUM; ++i) ::sigaction(SIGNALS[i], nullptr, &mKept[i]);
  }
  ~KeptSignals() {
    for (size_t i = 0; i < NUM; ++i) ::sigaction(SIGNALS[i], &mKept[i], nullptr);
  }
  KeptSignals(const KeptSignals&) = delete;
  KeptSignals& operator=(const KeptSignals&) = delete;

 private:
  static constexpr int SIGNALS[] = {SIGTSTP, SIGINT, SIGTERM, SIGWINCH};
  static constexpr size_t NUM = 4;
  struct sigaction mKept[NUM];
};

// Terminals without colours have what is left of it.
attr_t attributeOf(Look nLook) {
  switch (nLook) {
    case Look::TITLE:
      return A_REVERSE;
    case Look::STRONG:
      return A_BOLD;
    case Look::FAINT:
      return A_DIM;
    default:
      return A_NORMAL;
  }
}

short colourOf(Look nLook) {
  switch (nLook) {
    case Look::LABEL:
      return CYAN;
    case Look::GOOD:
      return GREEN;
    case Look::FAIR:
      return YELLOW;
    case Look::BAD:
      return RED;
    default:
      return 0;
  }
}

std::string capability(const char* npName) {
  const char* const lpText = ::tigetstr(npName);
  return lpText == nullptr || lpText == reinterpret_cast<const char*>(-1) ? std::string() : lpText;
}

}  // namespace

Screen::~Screen() {
  if (mpScreen != nullptr) ::delscreen(mpScreen);
  if (mpDrawn != nullptr) std::fclose(mpDrawn);
  if (mpNoKeys != nullptr) std::fclose(mpNoKeys);
}

bool Screen::open() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (!mOutput.isTerminal() || !isSet("TERM")) return false;
  int lError = 0;
  if (::setupterm(nullptr, STDOUT_FILENO, &lError) != OK) return false;
  const bool lCan = !capability("cup").empty() && !capability("clear").empty();
  ::del_curterm(::cur_term);
  return lCan && begin();
}

bool Screen::begin() {
  const KeptSignals lSignals;
  std::setlocale(LC_CTYPE, "");
  const int lDrawn = ::memfd_create("picture", MFD_CLOEXEC);
  mpDrawn = lDrawn >= 0 ? ::fdopen(lDrawn, "w") : nullptr;
  mpNoKeys = std::fopen("/dev/null", "re");
  if (mpDrawn == nullptr || mpNoKeys == nullptr) return false;
  mpScreen = ::newterm(nullptr, mpDrawn, mpNoKeys);
  if (mpScreen == nullptr) return false;
  ::typeahead(-1);
  ::idlok(::stdscr, false);
  ::curs_set(0);
  mIsColoured = !isSet("NO_COLOR") && ::has_colors() && ::start_color() == OK;
  if (mIsColoured) {
    const short lBack = ::use_default_colors() == OK ? -1 : COLOR_BLACK;
    const short COLOURS[] = {COLOR_GREEN, COLOR_YELLOW, COLOR_RED, COLOR_CYAN};
    for (short i = GREEN; i <= CYAN; ++i) ::init_pair(i, COLOURS[i - 1], lBack);
  }
  mHasBlocks = MB_CUR_MAX > 1 && ::wcwidth(L'\u2587') == 1;
  // The terminal's settings make a whole line end of a line feed: no way down.
  if (cursor_down != nullptr && std::string_view(cursor_down) == "\n") cursor_down = nullptr;
  keepLeave();
  return true;
}

void Screen::keepLeave() {
  for (const char* const lpName : {"sgr0", "cnorm", "rmcup"}) mLeave += capability(lpName);
  mLeave += "\r\n";
}

void Screen::getSize(size_t* npWidth, size_t* npHeight) const {
  winsize lSize = {};
  const bool lIsKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &lSize) == 0 && lSize.ws_col > 0 && lSize.ws_row > 0;
  *npWidth = lIsKnown ? lSize.ws_col : 80;
  *npHeight = lIsKnown ? lSize.ws_row : 24;
}

void Screen::draw(const std::vector<PictureRow>& nRows) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (mpScreen == nullptr || mIsAway || !mOutput.isEmpty() || !TerminalGuard::isForeground(STDOUT_FILENO)) return;
  size_t lWidth = 0, lHeight = 0;
  getSize(&lWidth, &lHeight);
  const auto lRows = static_cast<int>(lHeight), lColumns = static_cast<int>(lWidth);
  const KeptSignals lSignals;
  if (lRows != ::LINES || lColumns != ::COLS) ::resizeterm(lRows, lColumns);
  ::werase(::stdscr);
  for (int i = 0; i < lRows && static_cast<size_t>(i) < nRows.size(); ++i) drawRow(i, nRows[static_cast<size_t>(i)]);
  if (mIsStale) ::clearok(::curscr, true);
  mIsStale = false;
  if (!mIsShown) TerminalGuard::setPicture(mLeave);
  mIsShown = true;
  ::wrefresh(::stdscr);
  send();
}

void Screen::drawRow(int nRow, const PictureRow& nPicture) {
  ::wmove(::stdscr, nRow, 0);
  for (const Span& lSpan : nPicture.mSpans) {
    ::wattr_set(::stdscr, attributeOf(lSpan.mLook), mIsColoured ? colourOf(lSpan.mLook) : short{0}, nullptr);
    if (lSpan.mIsBar && mHasBlocks) {
      ::waddwstr(::stdscr, std::wstring(lSpan.mText.size(), L'\u2587').c_str());
    } else {
      ::waddstr(::stdscr, lSpan.mText.c_str());
    }
  }
  ::wattr_set(::stdscr, A_NORMAL, 0, nullptr);
}

void Screen::leave() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsAway = true;
  if (!mIsShown) return;
  mIsShown = false;
  ::endwin();
  send();
  TerminalGuard::clearPicture();
}

void Screen::resume() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsAway = false;
  mIsStale = true;
}

// What was drawn goes on its way, and its place is free again.
void Screen::send() {
  std::fflush(mpDrawn);
  const int lFd = ::fileno(mpDrawn);
  const off_t lSize = ::lseek(lFd, 0, SEEK_END);
  std::string lText(lSize > 0 ? static_cast<size_t>(lSize) : 0, '\0');
  const ssize_t lRead = ::pread(lFd, lText.data(), lText.size(), 0);
  lText.resize(lRead > 0 ? static_cast<size_t>(lRead) : 0);
  [[maybe_unused]] const int lCut = ::ftruncate(lFd, 0);
  ::lseek(lFd, 0, SEEK_SET);
  mOutput.write(lText);
  mOutput.flush();
}

}  // namespace drive
