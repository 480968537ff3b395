#pragma once

#include <optional>
#include <vector>

#include "ExpectedStream.h"
#include "ReckonedSets.h"
#include "RecordStream.h"
#include "SensorSentences.h"

namespace drive {

/// What a recording holds: what its replay has to give to the listeners, when each sentence is due, and, when the file
/// is one whole run of this tool, what listeners received in that run.
class RecordingContents : private tool::RecordDamageListener {
 public:
  bool readLog(const std::string& nPath, std::string* npReason);
  bool readSensorLog(const std::string& nPath, std::string* npReason);

  bool isDamaged() const { return !mDamage.empty(); }
  const StreamTally& get() const { return mStream.get(); }
  uint32_t getFirstTick() const { return mFirstTick; }
  std::vector<uint32_t> takeTicks() { return std::move(mTicks); }  ///< of the receiver's sentences

  /// Nothing that a replay gives to listeners, for instance records of other ids only.
  bool isEmpty() const { return get().mSentences.mCount == 0 && get().mDeadReckoning.mCount == 0; }
  /// How what a replay gave compares, for people.
  std::string compare(const StreamTally& nPlayed, bool* npIsSame) const;

 private:
  bool read(const std::string& nPath, tool::RecordKind nKind, std::string* npReason);
  void onDamage(const tool::RecordDamage& nDamage) override;
  void take(const tool::Record& nRecord);
  void takeSensor(const tool::Record& nRecord);
  void takeReckoned(std::string_view nSentence);
  void takeNote(std::string_view nNote);
  void takeSentence(std::string_view nSentence, uint32_t nTick);

  tool::SensorSentences mSentences;
  ReckonedSets mReckoned;
  ExpectedStream mStream;
  bool mHasBegin = false;
  std::optional<StreamTally> mLive;
  std::vector<uint32_t> mTicks;
  uint32_t mFirstTick = 0;
  uint64_t mRecords = 0;
  std::string mDamage;  // the first one
};

}  // namespace drive
