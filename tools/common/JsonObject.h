#pragma once

#include <cmath>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

#include "DecimalText.h"
#include "Format.h"
#include "PrintableText.h"

namespace tool {

/// Writes one JSON object, or a list, onto a text, piece by piece; closed when it goes. Keys and texts are written as
/// they are unless they are given to quote().
class JsonObject {
 public:
  explicit JsonObject(std::string* npText, char nOpen = '{') : mpText(npText), mClose(nOpen == '{' ? '}' : ']') {
    mpText->push_back(nOpen);
  }
  ~JsonObject() { mpText->push_back(mClose); }
  JsonObject(const JsonObject&) = delete;
  JsonObject& operator=(const JsonObject&) = delete;

  /// Begins a member; the caller appends its value, as another JsonObject does.
  std::string* key(std::string_view nKey) {
    separate();
    mpText->push_back('"');
    mpText->append(nKey);
    mpText->append("\":");
    return mpText;
  }
  /// Begins an element of a list.
  std::string* element() {
    separate();
    return mpText;
  }

  void number(std::string_view nKey, uint64_t nValue) { appendNumber(nValue, key(nKey)); }
  /// The shortest digits that give the value back; null for what JSON cannot say.
  void real(std::string_view nKey, double nValue) {
    if (!std::isfinite(nValue)) return null(nKey);
    appendShortest(nValue, key(nKey));
  }
  void flag(std::string_view nKey, bool nValue) { key(nKey)->append(nValue ? "true" : "false"); }
  void null(std::string_view nKey) { key(nKey)->append("null"); }
  void text(std::string_view nKey, std::string_view nValue) { quote(nValue, key(nKey)); }

  /// Appends a text in quotes, in UTF-8. Control characters are escaped; a byte that is no UTF-8, as any file name may
  /// have it, becomes U+FFFD.
  static void quote(std::string_view nValue, std::string* npText) {
    npText->push_back('"');
    while (!nValue.empty()) {
      const size_t lPlain = plainSize(nValue);
      npText->append(nValue.substr(0, lPlain));
      nValue.remove_prefix(lPlain);
      if (nValue.empty()) break;
      const size_t lSize = characterSize(nValue);
      const std::string_view lCharacter = nValue.substr(0, lSize == 0 ? 1 : lSize);
      quoteCharacter(lSize == 0 ? "\xEF\xBF\xBD" : lCharacter, npText);
      nValue.remove_prefix(lCharacter.size());
    }
    npText->push_back('"');
  }

 private:
  /// How many of the first bytes stand for themselves.
  static size_t plainSize(std::string_view nText) {
    size_t i = 0;
    while (i < nText.size() && nText[i] >= ' ' && nText[i] < '\x7F' && nText[i] != '"' && nText[i] != '\\') ++i;
    return i;
  }

  static void quoteCharacter(std::string_view nCharacter, std::string* npText) {
    if (nCharacter == "\"" || nCharacter == "\\") npText->push_back('\\');
    const bool lIsEscaped = isControl(nCharacter) && nCharacter.size() == 1;
    if (!lIsEscaped) npText->append(nCharacter);
    if (lIsEscaped) fmt::format_to(std::back_inserter(*npText), "\\u{:04X}", static_cast<unsigned int>(nCharacter[0]));
  }

  void separate() {
    if (mHasMembers) mpText->push_back(',');
    mHasMembers = true;
  }

  std::string* const mpText;
  const char mClose;
  bool mHasMembers = false;
};

}  // namespace tool
