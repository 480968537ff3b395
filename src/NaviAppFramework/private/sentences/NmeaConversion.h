/// @file
/// What the text of a field means.
#pragma once

#include "NfwNmeaSentence.h"

namespace nfw {

/// Converts the text of one field, without blanks around it and of at most 19 characters. A step that fails writes its
/// own log line, stores its fallback value where it has one, and is false; the sentence's own line is its caller's.
class NmeaConversion {
 public:
  enum CoordinateType : int { LATITUDE = 0, LONGITUDE = 1 };

  /// hhmmss.sss: up to three digits behind the point, taken as they stand.
  static bool divideTime(const char* npText, GnssSentenceTime* npTime);
  /// ddmmyy
  static bool divideUtcDate(const char* npText, GnssSentenceDate* npDate);
  /// ddmm.mmmm or dddmm.mmmm, empty is zero. The direction is a field of its own.
  static bool parseCoordinate(const char* npText, int nType, GnssSentenceCoordinate* npCoordinate);
  static bool convertSatelliteQuality(const char* npText, SatelliteQuality* npQuality);
  static bool convertAutonomousMethodType(const char* npText, AutonomousMethodType* npMode);
  static bool convertPositioningType(const char* npText, PositioningType* npType);
  static bool convertGsaMode(const char* npText, GsaMode* npMode);
  static bool convertPubxStatus(const char* npText, PubxStatus* npStatus);
  static CoordinateDirection convertDirection(const char* npText);
  static SatelliteType getSatelliteType(const char* npAddress);
};

}  // namespace nfw
