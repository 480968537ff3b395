#include "ReadCounts.h"

#include "Format.h"

namespace drive {

std::string ReadCounts::unparsableText() const {
  const std::string lText = fmt::format("unparsable {}", mUnparsable.total());
  return mWithoutMode == 0 ? lText
                           : lText + fmt::format(" ({} without a mode field: NMEA before 2.3)", mWithoutMode.load());
}

std::string ReadCounts::text() const {
  return fmt::format("{} read = {} accepted + {} rejected + {} of other kinds", mLines.total(), accepted(), rejected(),
                     ignored());
}

std::string ReadCounts::explainSilence() const {
  if (mLines.total() == 0) return "came";
  if (mUnparsable.total() > 0) return "could be parsed: " + unparsableText();
  if (mLines.get(tool::LINE_BAD_CHECKSUM) > 0) return "with a right checksum";
  return "in what came: is it NMEA 0183, and a serial line's baud rate right?";
}

}  // namespace drive
