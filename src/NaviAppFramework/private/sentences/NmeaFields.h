/// @file
/// The walk along a sentence.
#pragma once

#include <cstring>

#include "NmeaLetters.h"
#include "NmeaOddField.h"
#include "NmeaPlain.h"

namespace nfw {

/// Takes one field after the other from a sentence, each once and in order. A step that fails writes its lines and is
/// false, so that a parse is a chain of steps. The sentence is read where it stands and must stay as it is meanwhile.
///
/// A step first tries the field's plain form (NmeaPlain); whatever looks different goes to NmeaOddField. Every step is
/// inlined, and nobody else is given the address of this object: so the position stays in a register, which is half of
/// the parser's speed. Hand neither `this` nor a reference to anything that is not inlined.
class NmeaFields {
 public:
  NmeaFields(const char* npSentence, const NmeaWords& nWords) : mWords(nWords), mpNext(npSentence) {}

  /// First of all: the sentence is one that the steps can take in.
  [[gnu::always_inline]] bool open() {
    return strnlen(mpNext, SENTENCE_SIZE) < SENTENCE_SIZE || fail(mWords.mpCopyError);
  }

  /// The first field, without a talker and with one.
  [[gnu::always_inline]] bool address() { return moveTo(NmeaOddField::address(odd())); }
  [[gnu::always_inline]] bool address(SatelliteType* npType) {
    char lTalker = '\0';
    if (!moveTo(NmeaPlain::address(mpNext, mWords.mpType, &lTalker))) {
      return moveTo(NmeaOddField::address(odd(), npType));
    }
    *npType = fromLetter(lTalker, TALKER_LETTERS, SATELLITE_OTHER);
    return true;
  }

  [[gnu::always_inline]] bool skip(const char* npExtractError) {
    char lLetter = '\0';
    return moveTo(NmeaPlain::letter(mpNext, &lLetter)) || moveTo(NmeaOddField::skip(odd(), npExtractError));
  }

  [[gnu::always_inline]] bool time(const char* npTimeError, GnssSentenceTime* npTime) {
    return moveTo(NmeaPlain::time(mpNext, npTime)) || moveTo(NmeaOddField::time(odd(), npTimeError, npTime));
  }

  [[gnu::always_inline]] bool date(GnssSentenceDate* npDate) {
    return moveTo(NmeaPlain::date(mpNext, npDate)) || moveTo(NmeaOddField::date(odd(), npDate));
  }

  /// Two fields: the coordinate and its direction.
  [[gnu::always_inline]] bool latitude(GnssSentenceCoordinate* npCoordinate) {
    return (moveTo(NmeaPlain::coordinate(mpNext, 2, npCoordinate)) ||
            moveTo(NmeaOddField::latitude(odd(), npCoordinate))) &&
           direction("Extract N・S Info Error", &npCoordinate->direction);
  }
  [[gnu::always_inline]] bool longitude(GnssSentenceCoordinate* npCoordinate) {
    return (moveTo(NmeaPlain::coordinate(mpNext, 3, npCoordinate)) ||
            moveTo(NmeaOddField::longitude(odd(), npCoordinate))) &&
           direction("Extract E・W Info Error", &npCoordinate->direction);
  }

  /// Anything but the letter of a direction is none.
  [[gnu::always_inline]] bool direction(const char* npExtractError, CoordinateDirection* npDirection) {
    char lLetter = '\0';
    if (!moveTo(NmeaPlain::letter(mpNext, &lLetter))) {
      return moveTo(NmeaOddField::direction(odd(), npExtractError, npDirection));
    }
    *npDirection = fromLetter(lLetter, DIRECTION_LETTERS, DIRECTION_NONE);
    return true;
  }

  [[gnu::always_inline]] bool quality(SatelliteQuality* npQuality) {
    return take(QUALITY_DIGITS, npQuality) || moveTo(NmeaOddField::quality(odd(), npQuality));
  }
  [[gnu::always_inline]] bool mode(AutonomousMethodType* npMode) {
    return take(MODE_LETTERS, npMode) || moveTo(NmeaOddField::mode(odd(), npMode));
  }
  [[gnu::always_inline]] bool mode(GsaMode* npMode) {
    return take(GSA_MODE_DIGITS, npMode) || moveTo(NmeaOddField::mode(odd(), npMode));
  }
  [[gnu::always_inline]] bool positioningType(PositioningType* npType) {
    return take(POSITIONING_LETTERS, npType) || moveTo(NmeaOddField::positioningType(odd(), npType));
  }
  [[gnu::always_inline]] bool status(PubxStatus* npStatus) { return moveTo(NmeaOddField::status(odd(), npStatus)); }

  /// True exactly when the field begins with the letter.
  [[gnu::always_inline]] bool flag(const char* npExtractError, char nLetter, bool* npFlag) {
    char lLetter = '\0';
    if (!moveTo(NmeaPlain::letter(mpNext, &lLetter))) {
      return moveTo(NmeaOddField::flag(odd(), npExtractError, nLetter, npFlag));
    }
    *npFlag = lLetter == nLetter;
    return true;
  }

  /// @param npName the field's name in the line about a number that does not end with its field
  [[gnu::always_inline]] bool real(const char* npExtractError, const char* npName, double* npValue) {
    return moveTo(NmeaPlain::real(mpNext, npValue)) ||
           moveTo(NmeaOddField::real(odd(), npExtractError, npName, npValue));
  }

  /// A number that must be there.
  template <class Number>
  [[gnu::always_inline]] bool number(const char* npExtractError, const char* npNumberError, Number* npValue) {
    return (!NmeaPlain::isEmpty(mpNext) && moveTo(NmeaPlain::number(mpNext, npValue))) ||
           moveTo(NmeaOddField::number(odd(), npExtractError, npNumberError, npValue));
  }

  /// A number that may be left out, which is 0.
  [[gnu::always_inline]] bool count(const char* npExtractError, const char* npNumberError, uint32_t* npValue) {
    return moveTo(NmeaPlain::number(mpNext, npValue)) ||
           moveTo(NmeaOddField::count(odd(), npExtractError, npNumberError, npValue));
  }

  /// A value of a satellite: left out, it is 0 and the satellite is not valid. The words about one of 8 bits are
  /// followed by the field.
  template <class Number>
  [[gnu::always_inline]] bool satelliteValue(const char* npExtractError, const char* npNumberError, Number* npValue,
                                             bool* npValid) {
    if (NmeaPlain::isEmpty(mpNext)) *npValid = false;
    return moveTo(NmeaPlain::number(mpNext, npValue)) ||
           moveTo(NmeaOddField::satelliteValue(odd(), npExtractError, npNumberError, npValue, npValid));
  }

  /// Writes a line of this sentence; false.
  bool fail(const char* npText) const { return mWords.fail(npText) != nullptr; }

 private:
  static const unsigned int SENTENCE_SIZE = 128;  // with the terminator

  NmeaOddField odd() const { return {mWords, mpNext}; }

  [[gnu::always_inline]] bool moveTo(const char* npNext) {
    if (__builtin_expect(npNext == nullptr, 0)) return false;
    mpNext = npNext;
    return true;
  }

  template <class Value, size_t N>
  [[gnu::always_inline]] bool take(const NmeaLetter<Value> (&nLetters)[N], Value* npValue) {
    char lLetter = '\0';
    const char* const lpNext = NmeaPlain::letter(mpNext, &lLetter);
    return lpNext != nullptr && fromLetter(lLetter, nLetters, npValue) && moveTo(lpNext);
  }

  const NmeaWords& mWords;
  const char* mpNext;  // what is left of the sentence
};

}  // namespace nfw
