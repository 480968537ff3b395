#pragma once

#include <cstddef>
#include <string_view>

namespace logtool {

/// The fields of a sentence, 0 being the address. What is not there is empty, and NAN as a number.
class SentenceFields {
 public:
  static constexpr size_t MAX_FIELDS = 32;

  explicit SentenceFields(std::string_view nSentence);

  size_t count() const { return mCount; }
  std::string_view text(size_t nIndex) const { return nIndex < mCount ? mFields[nIndex] : std::string_view(); }
  char letter(size_t nIndex) const { return text(nIndex).size() == 1 ? text(nIndex)[0] : '\0'; }
  double number(size_t nIndex) const;
  /// Degrees of "ddmm.mmmm" or "dddmm.mmmm" and the letter behind it, negative for S and W.
  double degrees(size_t nIndex) const;

 private:
  std::string_view mFields[MAX_FIELDS];
  size_t mCount = 0;
};

}  // namespace logtool
