#pragma once

#include <string>

namespace drive {

/// How views print what they show a line each.
struct LineStyle {
  bool mShowsDeadReckoning;
  bool mIsPrompt;       ///< each line is written at once; else the buffer may fill up first
  std::string mSource;  ///< the name that stands with it; empty: none
};

}  // namespace drive
