#include "FileOrder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

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

class Descriptor {
 public:
  explicit Descriptor(const std::string& nPath) : mFd(::open(nPath.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~Descriptor() {
    if (mFd >= 0) ::close(mFd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return mFd; }

 private:
  const int mFd;
};

// Of the last record, read from as near to the end as will do.
uint32_t lastTickOf(const std::string& nPath, uint32_t nFirst) {
  const Descriptor lFile(nPath);
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

bool areInOrder(const std::vector<FirstRecord>& nFirsts) {
  Timeline lTimeline;
  return std::all_of(nFirsts.begin(), nFirsts.end(), [&](const FirstRecord& nFirst) {
    if (nFirst.mKind != tool::UNKNOWN_RECORD) lTimeline.step(nFirst.mTick);
    return !lTimeline.isBackward();
  });
}

// A file without a record stays behind its neighbour.
std::vector<Stretch> stretchesOf(const std::vector<std::string>& nPaths, const std::vector<FirstRecord>& nFirsts) {
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

// The one stretch that goes on where this one ends; NONE when several may.
size_t followerOf(const std::vector<Stretch>& nStretches, size_t nIndex) {
  size_t lFound = NONE;
  for (size_t i = 0; i < nStretches.size(); ++i) {
    if (i == nIndex || !goesOn(nStretches[nIndex].mLast, nStretches[i].mFirst)) continue;
    if (lFound != NONE) return NONE;
    lFound = i;
  }
  return lFound;
}

std::string nameOf(const std::string& nPath) { return std::filesystem::path(nPath).filename().string(); }

std::string link(std::vector<Stretch>* npStretches) {
  std::string lNote;
  std::vector<size_t> lFollowers;
  for (size_t i = 0; i < npStretches->size(); ++i) lFollowers.push_back(followerOf(*npStretches, i));
  for (size_t i = 0; i < lFollowers.size(); ++i) {
    if (lFollowers[i] == NONE || std::count(lFollowers.begin(), lFollowers.end(), lFollowers[i]) > 1) continue;
    Stretch& lNext = (*npStretches)[lFollowers[i]];
    (*npStretches)[i].mNext = lFollowers[i];
    lNext.mHasBefore = true;
    lNote += (lNote.empty() ? "" : ", ") + nameOf(lNext.mPaths.front()) + " behind " +
             nameOf((*npStretches)[i].mPaths.back());
  }
  return lNote;
}

}  // namespace

FirstRecord firstRecordOf(const std::string& nPath) {
  const Descriptor lFile(nPath);
  if (lFile.get() < 0) return {};
  tool::RecordStream lStream(lFile.get());
  tool::Record lRecord;
  return lStream.next(&lRecord) ? FirstRecord{lRecord.mKind, lRecord.mTick} : FirstRecord{};
}

std::string orderByTicks(std::vector<std::string>* npPaths) {
  std::vector<FirstRecord> lFirsts;
  if (npPaths->size() > 1) std::transform(npPaths->begin(), npPaths->end(), std::back_inserter(lFirsts), firstRecordOf);
  if (areInOrder(lFirsts)) return {};
  std::vector<Stretch> lStretches = stretchesOf(*npPaths, lFirsts);
  const std::string lNote = link(&lStretches);
  std::vector<std::string> lOrdered;
  for (const Stretch& lHead : lStretches) {
    if (lHead.mHasBefore) continue;
    for (const Stretch* lpStretch = &lHead; lpStretch != nullptr;
         lpStretch = lpStretch->mNext == NONE ? nullptr : &lStretches[lpStretch->mNext]) {
      lOrdered.insert(lOrdered.end(), lpStretch->mPaths.begin(), lpStretch->mPaths.end());
    }
  }
  if (lOrdered.size() != npPaths->size()) return {};  // in a ring, which tells nothing
  npPaths->swap(lOrdered);
  return lNote;
}

}  // namespace logtool
