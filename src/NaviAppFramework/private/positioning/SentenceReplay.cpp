#include "SentenceReplay.h"

#include "GsvBlocks.h"
#include "NfwNmeaDataParser.h"

namespace nfw {
void SentenceReplay::play(const unsigned char* npText, unsigned int nSize) {
  mDispatcher.dispatch(npText, nSize);
  const char* const lpText = reinterpret_cast<const char*>(npText);
  switch (NmeaDataParser::analyzeNmeaSentenceType(lpText, nSize)) {
    case NMEA_GGA:
      return playCombined(&NmeaDataParser::parseGgaSentence, lpText, nSize, &NmeaSentence::gga, GGA);
    case NMEA_GLL:
      return playCombined(&NmeaDataParser::parseGllSentence, lpText, nSize, &NmeaSentence::gll, GLL);
    case NMEA_GSA:
      return playCombined(&NmeaDataParser::parseGsaSentence, lpText, nSize, &NmeaSentence::gsa, GSA);
    case NMEA_GSV:
      return playGsv(lpText, nSize);
    case NMEA_RMC:
      return playCombined(&NmeaDataParser::parseRmcSentence, lpText, nSize, &NmeaSentence::rmc, RMC);
    case NMEA_VTG:
      return playCombined(&NmeaDataParser::parseVtgSentence, lpText, nSize, &NmeaSentence::vtg, VTG);
    case NMEA_ZDA:
      return playAlone(&NmeaDataParser::parseZdaSentence, lpText, nSize);
    case NMEA_PUBX:
      return playAlone(&NmeaDataParser::parsePubxSentence, lpText, nSize);
    default:
      return;
  }
}

void SentenceReplay::clearSentenceData() {
  mEpoch = NmeaSentence();
  mFlags = 0;
  clearGsvGroup();
}

void SentenceReplay::clearGsvGroup() {
  mGsvGroup = GsvSentence();
  mGsvSatelliteNum = 0;
}

template <class Record>
void SentenceReplay::playAlone(Parse<Record> npParse, const char* npText, unsigned int nSize) {
  Record lRecord;
  if (npParse(npText, nSize, &lRecord)) mDispatcher.dispatch(lRecord);
}

template <class Record>
void SentenceReplay::playCombined(Parse<Record> npParse, const char* npText, unsigned int nSize,
                                  Record NmeaSentence::*npMember, Flag nFlag) {
  Record lRecord;
  if (!npParse(npText, nSize, &lRecord)) return;
  mDispatcher.dispatch(lRecord);
  mEpoch.*npMember = lRecord;
  note(nFlag);
}

void SentenceReplay::playGsv(const char* npText, unsigned int nSize) {
  GsvSentence lMessage;
  if (!NmeaDataParser::parseGsvSentence(npText, nSize, &lMessage)) return;
  mergeGsv(lMessage);
  if (lMessage.messageNumber < lMessage.messageCount) return;
  mDispatcher.dispatch(mGsvGroup);
  mEpoch.gsv = mGsvGroup;
  clearGsvGroup();  // a group whose first message is lost does not grow out of this one
  note(GSV);
}

/// A group is its messages' satellites under the head of its last message. The last message brings none of its own, so
/// the number of messages and not the satellites in view tells when a group is complete.
void SentenceReplay::mergeGsv(const GsvSentence& nMessage) {
  if (nMessage.messageNumber <= 1) clearGsvGroup();
  mGsvGroup.satelliteType = nMessage.satelliteType;
  mGsvGroup.messageCount = nMessage.messageCount;
  mGsvGroup.messageNumber = nMessage.messageNumber;
  mGsvGroup.satelliteView = nMessage.satelliteView;
  const uint32_t lParsedNum = gsvSatelliteNum(nMessage);
  for (uint32_t i = 0; i < lParsedNum && mGsvSatelliteNum < GsvSentence::SATELLITE_NUM; ++i) {
    mGsvGroup.satellite[mGsvSatelliteNum++] = nMessage.satellite[i];
  }
}

void SentenceReplay::note(Flag nFlag) {
  mFlags |= nFlag;
  if (mFlags != ALL) return;
  mDispatcher.dispatch(mEpoch);
  clearSentenceData();
}

}  // namespace nfw
