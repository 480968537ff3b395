#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>

#include "Duration.h"
#include "NfwVersion.h"
#include "Options.h"
#include "PlayTimeText.h"
#include "RecordingFiles.h"
#include "Settings.h"

namespace drive {

namespace {

const char* const DESCRIPTION =
    "Takes positioning sentences from a source, hands them to listeners through the positioning and dead-reckoning\n"
    "services, shows the fix, records both logs and plays them back.\n"
    "An application of components that the component manager drives through all six phases.";

const size_t MAX_SOURCES = 16;

const char* const MANUAL = R"(Sources:
  sim                 a simulated drive, the same for the same --seed (the default)
  FILE                a file of sentences, played at the pace of its own UTC times;
                      a break of more than a minute, or backwards, plays as one second
  -                   standard input, as it comes; by its own times when --speed is given
  /dev/ttyUSB0:4800   a serial line and its baud rate
  tcp://HOST:PORT     a server of sentences: a plain stream, or gpsd
  gpsd://HOST[:PORT]  a gpsd, which is asked for its sentences; 2947 unless a port is given
  udp://[ADDR]:PORT   datagrams that come to the port, or to a multicast group; without ADDR from
                      this machine only, 0.0.0.0 from every network
  A serial line that broke and a TCP server are tried again after 1, 2, 4 ... 30 s; a server
  that sends nothing for 20 s (--silence) counts as broken. With --wait a source that is not
  there yet, as a device before it is plugged in, is looked for every second.
  Several at once, each NAME=SOURCE or by its own text, are read beside one another: one that ends
  or fails leaves the others alone, and the run ends with the last. The sentences of an epoch are
  handed on together, then those of another source. Objects of JSON have the name as "source", lines
  begin with it, and the live view has a row for each; dead reckoning, and the position above, are
  the first's. What is recorded, served or printed as nmea is all of them, without names.

Sentences:
  GGA, GLL, GSA, GSV, RMC, VTG, ZDA and $PUBX,00 are parsed; other kinds are counted.
  What is no sentence is counted and left out: noise, sentences cut in the middle, over
  130 characters, with binary bytes, or with a wrong checksum. A sentence without a
  checksum is accepted as long as the source has not sent one with a right checksum.
  Dead reckoning is derived from the source: without a fix it goes on by the simulated
  wheels, or by the last speed and course.

Recordings:
  --record makes DIR/PREFIX_YYYYMMDD-hhmmss_NN.log with the sentences (id 20), those of dead
  reckoning (21) and the log's lines (255); --sys-record makes the compact sensor log: a new
  FILE, or files DIR/PREFIX_sensor_YYYYMMDD-hhmmss_NN.log of a directory. While recording,
  --speed max is a sentence a millisecond, which a replay can follow.
  --replay and --sys-replay play a recording at the pace it was made, to the same listeners;
  of two at once the first is heard first, then the other. Without a SOURCE, which stands before
  them, the run ends with the replay. The summary compares what listeners received with the
  recording, and with the run that made it. Several files play as one, in their order, with the
  gaps between them; a directory gives the files of the recording in it, by their names.
  --rate plays faster or slower, --from and --to a part, told in seconds or [h:]mm:ss from the
  first record, --loop the same again and again; each round is compared.
  --record-on records onto a stick or card while it is mounted: DRIVE is the kernel's name of
  the device (sda1), or the last name of the mount point of one without a device.
  --max-file-time ends files by time as well as by size. Both logs go to the medium every
  second (--sync-interval), so that a power cut costs no more; what it leaves of a record is cut
  off when the next recording with this prefix begins. --keep-total, --keep-files, --keep-age
  and --keep-free delete the oldest files of the recording's prefix in its directory, never the
  one that is written; the summary tells how many. SIGUSR1, or the key k in the live view, keeps
  the files of both logs that were written to in the last five minutes (--keep-before): they get
  a second name in DIR/kept, or move there where the medium has no second names, and no limit
  deletes or counts them. Recording goes on, in the last of them, too.
  The summary tells of each log how many records were recorded, refused and lost, and its bytes.
  While records are lost the log says so at once, every ten seconds, and when it is over; in the
  end a line on standard error says which log, how many, since when and why, and the exit status
  is 1. So it is for a backup that failed, for a stick that never came, and for a medium that
  does not answer, which is left behind after a while.

Settings:
  --settings FILE keeps SOURCE, --speed, --record, --prefix, --backup and --log-level as lines
  KEY=VALUE of Source, Speed, RecordDirectory, RecordPrefix, BackupDirectory and LogLevel: what
  the command line does not give is taken from the file, and what it does give is put there.
  Comments (#), other keys and the order stay. A line that is none of these ends the program and
  leaves the file alone. A kept speed does not count for a live source or a replay.

Other programs:
  --serve hands the sentences, as --format nmea would print them, to any number of other programs:
  tcp://[ADDR]:PORT   a server; without ADDR on this machine only, 0.0.0.0 for every network; with
                      the port 0 on a free one, which the log tells
  udp://[ADDR]:PORT   a datagram a sentence, to a host, a multicast group or a broadcast address
  pty:PATH            a serial line under that name
  Who connects gets the sentences from then on. Nothing waits: a client that is 4 MiB behind, or
  takes nothing for 10 s, is dropped, and what the reader of a line does not take is left out. The
  log tells it at once, the summary how often, and the exit status is 1.

Output:
  live    the whole of a terminal: fix, reckoned position, satellites, what is recorded and lost; then the summary.
          Where the output is no terminal, or one that cannot place its cursor (TERM=dumb), the same as lines
          its keys: q ends; s shows all satellites, l the log; k keeps the last files; in a replay the space bar
          pauses and goes on, left and right jump by 10 s, down and up change the rate (0.1 0.2 0.5 1 2 5 ... 100),
          . is one step. NO_COLOR in the environment leaves the colours out
  lines   one line an epoch; then the summary
  json    one object a line for each epoch: time, fix, position in degrees, speed in m/s, accuracy,
          satellites (docs/formats/epoch.md); the last is the summary
  jsonl-raw   the same for each parsed sentence, with its fields
  nmea    the sentences as they are delivered; with --dr those of dead reckoning in their place
  none    only the summary
  Who reads too slowly holds up a file, standard input or the simulator when nothing is recorded.
  Otherwise nothing waits: 4 MiB are kept, further lines are left out, counted and told.
  The log goes to standard error; in the live view it is counted, and the key l shows it. With nmea the summary does, too.
  Without --log-level, errors and warnings of the library are shown once of a kind, and counted.

Exit status:
  0  the source or the replay ended, the time was up, or Ctrl-C; 1  something broke on the way, a recording is not
  whole, listeners did not receive what they should, the reader of the output or a client did not, or nothing came
  that is a sentence; 2  a wrong command line, or what it names cannot be read or written.
  Another Ctrl-C, a second later, ends at once.

Examples:
  nfw-drive                                    watch a simulated drive
  nfw-drive sim --tunnel 20-35 --dr --for 60   dead reckoning through a tunnel
  nfw-drive drive.nmea --speed 10              a recording of sentences, ten times as fast
  nfw-drive drive.nmea --speed max --format json > drive.json
  nfw-drive tcp://127.0.0.1:2947               what gpsd hears
  nfw-drive roof=/dev/ttyUSB0 dash=/dev/ttyUSB1:4800 --format json > both.json
  nfw-drive /dev/ttyACM0 --baud 115200 --record /data/log --sys-record /data/sensor.bin
  nfw-drive --replay /data/log/drive_20260131-080000_00.log --format nmea > drive.nmea
  nfw-drive /dev/ttyACM0 --serve tcp://0.0.0.0:10110 --serve pty:/tmp/gps
  nfw-drive /dev/ttyACM0 --record /data/log --max-file-time 10m --keep-total 2G
  nfw-drive --replay /data/log --rate 10 --from 1:30 --to 2:00:00
)";

/// The texts as they stand on the command line.
struct Arguments {
  std::vector<std::string> mSources;
  std::string mSpeed;
  std::string mRate;
  std::vector<std::string> mReplay, mSensorReplay;
  std::vector<std::string> mServe;
  std::string mMaxFileTime, mSyncInterval, mKeepAge, mKeepBefore;
  std::string mFrom, mTo;
  std::string mFormat = "live";
  double mForSeconds = 0.0;
  unsigned int mBaud = 9600;
  double mSilence = 20.0;  // seconds
  bool mIgnoresChecksums = false;
  bool mWaits = false;
  std::vector<std::string> mSystems;
  std::vector<std::string> mTunnels;
  std::string mSettings;
  std::map<std::string, std::string> mPlaces;  // of what a file of settings gave, by option

