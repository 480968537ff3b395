#include "NfwDeadReckoningNmeaSentence.h"

#include <cstring>
#include <initializer_list>

namespace nfw {
namespace {

void clearSlot(NmeaSentenceData& nSlot) {
  memset(nSlot.mText, 0, sizeof(nSlot.mText));
  nSlot.mLength = 0;
}

}  // namespace

void DeadReckoningNmeaSentence::clear() {
  for (NmeaSentenceData* lpSlot : {&mRmc, &mVtg, &mGga, &mPubx}) clearSlot(*lpSlot);
  for (NmeaSentenceData& lSlot : mGsa) clearSlot(lSlot);
  for (NmeaSentenceData& lSlot : mGsv) clearSlot(lSlot);
  mGsaCount = 0;
  mGsvCount = 0;
}

}  // namespace nfw
