/// @file
/// Fields of a sentence out of the ordinary, and all that is said about them.
#pragma once

#include "NfwNmeaSentence.h"

namespace nfw {

/// What is said about one kind of sentence.
struct NmeaWords {
  const char* mpOperation;  ///< the prefix of its log lines
  const char* mpType;       ///< its address, behind the talker where it has one
  const char* mpCopyError;
  const char* mpExtractError;
  const char* mpTypeError;

  /// Writes a line with the prefix. Null, as a step gives when it fails.
  const char* fail(const char* npText) const;
};

/// The field at the start of a text. Each operation extracts it into a buffer, converts it, and gives the start of the
/// next field; or writes the lines of what is wrong and gives null. Lines cut short, blanks, numbers in unusual forms
/// and junk come here; what receivers mostly write is read by NmeaPlain. Handed on by value, in registers.
struct NmeaOddField {
  const NmeaWords& mWords;
  const char* mpText;

  static const char* skip(NmeaOddField nField, const char* npExtractError);
  static const char* address(NmeaOddField nField);
  static const char* address(NmeaOddField nField, SatelliteType* npType);
  static const char* time(NmeaOddField nField, const char* npTimeError, GnssSentenceTime* npTime);
  static const char* date(NmeaOddField nField, GnssSentenceDate* npDate);
  static const char* latitude(NmeaOddField nField, GnssSentenceCoordinate* npCoordinate);
  static const char* longitude(NmeaOddField nField, GnssSentenceCoordinate* npCoordinate);
  static const char* direction(NmeaOddField nField, const char* npExtractError, CoordinateDirection* npDirection);
  static const char* quality(NmeaOddField nField, SatelliteQuality* npQuality);
  static const char* mode(NmeaOddField nField, AutonomousMethodType* npMode);
  static const char* mode(NmeaOddField nField, GsaMode* npMode);
  static const char* positioningType(NmeaOddField nField, PositioningType* npType);
  static const char* status(NmeaOddField nField, PubxStatus* npStatus);
  static const char* flag(NmeaOddField nField, const char* npExtractError, char nLetter, bool* npFlag);
  static const char* real(NmeaOddField nField, const char* npExtractError, const char* npName, double* npValue);
  static const char* number(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                            uint16_t* npValue);
  static const char* number(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                            uint32_t* npValue);
  static const char* count(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                           uint32_t* npValue);
  static const char* satelliteValue(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                    uint32_t* npValue, bool* npValid);
  /// The words about the number are followed by the field.
  static const char* satelliteValue(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                    uint8_t* npValue, bool* npValid);
};

}  // namespace nfw