  /// What a message about an option names: the option, or the line of the file.
  std::string place(const std::string& nOption) const {
    const auto lFound = mPlaces.find(nOption);
    return lFound == mPlaces.end() ? nOption : lFound->second;
  }
};

const std::map<std::string, Format> FORMATS = {
    {"live", FORMAT_LIVE}, {"lines", FORMAT_LINES},         {"table", FORMAT_LIVE},  // as it was called before
    {"json", FORMAT_JSON}, {"jsonl-raw", FORMAT_JSONL_RAW}, {"nmea", FORMAT_NMEA},  {"none", FORMAT_NONE}};
const std::map<std::string, SatelliteSystem> SYSTEMS = {
    {"gps", SYSTEM_GPS}, {"glonass", SYSTEM_GLONASS}, {"galileo", SYSTEM_GALILEO}};

CLI::Validator sizeCheck(const char* npRange, unsigned int nMin, unsigned int nMax) {
  return CLI::AsSizeValue(false).description("") & CLI::Range(nMin, nMax).description(npRange);
}

CLI::Validator largeSizeCheck() {
  return CLI::AsSizeValue(false).description("") & CLI::Range(1ULL, 1ULL << 62).description("");
}

void declareKeeping(CLI::App& nApp, Arguments& nArguments, RecordOptions& nRecord) {
  nApp.add_option("--max-file-time", nArguments.mMaxFileTime,
                  "of a file of the recording, as 10m; no limit unless given")
      ->type_name("TIME");
  nApp.add_flag("--max-file-time-aligned", nRecord.mIsAligned, "files end on the hour, at ten past ...: by the clock");
  nApp.add_option("--sync-interval", nArguments.mSyncInterval,
                  "what a power cut costs at most, 1s unless given; 0: never")
      ->type_name("TIME");
  nApp.add_option("--keep-total", nRecord.mKeep.mMaxTotalSize, "delete the oldest files of this prefix beyond that")
      ->type_name("SIZE")
      ->transform(largeSizeCheck());
  nApp.add_option("--keep-files", nRecord.mKeep.mMaxFileNum, "the same, by their number")
      ->type_name("N")
      ->check(CLI::Range(1u, 1000000u).description(""));
  nApp.add_option("--keep-age", nArguments.mKeepAge, "the same, by their age, as 30d")->type_name("TIME");
  nApp.add_option("--keep-before", nArguments.mKeepBefore, "of what SIGUSR1 or the key k keeps, 5m unless given")
      ->type_name("TIME");
  nApp.add_option("--keep-free", nRecord.mKeep.mMinFreeSize, "the same, while less than that is free on the medium")
      ->type_name("SIZE")
      ->transform(largeSizeCheck());
}

void declareRecording(CLI::App& nApp, Options& nOptions) {
  RecordOptions& lRecord = nOptions.mRecord;
  auto* const lpRecord = nApp.add_option("--record", lRecord.mDirectory, "record into a directory")->type_name("DIR");
  nApp.add_option("--record-on", lRecord.mDrive, "record onto a device while it is mounted")
      ->type_name("DRIVE")
      ->excludes(lpRecord);
  nApp.add_option("--prefix", lRecord.mPrefix, "of the names of the recording's files, drive unless given")
      ->type_name("P");
  nApp.add_option("--backup", lRecord.mBackup, "copy this directory beside the recording first")->type_name("DIR");
  nApp.add_option("--sys-record", lRecord.mSensorFile, "record the sensor log into a new file, or a directory")
      ->type_name("FILE|DIR");
  nApp.add_option("--max-file-size", lRecord.mMaxFileSize, "of a file of the recording, 16M unless given")
      ->type_name("SIZE")
      ->transform(sizeCheck("", 4096, 0xFFFFFFFF));
  nApp.add_option("--buffer-size", lRecord.mBufferSize, "between the callers and the disk, 256K unless given")
      ->type_name("SIZE")
      ->transform(sizeCheck("", 16 * 1024, 64 * 1024 * 1024));
}

void declareReplay(CLI::App& nApp, Arguments& nArguments, Options& nOptions) {
  ReplayOptions& lReplay = nOptions.mReplay;
  nApp.add_option("--replay", nArguments.mReplay, "play a recording: its files, or its directory")
      ->type_name("PATH...");
  nApp.add_option("--sys-replay", nArguments.mSensorReplay, "play a sensor log")->type_name("PATH...");
  nApp.add_option("--from", nArguments.mFrom, "play from there on")->type_name("TIME");
  nApp.add_option("--to", nArguments.mTo, "and up to there, not including it")->type_name("TIME");
  nApp.add_flag("--paused", lReplay.mIsPaused, "wait for a key before the first record; with a table on a terminal");
  nApp.add_flag("--loop", lReplay.mIsLooped, "play again and again, until a signal or --for");
}

void declare(CLI::App& nApp, Arguments& nArguments, Options& nOptions) {
  nApp.set_version_flag("--version", std::string("nfw-drive ") + nfw::version());
  nApp.footer(MANUAL);
  nApp.failure_message([](const CLI::App*, const CLI::Error& nError) {
    return "nfw-drive: " + std::string(nError.what()) + "\nTry nfw-drive --help.\n";
  });
  nApp.add_option("SOURCE", nArguments.mSources,
                  "sim, FILE, -, /dev/TTY[:BAUD], tcp://, gpsd:// or udp://; NAME=SOURCE")
      ->type_name("TEXT");
  nApp.add_option("--speed", nArguments.mSpeed,
                  "times real time, or max: as fast as it goes, losing nothing; of a replay as --rate")
      ->type_name("X|max");
  nApp.add_option("--for", nArguments.mForSeconds, "end after so much of the source's time, or of the replay's")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 1e9).description(""));
  nApp.add_option("--format", nArguments.mFormat, "live, lines, json, jsonl-raw, nmea or none")
      ->type_name("FORMAT")
      ->check(CLI::IsMember(FORMATS).description(""));
  nApp.add_option("--serve", nArguments.mServe, "hand the sentences to other programs; may be given again")
      ->type_name("ADDRESS")
      ->allow_extra_args(false);
  nApp.add_option("--log-level", nOptions.mLogLevel, "0 nothing, 1 errors, 2 warnings, 3 information (default) ... 5")
      ->type_name("N")
      ->check(CLI::Range(0, 5).description(""));
  nApp.add_flag("--no-checksum", nArguments.mIgnoresChecksums, "accept sentences whatever their checksum says");
  nApp.add_option("--baud", nArguments.mBaud, "of a serial line, 9600 unless given")->type_name("N");
  nApp.add_option("--silence", nArguments.mSilence,
                  "of a TCP server until it is tried again, 20 unless given; 0: never")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.0, 86400.0).description(""));
  nApp.add_flag("--wait", nArguments.mWaits, "for a source that is not there yet");
  nApp.add_option("--seed", nOptions.mSimulator.mSeed, "of the simulated drive")->type_name("N");
  nApp.add_option("--rate", nArguments.mRate,
                  "with a replay: times the recorded pace, 0.01 to 100; else of the simulated drive, 1 to 10 Hz")
      ->type_name("X");
  nApp.add_option("--systems", nArguments.mSystems, "of the simulated drive: gps,glonass,galileo")
      ->type_name("LIST")
      ->delimiter(',')
      ->expected(1, SYSTEM_NUM)
      ->check(CLI::IsMember(SYSTEMS).description(""));
  nApp.add_option("--tunnel", nArguments.mTunnels,
                  "without satellites from the one second of the simulated drive to the other")
      ->type_name("FROM-UNTIL")
      ->delimiter(',');
  nApp.add_flag("--dr", nOptions.mShowsDeadReckoning,
                "show the sentences of dead reckoning; the live view tells what is reckoned anyway");
  declareRecording(nApp, nOptions);
  declareKeeping(nApp, nArguments, nOptions.mRecord);
  declareReplay(nApp, nArguments, nOptions);
  nApp.add_option("--settings", nArguments.mSettings, "a file of settings; the command line goes before it")
      ->type_name("FILE");
}

