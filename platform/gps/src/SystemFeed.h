// The way of sentences to the listeners of one geodetic system.
#pragma once

#include "GsvGroup.h"

namespace gpshost {

/// Feeds each sentence and what follows from it. Of the receiver's thread.
class SystemFeed {
 public:
  explicit SystemFeed(GeodeticSystem nSystem) : mSystem(nSystem) {}

  void take(const char* npText, unsigned int nSize);  ///< terminated text
  void clear();                                       ///< forgets the group and the six records under way

 private:
  enum Flag { GGA = 1, GLL = 2, GSA = 4, GSV = 8, RMC = 16, VTG = 32, ALL = 63 };

  template <class Record>
  void takeAlone(const char* npText);
  template <class Record>
  void takeCombined(const char* npText, Record PARSE_NMEA::*npMember, Flag nFlag);
  void takeGsv(const char* npText);
  void note(Flag nFlag);

  const GeodeticSystem mSystem;
  GsvGroup mGroup;
  PARSE_NMEA mEpoch{};
  int mFlags = 0;
};

}  // namespace gpshost
