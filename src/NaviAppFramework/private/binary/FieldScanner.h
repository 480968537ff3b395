/// @file
/// The fields of one sentence, taken from the front.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace nfw {

/// Holds a copy of the sentence and the place reached in it. A field ends at "," or "*", behind "*" there is none.
///
/// Each field may be taken in two ways: by the short road of a `take` operation, which is for fields as receivers write
/// them and tells nothing when it turns one down (the place is then unchanged), or by `extractNmeaField`, which takes
/// every field that there is and says in the log why there is none.
class FieldScanner {
 public:
  static constexpr unsigned int MAX_SENTENCE = 256;
  static constexpr unsigned int MAX_FIELD = 19;
  using Text = char[MAX_FIELD + 1];

  /// @param nLength at most MAX_SENTENCE; a terminator ends the text before
  FieldScanner(const unsigned char* npSentence, unsigned int nLength);

  /// The characters behind the first; 0 where the sentence is shorter.
  const char* talker() const { return mText + 1; }

  /// The next field to be taken is one further on.
  void skip() { ++mTarget; }

  /// A decimal number times 10^nScale, rounded half away from zero: what the double arithmetic of
  /// convertFloatToSint32 gives for it. An empty field is 0.
  /// @param npSigns two letters: a field of one letter or none follows, and the second negates the number. May be null.
  /// @return nothing for all but an optional "-", digits and at most one point, and whenever the double must tell
  std::optional<int32_t> takeScaled(unsigned int nScale, const char* npSigns);

  struct Unsigned {
    uint32_t mValue;
    bool mIsTaken;
    bool mIsEmpty;
  };

  /// Digits only, at most nMax. An empty field is 0.
  Unsigned takeUnsigned(uint32_t nMax);

  /// Exactly six digits, or an empty field, which is 0.
  std::optional<uint32_t> takeDate();

  /// A field of one letter, or an empty one, which is 0.
  std::optional<char> takeLetter();

  /// A field without blanks around it.
  bool takeText(Text& nText, unsigned int* npLength);

  /// Takes the field without the blanks around it.
  bool extractNmeaField(Text& nText);

  /// Takes the n-th field of the sentence, whatever place was reached; the place is unchanged.
  bool extractNmeaField(unsigned int nTarget, Text& nText) const;

 private:
  static constexpr std::ptrdiff_t MAX_DIGITS = 18;  // fit 64 bits

  static bool endsField(const char* npText) { return *npText == ',' || *npText == '*'; }
  static const char* skipDigits(const char* npText, uint64_t* npValue);
  static const char* separator(const char* npText);

  const char* behind(const char* npSeparator) const { return *npSeparator == ',' ? npSeparator + 1 : mpEnd; }
  const char* fieldAt(const char* npFrom, unsigned int nTarget, unsigned int* npCount) const;
  const char* start() const { return mTarget == 1 ? mpNext : fieldAt(mpNext, mTarget, nullptr); }
  const char* extract(const char* npFrom, unsigned int nTarget, Text& nText) const;

  void reached(const char* npSeparator) {
    mpNext = behind(npSeparator);
    mTarget = 1;
  }

  char mText[MAX_SENTENCE + 4];
  const char* const mpEnd;   // the terminator: the place behind the last field
  const char* mpFirst;       // the field behind the address
  const char* mpNext;        // where the search for the next field starts
  unsigned int mTarget = 1;  // how many fields on it is
};

inline const char* FieldScanner::skipDigits(const char* npText, uint64_t* npValue) {
  const char* lpNext = npText;
  for (;; ++lpNext) {
    const unsigned int lDigit = static_cast<unsigned int>(static_cast<unsigned char>(*lpNext)) - '0';
    if (lDigit > 9) return lpNext;
    *npValue = *npValue * 10 + lDigit;
  }
}

inline FieldScanner::Unsigned FieldScanner::takeUnsigned(uint32_t nMax) {
  const char* const lpStart = start();
  uint64_t lValue = 0;
  const char* const lpNext = skipDigits(lpStart, &lValue);
  if (!endsField(lpNext) || lValue > nMax || lpNext - lpStart > MAX_DIGITS) return {0, false, false};
  reached(lpNext);
  return {static_cast<uint32_t>(lValue), true, lpNext == lpStart};
}

inline std::optional<uint32_t> FieldScanner::takeDate() {
  const char* const lpStart = start();
  uint64_t lValue = 0;
  const char* const lpNext = skipDigits(lpStart, &lValue);
  if (!endsField(lpNext) || (lpNext != lpStart && lpNext - lpStart != 6)) return std::nullopt;
  reached(lpNext);
  return static_cast<uint32_t>(lValue);
}

inline std::optional<char> FieldScanner::takeLetter() {
  const char* const lpStart = start();
  const bool lIsEmpty = endsField(lpStart);
  if (!lIsEmpty && (*lpStart == ' ' || *lpStart == '\0' || !endsField(lpStart + 1))) return std::nullopt;
  const char lLetter = lIsEmpty ? '\0' : *lpStart;
  reached(lIsEmpty ? lpStart : lpStart + 1);
  return lLetter;
}

inline bool FieldScanner::takeText(Text& nText, unsigned int* npLength) {
  const char* lpNext = start();
  unsigned int lLength = 0;
  for (; static_cast<unsigned char>(*lpNext) > ' ' && !endsField(lpNext) && lLength < MAX_FIELD; ++lpNext) {
    nText[lLength++] = *lpNext;
  }
  if (!endsField(lpNext)) return false;
  nText[lLength] = '\0';
  *npLength = lLength;
  reached(lpNext);
  return true;
}

}  // namespace nfw