bool isRegularFile(const std::string& nPath) {
  struct stat lStat = {};
  return ::stat(nPath.c_str(), &lStat) == 0 && S_ISREG(lStat.st_mode);
}

bool isPacedByItself(const SourceAddress& nSource) {
  return nSource.mKind == SourceAddress::SIMULATOR ||
         (nSource.mKind == SourceAddress::FILE && isRegularFile(nSource.mPath));
}

double parseSpeed(const std::string& nText, const std::string& nPlace) {
  double lSpeed = 0.0;
  if (nText == "max") return lSpeed;
  if (!CLI::detail::lexical_cast(nText, lSpeed) || !std::isfinite(lSpeed) || lSpeed < 0.001) {
    throw CLI::ValidationError(nPlace, "\"" + nText + "\" is neither a number of 0.001 or more nor max");
  }
  return lSpeed;
}

// Live sources come at their own pace. There and with a replay a kept speed waits for another run.
void setSpeed(const Arguments& nArguments, SourceAddress& nSource) {
  nSource.mPlay.mPaced = isPacedByItself(nSource) || (!nArguments.mSpeed.empty() && !nSource.isLive());
  if (nArguments.mSpeed.empty()) return;
  const double lSpeed = parseSpeed(nArguments.mSpeed, nArguments.place("--speed"));
  if (!nSource.isLive()) {
    nSource.mPlay.mSpeed = lSpeed;
  } else if (nArguments.mPlaces.count("--speed") == 0) {
    throw CLI::ValidationError("--speed", "a live source comes at its own pace");
  }
}

