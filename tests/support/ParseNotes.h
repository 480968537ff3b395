// The receiver SDK's records by their kinds.
#pragma once

#include "Gps.h"

namespace nfwtest {

struct ParseNotes : GpsParseNmeaListener {
  virtual void note(const char* npKind, const void* npRecord) = 0;

  void notifyParseNmeaSentence(PARSE_NMEA const* npRecord) override { note("six", npRecord); }
  void notifyParseGgaSentence(GPGGA const* npRecord) override { note("gga", npRecord); }
  void notifyParseGllSentence(GPGLL const* npRecord) override { note("gll", npRecord); }
  void notifyParseGsaSentence(GPGSA const* npRecord) override { note("gsa", npRecord); }
  void notifyParseGsvSentence(GPGSV const* npRecord) override { note("gsv", npRecord); }
  void notifyParseRmcSentence(GPRMC const* npRecord) override { note("rmc", npRecord); }
  void notifyParseVtgSentence(GPVTG const* npRecord) override { note("vtg", npRecord); }
  void notifyParseZdaSentence(GPZDA const* npRecord) override { note("zda", npRecord); }
  void notifyParsePubxSentence(PUBX const* npRecord) override { note("pubx", npRecord); }
};

}  // namespace nfwtest
