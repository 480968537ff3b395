#pragma once

#include "NfwDeadReckoningNmeaSentence.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "Record.h"
#include "SentenceSink.h"

namespace tool {

/// Decodes the records of a sensor log into the sentences that a replay gives, with their line ends. One thread at a
/// time.
class SensorSentences {
 public:
  /// Those of a report in their order, without empty ones. Records of other ids have none. False when a record of
  /// sentences could not be decoded.
  bool read(const Record& nRecord, SentenceSink& nSink);
  /// Those of a set in the order in which listeners get them, without empty ones.
  static void give(const nfw::DeadReckoningNmeaSentence& nSet, SentenceSink& nSink);

 private:
  bool readReport(nfw::NmeaBinaryLogData& nConverter, std::string_view nData, SentenceSink& nSink);
  nfw::NmeaBinaryLogData* converterFor(int nVersion);

  nfw::NmeaBinaryLogDataVersion0 mVersion0;
  nfw::NmeaBinaryLogDataVersion1 mVersion1;
  nfw::DeadReckoningNmeaSentence mReport;
};

}  // namespace tool
