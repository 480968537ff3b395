#pragma once

#include <cstddef>

namespace drive {

/// Recognises gpsd by the object {"class":"VERSION",...} that it begins with, and takes the lines of objects ("{...")
/// out of what it sends. What does not begin so is a plain stream of sentences and passes as it is.
class GpsdFilter {
 public:
  /// Removes objects from the bytes, in place. @return how many are left
  size_t filter(char* npData, size_t nSize);

  /// Something came, and no gpsd has sent it.
  bool isPlain() const { return mState == PLAIN; }

  /// True once, after the greeting came.
  bool takeGreeting();

 private:
  enum State { GREETING, PLAIN, LINE_START, OBJECT, SENTENCE };

  bool keep(char nByte);
  bool keepOfGpsd(char nByte);

  State mState = GREETING;
  size_t mMatched = 0;  // bytes of the greeting
  bool mIsGreeted = false;
};

}  // namespace drive
