#include "NfwNmeaBinaryLogDataVersion1.h"

#include "SatelliteNumber.h"

namespace nfw {
namespace {

constexpr SatelliteNumber NUMBER("NmeaBinaryLogDataVersion1", 2, SatelliteNumber::READS_FULL_WIDTH);

}  // namespace

unsigned int NmeaBinaryLogDataVersion1::getBinaryLogVersionImp() { return 1; }

unsigned int NmeaBinaryLogDataVersion1::getGsaBinaryLogSize() { return 40; }

unsigned int NmeaBinaryLogDataVersion1::getGsvBinaryLogSize() { return 33; }

unsigned int NmeaBinaryLogDataVersion1::getSatelliteNumSize() { return NUMBER.size(); }

int NmeaBinaryLogDataVersion1::convertFromSatelliteNumString(char* npText, unsigned char* npOut,
                                                             unsigned int nOutSize) {
  return NUMBER.fromString(npText, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion1::convertFromSatelliteNumUint32(unsigned int nNumber, unsigned char* npOut,
                                                             unsigned int nOutSize) {
  return NUMBER.fromUint32(nNumber, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion1::convertToSatelliteNumString(unsigned char const* npRecord, unsigned int nLength,
                                                           unsigned char* npOut, unsigned int nOutSize,
                                                           unsigned int* npConsumed) {
  return NUMBER.toString(npRecord, nLength, npOut, nOutSize, npConsumed);
}

}  // namespace nfw
