/// @file
/// From the text of a sentence to its binary record.
#pragma once

#include "BinaryRecordLists.h"

namespace nfw {

/// Checks the arguments, then encodes: one walk over the fields of the sentence, which writes each to its place in the
/// record. There is one for each of the formats in BinaryRecordLists.h.
/// @return the size of the record, -1 on failure
template <const BinaryRecordFormat& FORMAT>
int encodeSentence(NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npSentence, unsigned int nLength,
                   unsigned char* npOut, unsigned int nOutSize);

}  // namespace nfw
