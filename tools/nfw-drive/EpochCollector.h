#pragma once

#include <cstdint>

#include "NfwNmeaSentence.h"

namespace drive {

/// Puts the records of one epoch together: it ends when a sentence of another time begins. Of several sentences of a
/// kind (a GSA for each constellation, the GSV of a group) the last stands.
class EpochCollector {
 public:
  /// True when a sentence of this time (milliseconds of the day, -1 for none) belongs to a new epoch.
  bool isNext(int64_t nTime) const { return nTime >= 0 && mTime >= 0 && nTime != mTime; }
  bool isEmpty() const { return mTime < 0; }
  void noteTime(int64_t nTime) {
    if (nTime >= 0) mTime = nTime;
  }

  void add(const nfw::GgaSentence& nRecord) { mEpoch.gga = nRecord; }
  void add(const nfw::GllSentence& nRecord) { mEpoch.gll = nRecord; }
  void add(const nfw::GsaSentence& nRecord) { mEpoch.gsa = nRecord; }
  void add(const nfw::GsvSentence& nRecord) { mEpoch.gsv = nRecord; }
  void add(const nfw::RmcSentence& nRecord) { mEpoch.rmc = nRecord; }
  void add(const nfw::VtgSentence& nRecord) { mEpoch.vtg = nRecord; }
  void add(const nfw::ZdaSentence&) {}
  void add(const nfw::PubxSentence&) {}

  const nfw::NmeaSentence& get() const { return mEpoch; }
  void clear() {
    mEpoch = nfw::NmeaSentence();
    mTime = -1;
  }

 private:
  nfw::NmeaSentence mEpoch;
  int64_t mTime = -1;  // of the epoch under way
};

}  // namespace drive
