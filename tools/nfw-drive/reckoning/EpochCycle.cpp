#include "EpochCycle.h"

#include <algorithm>

#include "SentenceTime.h"

namespace drive {

namespace {

const size_t ADDRESS_SIZE = 6;

}  // namespace

void EpochCycle::begin() {
  if (mHasBegun) {
    mAgreed = mNewest == mLast ? mAgreed + 1 : 1;
    mLast = mNewest;
  }
  mHasBegun = true;
  mIsComplete = false;
  mSeenNum = 0;
}

bool EpochCycle::onSentence(std::string_view nSentence) {
  mNewest.mName = nameOf(nSentence);
  mNewest.mNumber = count(mNewest.mName);
  if (mIsComplete) {
    mProof = std::min(mProof * 2, MAX_PROOF);
    mAgreed = 0;
    mIsComplete = false;
  }
  mIsComplete = mHasBegun && mAgreed >= mProof && mNewest == mLast;
  return mIsComplete;
}

// A group of GSV has as many messages as there are satellites: only its last one has a name of its own.
EpochCycle::Name EpochCycle::nameOf(std::string_view nSentence) {
  Name lName{};
  const std::string_view lAddress = tool::sentenceField(nSentence, 0);
  lAddress.copy(lName.data(), ADDRESS_SIZE);
  const std::string_view lFirst = tool::sentenceField(nSentence, 1);
  if (lAddress == "$PUBX") lFirst.copy(lName.data() + ADDRESS_SIZE, lName.size() - ADDRESS_SIZE);
  const bool lIsGroup = lAddress.size() == ADDRESS_SIZE && lAddress.substr(3) == "GSV";
  if (lIsGroup && lFirst == tool::sentenceField(nSentence, 2)) lName[ADDRESS_SIZE] = 'L';
  return lName;
}

// More names than there is room for are not told apart by their number.
unsigned int EpochCycle::count(const Name& nName) {
  Mark* const lpEnd = mSeen.data() + mSeenNum;
  Mark* const lpSeen = std::find_if(mSeen.data(), lpEnd, [&](const Mark& n) { return n.mName == nName; });
  if (lpSeen != lpEnd) return ++lpSeen->mNumber;
  if (mSeenNum == MAX_KINDS) return 0;
  mSeen[mSeenNum++] = {nName, 1};
  return 1;
}

}  // namespace drive
