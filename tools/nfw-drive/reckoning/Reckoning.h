#pragma once

#include "EpochRecords.h"
#include "SkyModel.h"

namespace drive {

/// Metres per second over ground, and degrees true.
struct Motion {
  double mSpeed;
  double mCourse;
};

/// Where the vehicle is: by the receiver's fixes, and from the last one on by motion and time.
class Reckoning {
 public:
  using Info = EpochRecords::Info;

  bool isKnown() const { return mMode != NONE; }  ///< there was a fix

  /// An epoch with a fix. Without a motion sensor the receiver's speed and course are the motion.
  void setFix(const EpochRecords& nRecords, const Motion* npMotion, int64_t nTimeMs);
  /// An epoch without one. Without a motion sensor the motion goes on as it was.
  void goOn(const Motion* npMotion, int64_t nTimeMs);
  void setDate(const nfw::GnssSentenceDate& nDate) { mDate = nDate; }

  /// Write a record from what is known; the talker is the caller's.
  void write(ZTSDeadReckoningDef::DRG_RMC* npRmc) const;
  void write(ZTSDeadReckoningDef::DRG_VTG* npVtg) const;
  void write(ZTSDeadReckoningDef::DRG_GGA* npGga) const;
  void write(ZTSDeadReckoningDef::DRG_PUBX* npPubx) const;
  void write(ZTSDeadReckoningDef::DRG_GSA* npGsa) const;  ///< without a fix: no satellites, but a position

 private:
  static constexpr char NONE = 'N', ESTIMATED = 'E';

  void noteQuality(const EpochRecords& nRecords);
  double secondsTo(int64_t nTimeMs) const;
  Dops dops() const;

  // Of the last epoch
  int64_t mTimeMs = 0;  // of the day
  char mMode = NONE;    // a letter as in RMC
  Place mPlace = {};
  Motion mMotion = {};
  nfw::GnssSentenceDate mDate;
  double mWithoutFix = 0.0;  // seconds
  double mDriven = 0.0;      // metres without a fix

  // Of the last fix
  double mAltitude = 0.0, mGeoidSeparation = 0.0;  // metres
  double mVariation = 0.0;                         // degrees, west negative
  Dops mDops = {};
  double mHacc = 0.0, mVacc = 0.0;  // metres
  unsigned int mSatellites = 0;
  bool mHasHeight = false;
};

}  // namespace drive
