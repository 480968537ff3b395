/// @file
/// Records of the GPS SDK: plain structures, enumerations and flags as int.
#pragma once

enum GeodeticSystem { WGS_84_GPS = 0, TOKYO_GPS = 1 };

struct GPS_TIME {
  unsigned short hour, minute, second, millisecond;
};

struct GPS_DATE {
  unsigned int year;
  unsigned short month, day;
};

struct GPS_COORDINATE {
  double value;  ///< ddmm.mmmm or dddmm.mmmm
  int degree;
  double minute;
  int direction;  ///< N 1, S 2, E 3, W 4, none 0
};

struct GPGGA {
  int satelliteType;
  GPS_TIME utcTime;
  GPS_COORDINATE latitude, longitude;
  int quality;
  unsigned int satelliteCount;
  double hdop, altitude, geoidSeparation;
  unsigned int dgpsDataAge, dgpsStationId;
};

struct GPGLL {
  int satelliteType;
  GPS_TIME utcTime;
  GPS_COORDINATE latitude, longitude;
  int status;
  int mode;
};

struct GPGSA {
  int satelliteType;
  int positioningType;
  int mode;
  unsigned int satelliteNumber[36];
  double pdop, hdop, vdop;
};

struct GPGSV_SATELLITE {
  unsigned int number;
  int valid;
  unsigned char elevation, snr;
  unsigned int azimuth;
};

struct GPGSV {
  int satelliteType;
  unsigned int messageCount, messageNumber, satelliteView;
  unsigned int satelliteCount;  ///< entries in use
  GPGSV_SATELLITE satellite[256];
};

struct GPRMC {
  int satelliteType;
  GPS_TIME utcTime;
  int status;
  GPS_COORDINATE latitude, longitude;
  double speed, direction;
  GPS_DATE date;
  double magneticDeclination;
  int mode;
};

struct GPVTG {
  int satelliteType;
  double directionForTrueNorth, directionForMagneticNorth, speedKnot, speedKmh;
  int mode;
};

struct GPZDA {
  int satelliteType;
  GPS_TIME utcTime;
  GPS_DATE date;
  unsigned short localZoneHour, localZoneMinute;
};

struct PUBX {
  unsigned int messageId;
  GPS_TIME utcTime;
  GPS_COORDINATE latitude, longitude;
  double altitudeRef;
  int status;
  double hacc, vacc, speed, direction, vvel;
  unsigned int dgpsDataAge;
  double hdop, vdop, tdop;
  unsigned int satelliteCount;
  int drMode;
};

struct PARSE_NMEA {
  GPGGA gga;
  GPGLL gll;
  GPGSA gsa;
  GPGSV gsv;
  GPRMC rmc;
  GPVTG vtg;
};
