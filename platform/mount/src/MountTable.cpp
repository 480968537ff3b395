#include "MountTable.h"

#include <algorithm>

namespace {

bool isOctal(char nChar) { return nChar >= '0' && nChar <= '7'; }

// Blanks, tabs, line ends and backslashes stand as "\" and three octal digits.
std::string unescaped(const std::string& nText) {
  std::string lText;
  for (size_t i = 0; i < nText.size(); ++i) {
    if (nText[i] == '\\' && i + 3 < nText.size() && isOctal(nText[i + 1]) && isOctal(nText[i + 2]) &&
        isOctal(nText[i + 3])) {
      lText += static_cast<char>((nText[i + 1] - '0') * 64 + (nText[i + 2] - '0') * 8 + (nText[i + 3] - '0'));
      i += 3;
    } else {
      lText += nText[i];
    }
  }
  return lText;
}

bool hasOption(const std::string& nOptions, const std::string& nOption) {
  return ("," + nOptions + ",").find("," + nOption + ",") != std::string::npos;
}

// Only a blank parts fields, and a source may be empty.
std::vector<std::string> split(const std::string& nText, char nAt) {
  std::vector<std::string> lParts;
  size_t lStart = 0;
  for (size_t lEnd = 0; lEnd != std::string::npos; lStart = lEnd + 1) {
    lEnd = nText.find(nAt, lStart);
    lParts.push_back(nText.substr(lStart, lEnd - lStart));
  }
  return lParts;
}

// id, parent, device, root, point, options, any number of optional fields, "-", type, source, options
bool parseLine(const std::string& nLine, MountEntry* npEntry) {
  const std::vector<std::string> lFields = split(nLine, ' ');
  if (lFields.size() < 10) return false;
  const auto lDash = std::find(lFields.begin() + 6, lFields.end(), "-");
  if (lFields.end() - lDash < 4) return false;
  *npEntry = {lFields[0], lFields[2],          unescaped(lFields[4]),
              lDash[1],   unescaped(lDash[2]), hasOption(lFields[5], "ro") || hasOption(lDash[3], "ro")};
  return true;
}

}  // namespace

bool MountEntry::isSame(const MountEntry& nOther) const {
  return mId == nOther.mId && mDevice == nOther.mDevice && mPoint == nOther.mPoint && mType == nOther.mType &&
         mSource == nOther.mSource;
}

std::vector<MountEntry> parseMountTable(const std::string& nText) {
  std::vector<MountEntry> lEntries;
  for (const std::string& lLine : split(nText, '\n')) {
    MountEntry lEntry;
    if (parseLine(lLine, &lEntry)) lEntries.push_back(lEntry);
  }
  return lEntries;
}
