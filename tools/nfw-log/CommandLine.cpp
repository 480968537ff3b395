#include "CommandLine.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <sstream>

#include "Commands.h"
#include "Duration.h"
#include "Manual.h"
#include "Messages.h"
#include "NfwVersion.h"
#include "Output.h"

namespace logtool {

namespace {

/// The texts as they stand on the command line.
struct Arguments {
  std::vector<std::string> mIds;
  std::vector<std::string> mTypes;
  std::vector<std::string> mExcluded;
  std::string mFrom, mTo, mLast;
  std::string mKeepAge;
  double mGapSeconds = 5.0;
};

struct Command {
  const char* mpName;
  const char* mpDescription;
  const char* mpExamples;
  const char* mpOptions;  // a letter for each group: s selection, l its last, o output, O output that must be named,
                          // others below
  int (*mpRun)(Run&);
};

const Command COMMANDS[] = {
    {"info", "What a recording holds: records, ids, times, gaps, damage, and its tracks in numbers", INFO_EXAMPLES,
     "jg", runInfo},
    {"cat", "Shows records as lines: time, id, data", CAT_EXAMPLES, "slojxft", runCat},
    {"check", "Finds everything that is wrong with a recording; exit status 1 when anything is", CHECK_EXAMPLES, "j",
     runCheck},
    {"recover", "Writes all whole records of a damaged recording to a new file", RECOVER_EXAMPLES, "O", runRecover},
    {"cut", "Writes the records of a time to a new file", CUT_EXAMPLES, "slO", runCut},
    {"filter", "Writes the records of some ids or types to a new file", FILTER_EXAMPLES, "slOt", runCut},
    {"merge", "Joins recordings into one, in the order of their times", MERGE_EXAMPLES, "sOm", runMerge},
    {"convert", "Writes the sentences, or the track, in another format", CONVERT_EXAMPLES, "slotc", runConvert},
    {"plot", "Draws the tracks, and speed, altitude, satellites and HDOP over time; the sky, too, as a page",
     PLOT_EXAMPLES, "slop", runPlot},
    {"prune", "Deletes the oldest files of recordings in directories until they are within limits", PRUNE_EXAMPLES, "k",
     runPrune},
};

void declareSelection(CLI::App& nApp, bool nHasFormat, Arguments& nArguments, Options& nOptions) {
  nApp.add_option("--id", nArguments.mIds, "only these log type ids, as 20,255 or 0x14")
      ->type_name("LIST")
      ->delimiter(',')
      ->allow_extra_args(false);
  nApp.add_option("--type", nArguments.mTypes, "only these types, as GGA,RMC; also DR, LOG, DATA")
      ->type_name("LIST")
      ->delimiter(',')
      ->allow_extra_args(false);
  nApp.add_option("--exclude", nArguments.mExcluded, "none of these ids or types, as 255,GSV,LOG")
      ->type_name("LIST")
      ->delimiter(',')
      ->allow_extra_args(false);
  nApp.add_option("--match", nOptions.mSelection.mTexts, "only records with this text; given again: with one of them")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  nApp.add_option("--from", nArguments.mFrom, "from this moment on")->type_name("MOMENT");
  nApp.add_option(nHasFormat ? "--until" : "--to,--until", nArguments.mTo, "up to this moment, not including it")
      ->type_name("MOMENT");
}

void declareLast(CLI::App& nApp, Arguments& nArguments) {
  nApp.add_option("--last", nArguments.mLast, "from so long before the end on, as 90, 90s, 1.5m, 2h")
      ->type_name("TIME")
      ->excludes("--from")
      ->excludes("--until");
}

void declareOutput(CLI::App& nApp, bool nIsRequired, Options& nOptions) {
  CLI::Option* const lpOutput =
      nApp.add_option("-o,--output", nOptions.mOutput, "the file to write; - is standard output");
  lpOutput->type_name("FILE")->required(nIsRequired);
  nApp.add_flag("--force", nOptions.mForce, "replace the file if it exists");
}

CLI::Validator sizeCheck() {
  return CLI::AsSizeValue(false).description("") & CLI::Range(1ULL, 1ULL << 62).description("");
}

void declareKeeping(CLI::App& nApp, Arguments& nArguments, Options& nOptions) {
  nApp.add_option("--keep-total", nOptions.mKeep.mMaxTotalSize, "while the files of a recording have more, as 2G")
      ->type_name("SIZE")
      ->transform(sizeCheck());
  nApp.add_option("--keep-files", nOptions.mKeep.mMaxFileNum, "while there are more")
      ->type_name("N")
      ->check(CLI::Range(1u, 1000000u).description(""));
  nApp.add_option("--keep-age", nArguments.mKeepAge, "while the oldest was last written to before that, as 30d")
      ->type_name("TIME");
  nApp.add_option("--keep-free", nOptions.mKeep.mMinFreeSize, "while less is free on the medium")
      ->type_name("SIZE")
      ->transform(sizeCheck());
  nApp.add_option("--prefix", nOptions.mPrefix, "only the recording whose files have this prefix")->type_name("P");
  nApp.add_flag("--dry-run", nOptions.mIsDryRun, "only tell what would be deleted");
}

void declareFormat(CLI::App& nApp, Options& nOptions) {
  nApp.add_option("--to", nOptions.mFormat, "nmea, gpx, kml, geojson, csv, gpkg or mcap")
      ->type_name("FORMAT")
      ->required()
      ->check(CLI::IsMember({"nmea", "gpx", "kml", "geojson", "csv", "gpkg", "mcap"}).description(""));
  nApp.add_option("--name", nOptions.mName, "the name in a GPX or KML file, that of the recording unless given")
      ->type_name("TEXT");
  nApp.add_flag("--lines", nOptions.mLines, "GeoJSON: a line for each stretch instead of a point for each position");
  nApp.add_flag("--append", nOptions.mAppend, "GeoPackage: add to the file if it exists")->excludes("--force");
}

void declare(const Command& nCommand, CLI::App& nApp, Arguments& nArguments, Options& nOptions) {
  const std::string lGroups = nCommand.mpOptions;
  const auto lHas = [&](char nGroup) { return lGroups.find(nGroup) != std::string::npos; };
  nApp.footer(std::string("Examples:\n") + nCommand.mpExamples);
  nApp.add_option("INPUT", nOptions.mInputs, "recordings: files, directories, - for standard input")
      ->type_name("FILE|DIR")
      ->required();
  if (lHas('s')) declareSelection(nApp, lHas('c'), nArguments, nOptions);
  if (lHas('l')) declareLast(nApp, nArguments);
  if (lHas('o') || lHas('O')) declareOutput(nApp, lHas('O'), nOptions);
  if (lHas('j')) nApp.add_flag("--json", nOptions.mJson, "JSON instead of text");
  if (lHas('x')) nApp.add_flag("--hex", nOptions.mHex, "data in hexadecimal");
  if (lHas('f')) nApp.add_flag("--follow", nOptions.mFollow, "wait for more at the end of a recording under way");
  if (lHas('t')) {
    auto* const lpSort =
        nApp.add_flag("--sort", nOptions.mSort, "records of all recordings in the order of their times");
    lpSort->excludes("--last");
    if (lHas('f')) lpSort->excludes("--follow");
  }
  if (lHas('g')) {
    nApp.add_option("--gap", nArguments.mGapSeconds, "tell of pauses of so many seconds or more, 5 unless given")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 1e6).description(""));
  }
  if (lHas('m')) nApp.add_flag("--by-time", nOptions.mByTime, "order by the clock even if the ticks agree");
  if (lHas('c')) declareFormat(nApp, nOptions);
  if (lHas('k')) declareKeeping(nApp, nArguments, nOptions);
  if (lHas('p')) {
    nApp.add_flag("--html", nOptions.mHtml,
                  "a page to look at with the pointer, with sky, signals and numbers, instead of an SVG picture");
    nApp.add_option("--colour", nOptions.mColour, "of the track by speed (default) or by fix")
        ->type_name("speed|fix")
        ->check(CLI::IsMember({"speed", "fix"}).description(""));
  }
}

