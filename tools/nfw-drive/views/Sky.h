#pragma once

#include <string_view>
#include <vector>

namespace drive {

/// The satellites of an epoch, gathered from the texts of its GSV and GSA sentences: the records keep neither all
/// systems nor, of a replay, all satellites.
class Sky {
 public:
  struct Satellite {
    std::string_view mSystem;  ///< "GPS", "GLONASS", "Galileo", "BeiDou", "QZSS", "NavIC", "SBAS" or "other"
    int mId;
    int mElevation, mAzimuth, mSnr;  ///< degrees, dB-Hz; -1 for what the receiver does not tell
    bool mIsUsed = false;
  };

  void clear();
  void takeText(std::string_view nSentence);

  bool isTold() const { return mIsTold; }     ///< a GSV sentence has come
  std::vector<Satellite> satellites() const;  ///< by system and id

 private:
  struct Used {
    std::string_view mSystem;  // empty: of any
    int mId;
  };

  void takeInView(std::string_view nSentence);
  void takeUsed(std::string_view nSentence);
  bool isUsed(const Satellite& nSatellite) const;

  std::vector<Satellite> mInView;
  std::vector<Used> mUsed;
  bool mIsTold = false;
};

}  // namespace drive
