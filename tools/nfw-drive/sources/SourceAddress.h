#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "HostPort.h"
#include "PacedSink.h"

namespace drive {

/// A source as the command line names it.
struct SourceAddress {
  enum Kind { SIMULATOR, FILE, STDIN, SERIAL, TCP, UDP };

  Kind mKind = SIMULATOR;
  std::string mName = "sim";   ///< as the user wrote it, for messages
  std::string mLabel = "sim";  ///< what the user calls it; unless named, the same
  std::string mPath;           ///< of a file or device
  HostPort mWhere;             ///< of a server, or to listen at
  bool mIsGpsd = false;        ///< the server is to greet as gpsd does
  bool mIsAwaited = false;     ///< what is not there yet will come
  unsigned int mBaud = 9600;
  std::chrono::milliseconds mSilence{20000};  ///< a server that sends nothing for so long is tried again; 0: never
  PlayOptions mPlay;

  /// Sources that go on for ever and are opened again when they break.
  bool isLive() const { return mKind == SERIAL || mKind == TCP || mKind == UDP; }
};

/// Tells what a text names: "sim", "-", "tcp://HOST:PORT", "gpsd://HOST[:PORT]", "udp://[ADDR]:PORT", a terminal device
/// with or without ":BAUD", or a file; each may stand behind "NAME=".
/// @param nDefaultBaud for a device without its own
/// @return false, with the reason, when the text names nothing that can be opened
bool parseSourceAddress(const std::string& nText, unsigned int nDefaultBaud, SourceAddress* npAddress,
                        std::string* npReason);

/// Whether sources can be read beside one another: their names differ, and no two take from one line or from standard
/// input, of which each would get a part. @return false, with the reason, when they cannot
bool canBeTogether(const std::vector<SourceAddress>& nSources, std::string* npReason);

}  // namespace drive
