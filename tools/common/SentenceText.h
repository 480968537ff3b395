#pragma once

#include <string_view>

#include "LineReader.h"

namespace tool {

inline std::string_view withoutLineEnd(std::string_view nText) {
  return nText.substr(0, nText.find_last_not_of("\r\n") + 1);  // npos + 1 is 0
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