std::string lowered(std::string nText, int (*npCase)(int) = tolower) {
  std::transform(nText.begin(), nText.end(), nText.begin(),
                 [npCase](unsigned char nByte) { return static_cast<char>(npCase(nByte)); });
  return nText;
}

/// Any kind of sentence may be one: a receiver has its own. What no address can be is refused here, what no record has
/// when they are read.
std::string typeOf(const char* npOption, const std::string& nText) {
  const bool lMayBe = nText.size() >= 2 && nText.size() <= 8 &&
                      std::all_of(nText.begin(), nText.end(), [](unsigned char nByte) { return isalnum(nByte) != 0; });
  if (lMayBe) return lowered(nText, toupper);
  throw CLI::ValidationError(npOption, "\"" + nText + "\" is no type: expected GGA, RMC ... PUBX, DR, LOG or DATA");
}

int idOf(const char* npOption, const std::string& nText) {
  size_t lEnd = 0;
  unsigned long lId = 0;
  try {
    lId = std::stoul(nText, &lEnd, 0);
  } catch (const std::exception&) {
    lEnd = 0;
  }
  if (lEnd == 0 || lEnd != nText.size() || lId > 0x7FFFFFFF)
    throw CLI::ValidationError(npOption, "\"" + nText + "\" is no log type id");
  return static_cast<int>(lId);
}

