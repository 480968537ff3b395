// The messages of a GSV group, put together.
#pragma once

#include "GpsDef.h"

namespace gpshost {

/// A group is its messages' satellites under the head of the last one. Not the satellites in view but the message
/// numbers tell where it begins and ends, for not every receiver counts the satellites well.
class GsvGroup {
 public:
  /// Adds a message; the first one, or one without a number, begins anew. True when it was the last one.
  bool add(const GPGSV& nMessage);
  const GPGSV& get() const { return mGroup; }
  void clear() { mGroup = GPGSV{}; }

 private:
  GPGSV mGroup{};
};

}  // namespace gpshost
