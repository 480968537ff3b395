// A receiver at a desk: feeds the sentences on standard input. On the unit the SDK feeds itself.
#pragma once

#include <GpsHost.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

inline void feedStandardInput() {
  gpshost::Receiver lReceiver;
  lReceiver.start();
  for (char lLine[128]; std::fgets(lLine, sizeof(lLine), stdin) != nullptr;) {
    lReceiver.receive(lLine, static_cast<unsigned int>(std::strcspn(lLine, "\r\n")));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));  // no receiver is faster
  }
  lReceiver.stop();
}
