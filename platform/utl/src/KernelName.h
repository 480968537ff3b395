// What the kernel shows as a thread's name.
#pragma once

namespace utl {

/// A thread name shortened to the kernel's 15 characters: without "nfw::" and "_Thread", and if that is not enough
/// without its middle, for beginnings carry ids and ends carry roles.
class KernelName {
 public:
  explicit KernelName(const char* npName);
  const char* get() const { return mText; }

 private:
  static constexpr unsigned int SIZE = 16;
  char mText[SIZE];
};

}  // namespace utl
