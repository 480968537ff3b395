#pragma once

#include <string>
#include <string_view>

#include "NfwNmeaSentence.h"

namespace drive {

/// The last known of everything that a driver wants to see, gathered from the sentences.
class FixState {
 public:
  void begin() {}  ///< another epoch: what is not told anew stays
  void take(const nfw::GgaSentence& nRecord) { mGga = nRecord; }
  void take(const nfw::RmcSentence& nRecord);
  void take(const nfw::GsaSentence& nRecord) { mGsa = nRecord; }
  void take(const nfw::ZdaSentence& nRecord) { mDate = nRecord.date; }
  void take(const nfw::VtgSentence& nRecord) { mVtg = nRecord; }
  /// A sentence of dead reckoning: its position stands in when the receiver has none.
  void takeReckoned(std::string_view nSentence);
  /// The time is taken from the text: the records keep the digits behind the second unscaled. So is what keeps a
  /// sentence from becoming a record.
  void takeText(std::string_view nSentence);

  bool isReckoned() const;  ///< the receiver has no position, dead reckoning has
  /// @param nHasBegun sentences of the epoch's report have come
  bool awaitsReport(bool nHasBegun) const { return isReckoned() && !nHasBegun; }
  std::string time() const;      ///< "2026-01-31 08:00:12.300"
  std::string position() const;  ///< "35.6580000 139.7450000", or "no position"
  std::string speed() const;     ///< "36.4 km/h", or "no speed"
  std::string course() const;    ///< "123.4 deg", or "no course"
  std::string fix() const;  ///< "3D, gps", "no fix, invalid", "no fix, reckoned" ..., with the cause when it is known

  const nfw::GgaSentence& getGga() const { return mGga; }

 private:
  bool hasMotion() const;

  nfw::GgaSentence mGga;
  nfw::RmcSentence mRmc;
  nfw::GsaSentence mGsa;
  nfw::VtgSentence mVtg;
  nfw::GgaSentence mReckonedGga;
  nfw::RmcSentence mReckonedRmc;
  nfw::GnssSentenceDate mDate;
  int64_t mTimeMs = -1;
  bool mLacksMode = false;  // RMC, GLL or VTG come without a mode field
};

}  // namespace drive
