// Positions in the Tokyo datum.
#pragma once

namespace gpshost {

/// Writes the sentence with its position moved from WGS 84 to the Tokyo datum, by the approximate formula in use for
/// Japan: good to some metres there. Width and decimals stay, the checksum is new.
///
/// @param npText terminated; its end is the text's, whatever stands behind
/// @param npOut room for 64 bytes more than the text has
/// @return the size of what was written, which is terminated; 0, and nothing written, when the sentence is none of GGA,
/// GLL, RMC and "$PUBX,00", or has no position in plain digits
unsigned int moveToTokyo(const char* npText, char* npOut);

}  // namespace gpshost
