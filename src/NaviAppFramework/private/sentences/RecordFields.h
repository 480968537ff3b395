/// @file
/// The fields of each sentence record, listed once, in the order in which messages and files carry them.
///
/// @code
/// eachField(lRecord, [&](auto& nField) { return nBroker.write(nField); });  // a const record gives const fields
/// @endcode
///
/// The visitor meets plain numbers, flags, enumerations and arrays of numbers (`uint8_t[36]`, `uint32_t[36]`): records
/// inside a record, and arrays of records, are walked down to theirs. The walk stops at the first visit that is false.
#pragma once

#include <type_traits>

#include "NfwNmeaSentence.h"

namespace nfw {

/// Specialised for each record: `static bool each(Self& n, Visit& nVisit)`.
template <class Record>
struct RecordFields;

/// Visits the fields of a record; true when every visit was.
template <class Record, class Visit>
bool eachField(Record& nRecord, Visit&& nVisit) {
  return RecordFields<std::remove_const_t<Record>>::each(nRecord, nVisit);
}

template <class Visit, class Field>
bool visitField(Visit& nVisit, Field& nField) {
  if constexpr (std::is_class_v<Field>) {
    return eachField(nField, nVisit);
  } else if constexpr (std::is_class_v<std::remove_all_extents_t<Field>>) {
    for (auto& lElement : nField) {
      if (!eachField(lElement, nVisit)) return false;
    }
    return true;
  } else {
    return nVisit(nField);
  }
}

template <class Visit, class... Fields>
bool visitFields(Visit& nVisit, Fields&... nFields) {
  return (visitField(nVisit, nFields) && ...);
}

template <>
struct RecordFields<GnssSentenceTime> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.hour, n.minute, n.second, n.millisecond);
  }
};

template <>
struct RecordFields<GnssSentenceDate> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.year, n.month, n.day);
  }
};

template <>
struct RecordFields<GnssSentenceCoordinate> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.value, n.degree, n.minute, n.direction);
  }
};

template <>
struct RecordFields<GgaSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.utcTime, n.latitude, n.longitude, n.quality, n.satelliteCount, n.hdop,
                       n.altitude, n.geoidSeparation, n.dgpsDataAge, n.dgpsStationId);
  }
};

template <>
struct RecordFields<GllSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.utcTime, n.latitude, n.longitude, n.status, n.mode);
  }
};

template <>
struct RecordFields<GsaSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.reserved, n.positioningType, n.mode, n.satelliteNumber, n.satelliteId,
                       n.pdop, n.hdop, n.vdop);
  }
};

template <>
struct RecordFields<GsvSatelliteInfo> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteNumber, n.satelliteId, n.valid, n.elevation, n.snr, n.azimuth);
  }
};

template <>
struct RecordFields<GsvSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return eachBeforeSky(n, nVisit) && visitField(nVisit, n.satellite);
  }
  template <class Self, class Visit>
  static bool eachBeforeSky(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.messageCount, n.messageNumber, n.satelliteView);
  }
  template <class Self>
  static auto& sky(Self& n) {
    return n.satellite;
  }
};

template <>
struct RecordFields<RmcSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.utcTime, n.status, n.latitude, n.longitude, n.speed, n.direction,
                       n.date, n.magneticDeclination, n.mode);
  }
};

template <>
struct RecordFields<VtgSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.directionForTrueNorth, n.directionForMagneticNorth, n.speedKnot,
                       n.speedKmh, n.mode);
  }
};

template <>
struct RecordFields<ZdaSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.satelliteType, n.utcTime, n.date, n.localZoneHour, n.localZoneMinute);
  }
};

template <>
struct RecordFields<PubxSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.messageId, n.utcTime, n.latitude, n.longitude, n.altitudeRef, n.status, n.hacc, n.vacc,
                       n.speed, n.direction, n.vvel, n.dgpsDataAge, n.hdop, n.vdop, n.tdop, n.satelliteCount, n.drMode);
  }
};

/// GSV comes last, with its satellites at the end.
template <>
struct RecordFields<NmeaSentence> {
  template <class Self, class Visit>
  static bool each(Self& n, Visit& nVisit) {
    return eachBeforeSky(n, nVisit) && visitField(nVisit, n.gsv.satellite);
  }
  template <class Self, class Visit>
  static bool eachBeforeSky(Self& n, Visit& nVisit) {
    return visitFields(nVisit, n.gga, n.gll, n.gsa, n.rmc, n.vtg) &&
           RecordFields<GsvSentence>::eachBeforeSky(n.gsv, nVisit);
  }
  template <class Self>
  static auto& sky(Self& n) {
    return n.gsv.satellite;
  }
};

/// Whether a record has a sky: 128 satellites as its last fields, of which most are not in use. Its fields can then be
/// visited in two parts, by `eachBeforeSky` and one by one in `sky`.
template <class Record>
constexpr bool HAS_SKY = std::is_same_v<Record, GsvSentence> || std::is_same_v<Record, NmeaSentence>;

}  // namespace nfw
