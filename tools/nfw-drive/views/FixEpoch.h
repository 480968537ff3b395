#pragma once

#include <cmath>
#include <deque>
#include <optional>
#include <string>

#include "NfwNmeaSentence.h"
#include "Sky.h"

namespace drive {

/// What a receiver or dead reckoning says; NaN: not known. Degrees, metres, m/s.
struct FixValues {
  double mLatitude = std::nan(""), mLongitude = std::nan(""), mAltitude = std::nan("");
  double mSpeed = std::nan(""), mCourse = std::nan("");
  double mHorizontalAccuracy = std::nan(""), mVerticalAccuracy = std::nan("");
};

/// What the sentences of one epoch say, and nothing of those before it but the date.
class FixEpoch {
 public:
  /// Another one begins.
  void begin();
  void take(const nfw::GgaSentence& nRecord) { mGga = nRecord; }
  void take(const nfw::RmcSentence& nRecord) { mRmc = nRecord; }
  void take(const nfw::GllSentence& nRecord) { mGll = nRecord; }
  void take(const nfw::GsaSentence& nRecord) { mGsa = nRecord; }
  void take(const nfw::VtgSentence& nRecord) { mVtg = nRecord; }
  void take(const nfw::PubxSentence& nRecord) { mPubx = nRecord; }
  void takeText(std::string_view nSentence);
  void takeReckoned(std::string_view nSentence);

  /// The receiver has no position, and the report of dead reckoning for the epoch has not come.
  bool awaitsReport(bool) const { return !hasFix() && report() == nullptr; }
  /// One object on a line, as docs/formats/epoch.md has it. @param nSource empty: not told
  void appendJson(std::string* npText, std::string_view nSource) const;

  std::string time() const;     ///< "2026-01-31T08:00:12.300Z", or without the date; empty as long as none was told
  const char* fix() const;      ///< "none", "reckoned", "fix" when nobody tells which, "2D", "3D"
  const char* quality() const;  ///< "gps" ..., null: not told
  FixValues received() const;
  /// What dead reckoning reports for the time of another epoch, or last of all.
  std::optional<FixValues> reckonedFor(const FixEpoch& nEpoch) const;
  std::optional<FixValues> lastReckoned() const;
  double pdop() const, hdop() const, vdop() const;  ///< NaN: not known
  int used() const { return mGga ? static_cast<int>(mGga->satelliteCount) : -1; }
  const Sky& sky() const { return mSky; }

 private:
  /// Of a report of dead reckoning, which comes beside the epochs: before its own, or behind it.
  struct Report {
    int64_t mTimeMs = -1;
    std::optional<nfw::GgaSentence> mGga;
    std::optional<nfw::RmcSentence> mRmc;
    std::optional<nfw::PubxSentence> mPubx;  // the last of its sentences
  };

  bool hasFix() const;
  const Report* report() const { return reportAt(mTimeMs); }
  const Report* reportAt(int64_t nTimeMs) const;  // when it is whole
  bool isReckoned() const;
  FixValues values() const;
  static FixValues valuesOf(const Report& nReport);
  static constexpr size_t MAX_REPORTS = 128;  // twice as many as may be under way
  void appendSatellites(std::string* npText) const;

  std::optional<nfw::GgaSentence> mGga;
  std::optional<nfw::RmcSentence> mRmc;
  std::optional<nfw::GllSentence> mGll;
  std::optional<nfw::GsaSentence> mGsa;
  std::optional<nfw::VtgSentence> mVtg;
  std::optional<nfw::PubxSentence> mPubx;
  std::deque<Report> mReports;
  Sky mSky;
  int64_t mTimeMs = -1;  // of the day
  int64_t mDay = -1;     // since 1970, -1 as long as none was told
};

}  // namespace drive
