#include "NfwNmeaBinaryLogDataVersion0.h"

#include <cstddef>

#include "BinaryRecordLists.h"
#include "DeadReckoningRecord.h"
#include "NfwAppLog.h"
#include "NfwNmeaDataParser.h"
#include "ReportEncoder.h"
#include "SatelliteNumber.h"
#include "SentenceDecoder.h"
#include "SentenceEncoder.h"

namespace nfw {
namespace {

constexpr SatelliteNumber NUMBER("NmeaBinaryLogDataVersion0", 1);

const unsigned int TYPE_SIZE = 1;  // of the byte for the kind of sentence

using Coder = int (*)(NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npInput, unsigned int nLength,
                      unsigned char* npOut, unsigned int nOutSize);

// By NmeaSentenceType.
const Coder ENCODERS[] = {nullptr,
                          encodeSentence<GGA_FORMAT>,
                          encodeSentence<GLL_FORMAT>,
                          encodeSentence<GSA_FORMAT>,
                          encodeSentence<GSV_FORMAT>,
                          encodeSentence<RMC_FORMAT>,
                          encodeSentence<VTG_FORMAT>,
                          encodeSentence<ZDA_FORMAT>,
                          encodeSentence<PUBX_FORMAT>};
const Coder DECODERS[] = {nullptr,
                          decodeSentence<GGA_FORMAT>,
                          decodeSentence<GLL_FORMAT>,
                          decodeSentence<GSA_FORMAT>,
                          decodeSentence<GSV_FORMAT>,
                          decodeSentence<RMC_FORMAT>,
                          decodeSentence<VTG_FORMAT>,
                          decodeSentence<ZDA_FORMAT>,
                          decodeSentence<PUBX_FORMAT>};

// Null for a kind without one.
template <class Value, size_t N>
Value of(const Value (&nByType)[N], unsigned int nType) {
  return nType < N ? nByType[nType] : nullptr;
}

}  // namespace

unsigned int NmeaBinaryLogDataVersion0::getBinaryLogVersion() { return getBinaryLogVersionImp(); }

int NmeaBinaryLogDataVersion0::convertFromNmeaSentence(unsigned char const* npSentence, unsigned int nLength,
                                                       unsigned char* npOut, unsigned int nOutSize) {
  if (npSentence == nullptr || nLength == 0 || npOut == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertFromNmeaSentence(): Argument Error");
    return -1;
  }
  if (nOutSize < MIN_RECORD_BUFFER) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertFromNmeaSentence(): nBufferSize Error");
    return -1;
  }
  const int lType = NmeaDataParser::analyzeNmeaSentenceType(reinterpret_cast<const char*>(npSentence), nLength);
  npOut[0] = static_cast<unsigned char>(lType);
  const Coder lpEncode = of(ENCODERS, npOut[0]);
  if (lpEncode == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertFromNmeaSentence(): UnknownSentence: SentenceType=%d", lType);
    return -1;
  }
  if (lType == NMEA_ZDA) return 0;
  const int lSize = lpEncode(*this, npSentence, nLength, npOut + TYPE_SIZE, nOutSize - TYPE_SIZE);
  return lSize < 0 ? -1 : lSize + static_cast<int>(TYPE_SIZE);
}

