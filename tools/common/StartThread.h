#pragma once

#include <exception>
#include <thread>

namespace tool {

/// Runs a function on a new thread. False, and no thread, where the system gives none.
template <class Run>
bool startThread(std::thread* npThread, Run nRun) {
  try {
    *npThread = std::thread(nRun);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace tool