double parseRate(const char* npOption, const std::string& nText, double nMin, double nMax, const char* npWhat) {
  double lRate = 0.0;
  if (CLI::detail::lexical_cast(nText, lRate) && lRate >= nMin && lRate <= nMax) return lRate;
  throw CLI::ValidationError(npOption, "\"" + nText + "\" is " + npWhat);
}

void setReplayRate(const char* npOption, const std::string& nText, ReplayOptions& nReplay) {
  const double lRate =
      parseRate(npOption, nText, 0.01, 100.0, "no number of 0.01 to 100, times the pace of the recording");
  nReplay.mRate = static_cast<unsigned int>(std::lround(lRate * ReplayOptions::NORMAL_RATE));
}

// Of a replay alone the speed is the rate.
void setRate(const Arguments& nArguments, Options& nOptions) {
  const bool lIsSpeedOfReplay =
      nOptions.mSources.empty() && !nArguments.mSpeed.empty() && nArguments.mPlaces.count("--speed") == 0;
  if (lIsSpeedOfReplay && !nArguments.mRate.empty()) {
    throw CLI::ValidationError("--speed", "is the same as --rate with a replay: give one of them");
  }
  if (lIsSpeedOfReplay) return setReplayRate("--speed", nArguments.mSpeed, nOptions.mReplay);
  if (nArguments.mRate.empty()) return;
  if (nOptions.mReplay.isWanted()) return setReplayRate("--rate", nArguments.mRate, nOptions.mReplay);
  const char* const lpWhat = "no whole number of 1 to 10, the epochs a second of the simulated drive";
  nOptions.mSimulator.mRateHz = static_cast<unsigned int>(parseRate("--rate", nArguments.mRate, 1, 10, lpWhat));
  if (std::to_string(nOptions.mSimulator.mRateHz) != nArguments.mRate)
    parseRate("--rate", nArguments.mRate, 11, 10, lpWhat);
}

