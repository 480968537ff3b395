#include "DeadReckoningRecord.h"

#include <algorithm>

#include "BinaryRecordLists.h"
#include "NfwAppLog.h"
#include "SentenceDecoder.h"

namespace nfw {

int DeadReckoningRecordWriter::write(const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nInfo) {
  if (mpOut == nullptr) {
    wrote(-1, "Argument Error");
    return -1;
  }
  const bool lIsWritten = wrote(mVersion.convertFromDeadReckoningRmcData(nInfo.rmc, mpNext, mRoom),
                                "convertFromDeadReckoningRmcData Error") &&
                          wrote(mVersion.convertFromDeadReckoningVtgData(nInfo.vtg, mpNext, mRoom),
                                "convertFromDeadReckoningVtgData Error") &&
                          wrote(mVersion.convertFromDeadReckoningGgaData(nInfo.gga, mpNext, mRoom),
                                "convertFromDeadReckoningGgaData Error") &&
                          writeGsas(nInfo) && writeGsvs(nInfo) &&
                          wrote(mVersion.convertFromDeadReckoningPubxData(nInfo.pubx, mpNext, mRoom),
                                "convertFromDeadReckoningPubxData Error");
  return lIsWritten ? static_cast<int>(mpNext - mpOut) : -1;
}

bool DeadReckoningRecordWriter::writeGsas(const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nInfo) {
  const unsigned int lCount = std::min(nInfo.gsaCount, DeadReckoningNmeaSentence::MAX_GSA);
  if (!writeCount(lCount)) return false;
  for (unsigned int i = 0; i < lCount; ++i) {
    if (!wrote(mVersion.convertFromDeadReckoningGsaData(nInfo.gsa[i], ZTSDeadReckoningDef::DRG_GSA_SATELLITE_NUM,
                                                        mpNext, mRoom),
               "convertFromDeadReckoningGsaData Error")) {
      return false;
    }
  }
  return true;
}

bool DeadReckoningRecordWriter::writeGsvs(const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nInfo) {
  const unsigned int lCount = std::min(nInfo.gsvCount, DeadReckoningNmeaSentence::MAX_GSV);
  if (!writeCount(lCount)) return false;
  for (unsigned int i = 0; i < lCount; ++i) {
    if (!wrote(mVersion.convertFromDeadReckoningGsvData(nInfo.gsv[i], mpNext, mRoom),
               "convertFromDeadReckoningGsvData Error")) {
      return false;
    }
  }
  return true;
}

bool DeadReckoningRecordWriter::writeCount(unsigned int nCount) {
  if (mRoom == 0) return wrote(-1, "nBufferSize Error");
  *mpNext = static_cast<unsigned char>(nCount);
  return wrote(1, nullptr);
}

bool DeadReckoningRecordWriter::wrote(int nSize, const char* npWords) {
  if (nSize < 0) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertFromDeadReckoningData(): %s",
           npWords);
    return false;
  }
  mpNext += nSize;
  mRoom -= static_cast<unsigned int>(nSize);
  return true;
}

bool DeadReckoningRecordReader::read(DeadReckoningNmeaSentence* npSet) {
  if (mpNext == nullptr || mLeft == 0 || npSet == nullptr) return fail("Argument Error");
  npSet->clear();
  return readSentence<RMC_FORMAT>(RMC_FORMAT.mFixedSize, "convertToRmcSentence Error", &npSet->mRmc) &&
         has(VTG_FORMAT.mFixedSize, "Vtg DataSize Error") &&
         readSentence<VTG_FORMAT>(VTG_FORMAT.mFixedSize, "convertToVtgSentence Error", &npSet->mVtg) &&
         has(GGA_FORMAT.mFixedSize, "Gga DataSize Error") &&
         readSentence<GGA_FORMAT>(GGA_FORMAT.mFixedSize, "convertToGgaSentence Error", &npSet->mGga) &&
         readGsas(npSet) && readGsvs(npSet) && has(PUBX_FORMAT.mFixedSize, "Pubx DataSize Error") &&
         readSentence<PUBX_FORMAT>(PUBX_FORMAT.mFixedSize, "convertToPubxSentence Error", &npSet->mPubx) &&
         (mLeft == 0 || fail("Data Offset is not the end of data"));
}

bool DeadReckoningRecordReader::readGsas(DeadReckoningNmeaSentence* npSet) {
  unsigned int lCount = 0;
  if (!readCount(DeadReckoningNmeaSentence::MAX_GSA, "GsaNum DataSize Error", &lCount, &npSet->mGsaCount)) return false;
  const unsigned int lSize = mVersion.getGsaBinaryLogSize();
  for (unsigned int i = 0; i < lCount; ++i) {
    if (!has(lSize, "Gsa DataSize Error")) return false;
    if (i >= npSet->mGsaCount) {
      skip(lSize);
    } else if (!readSentence<GSA_FORMAT>(lSize, "convertToGsaSentence Error", &npSet->mGsa[i])) {
      return false;
    }
  }
  return true;
}

bool DeadReckoningRecordReader::readGsvs(DeadReckoningNmeaSentence* npSet) {
  unsigned int lCount = 0;
  if (!readCount(DeadReckoningNmeaSentence::MAX_GSV, "GsvNum DataSize Error", &lCount, &npSet->mGsvCount)) return false;
  for (unsigned int i = 0; i < lCount; ++i) {
    if (!has(GSV_HEADER_SIZE, "Gsv DataSize Error")) return false;
    const unsigned int lSize = gsvRecordSize(mpNext, mVersion);
    if (!has(lSize, "Gsv DataSize Error")) return false;
    if (i >= npSet->mGsvCount) {
      skip(lSize);
    } else if (!readSentence<GSV_FORMAT>(lSize, "convertToGsvSentence Error", &npSet->mGsv[i])) {
      return false;
    }
  }
  return true;
}

/// The number of records that follow, and how many of them have a slot: the others are read past.
bool DeadReckoningRecordReader::readCount(unsigned int nMax, const char* npShort, unsigned int* npCount,
                                          uint32_t* npUsed) {
  if (!has(1, npShort)) return false;
  *npCount = *mpNext;
  skip(1);
  if (*npCount > nMax) fail("BufferSize not enough");
  *npUsed = std::min(*npCount, nMax);
  return true;
}

template <const BinaryRecordFormat& FORMAT>
bool DeadReckoningRecordReader::readSentence(unsigned int nSize, const char* npFailed, NmeaSentenceData* npSlot) {
  const int lLength =
      decodeSentence<FORMAT>(mVersion, mpNext, std::min(mLeft, nSize), npSlot->mText, NmeaSentenceData::MAX_TEXT);
  if (lLength < 0) return fail(npFailed);
  npSlot->mLength = static_cast<uint32_t>(lLength);
  skip(nSize);
  return true;
}

bool DeadReckoningRecordReader::has(unsigned int nSize, const char* npShort) const {
  return mLeft >= nSize || fail(npShort);
}

bool DeadReckoningRecordReader::fail(const char* npWords) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertToDeadReckoningNmeaSentence(): %s",
         npWords);
  return false;
}

void DeadReckoningRecordReader::skip(unsigned int nSize) {
  mpNext += nSize;
  mLeft -= nSize;
}

}  // namespace nfw
