#pragma once

#include <optional>
#include <vector>

#include "ExpectedStream.h"
#include "Options.h"
#include "PlayedTime.h"
#include "ReckonedSets.h"
#include "RecordStream.h"
#include "SensorSentences.h"

namespace drive {

/// What a recording holds: what the replay of it, or of the part that is asked for, has to give to the listeners, when
/// each sentence is due, and, when it is one whole run of this tool, what listeners received in that run.
class RecordingContents : private tool::RecordDamageListener {
 public:
  /// Reads the data logger's files, else those of the sensor log.
  bool read(const ReplayOptions& nReplay, std::string* npReason);

  bool isDamaged() const { return !mDamage.empty(); }
  const StreamTally& get() const { return mStream.get(); }
  uint32_t getLength() const { return mTime.length(); }  ///< milliseconds from the first record to the last
  /// Of the receiver's sentences: milliseconds of the recording behind the beginning of what is played.
  std::vector<uint32_t> takeDues() { return std::move(mDues); }

  /// Nothing that a replay gives to listeners, for instance records of other ids only.
  bool isEmpty() const { return get().mSentences.mCount == 0 && get().mDeadReckoning.mCount == 0; }
  /// How what a replay gave compares, for people.
  std::string compare(const StreamTally& nPlayed, bool* npIsSame) const;

 private:
  bool readFile(const std::string& nPath, tool::RecordKind nKind, std::string* npReason);
  void takeRecord(const tool::Record& nRecord);
  bool isOver() const;
  bool isOneFile() const { return mReplay.mFiles.size() + mReplay.mSensorFiles.size() == 1; }
  void onDamage(const tool::RecordDamage& nDamage) override;
  void take(const tool::Record& nRecord);
  void takeSensor(const tool::Record& nRecord);
  void takeReckoned(std::string_view nSentence);
  void takeNote(std::string_view nNote);
  void takeSentence(std::string_view nSentence);

  tool::SensorSentences mSentences;
  ReckonedSets mReckoned;
  ExpectedStream mStream;
  ReplayOptions mReplay;
  unsigned int mBegins = 0;  // of runs
  std::optional<StreamTally> mLive;
  PlayedTime mTime;
  int64_t mOffset = 0;  // of the record under way
  std::vector<uint32_t> mDues;
  std::string mFile;    // that is read
  std::string mDamage;  // the first one
};

}  // namespace drive
