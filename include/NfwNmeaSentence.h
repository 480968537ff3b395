/// @file
/// The parsed records of positioning sentences.
///
/// Plain values, copied member by member; a default-constructed record is all zero. They have a virtual destructor:
/// compare and store them field by field, never as bytes. Reals are in the unit of the field they come from.
#pragma once

#include <cstdint>

#include "NfwExport.h"

namespace nfw {

/// What a sentence is; also the type byte of every binary log record.
enum NmeaSentenceType : int {
  NMEA_UNKNOWN = 0,
  NMEA_GGA = 1,
  NMEA_GLL = 2,
  NMEA_GSA = 3,
  NMEA_GSV = 4,
  NMEA_RMC = 5,
  NMEA_VTG = 6,
  NMEA_ZDA = 7,
  NMEA_PUBX = 8,
};

/// The constellation, from the talker's letter after "$G".
enum SatelliteType : int {
  SATELLITE_UNKNOWN = 0,  ///< the address does not begin with "$G"
  SATELLITE_GPS = 1,
  SATELLITE_GLONASS = 2,
  SATELLITE_GALILEO = 3,
  SATELLITE_COMBINED = 4,
  SATELLITE_OTHER = 5,
};

enum CoordinateDirection : int {
  DIRECTION_NONE = 0,
  DIRECTION_NORTH = 1,
  DIRECTION_SOUTH = 2,
  DIRECTION_EAST = 3,
  DIRECTION_WEST = 4,
};

enum SatelliteQuality : int {
  QUALITY_INVALID = 0,
  QUALITY_GPS = 1,
  QUALITY_DIFFERENTIAL = 2,
  QUALITY_ESTIMATED = 3,  ///< written as "6" in the sentence
  QUALITY_UNKNOWN = 4,    ///< left behind by a parse that failed
};

enum AutonomousMethodType : int {
  MODE_NOT_VALID = 0,     ///< N
  MODE_AUTONOMOUS = 1,    ///< A
  MODE_DIFFERENTIAL = 2,  ///< D
  MODE_ESTIMATED = 3,     ///< E
};

enum PositioningType : int {
  POSITIONING_NONE = 0,
  POSITIONING_AUTOMATIC = 1,
  POSITIONING_MANUAL = 2,
};

enum GsaMode : int {
  GSA_NO_FIX = 0,
  GSA_2D = 1,
  GSA_3D = 2,
};

enum PubxStatus : int {
  PUBX_NO_FIX = 0,           ///< NF
  PUBX_DEAD_RECKONING = 1,   ///< DR
  PUBX_2D = 2,               ///< G2
  PUBX_3D = 3,               ///< G3
  PUBX_DIFFERENTIAL_2D = 4,  ///< D2
  PUBX_DIFFERENTIAL_3D = 5,  ///< D3
  PUBX_COMBINED = 6,         ///< RK
  PUBX_TIME_ONLY = 7,        ///< TT
};

/// UTC time of day.
class GnssSentenceTime {
 public:
  virtual ~GnssSentenceTime() = default;
  uint16_t hour = 0;
  uint16_t minute = 0;
  uint16_t second = 0;
  uint16_t millisecond = 0;  ///< the digits after the point as an integer, unscaled: ".5" is 5, ".50" is 50
};

class GnssSentenceDate {
 public:
  virtual ~GnssSentenceDate() = default;
  uint32_t year = 0;   ///< four digits
  uint16_t month = 0;  ///< 1 to 12
  uint16_t day = 0;    ///< 1 to 31
};

/// One latitude or longitude.
class GnssSentenceCoordinate {
 public:
  virtual ~GnssSentenceCoordinate() = default;
  double value = 0.0;   ///< the number as written: ddmm.mmmm or dddmm.mmmm
  int32_t degree = 0;   ///< whole degrees
  double minute = 0.0;  ///< minutes with fraction
  CoordinateDirection direction = DIRECTION_NONE;
};

class GgaSentence {
 public:
  virtual ~GgaSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  GnssSentenceTime utcTime;
  GnssSentenceCoordinate latitude;
  GnssSentenceCoordinate longitude;
  SatelliteQuality quality = QUALITY_INVALID;
  uint32_t satelliteCount = 0;  ///< satellites used
  double hdop = 0.0;
  double altitude = 0.0;         ///< metres above mean sea level
  double geoidSeparation = 0.0;  ///< metres
  uint32_t dgpsDataAge = 0;      ///< seconds
  uint32_t dgpsStationId = 0;
};

class GllSentence {
 public:
  virtual ~GllSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  GnssSentenceTime utcTime;
  GnssSentenceCoordinate latitude;
  GnssSentenceCoordinate longitude;
  bool status = false;  ///< true for data valid ("A")
  AutonomousMethodType mode = MODE_NOT_VALID;
};

class GsaSentence {
 public:
  static constexpr unsigned int SATELLITE_NUM = 36;

