#pragma once

#include <string>

#include "Inputs.h"
#include "RecordingStats.h"
#include "TrackStats.h"

namespace logtool {

/// Tells of a recording in words, a heading a line.
std::string infoText(const Recording& nRecording, const RecordingStats& nStats, const TrackStats& nTracks);
/// The same as one JSON object. Times are local to the recorder in a log, UTC in a sensor log.
std::string infoJson(const Recording& nRecording, const RecordingStats& nStats, const TrackStats& nTracks);

}  // namespace logtool
