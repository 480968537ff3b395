#pragma once

#include <string_view>

namespace tool {

/// Takes sentences one by one, each from its "$" or "!" to its last character, without the line end.
/// Sinks chain: reader, pacing, the application. A sink may hold its caller back.
class SentenceSink {
 public:
  virtual ~SentenceSink() = default;

  /// False when no more sentences are wanted; this one then counts as not taken.
  virtual bool onSentence(std::string_view nSentence) = 0;
};

}  // namespace tool