std::string nameOf(const std::vector<std::string>& nWords) {
  return nWords.size() == 1 ? nWords.front() : nWords.front() + " and " + std::to_string(nWords.size() - 1) + " more";
}

void findFiles(const char* npOption, const std::vector<std::string>& nWords, tool::RecordKind nKind,
               const std::string& nPrefix, std::vector<std::string>* npFiles) {
  std::string lReason;
  if (findRecordingFiles(nWords, nKind, nPrefix, npFiles, &lReason)) return;
  throw CLI::ValidationError(npOption, lReason);
}

uint32_t playTime(const char* npOption, const std::string& nText) {
  const std::optional<uint32_t> lMs = tool::parsePlayTime(nText);
  if (lMs) return *lMs;
  throw CLI::ValidationError(npOption, "\"" + nText + "\" is no time: expected 90, 1.5, 1:30 or 1:02:03");
}

// What belongs to one replay that is all there is to hear.
void checkReplay(const Arguments& nArguments, const Options& nOptions) {
  const ReplayOptions& lReplay = nOptions.mReplay;
  const struct {
    const char* mpOption;
    bool mIsGiven;
  } CASES[] = {{"--from", !nArguments.mFrom.empty()},
               {"--to", !nArguments.mTo.empty()},
               {"--loop", lReplay.mIsLooped},
               {"--paused", lReplay.mIsPaused}};
  for (const auto& lCase : CASES) {
    if (!lCase.mIsGiven) continue;
    if (!lReplay.isWanted()) throw CLI::ValidationError(lCase.mpOption, "goes with --replay or --sys-replay");
    if (lReplay.isOfBoth() || !nOptions.mSources.empty()) {
      throw CLI::ValidationError(lCase.mpOption, "goes with one replay alone, without a SOURCE");
    }
  }
  const bool lHasKeys =
      FORMATS.at(nArguments.mFormat) == FORMAT_LIVE && ::isatty(STDIN_FILENO) == 1 && ::isatty(STDOUT_FILENO) == 1;
  if (lReplay.mIsPaused && (!lHasKeys || nArguments.mForSeconds > 0.0)) {
    throw CLI::ValidationError("--paused",
                               "needs a key to go on: it goes with the live view on a terminal, without --for");
  }
  if (lReplay.mToMs && *lReplay.mToMs <= lReplay.mFromMs) {
    throw CLI::ValidationError("--to", "\"" + nArguments.mTo + "\" is not behind the beginning of what is played");
  }
}

