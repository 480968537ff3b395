#pragma once

#include <deque>
#include <optional>
#include <string>

#include "NfwNmeaSentence.h"
#include "Sky.h"

namespace drive {

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
  /// One object on a line, as docs/formats/epoch.md has it.
  void appendJson(std::string* npText) const;

 private:
  /// Of a report of dead reckoning, which comes beside the epochs: before its own, or behind it.
  struct Report {
    int64_t mTimeMs = -1;
    std::optional<nfw::GgaSentence> mGga;
    std::optional<nfw::RmcSentence> mRmc;
    std::optional<nfw::PubxSentence> mPubx;  // the last of its sentences
  };
  struct Values;

  bool hasFix() const;
  const Report* report() const;  // of the epoch, when it is whole
  bool isReckoned() const;
  std::string time() const;
  const char* fix() const;
  Values values() const;
  Values received() const;
  Values reckoned() const;
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
