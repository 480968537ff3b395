/// @file
/// From a binary record to the text of its sentence.
#pragma once

#include "BinaryRecordLists.h"

namespace nfw {

/// Checks the arguments, then decodes: one walk over the fields of the record, which appends each to the text. There is
/// one for each of the formats in BinaryRecordLists.h.
/// @return the length of the text, -1 on failure
template <const BinaryRecordFormat& FORMAT>
int decodeSentence(NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord, unsigned int nLength,
                   unsigned char* npOut, unsigned int nOutSize);

}  // namespace nfw
