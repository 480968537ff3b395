/// @file
/// Version 0 of the binary log of sentences: satellite numbers of one byte.
#pragma once

#include "NfwNmeaBinaryLogData.h"

namespace nfw {

/// Also the ground of every later version: what differs between versions is the width of a satellite number, and all
/// that depends on it asks the virtual operations from getBinaryLogVersionImp on.
class NFW_API NmeaBinaryLogDataVersion0 : public NmeaBinaryLogData {
 public:
  unsigned int getBinaryLogVersion() override;
  int convertFromNmeaSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                              unsigned int nOutSize) override;
  int convertToNmeaSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                            unsigned int nOutSize) override;
  int convertFromDeadReckoningData(ZTSDeadReckoningDef::DRG_LOCATION_INFO const& nInfo, unsigned char* npOut,
                                   unsigned int nOutSize) override;
  bool convertToDeadReckoningNmeaSentence(unsigned char const* npRecord, unsigned int nLength,
                                          DeadReckoningNmeaSentence* npOut) override;

  /// The version number.
  virtual unsigned int getBinaryLogVersionImp();
  /// Size of a GSA record.
  virtual unsigned int getGsaBinaryLogSize();
  /// Size of the largest GSV record.
  virtual unsigned int getGsvBinaryLogSize();
  /// Bytes of a satellite number.
  virtual unsigned int getSatelliteNumSize();

  /// Writes one satellite number from the text of its field; an empty text is 0.
  /// @param npText terminated; may be changed
  /// @return the bytes written; -1 when the text is no number of this version's width, or does not fit
  virtual int convertFromSatelliteNumString(char* npText, unsigned char* npOut, unsigned int nOutSize);
  /// Writes one satellite number, of which the low bits are kept.
  /// @return the bytes written, -1 when they do not fit
  virtual int convertFromSatelliteNumUint32(unsigned int nNumber, unsigned char* npOut, unsigned int nOutSize);
  /// Writes the decimal text of one satellite number, 0 as "0", without a terminator.
  /// @param npConsumed set to the bytes of the record that it took
  /// @return the length of the text, -1 when the record is too short or the text does not fit
  virtual int convertToSatelliteNumString(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                                          unsigned int nOutSize, unsigned int* npConsumed);

  /// @name One sentence to its record, without the byte for the kind of sentence
  /// The kind is not looked at. Results as of convertFromNmeaSentence; the buffer must hold the largest record of the
  /// kind.
  /// @{
  int convertFromGgaSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromGllSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromGsaSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromGsvSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromRmcSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromVtgSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromZdaSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                             unsigned int nOutSize);
  int convertFromPubxSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                              unsigned int nOutSize);
  /// @}

  /// @name One record without the byte for the kind of sentence to the text of its sentence
  /// Bytes behind the record are not looked at. Results as of convertToNmeaSentence.
  /// @{
  int convertToGgaSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToGllSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToGsaSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToGsvSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToRmcSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToVtgSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToZdaSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                           unsigned int nOutSize);
  int convertToPubxSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                            unsigned int nOutSize);
  /// @}

  /// @name One part of a location report to its record
  /// The same records as those of sentences. A real that is too large is stored as 0; a letter that is absent (0)
  /// counts as an empty field.
  /// @return the size of the record, -1 on failure
  /// @{
  int convertFromDeadReckoningRmcData(ZTSDeadReckoningDef::DRG_RMC const& nData, unsigned char* npOut,
                                      unsigned int nOutSize);
  int convertFromDeadReckoningVtgData(ZTSDeadReckoningDef::DRG_VTG const& nData, unsigned char* npOut,
                                      unsigned int nOutSize);
  int convertFromDeadReckoningGgaData(ZTSDeadReckoningDef::DRG_GGA const& nData, unsigned char* npOut,
                                      unsigned int nOutSize);
  /// @param nSatelliteNum satellite numbers to take over; the others are stored as 0
  int convertFromDeadReckoningGsaData(ZTSDeadReckoningDef::DRG_GSA const& nData, unsigned int nSatelliteNum,
                                      unsigned char* npOut, unsigned int nOutSize);
  int convertFromDeadReckoningGsvData(ZTSDeadReckoningDef::DRG_GSV const& nData, unsigned char* npOut,
                                      unsigned int nOutSize);
  int convertFromDeadReckoningPubxData(ZTSDeadReckoningDef::DRG_PUBX const& nData, unsigned char* npOut,
                                       unsigned int nOutSize);
  /// @}
};

}  // namespace nfw
