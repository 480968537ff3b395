#pragma once

#include <csignal>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "OutputQueue.h"
#include "PictureRow.h"

struct screen;

namespace drive {

/// A terminal that shows pictures, by ncurses. That draws into memory: what it has written goes through the queue of
/// standard output, so that a terminal that takes nothing holds nobody up, and the terminal's settings stay as they
/// are. Any thread may call. One object at a time.
class Screen {
 public:
  /// @param nOutput of standard output; outlives it
  explicit Screen(OutputQueue& nOutput) : mOutput(nOutput) {}
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  /// False where standard output is no terminal that can place its cursor. Nothing is shown yet.
  bool open();
  bool isOpen() const { return mpScreen != nullptr; }

  void getSize(size_t* npWidth, size_t* npHeight) const;
  /// Shows a picture in place of the last one; not while the terminal has not taken that, or is somebody else's.
  void draw(const std::vector<PictureRow>& nRows);
  /// Gives the place back, until resume().
  void leave();
  void resume();  ///< somebody else may have written there: the next picture is drawn as a whole

 private:
  bool begin();
  void keepLeave();
  void drawRow(int nRow, const PictureRow& nPicture);
  void send();

  OutputQueue& mOutput;
  mutable std::mutex mMutex;  // ncurses takes one thread at a time; guards what follows
  std::FILE *mpDrawn = nullptr, *mpNoKeys = nullptr;
  struct screen* mpScreen = nullptr;
  std::string mLeave;  // takes a picture off
  bool mIsColoured = false;
  bool mHasBlocks = false;  // the locale has more than ASCII
  bool mIsShown = false;
  bool mIsAway = false;
  bool mIsStale = false;
};

}  // namespace drive
