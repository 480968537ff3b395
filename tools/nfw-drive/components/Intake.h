#pragma once

#include "DeadReckoner.h"
#include "GpsHost.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "Options.h"
#include "Origins.h"
#include "OutputQueue.h"
#include "Progress.h"
#include "SentenceSink.h"
#include "Window.h"

namespace drive {

/// How much may be under way between the source and the listeners, so that no queue of the services overflows: each
/// sentence becomes up to three messages, each report of dead reckoning two, and a queue holds 256.
struct Windows {
  tool::Window mSentences{Origins::PLACES};
  tool::Window mReports{64};
  Origins mOrigins;                 // of the sentences
  OutputQueue* mpOutput = nullptr;  // the source waits for its reader, too; null: it must not

  /// Waits until another sentence may come. False once it is closed.
  bool admit() {
    if (mpOutput != nullptr) mpOutput->awaitRoom();
    return mSentences.acquire(1);
  }
  void close() {
    if (mpOutput != nullptr) mpOutput->letGo();
    mSentences.close();
    mReports.close();
  }
};

/// Hands the sentences of the sources to the receiver, and what is reckoned from those of the first to dead reckoning.
/// One thread at a time, which waits while too much is under way - unless listeners follow a replay, and live data only
/// goes into the recordings.
class Intake {
 public:
  /// @param npMotion null when the first source does not know how the vehicle moves without a fix
  Intake(gpshost::Receiver& nReceiver, const MotionSensor* npMotion, Windows* npWindows, const RecordOptions& nRecord,
         Progress& nProgress)
      : mReceiver(nReceiver),
        mReckoner(npMotion),
        mpWindows(npWindows),
        mCountsStored(!nRecord.mSensorFile.empty()),
        mProgress(nProgress) {}

  bool take(std::string_view nSentence, size_t nSource);
  /// Hands on what is left. Behind the last sentence of all.
  void finish();

 private:
  void count(std::string_view nSentence, ReadCounts& nOfSource);
  void noteLackOfMode(ReadCounts& nOfSource);
  void countStored(std::string_view nSentence);
  void feed(const ZTSDeadReckoningDef::DRG_LOCATION_INFO* npReport);

  gpshost::Receiver& mReceiver;
  DeadReckoner mReckoner;
  Windows* const mpWindows;  // null: nobody gives places back
  const bool mCountsStored;
  nfw::NmeaBinaryLogDataVersion1 mConverter;
  Progress& mProgress;
};

}  // namespace drive
