#pragma once

#include <functional>
#include <map>
#include <set>

#include "Coverage.h"
#include "Run.h"

namespace logtool {

enum TrackChoice {
  TRACK_OF_RECEIVER,
  TRACKS_OF_BOTH,           ///< dead reckoning's too
  TRACKS_OF_EACH_RECORDING  ///< as both, each recording for itself, and nothing is said of what is not taken
};

/// Which records a track is made of: the one rule for every format and for the plot.
/// - Of a recording the sentences of the receiver: id 0 of a sensor log, id 20 of a log, as nfw-drive records them.
/// Where
///   it has none of these, those of the id that has the first sentence. Other ids with sentences are named on standard
///   error; with --id each id that is asked for is a track.
/// - Of a log and a sensor log of one directory, which may be two recordings of one drive, the time that the first
/// tells
///   of is left out of the second; how much that is, is said.
class TrackRecords {
 public:
  /// A record of sentences; where the time is not known, or nobody asked for it, it is NO_TIME.
  struct Place {
    uint64_t mElapsedMs;
    int64_t mUtcMs;
  };
  using Use = std::function<bool(const tool::Record&, const Place&)>;  ///< false: no more is wanted

  /// @param nRun not owned, outlives this
  explicit TrackRecords(Run& nRun, TrackChoice nChoice = TRACK_OF_RECEIVER);

  void read(const Recording& nRecording, Problems& nProblems, const Use& nUse);

  /// The steps of read(), for who reads the records: all of a recording in their order. @param nUse outlives them
  void begin(const Recording& nRecording, const Use& nUse);
  bool take(const tool::Record& nRecord, Selector& nSelector, bool nIsSelected);  ///< false: no more is wanted
  void end(const Recording& nRecording);

  /// Instead of begin(), for who reads recordings by turns: the rule for one of them alone, as it would be where they
  /// are read one behind the other. Called for each in their order; reads as much as decides what is taken.
  TrackRecords lookAhead(const Recording& nRecording, const Use& nUse);

 private:
  struct Held {
    std::string mBytes;
    tool::Record mRecord;  // its views are of mBytes
    Place mPlace;
  };
  static constexpr size_t MAX_HELD = 1024 * 1024;  // bytes
  static constexpr uint64_t MAX_HELD_MS = 60000;   // a receiver that has sent nothing for so long is not there
  static constexpr size_t MAX_OTHERS = 64;

  int64_t utcOf(const tool::Record& nRecord, Selector& nSelector);
  void decide(const Recording& nRecording);
  bool offer(const tool::Record& nRecord, const Place& nPlace);
  void hold(const tool::Record& nRecord, const Place& nPlace);
  bool choose(int nId);
  bool use(const tool::Record& nRecord, const Place& nPlace);
  bool isCovered(const tool::Record& nRecord, int64_t nUtcMs);

  Run& mRun;
  const TrackChoice mChoice;
  const bool mIsAsked;  // the command line names ids
  const bool mHasTypes;
  bool mAsksTime = false;
  const Use* mpUse = nullptr;
  int mChosen = -1;
  tool::RecordKind mKind = tool::UNKNOWN_RECORD;
  std::vector<Held> mHeld;
  size_t mHeldBytes = 0;
  std::set<int> mOthers;
  std::map<int, UtcClock> mClocks;      // of a log's ids
  std::map<int, Coverage> mCovered[2];  // of a directory, by role, of each kind
  size_t mDirectory = 0;
  uint64_t mLeftOut = 0;
};

/// "receiver", "dead reckoning", or "id 7".
std::string trackName(tool::RecordKind nKind, int nId);

}  // namespace logtool
