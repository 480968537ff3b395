#pragma once

#include <string_view>

#include "LineReader.h"

namespace tool {

inline std::string_view withoutLineEnd(std::string_view nText) {
  while (!nText.empty() && (nText.back() == '\r' || nText.back() == '\n')) nText.remove_suffix(1);
  return nText;
}

/// A sentence as the parser wants it: with a terminator. What goes beyond the longest sentence is left out.
struct TerminatedSentence {
  explicit TerminatedSentence(std::string_view nSentence)
      : mSize(static_cast<unsigned int>(nSentence.copy(mText, LineReader::MAX_SENTENCE))) {
    mText[mSize] = '\0';
  }

  char mText[LineReader::MAX_SENTENCE + 1];
  const unsigned int mSize;
};

}  // namespace tool
