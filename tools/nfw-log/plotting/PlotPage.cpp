#include "PlotPage.h"

#include "PageData.h"
#include "PageParts.h"
#include "XmlText.h"

namespace logtool {

namespace {

// The policy lets the page fetch nothing, whatever stands in it.
const char* const HEAD =
    "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width,initial-scale=1\">\n"
    "<meta name=\"color-scheme\" content=\"light dark\">\n"
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src 'unsafe-inline'; "
    "style-src 'unsafe-inline'; img-src data:\">\n";

}  // namespace

std::string plotPage(const PlotData& nData, bool nByFix) {
  const PageParts lParts = pageParts();
  std::string lPage = HEAD;
  lPage += "<title>" + xmlText(nData.mTitle) + "</title>\n<style>\n";
  lPage.append(lParts.mStyle);
  lPage +=
      "</style>\n</head>\n<body>\n<noscript>This page draws with JavaScript; without it, ask nfw-log plot for a "
      "picture (.svg).</noscript>\n<script type=\"application/json\" id=\"data\">\n";
  lPage += pageData(nData, nByFix);
  lPage += "\n</script>\n<script type=\"text/plain\" id=\"licences\">\n";
  lPage.append(lParts.mLicences);
  lPage += "</script>\n<script>\n";
  lPage.append(lParts.mScript);
  return lPage + "</script>\n</body>\n</html>\n";
}

}  // namespace logtool
