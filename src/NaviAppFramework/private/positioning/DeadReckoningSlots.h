// The sentences of a dead-reckoning set, in the order in which they are handed on, recorded and carried.
#pragma once

#include "NfwDeadReckoningNmeaSentence.h"

namespace nfw {

/// Calls `nVisit(slot)` for RMC, VTG, GGA, the GSA and GSV slots in use, and PUBX.
template <class Visit>
void eachSlot(const DeadReckoningNmeaSentence& nSet, Visit nVisit) {
  nVisit(nSet.mRmc);
  nVisit(nSet.mVtg);
  nVisit(nSet.mGga);
  for (unsigned int i = 0; i < nSet.mGsaCount && i < DeadReckoningNmeaSentence::MAX_GSA; ++i) nVisit(nSet.mGsa[i]);
  for (unsigned int i = 0; i < nSet.mGsvCount && i < DeadReckoningNmeaSentence::MAX_GSV; ++i) nVisit(nSet.mGsv[i]);
  nVisit(nSet.mPubx);
}

}  // namespace nfw
