#include "XmlText.h"

#include "PrintableText.h"

namespace logtool {

namespace {

std::string_view shown(std::string_view nCharacter) {
  if (nCharacter == "&") return "&amp;";
  if (nCharacter == "<") return "&lt;";
  if (nCharacter == "\"") return "&quot;";
  const bool lIsXml = !tool::isControl(nCharacter) && nCharacter != "\xEF\xBF\xBE" && nCharacter != "\xEF\xBF\xBF";
  return lIsXml ? nCharacter : "?";
}

}  // namespace

std::string xmlText(std::string_view nText) {
  std::string lText;
  while (!nText.empty()) {
    const size_t lSize = tool::characterSize(nText);
    lText += lSize == 0 ? "?" : shown(nText.substr(0, lSize));
    nText.remove_prefix(lSize == 0 ? 1 : lSize);
  }
  return lText;
}

}  // namespace logtool