Moment momentOf(const char* npOption, const std::string& nText) {
  Moment lMoment;
  if (nText.empty() || parseMoment(nText, &lMoment)) return lMoment;
  throw CLI::ValidationError(
      npOption, "\"" + nText + "\" is no moment: expected 90, 90s, 1.5m, 2h, 08:15:30 or \"2026-01-31 08:15:30\"");
}

void completeRecords(const Arguments& nArguments, Selection& nSelection) {
  for (const std::string& lId : nArguments.mIds) nSelection.mIds.push_back(idOf("--id", lId));
  for (const std::string& lType : nArguments.mTypes) nSelection.mTypes.push_back(typeOf("--type", lType));
  for (const std::string& lWord : nArguments.mExcluded) {
    if (!lWord.empty() && isdigit(static_cast<unsigned char>(lWord[0])) != 0)
      nSelection.mExcludedIds.push_back(idOf("--exclude", lWord));
    else
      nSelection.mExcludedTypes.push_back(typeOf("--exclude", lWord));
  }
  for (const std::string& lText : nSelection.mTexts) {
    if (lText.empty()) throw CLI::ValidationError("--match", "takes a text that is not empty");
  }
}

int64_t lastOf(const std::string& nText) {
  Moment lMoment;
  if (parseMoment(nText, &lMoment) && lMoment.mKind == Moment::OFFSET && lMoment.mMs > 0) return lMoment.mMs;
  throw CLI::ValidationError("--last", "\"" + nText + "\" is no length of time: expected 90, 90s, 250ms, 1.5m or 2h");
}

void complete(const Arguments& nArguments, Options& nOptions) {
  completeRecords(nArguments, nOptions.mSelection);
  if (!nArguments.mLast.empty()) nOptions.mSelection.mLastMs = lastOf(nArguments.mLast);
  nOptions.mSelection.mFrom = momentOf("--from", nArguments.mFrom);
  nOptions.mSelection.mTo = momentOf("--to", nArguments.mTo);
  const Moment lFrom = nOptions.mSelection.mFrom, lTo = nOptions.mSelection.mTo;
  const bool lAreComparable =
      lFrom.mKind == lTo.mKind && lFrom.mKind != Moment::NONE && lFrom.mKind != Moment::TIME_OF_DAY;
  if (lAreComparable && lTo.mMs <= lFrom.mMs) {
    throw CLI::ValidationError("--from",
                               "\"" + nArguments.mFrom + "\" is not before the end, \"" + nArguments.mTo + "\"");
  }
  nOptions.mGapMs = static_cast<uint64_t>(std::llround(nArguments.mGapSeconds * 1000.0));
  if (nOptions.mFollow && (nOptions.mInputs.size() != 1 || nOptions.mInputs.front() == "-")) {
    throw CLI::ValidationError("--follow", "takes one file or directory");
  }
}

void completeConvert(const Options& nOptions) {
  const std::string& lFormat = nOptions.mFormat;
  const auto lRequire = [&](bool nIsRight, const char* npOption, const char* npText) {
    if (!nIsRight) throw CLI::ValidationError(npOption, npText);
  };
  lRequire(!nOptions.mLines || lFormat == "geojson", "--lines", "is for --to geojson");
  lRequire(!nOptions.mAppend || lFormat == "gpkg", "--append", "is for --to gpkg");
  lRequire(nOptions.mName.empty() || lFormat == "gpx" || lFormat == "kml", "--name", "is for --to gpx and --to kml");
  lRequire(nOptions.mOutput != "-" || lFormat != "gpkg", "--output",
           "a GeoPackage is written to a file: name it, as drive.gpkg");
}

