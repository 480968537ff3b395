#pragma once

#include "JsonObject.h"
#include "SentenceText.h"

namespace drive {

/// A sentence of dead reckoning as one object on a line.
inline std::string reckonedJson(std::string_view nSentence) {
  std::string lText;
  {
    tool::JsonObject lObject(&lText);
    lObject.text("type", "dead reckoning");
    lObject.text("sentence", tool::withoutLineEnd(nSentence));
  }
  return lText + "\n";
}

}  // namespace drive
