#include "LineView.h"

#include "Format.h"

namespace drive {

std::string LineView::line(const FixState& nFix) const {
  return fmt::format("{}{}  {}  {}  {}  {}  {} satellites\n", prefix(), nFix.time(), nFix.position(), nFix.speed(),
                     nFix.course(), nFix.fix(), nFix.getGga().satelliteCount);
}

}  // namespace drive
