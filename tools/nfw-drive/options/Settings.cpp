#include "Settings.h"

#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace drive {

namespace {

const size_t MAX_FILE = 1024 * 1024;  // nobody writes as many settings
const char BLANKS[] = " \t";
const char LINE_ENDS[] = "\r\n";

bool isControl(char nByte) { return (static_cast<unsigned char>(nByte) < 0x20 && nByte != '\t') || nByte == 0x7F; }
bool hasControl(std::string_view nText) { return std::any_of(nText.begin(), nText.end(), isControl); }

std::string_view trimmed(std::string_view nText) {
  nText.remove_prefix(std::min(nText.find_first_not_of(BLANKS), nText.size()));
  return nText.substr(0, nText.find_last_not_of(BLANKS) + 1);  // npos + 1 is 0
}

const char* knownKey(std::string_view nKey) {
  for (const Settings::Entry& lEntry : Settings::ENTRIES) {
    if (nKey.size() == strlen(lEntry.mpKey) && strncasecmp(nKey.data(), lEntry.mpKey, nKey.size()) == 0)
      return lEntry.mpKey;
  }
  return nullptr;
}

}  // namespace

const Settings::Entry Settings::ENTRIES[6] = {
    {"SOURCE", "Source"},
    {"--speed", "Speed"},
    {"--record", "RecordDirectory"},
    {"--prefix", "RecordPrefix"},
    {"--backup", "BackupDirectory"},
    {"--log-level", "LogLevel"},
};

bool Settings::read(std::string* npReason) {
  mLines.clear();
  mRefusal.clear();
  struct stat lStat = {};
  const bool lIsMissing = ::stat(mPath.c_str(), &lStat) != 0 && errno == ENOENT;  // the first run has none
  if (!lIsMissing && !load()) mRefusal = mPath + ": cannot be read";
  *npReason = mRefusal;
  return mRefusal.empty();
}

std::string Settings::get(std::string_view nKey) const {
  const size_t lAt = find(nKey);
  return lAt < mLines.size() ? mLines[lAt].mValue : std::string();
}

std::string Settings::place(std::string_view nKey) const {
  return mPath + ":" + std::to_string(find(nKey) + 1) + ": " + std::string(nKey);
}

bool Settings::set(std::string_view nKey, const std::string& nValue, std::string* npReason) {
  if (get(nKey) == nValue) return true;
  if (nValue.size() > MAX_VALUE) *npReason = "over " + std::to_string(MAX_VALUE) + " characters";
  if (trimmed(nValue).size() != nValue.size()) *npReason = "blanks at its beginning or end";
  if (hasControl(nValue)) *npReason = "control characters";
  if (!npReason->empty()) return false;
  const size_t lAt = find(nKey);
  if (lAt == mLines.size()) {
    const std::string lLineEnd =
        mLines.empty() ? "\n" : mLines.front().mAfter.substr(mLines.front().mAfter.find_first_of(LINE_ENDS));
    mLines.push_back({std::string(nKey), std::string(nKey) + "=", {}, lLineEnd});
  }
  mLines[lAt].mValue = nValue;
  mIsChanged = true;
  return true;
}

bool Settings::write() {
  if (mIsChanged && !save()) return false;
  mIsChanged = false;
  return true;
}

bool Settings::readParameters(utl::File& nFile) {
  std::string lText(MAX_FILE + 1, '\0');
  const int lSize = nFile.read(lText.data(), static_cast<unsigned int>(lText.size()));
  if (lSize < 0) return false;
  lText.resize(static_cast<size_t>(lSize));
  lText.size() <= MAX_FILE ? takeText(lText) : refuse("more than a file of settings holds");
  return true;
}

bool Settings::writeParameters(utl::File& nFile) {
  std::string lText;
  for (const Line& lLine : mLines) lText += lLine.mBefore + lLine.mValue + lLine.mAfter;
  return nFile.write(lText.data(), static_cast<unsigned int>(lText.size())) >= 0;
}

void Settings::takeText(std::string_view nText) {
  while (!nText.empty() && mRefusal.empty()) {
    const size_t lEnd = std::min(nText.find('\n'), nText.size() - 1) + 1;
    takeLine(nText.substr(0, lEnd));
    nText.remove_prefix(lEnd);
  }
}

void Settings::takeLine(std::string_view nLine) {
  const std::string_view lText = nLine.substr(0, nLine.find_last_not_of(LINE_ENDS) + 1);
  if (hasControl(lText)) return refuse("a control character");
  Line lLine;
  lLine.mBefore = lText;
  lLine.mAfter = lText.size() < nLine.size() ? nLine.substr(lText.size()) : "\n";
  const std::string_view lMeant = trimmed(lText);
  if (!lMeant.empty() && lMeant.front() != '#') takeSetting(lText, &lLine);
  mLines.push_back(lLine);
}

void Settings::takeSetting(std::string_view nText, Line* npLine) {
  const size_t lEqual = nText.find('=');
  if (lEqual == std::string_view::npos) return refuse("\"" + std::string(trimmed(nText)) + "\"");
  const std::string_view lRest = nText.substr(lEqual + 1);
  const size_t lValueAt = std::min(lRest.find_first_not_of(BLANKS), lRest.size());
  npLine->mKey = trimmed(nText.substr(0, lEqual));
  npLine->mValue = trimmed(lRest);
  npLine->mBefore.resize(lEqual + 1 + lValueAt);
  npLine->mAfter.insert(0, lRest.substr(lValueAt + npLine->mValue.size()));
  judge(*npLine);
}

// Keys that are not known here belong to somebody else.
void Settings::judge(const Line& nLine) {
  const char* const lpKnown = knownKey(nLine.mKey);
  if (nLine.mKey.empty()) return refuse("\"=\" without a key");
  if (lpKnown == nullptr) return;
  if (nLine.mKey != lpKnown) return refuse("\"" + nLine.mKey + "\" for " + lpKnown);
  if (nLine.mValue.size() > MAX_VALUE) return refuse("a value of over " + std::to_string(MAX_VALUE) + " characters");
  const size_t lBefore = find(lpKnown);
  if (lBefore < mLines.size()) refuse(nLine.mKey + " again, which line " + std::to_string(lBefore + 1) + " gives");
}

void Settings::refuse(const std::string& nWhat) {
  mRefusal =
      mPath + ":" + std::to_string(mLines.size() + 1) + ": expected KEY=VALUE or # and a comment, found " + nWhat;
}

// The line of a key, or one behind the last.
size_t Settings::find(std::string_view nKey) const {
  const auto lIsKey = [&](const Line& nLine) { return nLine.mKey == nKey; };
  return static_cast<size_t>(std::find_if(mLines.begin(), mLines.end(), lIsKey) - mLines.begin());
}

}  // namespace drive
