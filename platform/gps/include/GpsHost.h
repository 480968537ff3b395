/// @file
/// How the host application feeds the stand-in of the GPS SDK: from its own source of sentences, or by hand. The unit's
/// own SDK has no such header: the framework never includes it.
#pragma once

#include <memory>

#include "GpsDef.h"

namespace gpshost {

/// Each call hands its text or record to the listeners of the geodetic system, one after the other on the calling
/// thread, without a lock held. Any thread may call. What is handed over is valid during the call only.
void feedSentence(const char* npSentence, unsigned int nSize, GeodeticSystem nSystem = WGS_84_GPS);
void feedProprietary(const char* npMessage, unsigned int nSize, GeodeticSystem nSystem = WGS_84_GPS);

void feed(GPGGA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPGLL const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPGSA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPGSV const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPRMC const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPVTG const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(GPZDA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(PUBX const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);
void feed(PARSE_NMEA const& nRecord, GeodeticSystem nSystem = WGS_84_GPS);

/// The stand-in's receiver: takes sentences as they come from a line and feeds them, on a thread of its own. Of each
/// first the text, then its record where it has one. A GSV group is one record, behind its last message, with the
/// satellites of all. When GGA, GLL, GSA, a GSV group, RMC and VTG have come, all six follow as one record, and it
/// begins anew, with a GSV group as well.
///
/// Listeners of WGS_84_GPS get everything as it came, those of TOKYO_GPS with its position moved to that datum. Records
/// are those of the sentences that the framework's own parser takes. Checksums are not judged.
///
/// @code
/// gpshost::Receiver lReceiver;
/// if (lReceiver.start()) lReceiver.receive(lText, lSize);
/// @endcode
///
/// Any thread may call, but no callback of a listener.
class Receiver {
 public:
  static constexpr unsigned int QUEUE_SIZE = 64;     ///< sentences
  static constexpr unsigned int MAX_SENTENCE = 256;  ///< bytes, a line end counts where there is one

  Receiver();
  ~Receiver();  ///< stops
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  bool start();  ///< false when it runs already or gets no thread
  void stop();   ///< what was taken is still handed on
  /// Takes a sentence; waits while the queue is full. False when it does not run (any more), for null and for more than
  /// MAX_SENTENCE bytes.
  bool receive(const char* npSentence, unsigned int nSize);
  void drain();  ///< returns when all that was taken has been handed on

 private:
  class Line;
  const std::unique_ptr<Line> mpLine;
};

}  // namespace gpshost
