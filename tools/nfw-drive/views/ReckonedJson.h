#pragma once

#include "JsonObject.h"
#include "SentenceText.h"

namespace drive {

/// A sentence of dead reckoning as one object on a line, with the name of its source where that is not empty.
inline std::string reckonedJson(std::string_view nSentence, std::string_view nSource) {
  std::string lText;
  {
    tool::JsonObject lObject(&lText);
    lObject.text("type", "dead reckoning");
    if (!nSource.empty()) lObject.text("source", nSource);
    lObject.text("sentence", tool::withoutLineEnd(nSentence));
  }
  return lText + "\n";
}

}  // namespace drive
