#include "Gps.h"

#include "GpsHost.h"
#include "GpsListeners.h"
#include "SdkListeners.h"

namespace {

// Never destroyed: a receiver's thread may feed while the process ends.
SdkListeners<GpsNmeaListener>& nmeaListeners() {
  static SdkListeners<GpsNmeaListener>& lListeners = *new SdkListeners<GpsNmeaListener>;
  return lListeners;
}
SdkListeners<GpsParseNmeaListener>& parseListeners() {
  static SdkListeners<GpsParseNmeaListener>& lListeners = *new SdkListeners<GpsParseNmeaListener>;
  return lListeners;
}

template <class Record>
void notify(void (GpsParseNmeaListener::*npNotify)(Record const*), Record const& nRecord, GeodeticSystem nSystem) {
  parseListeners().each(nSystem, [&](GpsParseNmeaListener& nListener) { (nListener.*npNotify)(&nRecord); });
}

}  // namespace

Gps* Gps::GetInstance() {
  static Gps* const lpGps = new Gps;
  return lpGps;
}

bool Gps::registerGpsNmeaListener(GpsNmeaListener* npListener, GeodeticSystem nSystem) {
  return nmeaListeners().add(npListener, nSystem);
}
bool Gps::registerGpsParseNmeaListener(GpsParseNmeaListener* npListener, GeodeticSystem nSystem) {
  return parseListeners().add(npListener, nSystem);
}
bool Gps::unRegisterGpsNmeaListener(GpsNmeaListener* npListener) { return nmeaListeners().remove(npListener); }
bool Gps::unRegisterGpsParseNmeaListener(GpsParseNmeaListener* npListener) {
  return parseListeners().remove(npListener);
}

namespace gpshost {

bool hasListeners(GeodeticSystem nSystem) { return nmeaListeners().has(nSystem) || parseListeners().has(nSystem); }

void feedSentence(const char* npSentence, unsigned int nSize, GeodeticSystem nSystem) {
  nmeaListeners().each(nSystem,
                       [=](GpsNmeaListener& nListener) { nListener.notifyReceiveNmeaSentence(npSentence, nSize); });
}

void feedProprietary(const char* npMessage, unsigned int nSize, GeodeticSystem nSystem) {
  nmeaListeners().each(
      nSystem, [=](GpsNmeaListener& nListener) { nListener.notifyReceiveProprietaryMessage(npMessage, nSize); });
  parseListeners().each(
      nSystem, [=](GpsParseNmeaListener& nListener) { nListener.notifyParseProprietaryMessage(npMessage, nSize); });
}

void feed(GPGGA const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseGgaSentence, nRecord, nSystem);
}
void feed(GPGLL const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseGllSentence, nRecord, nSystem);
}
void feed(GPGSA const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseGsaSentence, nRecord, nSystem);
}
void feed(GPGSV const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseGsvSentence, nRecord, nSystem);
}
void feed(GPRMC const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseRmcSentence, nRecord, nSystem);
}
void feed(GPVTG const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseVtgSentence, nRecord, nSystem);
}
void feed(GPZDA const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseZdaSentence, nRecord, nSystem);
}
void feed(PUBX const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParsePubxSentence, nRecord, nSystem);
}
void feed(PARSE_NMEA const& nRecord, GeodeticSystem nSystem) {
  notify(&GpsParseNmeaListener::notifyParseNmeaSentence, nRecord, nSystem);
}

}  // namespace gpshost
