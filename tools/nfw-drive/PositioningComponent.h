#pragma once

#include "EpochCollector.h"
#include "GnssRoad.h"
#include "NfwComponent.h"
#include "Progress.h"
#include "SentenceSink.h"

namespace drive {

/// Parses sentences and hands them to the dispatchers: each as it came, then as a record, and, before the first
/// sentence of a new epoch, the epoch before it as a whole. Sentences come on the source's thread, which waits while
/// too much is under way.
class PositioningComponent : public nfw::Component, public tool::SentenceSink {
 public:
  PositioningComponent(GnssRoad& nRoad, Progress& nProgress)
      : nfw::Component("Positioning"), mRoad(nRoad), mProgress(nProgress) {}

  bool onSentence(std::string_view nSentence) override;
  /// Hands on the last epoch. On the source's thread, behind the last sentence.
  void onSourceEnd();

 private:
  template <class Record>
  using Parse = bool (*)(char const*, unsigned int, Record*);

  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  int finalizeImp() override;

  bool route(int nKind, std::string_view nSentence);
  template <class Record>
  bool routeRecord(int nKind, std::string_view nSentence, Parse<Record> npParse);
  bool enter(std::string_view nSentence, int64_t nTime, unsigned int nMessages);
  void dispatchEpoch();

  GnssRoad& mRoad;
  Progress& mProgress;
  EpochCollector mEpoch;  // on the source's thread
};

}  // namespace drive
