#pragma once

#include <string>
#include <string_view>

#include "NfwNmeaSentence.h"

namespace tool {

/// Append a record as one JSON object on a line of its own, "type" first.
///
/// Numbers are written with the fewest digits that give the same double back, so a coordinate's "value" (ddmm.mmmm)
/// reads as it stood in the sentence; "degrees" beside it is the same in decimal degrees, negative for S and W. A
/// coordinate that the sentence left empty is null. "millisecond" holds the digits behind the second as they stood, as
/// the record does: 5 for ".5".
/// @param nSource behind the type, where it is not empty
void appendJson(const nfw::GgaSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::GllSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::GsaSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::GsvSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::RmcSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::VtgSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::ZdaSentence& nRecord, std::string* npText, std::string_view nSource = {});
void appendJson(const nfw::PubxSentence& nRecord, std::string* npText, std::string_view nSource = {});

/// Decimal degrees, negative for S and W.
double decimalDegrees(const nfw::GnssSentenceCoordinate& nCoordinate);

/// "GPS", "GLONASS", "Galileo", "combined", "other", "unknown".
std::string_view systemName(nfw::SatelliteType nType);

}  // namespace tool
