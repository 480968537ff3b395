#include "BinaryRecordLists.h"

#include <cstring>

#include "NfwAppLog.h"

namespace nfw::binaryfields {

void refuseMode(const char* npText) {
  if (strlen(npText) != 1) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertAutonomousMethodType(): nData[] Size Error");
  } else {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertAutonomousMethodType(): Unknown Type nData[%s]", npText);
  }
}

void refusePositioningType(const char* npText) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
         "nfw::NmeaBinaryLogDataVersion0::convertPositioningType(): Unknown Type nData[%s]", npText);
}

void refusePubxStatus(const char* npText) {
  if (strlen(npText) != 2) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertPubxStatus(): nData[] Size Error");
  } else {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertPubxStatus(): Unknown Status nData[%s]", npText);
  }
}

namespace {

template <unsigned int N>
bool isOneOf(const char* npStatus, const char (&nLetters)[N]) {
  return npStatus[0] != '\0' && npStatus[1] == '\0' && memchr(nLetters, npStatus[0], N - 1) != nullptr;
}

}  // namespace

bool isGgaValid(const char* npStatus) { return isOneOf(npStatus, "126"); }
bool isGllValid(const char* npStatus) { return isOneOf(npStatus, "A"); }
bool isGsaValid(const char* npStatus) { return isOneOf(npStatus, "23"); }
bool isRmcValid(const char* npStatus) { return isOneOf(npStatus, "ADU"); }
bool isPubxValid(const char* npStatus) { return strcmp(npStatus, "NF") != 0; }

}  // namespace nfw::binaryfields