void setReplay(const Arguments& nArguments, const std::string& nPrefix, Options& nOptions) {
  ReplayOptions& lReplay = nOptions.mReplay;
  findFiles("--replay", nArguments.mReplay, tool::LOG_RECORD, nPrefix, &lReplay.mFiles);
  findFiles("--sys-replay", nArguments.mSensorReplay, tool::SENSOR_RECORD, nPrefix, &lReplay.mSensorFiles);
  if (lReplay.isWanted())
    lReplay.mName = nameOf(lReplay.mFiles.empty() ? nArguments.mSensorReplay : nArguments.mReplay);
  if (!nArguments.mFrom.empty()) lReplay.mFromMs = playTime("--from", nArguments.mFrom);
  if (!nArguments.mTo.empty()) lReplay.mToMs = playTime("--to", nArguments.mTo);
}

void setLimit(double nSeconds, Options& nOptions) {
  if (nSeconds == 0.0) return;
  const int64_t lLeadMs = nOptions.mSources.empty() ? ReplayOptions::LEAD_MS : 0;
  const double lRate = lLeadMs == 0 ? 1.0 : nOptions.mReplay.mRate / 1000.0;
  const int64_t lMs = static_cast<int64_t>(std::ceil(nSeconds * 1000.0 / lRate)) + lLeadMs;
  const auto lIsPaced = [](const SourceAddress& nSource) { return nSource.mPlay.mPaced; };
  if (nOptions.mSources.empty() || !std::all_of(nOptions.mSources.begin(), nOptions.mSources.end(), lIsPaced)) {
    nOptions.mWallLimitMs = lMs;
    return;
  }
  for (SourceAddress& lSource : nOptions.mSources) lSource.mPlay.mLimitMs = lMs;
}

// "20-35": seconds from the start of the drive.
SimulatorOptions::Tunnel parseTunnel(const std::string& nText) {
  double lFrom = 0.0;
  double lUntil = 0.0;
  const size_t lDash = nText.find('-');
  if (lDash == std::string::npos || !CLI::detail::lexical_cast(nText.substr(0, lDash), lFrom) ||
      !CLI::detail::lexical_cast(nText.substr(lDash + 1), lUntil) || !(lFrom >= 0.0 && lUntil > lFrom) ||
      lUntil > 1e9) {
    throw CLI::ValidationError("--tunnel", "\"" + nText + "\" is no FROM-UNTIL in seconds, as 20-35");
  }
  return {std::llround(lFrom * 1000.0), std::llround(lUntil * 1000.0)};
}

// A sensor log tells nothing of its beginning: another run at its end could not be told from this one.
void checkSensorFile(RecordOptions& nRecord) {
  struct stat lStat = {};
  if (nRecord.mSensorFile.empty() || ::stat(nRecord.mSensorFile.c_str(), &lStat) != 0) return;
  nRecord.mIsSensorSeries = S_ISDIR(lStat.st_mode);
  if (!nRecord.mIsSensorSeries) throw CLI::ValidationError("--sys-record", nRecord.mSensorFile + ": exists already");
}

unsigned int duration(const char* npOption, const std::string& nText, unsigned int nUnitMs) {
  const std::optional<uint64_t> lMs = tool::parseDuration(nText);
  if (lMs && *lMs / nUnitMs <= UINT32_MAX && *lMs % nUnitMs == 0) return static_cast<unsigned int>(*lMs / nUnitMs);
  throw CLI::ValidationError(npOption, "\"" + nText + "\" is no time: expected a number and s, m, h or d, as 10m");
}

