#pragma once

#include <string>

namespace logtool {

class Run;

/// convert --to gpkg: the tracks of the recordings in a GeoPackage, a file of its own or, with --append, one that is
/// there. Returns the exit code.
int convertToGeoPackage(Run& nRun);

}  // namespace logtool
