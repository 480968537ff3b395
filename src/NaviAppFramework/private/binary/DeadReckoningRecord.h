/// @file
/// The record of one dead-reckoning report: the records of its sentences, one behind the other.
///
/// RMC, VTG, GGA; a byte with the number of GSA records, these; a byte with the number of GSV records, these, each in
/// its actual size; PUBX.
#pragma once

#include "BinaryRecordFormat.h"

namespace nfw {

class DeadReckoningRecordWriter {
 public:
  DeadReckoningRecordWriter(NmeaBinaryLogDataVersion0& nVersion, unsigned char* npOut, unsigned int nOutSize)
      : mVersion(nVersion), mpOut(npOut), mpNext(npOut), mRoom(nOutSize) {}

  /// @return the size of the record, -1 on failure
  int write(const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nInfo);

 private:
  bool writeGsas(const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nInfo);
  bool writeGsvs(const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nInfo);
  bool writeCount(unsigned int nCount);
  bool wrote(int nSize, const char* npWords);

  NmeaBinaryLogDataVersion0& mVersion;
  unsigned char* const mpOut;
  unsigned char* mpNext;
  unsigned int mRoom;  // bytes left at mpNext
};

class DeadReckoningRecordReader {
 public:
  DeadReckoningRecordReader(NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord, unsigned int nLength)
      : mVersion(nVersion), mpNext(npRecord), mLeft(nLength) {}

  /// @return false on failure
  bool read(DeadReckoningNmeaSentence* npSet);

 private:
  bool readGsas(DeadReckoningNmeaSentence* npSet);
  bool readGsvs(DeadReckoningNmeaSentence* npSet);
  bool readCount(unsigned int nMax, const char* npShort, unsigned int* npCount, uint32_t* npUsed);
  template <const BinaryRecordFormat& FORMAT>
  bool readSentence(unsigned int nSize, const char* npFailed, NmeaSentenceData* npSlot);
  bool has(unsigned int nSize, const char* npShort) const;
  bool fail(const char* npWords) const;
  void skip(unsigned int nSize);

  NmeaBinaryLogDataVersion0& mVersion;
  const unsigned char* mpNext;
  unsigned int mLeft;  // bytes left at mpNext
};

}  // namespace nfw
