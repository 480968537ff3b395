// How a GSV sentence tells the number of its satellites.
#pragma once

#include "NfwNmeaSentence.h"

namespace nfw {

/// How many satellites a parse reads out of one message of a group, before it looks at the room: none of the last
/// message, whose number equals the count.
inline uint32_t gsvSatelliteNum(const GsvSentence& nMessage) {
  const uint32_t MESSAGE_SATELLITE_NUM = 4;
  if (nMessage.messageCount > nMessage.messageNumber) return MESSAGE_SATELLITE_NUM;
  return nMessage.messageNumber != 0 ? nMessage.messageCount * MESSAGE_SATELLITE_NUM % nMessage.messageNumber : 0;
}

}  // namespace nfw