void setKeeping(const Arguments& nArguments, RecordOptions& nRecord) {
  if (!nArguments.mMaxFileTime.empty()) {
    nRecord.mMaxFileTimeMs = duration("--max-file-time", nArguments.mMaxFileTime, 1);
  }
  if (!nArguments.mSyncInterval.empty()) nRecord.mSyncMs = duration("--sync-interval", nArguments.mSyncInterval, 1);
  if (!nArguments.mKeepAge.empty()) nRecord.mKeep.mMaxAgeSec = duration("--keep-age", nArguments.mKeepAge, 1000);
  if (!nArguments.mKeepBefore.empty()) {
    nRecord.mKeepBeforeSec = duration("--keep-before", nArguments.mKeepBefore, 1000);
    if (nRecord.mKeepBeforeSec == 0) throw CLI::ValidationError("--keep-before", "\"0\" would keep nothing");
  }
  if (nRecord.mIsAligned && nRecord.mMaxFileTimeMs == 0) {
    throw CLI::ValidationError("--max-file-time-aligned", "goes with --max-file-time");
  }
  if (!nArguments.mKeepBefore.empty() && !nRecord.isWanted()) {
    throw CLI::ValidationError("--keep-before", "goes with --record, --record-on or --sys-record");
  }
  if (!nRecord.mDirectory.empty() || !nRecord.mDrive.empty() || nRecord.mIsSensorSeries) return;
  const std::string lWith = "--record, --record-on or a directory of --sys-record";
  if (nRecord.mMaxFileTimeMs > 0) throw CLI::ValidationError("--max-file-time", "goes with " + lWith);
  if (nRecord.isLimited()) {
    throw CLI::ValidationError("--keep-total, --keep-files, --keep-age, --keep-free", "go with " + lWith);
  }
}

void setServe(const Arguments& nArguments, Options& nOptions) {
  for (const std::string& lText : nArguments.mServe) {
    std::string lReason;
    nOptions.mServe.emplace_back();
    if (nOptions.mServe.back().parse(lText, &lReason)) continue;
    lReason.insert(0, lText + ": ");
    throw CLI::ValidationError("--serve", lReason);
  }
}

SourceAddress sourceOf(const std::string& nText, const Arguments& nArguments) {
  SourceAddress lSource;
  std::string lReason;
  if (!parseSourceAddress(nText, nArguments.mBaud, &lSource, &lReason)) {
    throw CLI::ValidationError(nArguments.place("SOURCE"), nText + ": " + lReason);
  }
  lSource.mSilence = std::chrono::milliseconds(std::llround(nArguments.mSilence * 1000.0));
  lSource.mIsAwaited = nArguments.mWaits;
  return lSource;
}

// A kept source is judged, too, when a replay alone is wanted.
void setSources(const Arguments& nArguments, bool nHasSource, Options& nOptions) {
  std::string lReason;
  for (const std::string& lText : nArguments.mSources) nOptions.mSources.push_back(sourceOf(lText, nArguments));
  if (nOptions.mReplay.isWanted() && !nHasSource) return nOptions.mSources.clear();
  if (nOptions.mSources.empty()) nOptions.mSources.push_back(sourceOf("sim", nArguments));
  if (!canBeTogether(nOptions.mSources, &lReason)) throw CLI::ValidationError("SOURCE", lReason);
  if (nOptions.mSources.size() > MAX_SOURCES) {
    throw CLI::ValidationError("SOURCE", "at most " + std::to_string(MAX_SOURCES) + " are read at once");
  }
  for (SourceAddress& lSource : nOptions.mSources) setSpeed(nArguments, lSource);
}

void complete(const Arguments& nArguments, bool nHasSource, Options& nOptions) {
  setSources(nArguments, nHasSource, nOptions);
  setRate(nArguments, nOptions);
  checkReplay(nArguments, nOptions);
  setLimit(nArguments.mForSeconds, nOptions);
  nOptions.mFormat = FORMATS.at(nArguments.mFormat);
  nOptions.mJudgesChecksums = !nArguments.mIgnoresChecksums;
  if (!nArguments.mSystems.empty()) nOptions.mSimulator.mSystems = 0;
  for (const std::string& lName : nArguments.mSystems) nOptions.mSimulator.mSystems |= 1u << SYSTEMS.at(lName);
  for (const std::string& lText : nArguments.mTunnels) nOptions.mSimulator.mTunnels.push_back(parseTunnel(lText));
  checkSensorFile(nOptions.mRecord);
  setKeeping(nArguments, nOptions.mRecord);
  setServe(nArguments, nOptions);
}

