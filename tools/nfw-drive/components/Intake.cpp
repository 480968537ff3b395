#include "Intake.h"

#include "DriveLog.h"
#include "LogKinds.h"
#include "ModeField.h"
#include "ZTSDeadReckoningHost.h"

namespace drive {

bool Intake::take(std::string_view nSentence, size_t nSource) {
  if (mpWindows != nullptr && !mpWindows->admit()) return false;
  if (mpWindows != nullptr) mpWindows->mOrigins.add(nSource);
  if (!mReceiver.receive(nSentence.data(), static_cast<unsigned int>(nSentence.size()))) return false;
  count(nSentence, mProgress.mSources[nSource]);
  if (nSource > 0) return true;
  // The sentence is taken, whatever becomes of its report.
  feed(mReckoner.onSentence(nSentence));
  feed(mReckoner.takeComplete());
  return true;
}

void Intake::finish() {
  feed(mReckoner.finish());
  mReceiver.drain();
}

void Intake::count(std::string_view nSentence, ReadCounts& nOfSource) {
  const ExpectedStream::Fate lFate = mProgress.mExpected.onSentence(nSentence);
  const bool lIsOdd = lFate.mKind != nfw::NMEA_UNKNOWN && !lFate.mIsParsed;
  for (ReadCounts* const lpCounts : {&nOfSource, static_cast<ReadCounts*>(&mProgress)}) {
    (lIsOdd ? lpCounts->mUnparsable : lpCounts->mAccepted).add(lFate.mKind);
  }
  if (lIsOdd && tool::lacksMode(nSentence)) noteLackOfMode(nOfSource);
  if (mCountsStored) countStored(nSentence);
}

void Intake::noteLackOfMode(ReadCounts& nOfSource) {
  nOfSource.mWithoutMode.fetch_add(1, std::memory_order_relaxed);
  if (mProgress.mWithoutMode.fetch_add(1, std::memory_order_relaxed) > 0) return;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING,
         "RMC, GLL or VTG without a mode field (NMEA before 2.3) cannot be used: they give no fix");
}

// What a replay of the sensor log will give: the sentence as it comes out of its record.
void Intake::countStored(std::string_view nSentence) {
  const LogMute lMute;
  unsigned char lRecord[nfw::NmeaBinaryLogData::MIN_RECORD_BUFFER] = {};
  const int lSize =
      mConverter.convertFromNmeaSentence(reinterpret_cast<const unsigned char*>(nSentence.data()),
                                         static_cast<unsigned int>(nSentence.size()), lRecord, sizeof(lRecord));
  unsigned char lText[256];
  const int lLength =
      lSize <= 0 ? lSize
                 : mConverter.convertToNmeaSentence(lRecord, static_cast<unsigned int>(lSize), lText, sizeof(lText));
  if (lLength > 0) {
    mProgress.mStored.onSentence({reinterpret_cast<const char*>(lText), static_cast<size_t>(lLength)});
  }
}

// A run that is being stopped takes no more.
void Intake::feed(const ZTSDeadReckoningDef::DRG_LOCATION_INFO* npReport) {
  if (npReport == nullptr) return;
  if (mpWindows != nullptr && !mpWindows->mReports.acquire(1)) return;
  mProgress.mReports.fetch_add(1, std::memory_order_relaxed);
  deadreckoninghost::feed(*npReport);
}

}  // namespace drive
