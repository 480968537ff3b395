/// @file
/// Records of the dead-reckoning SDK.
#pragma once

namespace ZTSDeadReckoningDef {

const unsigned int DRG_GSA_SATELLITE_NUM = 12;
const unsigned int DRG_GSV_SATELLITE_NUM = 4;
const unsigned int DRG_GSA_NUM = 4;
const unsigned int DRG_GSV_NUM = 32;

/// Letters stand as in the sentence of the same name; times are hhmmss.sss, latitude and longitude ddmm.mmmm and
/// dddmm.mmmm with a sign (south and west negative).
struct DRG_RMC {
  char talker[2];
  char status;  ///< V, A, D or U
  char mode;    ///< N, A, D or E
  double time, latitude, longitude;
  double speed;   ///< knots
  double course;  ///< degrees
  unsigned char day, month, year;
  double variation;  ///< degrees, west negative
};

struct DRG_VTG {
  char talker[2];
  char mode;
  double courseTrue, courseMagnetic, speedKnot, speedKmh;
};

struct DRG_GGA {
  char talker[2];
  unsigned char quality, satellites;
  double time, latitude, longitude, hdop, altitude, geoidSeparation;
  unsigned short age, stationId;
};

struct DRG_GSA {
  char talker[2];
  char selection;         ///< A or M
  unsigned char fixMode;  ///< 1 to 3
  unsigned int number[DRG_GSA_SATELLITE_NUM];
  double pdop, hdop, vdop;
};

struct DRG_GSV_SATELLITE {
  unsigned int number;
  unsigned char valid, elevation, snr;
  unsigned short azimuth;
};

struct DRG_GSV {
  char talker[2];
  unsigned char count, number, view;
  DRG_GSV_SATELLITE satellite[DRG_GSV_SATELLITE_NUM];
};

struct DRG_PUBX {
  unsigned char status;  ///< NF 0, DR 1, G2 2, G3 3, D2 4, D3 5, RK 6, TT 7
  unsigned int messageId;
  double time, latitude, longitude, altitude;
  double hacc, vacc, speed, course, vvel;
  unsigned short age;
  double hdop, vdop, tdop;
  unsigned char satellites;
  unsigned char deadReckoning;  ///< 1 when dead reckoning is in use
};

struct DRG_LOCATION_INFO {
  DRG_RMC rmc;
  DRG_VTG vtg;
  DRG_GGA gga;
  unsigned int gsaCount;
  DRG_GSA gsa[DRG_GSA_NUM];
  unsigned int gsvCount;
  DRG_GSV gsv[DRG_GSV_NUM];
  DRG_PUBX pubx;
};

}  // namespace ZTSDeadReckoningDef
