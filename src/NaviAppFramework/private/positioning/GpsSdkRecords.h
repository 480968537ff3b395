// From the GPS SDK's records to the framework's.
#pragma once

#include "GpsDef.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Numbers, times, dates and coordinates are copied; a value that the framework's enumeration does not know becomes 0.
/// A GSV record has at most 128 satellites: more are left out, with a log line.
GgaSentence convertRecord(const GPGGA& nRecord);
GllSentence convertRecord(const GPGLL& nRecord);
GsaSentence convertRecord(const GPGSA& nRecord);
GsvSentence convertRecord(const GPGSV& nRecord);
RmcSentence convertRecord(const GPRMC& nRecord);
VtgSentence convertRecord(const GPVTG& nRecord);
ZdaSentence convertRecord(const GPZDA& nRecord);
PubxSentence convertRecord(const PUBX& nRecord);
NmeaSentence convertRecord(const PARSE_NMEA& nRecord);

}  // namespace nfw
