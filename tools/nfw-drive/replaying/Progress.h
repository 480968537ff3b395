#pragma once

#include <deque>

#include "ExpectedStream.h"
#include "SourceProgress.h"

namespace drive {

/// What a run has counted so far, of all its sources together. Each count has one writer; any thread may look at the
/// atomic ones, at the others only when their thread has ended.
struct Progress : ReadCounts {
  std::deque<SourceProgress> mSources;  ///< as the options have them, from the beginning on
  ExpectedStream mExpected;             ///< on the reading thread; of a replay, by its recording
  ExpectedStream mStored;               ///< on the reading thread: the sentences as the sensor log gives them back
  tool::KindCounts mDelivered;          ///< records that reached their listener; "other": combined ones
  TextTally mDeliveredSentences;        ///< on the thread of the positioning service
  TextTally mDeliveredDeadReckoning;    ///< on the thread of dead reckoning
  std::atomic<uint64_t> mSentences{0};  ///< delivered so far
  std::atomic<uint64_t> mReckonedSentences{0};  ///< likewise, of dead reckoning
  std::atomic<uint64_t> mReports{0};            ///< of dead reckoning, handed over
  std::atomic<uint64_t> mDeliveredReports{0};   ///< and those that reached their listener

  void addSource(const SourceAddress& nAddress) { mSources.emplace_back(nAddress, mLines); }
  /// In the round of a replay that is under way, and in all rounds: only the counts tell then.
  StreamTally delivered() const;
  StreamTally deliveredInAll() const;
  /// What is to be delivered. What comes of a report of dead reckoning is the service's affair: only their number
  /// counts.
  StreamTally expected() const;
  bool areReportsDelivered() const { return mReports == mDeliveredReports; }
  /// From here on nothing is heard before the first text of a round; null: everything is. What is on its way from the
  /// round before goes by.
  void awaitRound(const StreamTally* npRound);
  /// A replay begins anew. While nothing is delivered.
  void beginRound();
  /// A round has no more than that: what comes behind it is not heard. Null: everything is. Any thread.
  void limit(const StreamTally* npLimit) { mpLimit = npLimit; }
  bool takesSentence(std::string_view nSentence);
  bool takesRecord(int nKind) const;
  bool takesCombined() const;
  bool takesReckoned(std::string_view nSentence);
  /// Whether listeners have received as much as that in this round. Any thread may ask.
  bool hasReceived(const StreamTally& nExpected) const;

 private:
  class Beginning {
   public:
    void await(const TextTally& nRound) { mAwaited = nRound.mCount > 0 ? nRound.mFirst : NOTHING; }
    void open() { mAwaited = NOTHING; }
    bool isPassed() const { return mAwaited == NOTHING; }
    bool isPassed(std::string_view nText);

   private:
    static constexpr uint64_t NOTHING = 0;
    std::atomic<uint64_t> mAwaited{NOTHING};  // the sum of a text
  };

  StreamTally mBefore;  // the counts of rounds that are over
  Beginning mSentenceBeginning, mReckonedBeginning;
  std::atomic<const StreamTally*> mpLimit{nullptr};
};

}  // namespace drive