void takeKept(CLI::Option& nOption, const std::string& nValue, const std::string& nPlace) {
  nOption.add_result(nValue);
  try {
    nOption.run_callback();
  } catch (const CLI::ParseError& lError) {
    throw CLI::ValidationError(nPlace, lError.what());
  }
}

bool isSourceWord(const std::string& nNamed) {
  const std::string lWord = nNamed.substr(nNamed.find('=') + 1);  // npos + 1 is 0
  return lWord == "-" || lWord.rfind("/dev/", 0) == 0 || lWord.find("://") != std::string::npos ||
         (lWord == "sim" && ::access(lWord.c_str(), F_OK) != 0);
}

// Behind the files of a replay, where it would be taken for one of them.
void takeSourceBehind(std::vector<std::string>& nWords, CLI::Option& nSource) {
  if (nSource.count() > 0) return;
  size_t lFirst = nWords.size();
  while (lFirst > 1 && isSourceWord(nWords[lFirst - 1])) --lFirst;
  for (size_t i = lFirst; i < nWords.size(); ++i) nSource.add_result(nWords[i]);
  if (lFirst < nWords.size()) nSource.run_callback();
  nWords.resize(std::min(lFirst, nWords.size()));
}

bool isExcluded(const CLI::Option& nOption) {
  const auto& lOthers = nOption.get_excludes();
  return std::any_of(lOthers.begin(), lOthers.end(), [](const CLI::Option* np) { return np->count() > 0; });
}

// What the command line does not give is taken from the file, and what it gives is to be kept there.
void applySettings(CLI::App& nApp, Settings& nSettings, Arguments& nArguments) {
  std::string lReason;
  if (!nSettings.read(&lReason)) throw CLI::ValidationError("--settings", lReason);
  for (const Settings::Entry& lEntry : Settings::ENTRIES) {
    CLI::Option* const lpOption = nApp.get_option(lEntry.mpOption);
    const std::string lKept = nSettings.get(lEntry.mpKey);
    if (lpOption->count() > 1) throw CLI::ValidationError("--settings", "keeps one " + std::string(lEntry.mpOption));
    if (lpOption->count() > 0) {
      if (nSettings.set(lEntry.mpKey, lpOption->as<std::string>(), &lReason)) continue;
      throw CLI::ValidationError(lEntry.mpOption, lReason + ", which a file of settings cannot hold");
    }
    if (lKept.empty() || isExcluded(*lpOption)) continue;
    const std::string lPlace = nSettings.place(lEntry.mpKey);
    takeKept(*lpOption, lKept, lPlace);
    nArguments.mPlaces[lEntry.mpOption] = lPlace;
  }
}

}  // namespace

std::optional<Options> parseCommandLine(int nArgc, const char* const* npArgv, int* npExit) {
  CLI::App lApp(DESCRIPTION, "nfw-drive");
  Arguments lArguments;
  Options lOptions;
  declare(lApp, lArguments, lOptions);
  try {
    lApp.parse(nArgc, npArgv);
    takeSourceBehind(lArguments.mReplay, *lApp.get_option("SOURCE"));
    takeSourceBehind(lArguments.mSensorReplay, *lApp.get_option("SOURCE"));
    const bool lHasSource = lApp.get_option("SOURCE")->count() > 0;
    Settings lSettings(lArguments.mSettings);
    if (!lArguments.mSettings.empty()) applySettings(lApp, lSettings, lArguments);
    lOptions.mFoldsLog = lApp.get_option("--log-level")->count() == 0;
    const bool lHasPrefix = lApp.get_option("--prefix")->count() > 0;
    setReplay(lArguments, lHasPrefix ? lOptions.mRecord.mPrefix : std::string(), lOptions);
    complete(lArguments, lHasSource, lOptions);
    if (!lSettings.write()) {
      throw CLI::ValidationError(lArguments.mSettings, "cannot be written");
    }
    return lOptions;
  } catch (const CLI::ParseError& lError) {
    *npExit = lApp.exit(lError) == 0 ? EXIT_DONE : EXIT_USAGE;
    return std::nullopt;
  }
}

}  // namespace drive
