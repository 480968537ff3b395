#include "PositioningComponent.h"

#include "LineReader.h"
#include "NfwNmeaDataParser.h"
#include "SentenceTime.h"

namespace drive {

namespace {

// Other "$PUBX" sentences have other fields.
bool isOtherPubx(int nKind, std::string_view nSentence) {
  return nKind == nfw::NMEA_PUBX && tool::sentenceField(nSentence, 1) != "00";
}

}  // namespace

int PositioningComponent::initializeAfterQuickBootImp() { return mRoad.start() ? nfw::PHASE_DONE : nfw::PHASE_FAILED; }

int PositioningComponent::finalizeImp() {
  mRoad.stop();
  return nfw::PHASE_DONE;
}

bool PositioningComponent::onSentence(std::string_view nSentence) {
  const int lKind =
      nfw::NmeaDataParser::analyzeNmeaSentenceType(nSentence.data(), static_cast<unsigned>(nSentence.size()));
  return route(isOtherPubx(lKind, nSentence) ? static_cast<int>(nfw::NMEA_UNKNOWN) : lKind, nSentence);
}

void PositioningComponent::onSourceEnd() {
  if (!mEpoch.isEmpty() && mRoad.getWindow().acquire(1)) dispatchEpoch();
}

bool PositioningComponent::route(int nKind, std::string_view nSentence) {
  using nfw::NmeaDataParser;
  switch (nKind) {
    case nfw::NMEA_GGA:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseGgaSentence);
    case nfw::NMEA_GLL:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseGllSentence);
    case nfw::NMEA_GSA:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseGsaSentence);
    case nfw::NMEA_GSV:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseGsvSentence);
    case nfw::NMEA_RMC:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseRmcSentence);
    case nfw::NMEA_VTG:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseVtgSentence);
    case nfw::NMEA_ZDA:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parseZdaSentence);
    case nfw::NMEA_PUBX:
      return routeRecord(nKind, nSentence, &NmeaDataParser::parsePubxSentence);
    default:
      break;
  }
  if (!enter(nSentence, -1, 1)) return false;
  mProgress.mAccepted.add(nfw::NMEA_UNKNOWN);
  return true;
}

template <class Record>
bool PositioningComponent::routeRecord(int nKind, std::string_view nSentence, Parse<Record> npParse) {
  char lText[tool::LineReader::MAX_SENTENCE + 1];  // the parser wants a terminator
  lText[nSentence.copy(lText, sizeof(lText) - 1)] = '\0';
  Record lRecord;
  const bool lIsParsed = npParse(lText, static_cast<unsigned int>(nSentence.size()), &lRecord);
  if (!enter(nSentence, lIsParsed ? tool::sentenceTime(nSentence) : -1, lIsParsed ? 2 : 1)) return false;
  (lIsParsed ? mProgress.mAccepted : mProgress.mUnparsable).add(nKind);
  if (!lIsParsed) return true;
  mEpoch.add(lRecord);
  mRoad.getDispatcher().dispatch(lRecord);
  return true;
}

// Takes the places of all messages of the sentence at once, so that a stop never falls between them; then hands on the
// epoch that it ends, and the sentence as it came.
bool PositioningComponent::enter(std::string_view nSentence, int64_t nTime, unsigned int nMessages) {
  const bool lEndsEpoch = mEpoch.isNext(nTime);
  if (!mRoad.getWindow().acquire(nMessages + (lEndsEpoch ? 1 : 0))) return false;
  if (lEndsEpoch) dispatchEpoch();
  mEpoch.noteTime(nTime);
  mRoad.getDispatcher().dispatch(reinterpret_cast<const unsigned char*>(nSentence.data()),
                                 static_cast<unsigned int>(nSentence.size()));
  return true;
}

void PositioningComponent::dispatchEpoch() {
  mProgress.mEpochs.fetch_add(1, std::memory_order_relaxed);
  mRoad.getDispatcher().dispatch(mEpoch.get());
  mEpoch.clear();
}

}  // namespace drive
