#include "PrintableText.h"

#include <cstdint>
#include <iterator>

#include "Format.h"

namespace tool {

namespace {

uint32_t byteAt(std::string_view nText, size_t nAt) { return static_cast<unsigned char>(nText[nAt]); }

// Of a lead byte; 0 for one that leads nothing.
size_t sizeOfLead(uint32_t nLead) {
  if (nLead < 0x80) return 1;
  if (nLead < 0xC2) return 0;
  return nLead < 0xE0 ? 2 : nLead < 0xF0 ? 3 : nLead < 0xF5 ? 4 : 0;
}

// Of what is well-formed but for its value: no surrogates, nothing written longer than it need be.
bool isAllowed(uint32_t nLead, uint32_t nSecond) {
  if (nLead == 0xE0) return nSecond >= 0xA0;
  if (nLead == 0xED) return nSecond < 0xA0;
  if (nLead == 0xF0) return nSecond >= 0x90;
  return nLead != 0xF4 || nSecond < 0x90;
}

}  // namespace

size_t characterSize(std::string_view nText) {
  const size_t lSize = nText.empty() ? 0 : sizeOfLead(byteAt(nText, 0));
  if (lSize > nText.size()) return 0;
  for (size_t i = 1; i < lSize; ++i) {
    if ((byteAt(nText, i) & 0xC0) != 0x80) return 0;
  }
  return lSize < 2 || isAllowed(byteAt(nText, 0), byteAt(nText, 1)) ? lSize : 0;
}

bool isControl(std::string_view nCharacter) {
  const uint32_t lFirst = byteAt(nCharacter, 0);
  return lFirst < 0x20 || lFirst == 0x7F || (lFirst == 0xC2 && byteAt(nCharacter, 1) < 0xA0);
}

void appendPrintable(std::string_view nText, std::string* npText) {
  while (!nText.empty()) {
    const size_t lSize = characterSize(nText);
    const std::string_view lCharacter = nText.substr(0, lSize == 0 ? 1 : lSize);
    nText.remove_prefix(lCharacter.size());
    if (lSize > 0 && (!isControl(lCharacter) || lCharacter == "\t")) {
      npText->append(lCharacter);
      continue;
    }
    for (const char lByte : lCharacter) {
      fmt::format_to(std::back_inserter(*npText), "\\x{:02X}", static_cast<unsigned char>(lByte));
    }
  }
}

}  // namespace tool
