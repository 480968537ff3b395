/// @file
/// Version 1 of the binary log of sentences: satellite numbers of two bytes.
#pragma once

#include "NfwNmeaBinaryLogDataVersion0.h"

namespace nfw {

/// The version in which live data is recorded. Numbers in full-width characters are read as well.
class NFW_API NmeaBinaryLogDataVersion1 : public NmeaBinaryLogDataVersion0 {
 public:
  unsigned int getBinaryLogVersionImp() override;
  unsigned int getGsaBinaryLogSize() override;
  unsigned int getGsvBinaryLogSize() override;
  unsigned int getSatelliteNumSize() override;
  int convertFromSatelliteNumString(char* npText, unsigned char* npOut, unsigned int nOutSize) override;
  int convertFromSatelliteNumUint32(unsigned int nNumber, unsigned char* npOut, unsigned int nOutSize) override;
  int convertToSatelliteNumString(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                                  unsigned int nOutSize, unsigned int* npConsumed) override;
};

}  // namespace nfw