/// What a name promises is what stands in the file.
void completePlot(Options& nOptions) {
  const std::string lExtension = lowered(std::filesystem::path(nOptions.mOutput).extension().string());
  const bool lIsHtml = lExtension == ".html" || lExtension == ".htm";
  if (lIsHtml) nOptions.mHtml = true;
  if (lExtension.empty() || lIsHtml || (lExtension == ".svg" && !nOptions.mHtml)) return;
  throw CLI::ValidationError("--output", "\"" + nOptions.mOutput + "\": plot writes an SVG picture (.svg), or " +
                                             "an HTML page (.html) with --html");
}

void completePrune(const Arguments& nArguments, Options& nOptions) {
  nfw::LogRetentionLimits& lKeep = nOptions.mKeep;
  const std::optional<uint64_t> lAgeMs = tool::parseDuration(nArguments.mKeepAge);
  if (!nArguments.mKeepAge.empty()) {
    if (!lAgeMs || *lAgeMs < 1000 || *lAgeMs / 1000 > UINT32_MAX) {
      throw CLI::ValidationError(
          "--keep-age", "\"" + nArguments.mKeepAge + "\" is no age: expected a number and s, m, h or d, as 30d");
    }
    lKeep.mMaxAgeSec = static_cast<unsigned int>(*lAgeMs / 1000);
  }
  if (lKeep.mMaxTotalSize > 0 || lKeep.mMaxFileNum > 0 || lKeep.mMaxAgeSec > 0 || lKeep.mMinFreeSize > 0) return;
  throw CLI::ValidationError("prune", "expected --keep-total, --keep-files, --keep-age or --keep-free");
}

int run(const Command& nCommand, const Options& nOptions) {
  std::vector<Recording> lRecordings;
  std::string lReason;
  if (!findRecordings(nOptions.mInputs, &lRecordings, &lReason)) {
    say(lReason);
    return EXIT_TROUBLE;
  }
  for (const Recording& lRecording : lRecordings) {
    if (!lRecording.mNote.empty()) tell("{}: {}", lRecording.mName, lRecording.mNote);
  }
  Run lRun(nOptions, lRecordings);
  if (!lRun.isReadable()) return EXIT_TROUBLE;
  return nCommand.mpRun(lRun);
}

/// Gives the help or the version that was asked for, or says what is wrong with the command line.
int answer(const CLI::App& nApp, const CLI::ParseError& nError) {
  if (nError.get_exit_code() != 0) {
    say(nError.what());
    writeToErrors("Try nfw-log --help.\n");
    return EXIT_TROUBLE;
  }
  std::ostringstream lText;
  nApp.exit(nError, lText, lText);
  tool::Output lOutput(STDOUT_FILENO);
  lOutput.write(lText.str());
  lOutput.flush();
  return lOutput.getState() == tool::Output::FAILED ? EXIT_FOUND : EXIT_DONE;
}

}  // namespace

int runProgram(int nArgc, const char* const* npArgv) {
  ::signal(SIGPIPE, SIG_IGN);  // a reader that goes is an error of a write, also of a message
  CLI::App lApp("Looks into recordings of both kinds, log and sensor log, mends them and takes them elsewhere.",
                "nfw-log");
  lApp.set_version_flag("--version", std::string("nfw-log ") + nfw::version());
  lApp.require_subcommand(1);
  lApp.footer(MANUAL);
  Arguments lArguments;
  Options lOptions;
  for (const Command& lCommand : COMMANDS) {
    declare(lCommand, *lApp.add_subcommand(lCommand.mpName, lCommand.mpDescription), lArguments, lOptions);
  }
  try {
    lApp.parse(nArgc, npArgv);
    complete(lArguments, lOptions);
    if (lApp.got_subcommand("plot")) completePlot(lOptions);
    if (lApp.got_subcommand("prune")) completePrune(lArguments, lOptions);
    if (lApp.got_subcommand("convert")) completeConvert(lOptions);
  } catch (const CLI::ParseError& lError) {
    return answer(lApp, lError);
  }
  for (const Command& lCommand : COMMANDS) {
    if (lApp.got_subcommand(lCommand.mpName)) return run(lCommand, lOptions);
  }
  return EXIT_TROUBLE;
}

}  // namespace logtool
