// The numbers of threads: one count per process, so that none is ever given twice.
#pragma once

namespace utl {

class ThreadId {
 public:
  static int next();     ///< a number for a thread to come
  static int current();  ///< the caller's; a thread without one gets the next
  static void setCurrent(int nId);
};

}  // namespace utl
