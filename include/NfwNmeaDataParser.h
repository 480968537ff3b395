/// @file
/// From a sentence to its record.
#pragma once

#include "NfwNmeaSentence.h"

namespace nfw {

/// Parses NMEA 0183 sentences. Stateless: any thread may call at any time; nothing is allocated.
///
/// @code
/// nfw::GgaSentence lGga;
/// if (nfw::NmeaDataParser::parseGgaSentence(lText, lLength, &lGga)) { use(lGga.latitude.value); }
/// @endcode
///
/// A parse reads up to the text's terminator (at most 127 characters) and does not judge the checksum. On failure it
/// returns false and says why in the application log; the record may then be partly filled and is to be discarded.
/// Numbers are read as in the C locale, whatever the process has set.
class NFW_API NmeaDataParser {
 public:
  NmeaDataParser() = default;
  virtual ~NmeaDataParser() = default;

  /// @return the NmeaSentenceType; the talker is not examined. Reads at most `nLength` bytes, none behind a terminator.
  static int analyzeNmeaSentenceType(char const* npSentence, unsigned int nLength);

  /// @param npSentence terminated text; `nLength` is only tested for being non-zero
  /// @return true when every field was parsed; false without a log line for a null argument or zero length
  static bool parseGgaSentence(char const* npSentence, unsigned int nLength, GgaSentence* npRecord);
  static bool parseGllSentence(char const* npSentence, unsigned int nLength, GllSentence* npRecord);
  static bool parseGsaSentence(char const* npSentence, unsigned int nLength, GsaSentence* npRecord);
  /// The last message of a group yields no satellites; a record is to be fresh, entries beyond the blocks keep theirs.
  static bool parseGsvSentence(char const* npSentence, unsigned int nLength, GsvSentence* npRecord);
  static bool parseRmcSentence(char const* npSentence, unsigned int nLength, RmcSentence* npRecord);
  static bool parseVtgSentence(char const* npSentence, unsigned int nLength, VtgSentence* npRecord);
  static bool parseZdaSentence(char const* npSentence, unsigned int nLength, ZdaSentence* npRecord);
  static bool parsePubxSentence(char const* npSentence, unsigned int nLength, PubxSentence* npRecord);
};

}  // namespace nfw
