#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

/// What a terminal of the kind "vt100" shows of the bytes that it was sent.
class TerminalScreen {
 public:
  TerminalScreen(size_t nWidth, size_t nHeight) : mWidth(nWidth), mRows(nHeight, std::string(nWidth, ' ')) {}

  /// Takes whole sequences; gives back how many bytes these were.
  size_t take(std::string_view nBytes) {
    size_t lAt = 0;
    while (lAt < nBytes.size()) {
      const size_t lSize = nBytes[lAt] == '\x1b' ? sequence(nBytes.substr(lAt)) : letter(nBytes[lAt]);
      if (lSize == 0) break;
      lAt += lSize;
    }
    return lAt;
  }
  std::string text() const {
    std::string lText;
    for (const std::string& lRow : mRows) lText += lRow.substr(0, lRow.find_last_not_of(' ') + 1) + "\n";
    return lText;
  }

 private:
  size_t letter(char nByte) {
    if (nByte == '\r') mColumn = 0;
    if (nByte == '\b' && mColumn > 0) --mColumn;
    if (nByte == '\n' && ++mRow == mRows.size()) scroll();
    if (static_cast<unsigned char>(nByte) < ' ') return 1;
    if (mColumn == mWidth) {
      mColumn = 0;
      if (++mRow == mRows.size()) scroll();
    }
    mRows[mRow][mColumn++] = nByte;
    return 1;
  }
  void scroll() {
    mRows.erase(mRows.begin());
    mRows.emplace_back(mWidth, ' ');
    --mRow;
  }
  // Nothing of one that is not whole yet.
  size_t sequence(std::string_view nText) {
    if (nText.size() < 2) return 0;
    if (nText[1] != '[') return nText[1] == '(' || nText[1] == ')' ? (nText.size() < 3 ? 0 : 3) : 2;
    const size_t lEnd = nText.find_first_not_of("?;0123456789", 2);
    if (lEnd == std::string_view::npos) return 0;
    act(nText[lEnd], std::string(nText.substr(2, lEnd - 2)));
    return lEnd + 1;
  }
  void act(char nWhat, const std::string& nNumbers) {
    const size_t lSemicolon = std::min(nNumbers.find(';'), nNumbers.size());
    const size_t lFirst = std::strtoul(nNumbers.c_str(), nullptr, 10);
    const size_t lBy = std::max<size_t>(lFirst, 1);
    if (nWhat == 'H') {
      mRow = lBy - 1;
      mColumn =
          std::max<size_t>(std::strtoul(nNumbers.c_str() + std::min(lSemicolon + 1, nNumbers.size()), nullptr, 10), 1) -
          1;
    }
    if (nWhat == 'A') mRow -= std::min(lBy, mRow);
    if (nWhat == 'B') mRow += lBy;
    if (nWhat == 'C') mColumn += lBy;
    if (nWhat == 'D') mColumn -= std::min(lBy, mColumn);
    mRow = std::min(mRow, mRows.size() - 1);
    mColumn = std::min(mColumn, mWidth - 1);
    if (nWhat == 'K' && lFirst == 1) std::fill_n(mRows[mRow].begin(), mColumn + 1, ' ');
    if ((nWhat == 'K' && lFirst == 0) || nWhat == 'J') mRows[mRow].replace(mColumn, mWidth, mWidth - mColumn, ' ');
    for (size_t i = mRow + 1; nWhat == 'J' && i < mRows.size(); ++i) mRows[i].assign(mWidth, ' ');
  }

  size_t mWidth;
  std::vector<std::string> mRows;
  size_t mRow = 0, mColumn = 0;
};
