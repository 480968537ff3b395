#include "ReckonedSets.h"

#include "NfwNmeaDataParser.h"
#include "SentenceText.h"

namespace drive {

namespace {

template <unsigned int Num>
nfw::NmeaSentenceData* nextOf(nfw::NmeaSentenceData (&nSlots)[Num], uint32_t* npCount) {
  return *npCount < Num ? &nSlots[(*npCount)++] : nullptr;
}

}  // namespace

const nfw::DeadReckoningNmeaSentence* ReckonedSets::onSentence(std::string_view nSentence) {
  const tool::TerminatedSentence lText(nSentence);
  const int lKind = nfw::NmeaDataParser::analyzeNmeaSentenceType(lText.mText, lText.mSize);
  if (lKind == nfw::NMEA_RMC) {
    mSet.clear();
    mIsOpen = true;
  }
  nfw::NmeaSentenceData* const lpSlot = mIsOpen ? slotFor(lKind) : nullptr;
  if (lpSlot == nullptr) return nullptr;
  lpSlot->mLength =
      static_cast<uint32_t>(nSentence.copy(reinterpret_cast<char*>(lpSlot->mText), sizeof(lpSlot->mText)));
  if (lKind != nfw::NMEA_PUBX) return nullptr;
  mIsOpen = false;
  return &mSet;
}

nfw::NmeaSentenceData* ReckonedSets::slotFor(int nKind) {
  switch (nKind) {
    case nfw::NMEA_RMC:
      return &mSet.mRmc;
    case nfw::NMEA_VTG:
      return &mSet.mVtg;
    case nfw::NMEA_GGA:
      return &mSet.mGga;
    case nfw::NMEA_GSA:
      return nextOf(mSet.mGsa, &mSet.mGsaCount);
    case nfw::NMEA_GSV:
      return nextOf(mSet.mGsv, &mSet.mGsvCount);
    case nfw::NMEA_PUBX:
      return &mSet.mPubx;
    default:
      return nullptr;
  }
}

}  // namespace drive
