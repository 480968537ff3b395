/// @file
/// What every version of the binary log of sentences offers.
#pragma once

#include "NfwDeadReckoningNmeaSentence.h"
#include "NfwExport.h"
#include "ZTSDeadReckoningDef.h"

namespace nfw {

/// Turns sentences into compact binary records and records back into sentences. A log carries the version of the
/// converter that wrote it; a reader keeps one converter per known version and takes the one whose version is the
/// log's. The records are laid out in docs/formats/binary-nmea.md.
///
/// @code
/// nfw::NmeaBinaryLogDataVersion1 lConverter;
/// unsigned char lRecord[nfw::NmeaBinaryLogData::MIN_RECORD_BUFFER] = {};
/// const int lSize = lConverter.convertFromNmeaSentence(lText, lLength, lRecord, sizeof(lRecord));
/// if (lSize > 0) save(lConverter.getBinaryLogVersion(), lRecord, lSize);   // 0: nothing to save
///
/// unsigned char lSentence[256];
/// const int lSentenceLength = lConverter.convertToNmeaSentence(lRecord, lSize, lSentence, sizeof(lSentence));
/// @endcode
///
/// Converters hold no state: any thread may call at any time, one object serves them all, and nothing is allocated.
/// Buffers belong to the caller. A failure is told by the result and by lines of the application log; the output may
/// then be partly written.
class NFW_API NmeaBinaryLogData {
 public:
  /// The least buffer that convertFromNmeaSentence accepts; no record of versions 0 and 1 is longer.
  static constexpr unsigned int MIN_RECORD_BUFFER = 60;

  virtual ~NmeaBinaryLogData() = default;

  /// The version that a log written by this converter carries.
  virtual unsigned int getBinaryLogVersion() = 0;

  /// One sentence to one record: a byte for the kind of sentence, then its fields. Clear the buffer first: reserved
  /// bytes are not written.
  /// @param npSentence at most 256 bytes; a terminator is not needed, and ends the text when there is one
  /// @return the size of the record; 0 for a ZDA, which is not stored; -1 on failure
  virtual int convertFromNmeaSentence(unsigned char const* npSentence, unsigned int nLength, unsigned char* npOut,
                                      unsigned int nOutSize) = 0;

  /// One record of convertFromNmeaSentence to the text of its sentence, with a checksum and a line end.
  /// @param nOutSize 256 is enough for every record
  /// @return the length of the text, behind which nothing is written; -1 on failure
  virtual int convertToNmeaSentence(unsigned char const* npRecord, unsigned int nLength, unsigned char* npOut,
                                    unsigned int nOutSize) = 0;

  /// One location report to one record that holds all its sentences.
  /// @param nOutSize 1356 is enough for every report
  /// @return the size of the record, -1 on failure
  virtual int convertFromDeadReckoningData(ZTSDeadReckoningDef::DRG_LOCATION_INFO const& nInfo, unsigned char* npOut,
                                           unsigned int nOutSize) = 0;

  /// One record of convertFromDeadReckoningData to the texts of its sentences. The set is cleared first.
  /// @return false when any of it can't be decoded: the set is then to be discarded
  virtual bool convertToDeadReckoningNmeaSentence(unsigned char const* npRecord, unsigned int nLength,
                                                  DeadReckoningNmeaSentence* npOut) = 0;
};

}  // namespace nfw
