// How the host application feeds the stand-in of the GPS SDK: from its own source of sentences, or by hand. The unit's
// own SDK has no such header: the framework never includes it.
#pragma once

#include "GpsDef.h"

/// Each call hands its text or record to the listeners of the geodetic system, one after the other on the calling
/// thread, without a lock held. Any thread may call. What is handed over is valid during the call only.
namespace gpshost {

void feedSentence(const char* npSentence, unsigned int nSize, GeodeticSystem nSystem = WGS_84_GPS);
void feedProprietary(const char* npMessage, unsigned int nSize, GeodeticSystem nSystem = WGS_84_GPS);

void feed(GPGGA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPGLL const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPGSA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPGSV const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPRMC const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPVTG const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPZDA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(PUBX const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(PARSE_NMEA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);

}  // namespace gpshost
