/// @file
/// The fields of one sentence.
#pragma once

namespace nfw {

/// Where a walk over a sentence stands: the field to be taken is the n-th from here on.
struct FieldPlace {
  const char* mpFrom;
  unsigned int mTarget;
};

/// Holds a copy of the sentence and takes any field out of it. A field ends at "," or "*", behind "*" there is none.
class FieldScanner {
 public:
  static constexpr unsigned int MAX_SENTENCE = 256;
  static constexpr unsigned int MAX_FIELD = 19;
  using Text = char[MAX_FIELD + 1];

  /// @param nLength at most MAX_SENTENCE; a terminator ends the text before
  FieldScanner(const unsigned char* npSentence, unsigned int nLength);

  /// The characters behind the first; 0 where the sentence is shorter.
  const char* talker() const { return mText + 1; }

  /// The field behind the address.
  const char* first() const { return fieldAt({mText, 2}); }

  /// Where a field starts; an empty text when there is none.
  static const char* fieldAt(FieldPlace nPlace) {
    for (; nPlace.mTarget > 1; --nPlace.mTarget) nPlace.mpFrom = behind(end(nPlace.mpFrom));
    return nPlace.mpFrom;
  }

  /// Takes a field without the blanks around it.
  /// @return the start of the next field; null, logged, when there is none at the place or it is too long
  static const char* extractNmeaField(FieldPlace nPlace, Text& nText);

 private:
  static bool isEnd(char nChar) { return nChar == ',' || nChar == '*' || nChar == '\0'; }

  // The separator that ends a field, or the terminator of the text.
  static const char* end(const char* npText) {
    while (!isEnd(*npText)) ++npText;
    return npText;
  }
  static const char* behind(const char* npEnd) { return *npEnd == ',' ? npEnd + 1 : ""; }

  static const char* find(FieldPlace nPlace);

  char mText[MAX_SENTENCE + 4];
};

}  // namespace nfw
