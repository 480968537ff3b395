#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace tool {

/// What became of a piece of the input. A piece is a line, or the part of a line before a "$" or "!" that stands in its
/// middle; lines without a character in them are no pieces. Every piece has exactly one verdict.
enum LineVerdict {
  LINE_CHECKED,       ///< accepted: the checksum is right
  LINE_UNCHECKED,     ///< accepted: without a checksum, or not judged
  LINE_NOISE,         ///< does not begin with "$" or "!" and a capital
  LINE_CUT,           ///< a sentence that another one, or the end of the input, interrupts
  LINE_TOO_LONG,      ///< longer than LineReader::MAX_SENTENCE
  LINE_BINARY,        ///< a byte in the sentence is no printable ASCII
  LINE_BAD_CHECKSUM,  ///< wrong, or malformed
  LINE_NO_CHECKSUM,   ///< none, from a source that sends them
  LINE_VERDICT_NUM,
};

/// Counted by the reading thread; any thread may look while it runs.
class LineCounts {
 public:
  /// @param npAll where what is counted here counts, too: of several streams together
  explicit LineCounts(LineCounts* npAll = nullptr) : mpAll(npAll) {}

  void add(LineVerdict nVerdict) {
    mCounts[nVerdict].fetch_add(1, std::memory_order_relaxed);
    if (mpAll != nullptr) mpAll->add(nVerdict);
  }
  uint64_t get(LineVerdict nVerdict) const { return mCounts[nVerdict].load(std::memory_order_relaxed); }

  uint64_t accepted() const { return get(LINE_CHECKED) + get(LINE_UNCHECKED); }
  uint64_t rejected() const { return total() - accepted(); }
  uint64_t total() const {
    uint64_t lTotal = 0;
    for (const auto& lCount : mCounts) lTotal += lCount.load(std::memory_order_relaxed);
    return lTotal;
  }

 private:
  std::array<std::atomic<uint64_t>, LINE_VERDICT_NUM> mCounts{};
  LineCounts* const mpAll;
};

/// The word for a verdict in summaries, e.g. "bad checksum".
const char* lineVerdictName(LineVerdict nVerdict);

}  // namespace tool
