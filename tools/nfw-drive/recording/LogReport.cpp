#include "LogReport.h"

#include <cstring>
#include <ctime>

#include "Format.h"

namespace drive {

namespace {

std::string timeOfDay() {
  const std::time_t lNow = std::time(nullptr);
  std::tm lTime = {};
  ::localtime_r(&lNow, &lTime);
  return fmt::format("{:02}:{:02}:{:02}", lTime.tm_hour, lTime.tm_min, lTime.tm_sec);
}

std::string reason(const nfw::LogRecordCounts& nCounts) {
  static const char* const TEXTS[] = {"",
                                      "they cannot be recorded",
                                      "a backup was being made",
                                      "no file can be made",
                                      "the buffer has no room",
                                      "there is no time",
                                      "the file cannot be written",
                                      "the file was removed"};
  const std::string lText = TEXTS[nCounts.mReason];
  return nCounts.mError == 0 ? lText : lText + ": " + std::strerror(nCounts.mError);
}

}  // namespace

void LogReport::want(const std::string& nPlace) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsWanted = true;
  mPlace = nPlace;
}

bool LogReport::isWanted() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mIsWanted;
}

std::string LogReport::look(const nfw::LogRecordCounts& nCounts, Spell::Clock::time_point nNow) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  const bool lIsLosing = nCounts.missing() > mCounts.missing();
  mCounts = nCounts;
  if (lIsLosing && mSince.empty()) mSince = timeOfDay();
  const Spell::Word lWord = mSpell.look(lIsLosing || nCounts.mIsFailing, nNow);
  if (lWord == Spell::SILENT) return {};
  const std::string lMissing = nCounts.missing() > 0 ? missing() : "no record is missing yet";
  return label() + (lWord == Spell::IS_OVER ? " is written again; " : " is not written; ") + lMissing;
}

void LogReport::noteFault(const std::string& nFault) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (mFault.empty()) mFault = nFault;
}

void LogReport::noteDeleted(const nfw::LogRetentionCounts& nCounts) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mDeleted = nCounts;
}

nfw::LogRetentionCounts LogReport::getDeleted() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mDeleted;
}

void LogReport::noteKept(const KeptCounts& nCounts) {
  if (!nCounts.mFault.empty()) noteFault("not all files that were asked for are kept: " + nCounts.mFault);
  const std::lock_guard<std::mutex> lLock(mMutex);
  mKeptNum += nCounts.mNum;
}

unsigned int LogReport::getKeptNum() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mKeptNum;
}

nfw::LogRecordCounts LogReport::getCounts() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mCounts;
}

std::string LogReport::getVerdict() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (!mIsWanted || (mCounts.missing() == 0 && mFault.empty())) return {};
  const char* const lpBetween = mCounts.missing() == 0 || mFault.empty() ? "" : "; ";
  return label() + ": " + mFault + lpBetween + (mCounts.missing() == 0 ? "" : missing());
}

// "142 of 800 records are missing (120 refused, 22 failed) since 08:24:11: the file cannot be written: No space ..."
std::string LogReport::missing() const {
  return fmt::format("{} of {} records are missing ({} refused, {} failed) since {}: {}", mCounts.missing(),
                     mCounts.mRecorded + mCounts.missing(), mCounts.mRefused, mCounts.mFailed, mSince, reason(mCounts));
}

}  // namespace drive
