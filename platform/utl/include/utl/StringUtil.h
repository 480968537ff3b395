/// @file
/// Texts in fixed buffers, and numbers in them.
#pragma once

#include <cstdint>

namespace utl {

/// Copies a text with its terminator. False, and `npTarget` empty, when a pointer is null or the text does not fit:
/// nothing is ever cut. The second form takes at most `nMaxCount` characters of the source.
bool copyStr(char* npTarget, unsigned int nTargetSize, const char* npSource);
bool copyStr(char* npTarget, unsigned int nTargetSize, const char* npSource, unsigned int nMaxCount);

/// Appends a text. False, and `npTarget` unchanged, when it does not fit.
bool appendStr(char* npTarget, unsigned int nTargetSize, const char* npText);

/// Removes `nCount` characters from `nPosition` on. The new length, or ERASE_FAILURE when the span is not in the text.
const unsigned int ERASE_FAILURE = 0xFFFFFFFFu;
unsigned int eraseStrSpan(char* npText, unsigned int nPosition, unsigned int nCount);

/// The whole text must be decimal digits in the range of the type; only toSint32 takes one leading sign. No blanks, no
/// other base ("08" is 8). On failure `*npValue` keeps its value.
bool toSint32(const char* npText, int32_t* npValue);
bool toUint32(const char* npText, uint32_t* npValue);
bool toUint16(const char* npText, uint16_t* npValue);
bool toUint8(const char* npText, uint8_t* npValue);

/// Decimal text with its terminator. False when it does not fit.
bool fromUint32(uint32_t nValue, char* npText, unsigned int nTextSize);
bool fromSint32(int32_t nValue, char* npText, unsigned int nTextSize);

/// Character forms that convertAttrib maps onto each other.
enum AttribPair { HANKAKU_ZENKAKU_PAIR = 0 };

/// Turns full-width forms (UTF-8 U+FF01 to U+FF5E, and U+3000) into their half-width forms, in place.
/// False when there is no text or it has no terminator within `nTextSize`.
bool convertAttrib(char* npText, unsigned int nTextSize, AttribPair nPair);

/// Bytes of the first character (UTF-8). `*npFlag` is never set by this implementation.
unsigned int strCharBytesBase(const char* npText, bool* npFlag);

/// The text before the last "/", "/" for a file in the root. False without a "/" or when it does not fit.
bool extractDirPath(const char* npPath, char* npDirectory, unsigned int nDirectorySize);

}  // namespace utl
