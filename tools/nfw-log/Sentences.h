#pragma once

#include "NfwDeadReckoningNmeaSentence.h"
#include "NfwNmeaBinaryLogDataVersion0.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "Record.h"
#include "SentenceSink.h"

namespace logtool {

/// Gives the sentences of records as text: of a log record file those that stand in it, line by line, of a sensor log
/// the decoded ones. Records of anything else have none.
class Sentences {
 public:
  Sentences();

  /// Each goes to the sink without its line end. False when a record of sentences could not be decoded.
  bool read(const tool::Record& nRecord, tool::SentenceSink& nSink);

 private:
  static bool readText(std::string_view nData, tool::SentenceSink& nSink);
  bool readReport(nfw::NmeaBinaryLogData& nConverter, std::string_view nData, tool::SentenceSink& nSink);
  nfw::NmeaBinaryLogData* converterFor(int nVersion);

  nfw::NmeaBinaryLogDataVersion0 mVersion0;
  nfw::NmeaBinaryLogDataVersion1 mVersion1;
  nfw::DeadReckoningNmeaSentence mReport;
};

}  // namespace logtool
