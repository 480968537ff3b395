#pragma once

#include <string>
#include <string_view>

namespace tool {

/// Standard output: buffered, written whole, and told apart in how it fails. One thread at a time.
class Output {
 public:
  enum State { OPEN, READER_GONE, FAILED };

  /// @param nFd not owned
  explicit Output(int nFd) : mFd(nFd) {}

  void write(std::string_view nText);
  /// Writes out what is buffered. After a failure everything is dropped.
  void flush();

  State getState() const { return mState; }
  int getError() const { return mError; }  ///< errno of the failure
  bool isTerminal() const;

 private:
  bool writeSome(std::string_view* npText);
  void fail(int nError);

  static constexpr size_t FLUSH_SIZE = 64 * 1024;
  const int mFd;
  std::string mText;
  State mState = OPEN;
  int mError = 0;
};

}  // namespace tool
