// The fields of a sentence.
#pragma once

#include "GpsDef.h"

namespace gpshost {

/// Takes one field of a sentence after the other; each step takes the next one (a coordinate two) and is false when
/// there is none or when it does not convert, so that a parse is a chain of steps. Fields end at "," and "*" and have
/// at most 19 characters; blanks around them do not count.
class SentenceFields {
 public:
  explicit SentenceFields(const char* npSentence) : mpNext(npSentence) {}

  bool skip() { return take(); }
  bool address(const char* npType, int* npSatelliteType);  ///< of any talker
  bool address(const char* npWhole);

  bool time(GPS_TIME* npTime);  ///< hhmmss.sss: up to three digits behind the point, taken as they stand
  bool date(GPS_DATE* npDate);  ///< ddmmyy
  bool latitude(GPS_COORDINATE* npCoordinate) { return coordinate(2, npCoordinate); }
  bool longitude(GPS_COORDINATE* npCoordinate) { return coordinate(3, npCoordinate); }
  bool direction(int* npDirection);  ///< anything but N, S, E and W is 0

  bool real(double* npValue);         ///< left out: 0.0
  bool count(unsigned int* npValue);  ///< left out: 0
  bool number(unsigned int* npValue);
  bool number(unsigned short* npValue);
  bool satellite(GPGSV_SATELLITE* npSatellite);  ///< four fields; with one left out it is not valid

  bool quality(int* npQuality);
  bool status(int* npStatus);                                 ///< of PUBX: two letters
  bool flag(char nLetter, int* npFlag);                       ///< 1 when the field begins with the letter
  bool code(const char* npLetters, int nFirst, int* npCode);  ///< the place of its first letter, counted from nFirst

 private:
  bool take();
  bool coordinate(unsigned int nDegreeDigits, GPS_COORDINATE* npCoordinate);
  template <class Number>
  bool column(unsigned int nFrom, unsigned int nCount, Number* npValue) const;
  template <class Number>
  bool satelliteValue(Number* npValue, int* npValid);

  const char* mpNext;  // what is left of the sentence
  char mItem[20];      // the field taken last, without blanks around it
};

}  // namespace gpshost
