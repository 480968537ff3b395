#include "Sky.h"

#include <algorithm>
#include <charconv>
#include <tuple>

#include "SentenceTime.h"

namespace drive {

namespace {

struct System {
  std::string_view mTalker, mName;
};
const System SYSTEMS[] = {{"GP", "GPS"},    {"GL", "GLONASS"}, {"GA", "Galileo"}, {"GB", "BeiDou"},
                          {"BD", "BeiDou"}, {"GQ", "QZSS"},    {"QZ", "QZSS"},    {"GI", "NavIC"}};
const std::string_view NUMBERED[] = {"", "GPS", "GLONASS", "Galileo", "BeiDou", "QZSS", "NavIC"};
const size_t MAX_SATELLITES = 256;  // no receiver sees as many: bounds what an odd stream makes of an epoch

// Receivers number the satellites that augment GPS among its own.
std::string_view systemOf(std::string_view nSentence, int nId) {
  for (const System& lSystem : SYSTEMS) {
    if (nSentence.substr(1, 2) == lSystem.mTalker)
      return lSystem.mName == "GPS" && nId >= 33 && nId <= 64 ? "SBAS" : lSystem.mName;
  }
  return "other";
}

int number(std::string_view nSentence, int nField) {
  const std::string_view lText = tool::sentenceField(nSentence, nField);
  int lValue = -1;
  std::from_chars(lText.data(), lText.data() + lText.size(), lValue);
  return lValue;
}

std::string_view kindOf(std::string_view nSentence) {
  return nSentence.substr(0, 7).substr(nSentence.size() < 3 ? 0 : 3);
}

}  // namespace

void Sky::clear() {
  mInView.clear();
  mUsed.clear();
  mIsTold = false;
}

void Sky::takeText(std::string_view nSentence) {
  if (kindOf(nSentence) == "GSV,") takeInView(nSentence);
  if (kindOf(nSentence) == "GSA,") takeUsed(nSentence);
}

// A receiver of several signals tells of a satellite once for each: the strongest counts.
void Sky::takeInView(std::string_view nSentence) {
  mIsTold = true;
  for (int i = 4; i <= 16; i += 4) {
    const int lId = number(nSentence, i);
    if (lId <= 0) continue;
    const Satellite lNew = {systemOf(nSentence, lId), lId, number(nSentence, i + 1), number(nSentence, i + 2),
                            number(nSentence, i + 3)};
    const auto lSame = [&](const Satellite& n) { return n.mId == lId && n.mSystem == lNew.mSystem; };
    const auto lFound = std::find_if(mInView.begin(), mInView.end(), lSame);
    if (lFound != mInView.end()) lFound->mSnr = std::max(lFound->mSnr, lNew.mSnr);
    if (lFound == mInView.end() && mInView.size() < MAX_SATELLITES) mInView.push_back(lNew);
  }
}

// Of several systems together, NMEA 4.11 has a number of the system behind the dilutions.
void Sky::takeUsed(std::string_view nSentence) {
  const int lSystem = number(nSentence, 18);
  const bool lIsNumbered = lSystem > 0 && lSystem <= 6;
  for (int i = 3; i <= 14; ++i) {
    const int lId = number(nSentence, i);
    if (lId > 0 && mUsed.size() < MAX_SATELLITES) mUsed.push_back({lIsNumbered ? NUMBERED[lSystem] : "", lId});
  }
}

bool Sky::isUsed(const Satellite& nSatellite) const {
  return std::any_of(mUsed.begin(), mUsed.end(), [&](const Used& n) {
    const bool lIsOfIt =
        n.mSystem.empty() || n.mSystem == nSatellite.mSystem || (n.mSystem == "GPS" && nSatellite.mSystem == "SBAS");
    return n.mId == nSatellite.mId && lIsOfIt;
  });
}

std::vector<Sky::Satellite> Sky::satellites() const {
  std::vector<Satellite> lAll = mInView;
  for (Satellite& lSatellite : lAll) lSatellite.mIsUsed = isUsed(lSatellite);
  std::sort(lAll.begin(), lAll.end(), [](const Satellite& nLeft, const Satellite& nRight) {
    return std::tie(nLeft.mSystem, nLeft.mId) < std::tie(nRight.mSystem, nRight.mId);
  });
  return lAll;
}

}  // namespace drive
