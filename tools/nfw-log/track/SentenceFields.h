#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace logtool {

/// The fields of a sentence, 0 being the address. What is not there is empty, and NAN as a number. The sentence is
/// looked through as far as fields are asked for: of many only the first are.
class SentenceFields {
 public:
  static constexpr size_t MAX_FIELDS = 32;
  static constexpr size_t MAX_SIZE = 65534;  ///< bytes; a sentence has some 80

  explicit SentenceFields(std::string_view nSentence)
      : mpText(nSentence.data()), mpEnd(mpText + std::min(nSentence.size(), MAX_SIZE)) {
    mBegins[0] = 0;
  }

  size_t count() const {
    findField(MAX_FIELDS);
    return mCount;
  }
  std::string_view text(size_t nIndex) const {
    if (nIndex >= mCount && !findField(nIndex)) return {};
    return {mpText + mBegins[nIndex], static_cast<size_t>(mBegins[nIndex + 1] - mBegins[nIndex] - 1)};
  }
  char letter(size_t nIndex) const { return text(nIndex).size() == 1 ? text(nIndex)[0] : '\0'; }
  double number(size_t nIndex) const;
  /// Degrees of "ddmm.mmmm" or "dddmm.mmmm" and the letter behind it, negative for S and W.
  double degrees(size_t nIndex) const;

 private:
  bool findField(size_t nIndex) const;

  const char* const mpText;
  const char* const mpEnd;
  mutable size_t mCount = 0;  // of those found
  mutable bool mAreAll = false;
  mutable uint16_t mBegins[MAX_FIELDS + 1];  // of each field, and one behind the end of the last
};

}  // namespace logtool
