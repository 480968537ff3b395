#pragma once

#include <optional>
#include <string_view>

#include "Geodesy.h"
#include "NfwNmeaSentence.h"
#include "ZTSDeadReckoningDef.h"

namespace drive {

/// Puts what the sentences of one epoch tell into the form of a report. Of several sentences of a kind the last stands,
/// but for GSA and GSV: as many as a report has room for. The times are left to the caller.
class EpochRecords {
 public:
  using Info = ZTSDeadReckoningDef::DRG_LOCATION_INFO;

  void take(std::string_view nSentence);
  void clear() { *this = EpochRecords(); }

  const Info& get() const { return mInfo; }
  bool hasRmc() const { return mHasRmc; }
  bool hasVtg() const { return mHasVtg; }
  bool hasGga() const { return mHasGga; }
  bool hasPubx() const { return mHasPubx; }
  bool hasDate() const { return mDate.year != 0; }
  const nfw::GnssSentenceDate& getDate() const { return mDate; }

  /// Says RMC or GGA anything of a position?
  bool isTelling() const { return mHasRmc || mHasGga; }
  /// The position, when neither says that there is none: that of GGA first.
  std::optional<Place> getFix() const;
  unsigned int usedCount() const;  ///< satellites in GSA

 private:
  void takeRmc(const char* npText);
  void takeVtg(const char* npText);
  void takeGga(const char* npText);
  void takeGsa(const char* npText);
  void takeGsv(const char* npText);
  void takeZda(const char* npText);
  void takePubx(const char* npText);

  Info mInfo = {};
  bool mHasRmc = false, mHasVtg = false, mHasGga = false, mHasPubx = false;
  bool mIsRefused = false;  // a sentence says that there is no fix
  std::optional<Place> mRmcPlace, mGgaPlace;
  nfw::GnssSentenceDate mDate;
};

}  // namespace drive
