#pragma once

#include "Messages.h"
#include "Run.h"

namespace logtool {

/// In place of the one that needs SQLite, where the tool is built without.
inline int convertToGeoPackage(const Run& /*nRun*/) {
  say("--to gpkg: this nfw-log was built without SQLite, which a GeoPackage needs");
  return EXIT_TROUBLE;
}

}  // namespace logtool
