#pragma once

#include <string>

#include "Options.h"
#include "Sentences.h"

namespace logtool {

/// Writes records as lines: time, id and data, or as JSON objects.
class RecordPrinter : private tool::SentenceSink {
 public:
  /// @param nOptions not owned, outlives the printer
  explicit RecordPrinter(const Options& nOptions) : mOptions(nOptions) {}

  /// Replaces the text by the lines of a record; one of a sensor log has a line for each sentence.
  const std::string& print(const tool::Record& nRecord, Selector& nSelector);

 private:
  void begin(const tool::Record& nRecord, Selector& nSelector);
  void appendLine(std::string_view nData);
  void appendHex(std::string_view nData);
  void appendJson(const tool::Record& nRecord, Selector& nSelector);
  bool decode(const tool::Record& nRecord);
  bool onSentence(std::string_view nSentence) override;

  const Options& mOptions;
  Sentences mSentences;
  std::vector<std::string> mDecoded;
  std::string mHead;  // of every line of a record
  std::string mText;
};

}  // namespace logtool
