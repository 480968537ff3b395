#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <cmath>

#include "Options.h"

namespace drive {

namespace {

const char* const DESCRIPTION =
    "Takes positioning sentences from a source, parses them, routes them to listeners and shows the fix.\n"
    "An application of components that the component manager drives through all six phases.";

const char* const MANUAL = R"(Sources:
  sim                 a simulated drive, the same for the same --seed (the default)
  FILE                a file of sentences, played at the pace of its own UTC times;
                      a break of more than a minute, or backwards, plays as one second
  -                   standard input, as it comes; by its own times when --speed is given
  /dev/ttyUSB0:4800   a serial line and its baud rate
  tcp://HOST:PORT     a server of sentences: a plain stream, or gpsd
  A serial line that broke and a TCP server are tried again after 1, 2, 4 ... 30 s.

Sentences:
  GGA, GLL, GSA, GSV, RMC, VTG, ZDA and $PUBX,00 are parsed; other kinds are counted.
  What is no sentence is counted and left out: noise, sentences cut in the middle, over
  256 characters, with binary bytes, or with a wrong checksum. A sentence without a
  checksum is accepted as long as the source has not sent one with a right checksum.

Output:
  table   a live view on a terminal, one line an epoch elsewhere; then the summary
  json    one object a line for each parsed sentence; the last is the summary
  none    only the summary
  The log goes to standard error, on a live view under the table.

Exit status:
  0  the source ended, the time was up, or Ctrl-C; 1  something broke on the way;
  2  a wrong command line, or a source that cannot be read. Another Ctrl-C, a second later, ends at once.

Examples:
  nfw-drive                                    watch a simulated drive
  nfw-drive sim --rate 10 --seed 7 --for 60
  nfw-drive drive.nmea --speed 10              a recording, ten times as fast
  nfw-drive drive.nmea --speed max --format json > drive.json
  nfw-drive tcp://127.0.0.1:2947               what gpsd hears
  nfw-drive /dev/ttyACM0 --baud 115200 --log-level 4
)";

/// The texts as they stand on the command line.
struct Arguments {
  std::string mSource = "sim";
  std::string mSpeed;
  std::string mFormat = "table";
  double mForSeconds = 0.0;
  unsigned int mBaud = 9600;
  bool mIgnoresChecksums = false;
  std::vector<std::string> mSystems;
};

const std::map<std::string, Format> FORMATS = {{"table", FORMAT_TABLE}, {"json", FORMAT_JSON}, {"none", FORMAT_NONE}};
const std::map<std::string, SatelliteSystem> SYSTEMS = {
    {"gps", SYSTEM_GPS}, {"glonass", SYSTEM_GLONASS}, {"galileo", SYSTEM_GALILEO}};

void declare(CLI::App& nApp, Arguments& nArguments, Options& nOptions) {
  nApp.set_version_flag("--version", "nfw-drive " NFW_VERSION);
  nApp.footer(MANUAL);
  nApp.failure_message([](const CLI::App*, const CLI::Error& nError) {
    return "nfw-drive: " + std::string(nError.what()) + "\nTry nfw-drive --help.\n";
  });
  nApp.add_option("SOURCE", nArguments.mSource, "sim, FILE, -, /dev/TTY[:BAUD] or tcp://HOST:PORT");
  nApp.add_option("--speed", nArguments.mSpeed, "times real time, or max: as fast as it goes, losing nothing")
      ->type_name("X|max");
  nApp.add_option("--for", nArguments.mForSeconds, "end after so much of the source's time")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 1e9).description(""));
  nApp.add_option("--format", nArguments.mFormat, "table, json or none")
      ->type_name("FORMAT")
      ->check(CLI::IsMember(FORMATS).description(""));
  nApp.add_option("--log-level", nOptions.mLogLevel, "0 nothing, 1 errors, 2 warnings, 3 information (default) ... 5")
      ->type_name("N")
      ->check(CLI::Range(0, 5).description(""));
  nApp.add_flag("--no-checksum", nArguments.mIgnoresChecksums, "accept sentences whatever their checksum says");
  nApp.add_option("--baud", nArguments.mBaud, "of a serial line, 9600 unless given")->type_name("N");
  nApp.add_option("--seed", nOptions.mSimulator.mSeed, "of the simulated drive")->type_name("N");
  nApp.add_option("--rate", nOptions.mSimulator.mRateHz, "of the simulated drive, 1 to 10")
      ->type_name("HZ")
      ->check(CLI::Range(1, 10).description(""));
  nApp.add_option("--systems", nArguments.mSystems, "of the simulated drive: gps,glonass,galileo")
      ->type_name("LIST")
      ->delimiter(',')
      ->expected(1, SYSTEM_NUM)
      ->check(CLI::IsMember(SYSTEMS).description(""));
}

