#include "ExpectedStream.h"

#include "LogKinds.h"
#include "NfwNmeaDataParser.h"
#include "SentenceText.h"

namespace drive {

namespace {

constexpr unsigned int bit(int nKind) { return 1u << nKind; }

const unsigned int COMBINED = bit(nfw::NMEA_GGA) | bit(nfw::NMEA_GLL) | bit(nfw::NMEA_GSA) | bit(nfw::NMEA_GSV) |
                              bit(nfw::NMEA_RMC) | bit(nfw::NMEA_VTG);

}  // namespace

ExpectedStream::Fate ExpectedStream::onSentence(std::string_view nSentence) {
  const LogMute lMute;
  mTally.mSentences.add(nSentence);
  const tool::TerminatedSentence lText(nSentence);
  const int lKind = nfw::NmeaDataParser::analyzeNmeaSentenceType(lText.mText, lText.mSize);
  return {lKind, judge(lKind, lText.mText, lText.mSize)};
}

void ExpectedStream::onDeadReckoning(std::string_view nSentence) {
  if (!nSentence.empty()) mTally.mDeadReckoning.add(nSentence);
}

bool ExpectedStream::judge(int nKind, const char* npText, unsigned int nSize) {
  using nfw::NmeaDataParser;
  switch (nKind) {
    case nfw::NMEA_GGA:
      return parsed(nKind, &NmeaDataParser::parseGgaSentence, npText, nSize);
    case nfw::NMEA_GLL:
      return parsed(nKind, &NmeaDataParser::parseGllSentence, npText, nSize);
    case nfw::NMEA_GSA:
      return parsed(nKind, &NmeaDataParser::parseGsaSentence, npText, nSize);
    case nfw::NMEA_GSV:
      return parsedGsv(npText, nSize);
    case nfw::NMEA_RMC:
      return parsed(nKind, &NmeaDataParser::parseRmcSentence, npText, nSize);
    case nfw::NMEA_VTG:
      return parsed(nKind, &NmeaDataParser::parseVtgSentence, npText, nSize);
    case nfw::NMEA_ZDA:
      return parsed(nKind, &NmeaDataParser::parseZdaSentence, npText, nSize);
    case nfw::NMEA_PUBX:
      return parsed(nKind, &NmeaDataParser::parsePubxSentence, npText, nSize);
    default:
      return false;
  }
}

template <class Record>
bool ExpectedStream::parsed(int nKind, Parse<Record> npParse, const char* npText, unsigned int nSize) {
  Record lRecord;
  if (!npParse(npText, nSize, &lRecord)) return false;
  note(nKind);
  return true;
}

bool ExpectedStream::parsedGsv(const char* npText, unsigned int nSize) {
  nfw::GsvSentence lMessage;
  if (!nfw::NmeaDataParser::parseGsvSentence(npText, nSize, &lMessage)) return false;
  if (lMessage.messageNumber >= lMessage.messageCount) note(nfw::NMEA_GSV);
  return true;
}

void ExpectedStream::note(int nKind) {
  ++mTally.mRecords[static_cast<size_t>(nKind)];
  mSeen |= bit(nKind) & COMBINED;
  if (mSeen != COMBINED) return;
  ++mTally.mCombined;
  mSeen = 0;
}

}  // namespace drive
