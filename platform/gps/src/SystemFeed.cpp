#include "SystemFeed.h"

#include "GpsHost.h"
#include "SentenceParser.h"

namespace gpshost {

void SystemFeed::take(const char* npText, unsigned int nSize) {
  feedSentence(npText, nSize, mSystem);
  switch (kindOf(npText)) {
    case KIND_GGA:
      return takeCombined(npText, &PARSE_NMEA::gga, GGA);
    case KIND_GLL:
      return takeCombined(npText, &PARSE_NMEA::gll, GLL);
    case KIND_GSA:
      return takeCombined(npText, &PARSE_NMEA::gsa, GSA);
    case KIND_GSV:
      return takeGsv(npText);
    case KIND_RMC:
      return takeCombined(npText, &PARSE_NMEA::rmc, RMC);
    case KIND_VTG:
      return takeCombined(npText, &PARSE_NMEA::vtg, VTG);
    case KIND_ZDA:
      return takeAlone<GPZDA>(npText);
    case KIND_PUBX:
      return takeAlone<PUBX>(npText);
    case KIND_OTHER:
      return;
  }
}

void SystemFeed::clear() {
  mFlags = 0;  // the records themselves are written anew before all flags are set
  mGroup.clear();
}

template <class Record>
void SystemFeed::takeAlone(const char* npText) {
  Record lRecord;
  if (parse(npText, &lRecord)) feed(lRecord, mSystem);
}

template <class Record>
void SystemFeed::takeCombined(const char* npText, Record PARSE_NMEA::*npMember, Flag nFlag) {
  Record lRecord;
  if (!parse(npText, &lRecord)) return;
  feed(lRecord, mSystem);
  mEpoch.*npMember = lRecord;
  note(nFlag);
}

void SystemFeed::takeGsv(const char* npText) {
  GPGSV lMessage;
  if (!parse(npText, &lMessage) || !mGroup.add(lMessage)) return;
  feed(mGroup.get(), mSystem);
  mEpoch.gsv = mGroup.get();
  mGroup.clear();  // a group whose first message is lost does not grow out of this one
  note(GSV);
}

void SystemFeed::note(Flag nFlag) {
  mFlags |= nFlag;
  if (mFlags != ALL) return;
  feed(mEpoch, mSystem);
  clear();
}

}  // namespace gpshost