bool isRegularFile(const std::string& nPath) {
  struct stat lStat = {};
  return ::stat(nPath.c_str(), &lStat) == 0 && S_ISREG(lStat.st_mode);
}

bool isPacedByItself(const SourceSpec& nSource) {
  return nSource.mKind == SourceSpec::SIMULATOR || (nSource.mKind == SourceSpec::FILE && isRegularFile(nSource.mPath));
}

void setSpeed(const std::string& nText, Options& nOptions) {
  nOptions.mPlay.mPaced = isPacedByItself(nOptions.mSource) || (!nText.empty() && !nOptions.mSource.isLive());
  if (nText.empty()) return;
  nOptions.mPlay.mSpeed = 0.0;
  if (nText == "max") return;
  if (!CLI::detail::lexical_cast(nText, nOptions.mPlay.mSpeed) || !std::isfinite(nOptions.mPlay.mSpeed) ||
      nOptions.mPlay.mSpeed < 0.001) {
    throw CLI::ValidationError("--speed", "\"" + nText + "\" is neither a number of 0.001 or more nor max");
  }
  if (nOptions.mSource.isLive()) throw CLI::ValidationError("--speed", "a live source comes at its own pace");
}

void setLimit(double nSeconds, Options& nOptions) {
  if (nSeconds == 0.0) return;
  const int64_t lMs = static_cast<int64_t>(std::ceil(nSeconds * 1000.0));
  (nOptions.mPlay.mPaced ? nOptions.mPlay.mLimitMs : nOptions.mWallLimitMs) = lMs;
}

void complete(const Arguments& nArguments, Options& nOptions) {
  std::string lReason;
  if (!parseSourceSpec(nArguments.mSource, nArguments.mBaud, &nOptions.mSource, &lReason)) {
    throw CLI::ValidationError(nArguments.mSource, lReason);
  }
  setSpeed(nArguments.mSpeed, nOptions);
  setLimit(nArguments.mForSeconds, nOptions);
  nOptions.mFormat = FORMATS.at(nArguments.mFormat);
  nOptions.mJudgesChecksums = !nArguments.mIgnoresChecksums;
  if (!nArguments.mSystems.empty()) nOptions.mSimulator.mSystems = 0;
  for (const std::string& lName : nArguments.mSystems) nOptions.mSimulator.mSystems |= 1u << SYSTEMS.at(lName);
}

}  // namespace

std::optional<Options> parseCommandLine(int nArgc, const char* const* npArgv, int* npExit) {
  CLI::App lApp(DESCRIPTION, "nfw-drive");
  Arguments lArguments;
  Options lOptions;
  declare(lApp, lArguments, lOptions);
  try {
    lApp.parse(nArgc, npArgv);
    complete(lArguments, lOptions);
    return lOptions;
  } catch (const CLI::ParseError& lError) {
    *npExit = lApp.exit(lError) == 0 ? EXIT_DONE : EXIT_USAGE;
    return std::nullopt;
  }
}

}  // namespace drive
