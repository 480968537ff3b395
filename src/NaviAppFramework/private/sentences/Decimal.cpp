#include "Decimal.h"

#include <locale.h>
#include <stdlib.h>

namespace nfw {

namespace {

locale_t cLocale() {
  static const locale_t LOCALE = newlocale(LC_ALL_MASK, "C", nullptr);  // never freed: threads may outlive the statics
  return LOCALE;
}

}  // namespace

double Decimal::read(const char* npText, const char** nppRest) {
  double lValue = 0.0;
  const char* const lpEnd = readPlain(npText, &lValue);
  if (lpEnd != nullptr && *lpEnd == '\0') {
    *nppRest = lpEnd;
    return lValue;
  }
  char* lpRest = nullptr;
  lValue = strtod_l(npText, &lpRest, cLocale());
  *nppRest = lpRest;
  return lValue;
}

}  // namespace nfw
