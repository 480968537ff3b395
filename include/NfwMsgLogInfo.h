/// @file
/// Names of inter-process messages, for the message log.
#pragma once

#include <cstdint>

#include "utl/Map.h"

namespace nfw {

/// Identifies an inter-process message.
struct MsgId {
  uint32_t mValue = 0;
  friend bool operator<(const MsgId& nLeft, const MsgId& nRight) { return nLeft.mValue < nRight.mValue; }
};

/// What the message log shows for a message.
struct MsgLogInfo {
  const char* mpName = nullptr;
};

using MsgLogInfoMap = utl::Map<MsgId, MsgLogInfo>;

}  // namespace nfw
