// The scenarios, and what they share.
#pragma once

#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "Schedule.h"

void components();

/// Threads of a scenario, waited for on the way out.
class Crew {
 public:
  ~Crew() { join(); }
  void add(std::function<void()> nWork) { mThreads.emplace_back(std::move(nWork)); }
  void join() {
    for (std::thread& lEach : mThreads) lEach.join();
    mThreads.clear();
  }

 private:
  std::vector<std::thread> mThreads;
};
