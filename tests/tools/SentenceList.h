#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SentenceSink.h"

/// Keeps what it is given.
class SentenceList : public tool::SentenceSink {
 public:
  bool onSentence(std::string_view nSentence) override {
    mSentences.emplace_back(nSentence);
    return true;
  }
  std::vector<std::string> mSentences;
};
