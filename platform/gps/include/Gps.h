/// @file
/// The service SDK of the GPS receiver.
#pragma once

#include "GpsDef.h"

/// Told of raw sentences, on the SDK's thread. The text is not terminated.
class GpsNmeaListener {
 public:
  virtual ~GpsNmeaListener() = default;
  virtual void notifyReceiveNmeaSentence(char const* npSentence, unsigned int nSize) = 0;
  virtual void notifyReceiveProprietaryMessage(char const* /*npMessage*/, unsigned int /*nSize*/) {}
};

/// Told of the SDK's own parsed records, on the SDK's thread.
class GpsParseNmeaListener {
 public:
  virtual ~GpsParseNmeaListener() = default;
  virtual void notifyParseNmeaSentence(PARSE_NMEA const* npRecord) = 0;
  virtual void notifyParseGgaSentence(GPGGA const* npRecord) = 0;
  virtual void notifyParseGllSentence(GPGLL const* npRecord) = 0;
  virtual void notifyParseGsaSentence(GPGSA const* npRecord) = 0;
  virtual void notifyParseGsvSentence(GPGSV const* npRecord) = 0;
  virtual void notifyParseRmcSentence(GPRMC const* npRecord) = 0;
  virtual void notifyParseVtgSentence(GPVTG const* npRecord) = 0;
  virtual void notifyParseZdaSentence(GPZDA const* npRecord) = 0;
  virtual void notifyParsePubxSentence(PUBX const* npRecord) = 0;
  virtual void notifyParseProprietaryMessage(char const* /*npMessage*/, unsigned int /*nSize*/) {}
};

/// The receiver. Any thread may register; an un-registration returns when no callback of that listener runs any more,
/// unless it is called from one.
class Gps {
 public:
  static Gps* GetInstance();

  bool registerGpsNmeaListener(GpsNmeaListener* npListener, GeodeticSystem nSystem);
  bool registerGpsParseNmeaListener(GpsParseNmeaListener* npListener, GeodeticSystem nSystem);
  bool unRegisterGpsNmeaListener(GpsNmeaListener* npListener);
  bool unRegisterGpsParseNmeaListener(GpsParseNmeaListener* npListener);

 private:
  Gps() = default;
};
