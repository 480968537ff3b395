// From recorded sentence text to everything that listeners of live data receive.
#pragma once

#include "NfwGnssDataDispatcher.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Hands a text to the raw listeners, its record to the listeners of its kind, and once an epoch the combined record.
/// Both log players have one; it belongs to the shared thread. The dispatcher is not owned.
class SentenceReplay {
 public:
  explicit SentenceReplay(GnssDataDispatcher& nDispatcher) : mDispatcher(nDispatcher) {}

  /// `npText` has a terminator behind its `nSize` bytes.
  void play(const unsigned char* npText, unsigned int nSize);
  /// Forgets what was gathered of the epoch.
  void clearSentenceData();

 private:
  enum Flag : unsigned int { GGA = 1, GLL = 2, GSA = 4, GSV = 8, RMC = 16, VTG = 32, ALL = 63 };

  template <class Record>
  using Parse = bool (*)(char const* npText, unsigned int nSize, Record* npRecord);

  template <class Record>
  void playAlone(Parse<Record> npParse, const char* npText, unsigned int nSize);
  template <class Record>
  void playCombined(Parse<Record> npParse, const char* npText, unsigned int nSize, Record NmeaSentence::*npMember,
                    Flag nFlag);
  void playGsv(const char* npText, unsigned int nSize);
  void mergeGsv(const GsvSentence& nMessage);
  void clearGsvGroup();
  void note(Flag nFlag);

  GnssDataDispatcher& mDispatcher;
  NmeaSentence mEpoch;
  unsigned int mFlags = 0;            // the kinds of mEpoch that have come in
  GsvSentence mGsvGroup;              // the messages of one group, merged
  unsigned int mGsvSatelliteNum = 0;  // in mGsvGroup so far
};

}  // namespace nfw
