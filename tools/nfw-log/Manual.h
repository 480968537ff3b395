// What --help says beyond the options.
#pragma once

namespace logtool {

inline const char* const MANUAL = R"(Inputs:
  A file is recognised by its bytes: a log (nfw::Logger) or a sensor log (nfw::SensorSysLoggerManager).
  A directory stands for all recordings in it: the files DIR/PREFIX_YYYYMMDD-hhmmss_NN.log of a prefix are
  one recording, read in the order of their names, or of their ticks where a clock was set back. - is standard input.

Moments (--from, --to, --until):
  90, 90s, 250ms, 1.5m, 2h    from the begin of the recording
  08:15, 08:15:30.5           the recorder's time of day
  "2026-01-31 08:15:30"       its date and time
  --last 90, 2h               from so long before the end of each recording on
  The clock of a log is the recorder's local time, that of a sensor log the UTC time of its sentences.

Types (--type):
  GGA, RMC ... PUBX           records of a sentence, as text or in binary form
  DR                          reports of dead reckoning in a sensor log
  LOG, DATA                   lines of the application log; anything else
  --exclude takes both, ids and types, and leaves them out.

Texts (--match):
  A record is taken when the text stands in it, letter by letter; one of a sensor log, when it stands in its sentences.

Tracks (convert, plot):
  The receiver's: id 0 of a sensor log, id 20 of a log, or else the id with the first sentence; plot draws that of dead
  reckoning as well. --id chooses others;
  several are several tracks with their names. What the log in a directory tells of is not taken from a sensor log
  beside it again.

Output:
  A file appears under its name when it is complete. One that exists is replaced only with --force, an input never.
  Damaged places are named on standard error and left out.

Exit status:
  0  done; 1  check found something wrong, or the output could not be written;
  2  a wrong command line, an input that cannot be read, or a selection that cannot select anything

nfw-log COMMAND --help tells the options of a command.

Examples:
  nfw-log info /data/log                       what is in there
  nfw-log cat --type GGA,RMC drive.log | less
  nfw-log check --json /data/log
  nfw-log recover broken.log -o whole.log
  nfw-log cut --from 08:15 --to 08:20 /data/log -o part.log
  nfw-log convert --to gpx /data/log -o drive.gpx
  nfw-log plot --html /data/log -o drive.html
  nfw-log prune --keep-total 2G --dry-run /data/log
)";

inline const char* const INFO_EXAMPLES = R"(  nfw-log info drive.log
  nfw-log info --json /data/log | jq '.recordings[].tracks[].distance_m'
  nfw-log info --gap 0.5 /data/log             tell of every pause of half a second and more
)";
inline const char* const CAT_EXAMPLES =
    R"(  nfw-log cat --id 255 drive.log               the lines of the application log
  nfw-log cat --type GGA --from 10m --to 11m drive.log
  nfw-log cat --last 30s --exclude GSV,255 drive.log
  nfw-log cat --id 255 --match "[E]" --match "[W]" /data/log   errors and warnings
  nfw-log cat --sort front.log rear.log        both by time
  nfw-log cat --follow /data/log               what is being recorded, from the begin on
  nfw-log cat --json sensor.bin | jq .sentences
)";
inline const char* const CHECK_EXAMPLES = R"(  nfw-log check drive.log && echo fine
  nfw-log check --json /data/log
)";
inline const char* const RECOVER_EXAMPLES = R"(  nfw-log recover broken.log -o whole.log
  nfw-log recover - -o - < broken.log > whole.log
)";
inline const char* const CUT_EXAMPLES = R"(  nfw-log cut --from 90 --to 2m drive.log -o part.log
  nfw-log cut --from 08:15 --to 08:20 /data/log -o part.log
)";
inline const char* const FILTER_EXAMPLES = R"(  nfw-log filter --id 20 drive.log -o receiver.log
  nfw-log filter --type GGA,RMC sensor.bin -o positions.bin
  nfw-log filter --exclude GSV,255 --last 10m drive.log -o end.log
  nfw-log filter --sort --id 20 front.log rear.log -o - | nfw-log convert --to nmea -
)";
inline const char* const MERGE_EXAMPLES = R"(  nfw-log merge front.log rear.log -o both.log
  nfw-log merge /data/log -o all.log           all recordings of a directory
  Recordings of one start of the system are ordered by their ticks. Others are brought onto the clock of the
  first by the times that they tell; their ticks are moved by one number each, so that the result replays.
)";
inline const char* const CONVERT_EXAMPLES = R"(  nfw-log convert --to nmea sensor.bin         the sentences, decoded
  nfw-log convert --to gpx --id 20,21 /data/log -o drive.gpx   the receiver's and dead reckoning's tracks
  nfw-log convert --to gpkg --append /data/log -o fleet.gpkg   many recordings in one database
  nfw-log convert --to mcap /data/log -o drive.mcap
  nfw-log convert --to csv --sort front.log rear.log   both tracks' positions by time
  nfw-log convert --to csv --id 21 --from 10m --until 20m drive.log -o dead-reckoning.csv
)";
inline const char* const PRUNE_EXAMPLES = R"(  nfw-log prune --keep-total 2G --keep-age 30d --dry-run /data/log
  nfw-log prune --keep-free 500M --prefix drive /data/log
  Each prefix in a directory is a recording with limits of its own. The oldest by name go first; the newest stays, and
  so do files that somebody writes to, those of other names, and those in directories below.
)";
inline const char* const PLOT_EXAMPLES = R"(  nfw-log plot drive.log -o drive.svg
  nfw-log plot --html --colour fix /data/log -o drive.html
)";

}  // namespace logtool
