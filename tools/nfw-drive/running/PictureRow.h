#pragma once

#include <string>
#include <vector>

namespace drive {

/// How a piece of a picture looks, where the terminal can show it.
enum class Look { PLAIN, TITLE, LABEL, STRONG, FAINT, GOOD, FAIR, BAD };

/// A piece of a row: printable ASCII, one column a byte.
struct Span {
  std::string mText;
  Look mLook = Look::PLAIN;
  bool mIsBar = false;  ///< "#" stands for a block
};

/// A row of a picture for a terminal.
struct PictureRow {
  std::vector<Span> mSpans;

  PictureRow& add(std::string nText, Look nLook = Look::PLAIN) {
    mSpans.push_back({std::move(nText), nLook, false});
    return *this;
  }
  PictureRow& addBar(size_t nSize, Look nLook) {
    mSpans.push_back({std::string(nSize, '#'), nLook, true});
    return *this;
  }
  std::string text() const {
    std::string lText;
    for (const Span& lSpan : mSpans) lText += lSpan.mText;
    return lText;
  }
};

}  // namespace drive
