#include "FileOrder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Descriptor.h"
#include "FirstRecord.h"
#include "RecordStream.h"
#include "Timeline.h"

namespace logtool {

namespace {

const uint32_t MOST_BETWEEN_MS = 10000;  // the last record of a file and the first of the next
const off_t FIRST_TAIL = 64 * 1024;
const size_t NONE = SIZE_MAX;

/// Files of which each goes on where the one before it ends.
struct Stretch {
  std::vector<std::string> mPaths;
  uint32_t mFirst, mLast;  // ticks
  size_t mNext = NONE;     // the stretch that goes on where this ends
  bool mHasBefore = false;
};

// Of the last record, read from as near to the end as will do.
uint32_t lastTickOf(const std::string& nPath, uint32_t nFirst) {
  const tool::Descriptor lFile(nPath);
  const off_t lSize = ::lseek(lFile.get(), 0, SEEK_END);
  uint32_t lTick = nFirst;
  bool lIsFound = false;
  for (off_t lTail = FIRST_TAIL; !lIsFound && lSize > 0; lTail *= 8) {
    ::lseek(lFile.get(), std::max<off_t>(lSize - lTail, 0), SEEK_SET);
    tool::RecordStream lStream(lFile.get());
    tool::Record lRecord;
    for (; lStream.next(&lRecord); lIsFound = true) lTick = lRecord.mTick;
    if (lTail >= lSize) break;
  }
  return lTick;
}

bool goesOn(uint32_t nLast, uint32_t nFirst) { return nFirst - nLast <= MOST_BETWEEN_MS; }

bool areInOrder(const std::vector<tool::FirstRecord>& nFirsts) {
  Timeline lTimeline;
  return std::all_of(nFirsts.begin(), nFirsts.end(), [&](const tool::FirstRecord& nFirst) {
    if (nFirst.mKind != tool::UNKNOWN_RECORD) lTimeline.step(nFirst.mTick);
    return !lTimeline.isBackward();
  });
}

// A file without a record stays behind its neighbour.
std::vector<Stretch> stretchesOf(const std::vector<std::string>& nPaths,
                                 const std::vector<tool::FirstRecord>& nFirsts) {
  std::vector<Stretch> lStretches;
  for (size_t i = 0; i < nPaths.size(); ++i) {
    const bool lIsEmpty = nFirsts[i].mKind == tool::UNKNOWN_RECORD;
    const uint32_t lFirst = nFirsts[i].mTick;
    if (lStretches.empty() || !(lIsEmpty || goesOn(lStretches.back().mLast, lFirst))) {
      lStretches.push_back({{}, lFirst, lFirst});
    }
    lStretches.back().mPaths.push_back(nPaths[i]);
    if (!lIsEmpty) lStretches.back().mLast = lastTickOf(nPaths[i], lFirst);
  }
  return lStretches;
}

std::string nameOf(const std::string& nPath) { return std::filesystem::path(nPath).filename().string(); }

struct Joint {
  uint32_t mGap;
  size_t mBefore, mBehind;
};

// Wherever one stretch may go on in another, the nearest first.
std::vector<Joint> jointsOf(const std::vector<Stretch>& nStretches) {
  std::vector<Joint> lJoints;
  for (size_t i = 0; i < nStretches.size(); ++i) {
    for (size_t j = 0; j < nStretches.size(); ++j) {
      const uint32_t lGap = nStretches[j].mFirst - nStretches[i].mLast;
      if (i != j && lGap <= MOST_BETWEEN_MS) lJoints.push_back({lGap, i, j});
    }
  }
  std::stable_sort(lJoints.begin(), lJoints.end(),
                   [](const Joint& nLeft, const Joint& nRight) { return nLeft.mGap < nRight.mGap; });
  return lJoints;
}

bool isRing(const std::vector<Stretch>& nStretches, const Joint& nJoint) {
  size_t lAt = nJoint.mBehind;
  while (lAt != NONE && lAt != nJoint.mBefore) lAt = nStretches[lAt].mNext;
  return lAt != NONE;
}

std::string link(std::vector<Stretch>* npStretches) {
  std::string lNote;
  for (const Joint& lJoint : jointsOf(*npStretches)) {
    Stretch& lBefore = (*npStretches)[lJoint.mBefore];
    Stretch& lBehind = (*npStretches)[lJoint.mBehind];
    if (lBefore.mNext != NONE || lBehind.mHasBefore || isRing(*npStretches, lJoint)) continue;
    lBefore.mNext = lJoint.mBehind;
    lBehind.mHasBefore = true;
    lNote += (lNote.empty() ? "" : ", ") + nameOf(lBehind.mPaths.front()) + " behind " + nameOf(lBefore.mPaths.back());
  }
  return lNote;
}

timespec changeOf(const std::string& nPath) {
  struct stat lStat = {};
  ::stat(nPath.c_str(), &lStat);
  return lStat.st_mtim;
}

bool isOlder(const timespec& nLeft, const timespec& nRight) {
  return nLeft.tv_sec != nRight.tv_sec ? nLeft.tv_sec < nRight.tv_sec : nLeft.tv_nsec < nRight.tv_nsec;
}

// A file that a recorder has just begun has no ticks to go by; it is the one that was changed last.
std::string putBegunLast(std::vector<std::string>* npPaths) {
  const auto lNewest = std::max_element(
      npPaths->begin(), npPaths->end(),
      [](const std::string& nLeft, const std::string& nRight) { return isOlder(changeOf(nLeft), changeOf(nRight)); });
  if (lNewest == npPaths->end() || lNewest + 1 == npPaths->end()) return {};
  if (tool::firstRecordOf(*lNewest).mKind != tool::UNKNOWN_RECORD) return {};
  std::string lNote = nameOf(*lNewest) + ", which is empty, last";
  std::rotate(lNewest, lNewest + 1, npPaths->end());
  return lNote;
}

}  // namespace

std::string orderByTicks(std::vector<std::string>* npPaths) {
  std::vector<tool::FirstRecord> lFirsts;
  if (npPaths->size() > 1)
    std::transform(npPaths->begin(), npPaths->end(), std::back_inserter(lFirsts), tool::firstRecordOf);
  if (areInOrder(lFirsts)) return putBegunLast(npPaths);
  std::vector<Stretch> lStretches = stretchesOf(*npPaths, lFirsts);
  std::string lNote = link(&lStretches);
  std::vector<std::string> lOrdered;
  for (const Stretch& lHead : lStretches) {
    if (lHead.mHasBefore) continue;
    for (const Stretch* lpStretch = &lHead; lpStretch != nullptr;
         lpStretch = lpStretch->mNext == NONE ? nullptr : &lStretches[lpStretch->mNext]) {
      lOrdered.insert(lOrdered.end(), lpStretch->mPaths.begin(), lpStretch->mPaths.end());
    }
  }
  npPaths->swap(lOrdered);
  const std::string lBegun = putBegunLast(npPaths);
  return lNote + (lNote.empty() || lBegun.empty() ? "" : ", ") + lBegun;
}

}  // namespace logtool
