// From a sentence to its record.
#pragma once

#include "GpsDef.h"

namespace gpshost {

enum SentenceKind { KIND_OTHER, KIND_GGA, KIND_GLL, KIND_GSA, KIND_GSV, KIND_RMC, KIND_VTG, KIND_ZDA, KIND_PUBX };

/// By its address alone; the talker is not looked at.
SentenceKind kindOf(const char* npSentence);

/// True when every field was read. The text is terminated; more than 127 characters are too long. A record that was
/// not read whole is to be thrown away.
bool parse(const char* npSentence, GPGGA* npRecord);
bool parse(const char* npSentence, GPGLL* npRecord);
bool parse(const char* npSentence, GPGSA* npRecord);
bool parse(const char* npSentence, GPGSV* npRecord);  ///< one message
bool parse(const char* npSentence, GPRMC* npRecord);
bool parse(const char* npSentence, GPVTG* npRecord);
bool parse(const char* npSentence, GPZDA* npRecord);
bool parse(const char* npSentence, PUBX* npRecord);

}  // namespace gpshost