int NmeaBinaryLogDataVersion0::convertToNmeaSentence(unsigned char const* npRecord, unsigned int nLength,
                                                     unsigned char* npOut, unsigned int nOutSize) {
  if (npRecord == nullptr || nLength == 0 || npOut == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertToNmeaSentence(): Argument Error");
    return -1;
  }
  const Coder lpDecode = of(DECODERS, npRecord[0]);
  if (lpDecode == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertToNmeaSentence(): UnknownSentence: SentenceType=%d", npRecord[0]);
    return -1;
  }
  return lpDecode(*this, npRecord + TYPE_SIZE, nLength - TYPE_SIZE, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningData(ZTSDeadReckoningDef::DRG_LOCATION_INFO const& nInfo,
                                                            unsigned char* npOut, unsigned int nOutSize) {
  return DeadReckoningRecordWriter(*this, npOut, nOutSize).write(nInfo);
}

bool NmeaBinaryLogDataVersion0::convertToDeadReckoningNmeaSentence(unsigned char const* npRecord, unsigned int nLength,
                                                                   DeadReckoningNmeaSentence* npOut) {
  return DeadReckoningRecordReader(*this, npRecord, nLength).read(npOut);
}

unsigned int NmeaBinaryLogDataVersion0::getBinaryLogVersionImp() { return 0; }

unsigned int NmeaBinaryLogDataVersion0::getGsaBinaryLogSize() { return 28; }

unsigned int NmeaBinaryLogDataVersion0::getGsvBinaryLogSize() { return 29; }

unsigned int NmeaBinaryLogDataVersion0::getSatelliteNumSize() { return NUMBER.size(); }

int NmeaBinaryLogDataVersion0::convertFromSatelliteNumString(char* npText, unsigned char* npOut,
                                                             unsigned int nOutSize) {
  return NUMBER.fromString(npText, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromSatelliteNumUint32(unsigned int nNumber, unsigned char* npOut,
                                                             unsigned int nOutSize) {
  return NUMBER.fromUint32(nNumber, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToSatelliteNumString(unsigned char const* npRecord, unsigned int nLength,
                                                           unsigned char* npOut, unsigned int nOutSize,
                                                           unsigned int* npConsumed) {
  return NUMBER.toString(npRecord, nLength, npOut, nOutSize, npConsumed);
}

int NmeaBinaryLogDataVersion0::convertFromGgaSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<GGA_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromGllSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<GLL_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromGsaSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<GSA_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromGsvSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<GSV_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromRmcSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<RMC_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromVtgSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<VTG_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromZdaSentence(unsigned char const* npSentence, unsigned int nLength,
                                                      unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<ZDA_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromPubxSentence(unsigned char const* npSentence, unsigned int nLength,
                                                       unsigned char* npOut, unsigned int nOutSize) {
  return encodeSentence<PUBX_FORMAT>(*this, npSentence, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToGgaSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<GGA_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToGllSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<GLL_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToGsaSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<GSA_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToGsvSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<GSV_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToRmcSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<RMC_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToVtgSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<VTG_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToZdaSentence(unsigned char const* npRecord, unsigned int nLength,
                                                    unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<ZDA_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertToPubxSentence(unsigned char const* npRecord, unsigned int nLength,
                                                     unsigned char* npOut, unsigned int nOutSize) {
  return decodeSentence<PUBX_FORMAT>(*this, npRecord, nLength, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningRmcData(ZTSDeadReckoningDef::DRG_RMC const& nData,
                                                               unsigned char* npOut, unsigned int nOutSize) {
  const ReportValue lValues[] = {nData.time, nData.status, nData.latitude, nData.longitude, nData.speed, nData.course,
                                 nData.day,  nData.month,  nData.year,     nData.variation, nData.mode};
  return ReportEncoder(RMC_FORMAT, *this, lValues).encode(nData.talker, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningVtgData(ZTSDeadReckoningDef::DRG_VTG const& nData,
                                                               unsigned char* npOut, unsigned int nOutSize) {
  const ReportValue lValues[] = {nData.courseTrue, nData.courseMagnetic, nData.speedKnot, nData.speedKmh, nData.mode};
  return ReportEncoder(VTG_FORMAT, *this, lValues).encode(nData.talker, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningGgaData(ZTSDeadReckoningDef::DRG_GGA const& nData,
                                                               unsigned char* npOut, unsigned int nOutSize) {
  const ReportValue lValues[] = {nData.time, nData.latitude, nData.longitude,       nData.quality, nData.satellites,
                                 nData.hdop, nData.altitude, nData.geoidSeparation, nData.age,     nData.stationId};
  return ReportEncoder(GGA_FORMAT, *this, lValues).encode(nData.talker, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningGsaData(ZTSDeadReckoningDef::DRG_GSA const& nData,
                                                               unsigned int nSatelliteNum, unsigned char* npOut,
                                                               unsigned int nOutSize) {
  ReportValue lValues[2 + ZTSDeadReckoningDef::DRG_GSA_SATELLITE_NUM + 3] = {nData.selection, nData.fixMode};
  ReportValue* lpNext = lValues + 2;
  for (unsigned int i = 0; i < ZTSDeadReckoningDef::DRG_GSA_SATELLITE_NUM; ++i) {
    *lpNext++ = i < nSatelliteNum ? nData.number[i] : 0U;
  }
  for (const double lDop : {nData.pdop, nData.hdop, nData.vdop}) *lpNext++ = lDop;
  return ReportEncoder(GSA_FORMAT, *this, lValues).encode(nData.talker, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningGsvData(ZTSDeadReckoningDef::DRG_GSV const& nData,
                                                               unsigned char* npOut, unsigned int nOutSize) {
  ReportValue lValues[3 + ZTSDeadReckoningDef::DRG_GSV_SATELLITE_NUM * 5] = {nData.count, nData.number, nData.view};
  ReportValue* lpNext = lValues + 3;
  for (const ZTSDeadReckoningDef::DRG_GSV_SATELLITE& lSatellite : nData.satellite) {
    *lpNext++ = lSatellite.number;
    *lpNext++ = lSatellite.elevation;
    *lpNext++ = lSatellite.azimuth;
    *lpNext++ = lSatellite.snr;
    *lpNext++ = lSatellite.valid;
  }
  return ReportEncoder(GSV_FORMAT, *this, lValues).encode(nData.talker, npOut, nOutSize);
}

int NmeaBinaryLogDataVersion0::convertFromDeadReckoningPubxData(ZTSDeadReckoningDef::DRG_PUBX const& nData,
                                                                unsigned char* npOut, unsigned int nOutSize) {
  const ReportValue lValues[] = {nData.messageId,  nData.time,         nData.latitude, nData.longitude, nData.altitude,
                                 nData.status,     nData.hacc,         nData.vacc,     nData.speed,     nData.course,
                                 nData.vvel,       nData.age,          nData.hdop,     nData.vdop,      nData.tdop,
                                 nData.satellites, nData.deadReckoning};
  return ReportEncoder(PUBX_FORMAT, *this, lValues).encode(nullptr, npOut, nOutSize);
}

}  // namespace nfw
