#pragma once

#include <vector>

#include "OutputQueue.h"
#include "PictureRow.h"

namespace drive {

/// In place of the one that needs ncurses, where the tool is built without: no terminal shows pictures.
class Screen {
 public:
  explicit Screen(OutputQueue& /*nOutput*/) {}

  bool open() { return false; }
  bool isOpen() const { return false; }
  void getSize(size_t* npWidth, size_t* npHeight) const { *npWidth = *npHeight = 0; }
  void draw(const std::vector<PictureRow>& /*nRows*/) {}
  void leave() {}
  void resume() {}
};

}  // namespace drive