  virtual ~GsaSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  uint32_t reserved = 0;  ///< kept for compatibility of the layout, only copied
  PositioningType positioningType = POSITIONING_NONE;
  GsaMode mode = GSA_NO_FIX;
  uint8_t satelliteNumber[SATELLITE_NUM] = {};  ///< a parse fills 0 to 11; 0 for a number of 256 and more
  uint32_t satelliteId[SATELLITE_NUM] = {};     ///< the same numbers in full
  double pdop = 0.0;
  double hdop = 0.0;
  double vdop = 0.0;
};

/// One satellite of a GSV sentence.
class GsvSatelliteInfo {
 public:
  virtual ~GsvSatelliteInfo() = default;
  uint8_t satelliteNumber = 0;  ///< 0 for a number of 256 and more
  uint32_t satelliteId = 0;     ///< the number in full
  bool valid = false;           ///< false when any field of the satellite was empty
  uint8_t elevation = 0;        ///< degrees
  uint8_t snr = 0;              ///< dB-Hz
  uint32_t azimuth = 0;         ///< degrees
};

// The copy of the array that the compiler writes has a name of its own that the checks of style stumble over.
class GsvSentence {  // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)
 public:
  static constexpr unsigned int SATELLITE_NUM = 128;

  virtual ~GsvSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  uint32_t messageCount = 0;                  ///< sentences in the group
  uint32_t messageNumber = 0;                 ///< 1-based
  uint32_t satelliteView = 0;                 ///< at most 128
  GsvSatelliteInfo satellite[SATELLITE_NUM];  ///< a parse fills the blocks of its own sentence from entry 0
};

class RmcSentence {
 public:
  virtual ~RmcSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  GnssSentenceTime utcTime;
  bool status = false;  ///< true for "A"
  GnssSentenceCoordinate latitude;
  GnssSentenceCoordinate longitude;
  double speed = 0.0;      ///< knots
  double direction = 0.0;  ///< course over ground, degrees true
  GnssSentenceDate date;
  double magneticDeclination = 0.0;  ///< degrees, negative for west
  AutonomousMethodType mode = MODE_NOT_VALID;
};

class VtgSentence {
 public:
  virtual ~VtgSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  double directionForTrueNorth = 0.0;      ///< degrees
  double directionForMagneticNorth = 0.0;  ///< degrees
  double speedKnot = 0.0;
  double speedKmh = 0.0;
  AutonomousMethodType mode = MODE_NOT_VALID;
};

class ZdaSentence {
 public:
  virtual ~ZdaSentence() = default;
  SatelliteType satelliteType = SATELLITE_UNKNOWN;
  GnssSentenceTime utcTime;
  GnssSentenceDate date;
  uint16_t localZoneHour = 0;
  uint16_t localZoneMinute = 0;
};

/// The receiver's "$PUBX,00" position sentence.
class PubxSentence {
 public:
  virtual ~PubxSentence() = default;
  uint32_t messageId = 0;  ///< 0 for "00"
  GnssSentenceTime utcTime;
  GnssSentenceCoordinate latitude;
  GnssSentenceCoordinate longitude;
  double altitudeRef = 0.0;  ///< metres
  PubxStatus status = PUBX_NO_FIX;
  double hacc = 0.0;         ///< horizontal accuracy, metres
  double vacc = 0.0;         ///< vertical accuracy, metres
  double speed = 0.0;        ///< km/h
  double direction = 0.0;    ///< course, degrees
  double vvel = 0.0;         ///< vertical velocity, m/s
  uint32_t dgpsDataAge = 0;  ///< seconds
  double hdop = 0.0;
  double vdop = 0.0;
  double tdop = 0.0;
  uint32_t satelliteCount = 0;  ///< satellites used
  bool drMode = false;          ///< true while dead reckoning is in use
};

/// One navigation epoch: the six kinds that every epoch has.
class NmeaSentence {
 public:
  virtual ~NmeaSentence() = default;
  GgaSentence gga;
  GllSentence gll;
  GsaSentence gsa;
  GsvSentence gsv;
  RmcSentence rmc;
  VtgSentence vtg;
};

}  // namespace nfw
