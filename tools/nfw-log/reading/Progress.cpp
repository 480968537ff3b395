#include "Progress.h"

#include <unistd.h>

#include <cmath>

#include "Messages.h"

namespace logtool {

Progress::Progress(uint64_t nTotal) : mTotal(nTotal), mIsShown(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (mHasLine) writeToErrors("\r\033[K");
}

void Progress::show(uint64_t nDone) {
  const Clock::time_point lNow = Clock::now();
  if (lNow < mNext) return;
  mNext = lNow + std::chrono::milliseconds(200);
  mHasLine = true;
  const double lSeconds = std::chrono::duration<double>(lNow - mStart).count();
  const double lRate = static_cast<double>(nDone) / lSeconds;
  std::string lText = fmt::format("\r\033[K{}  {}/s", sizeText(nDone), sizeText(static_cast<uint64_t>(lRate)));
  if (mTotal != 0 && nDone <= mTotal && lRate > 0.0) {
    const auto lLeft = static_cast<uint64_t>(std::llround(static_cast<double>(mTotal - nDone) / lRate));
    lText += fmt::format("  {} %  {}:{:02} left", nDone * 100 / mTotal, lLeft / 60, lLeft % 60);
  }
  writeToErrors(lText);
}

std::string sizeText(uint64_t nBytes) {
  static const char* const UNITS[] = {"KiB", "MiB", "GiB", "TiB"};
  if (nBytes < 1024) return countText(nBytes, "byte");
  double lSize = static_cast<double>(nBytes) / 1024.0;
  size_t i = 0;
  for (; lSize >= 1024.0 && i < 3; ++i) lSize /= 1024.0;
  return fmt::format("{:.1f} {}", lSize, UNITS[i]);
}

}  // namespace logtool
