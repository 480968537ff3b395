#pragma once

#include "SensorSentences.h"

namespace logtool {

/// Gives the sentences of records as text: of a log record file those that stand in it, line by line, of a sensor log
/// the decoded ones. Records of anything else have none.
class Sentences {
 public:
  Sentences();

  /// Each goes to the sink without its line end. False when a record of sentences could not be decoded.
  bool read(const tool::Record& nRecord, tool::SentenceSink& nSink);

 private:
  static void readText(std::string_view nData, tool::SentenceSink& nSink);

  tool::SensorSentences mSensor;
};

}  // namespace logtool
