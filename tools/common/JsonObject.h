#pragma once

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

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
    fmt::format_to(std::back_inserter(*mpText), "\"{}\":", nKey);
    return mpText;
  }
  /// Begins an element of a list.
  std::string* element() {
    separate();
    return mpText;
  }

  void number(std::string_view nKey, uint64_t nValue) { fmt::format_to(std::back_inserter(*key(nKey)), "{}", nValue); }
  /// The shortest digits that give the value back; null for what JSON cannot say.
  void real(std::string_view nKey, double nValue) {
    if (!std::isfinite(nValue)) return null(nKey);
    fmt::format_to(std::back_inserter(*key(nKey)), "{}", nValue);
  }
  void flag(std::string_view nKey, bool nValue) { key(nKey)->append(nValue ? "true" : "false"); }
  void null(std::string_view nKey) { key(nKey)->append("null"); }
  void text(std::string_view nKey, std::string_view nValue) { quote(nValue, key(nKey)); }

  /// Appends a text in quotes; bytes that are no printable ASCII become "?", which keeps any file name valid JSON.
  static void quote(std::string_view nValue, std::string* npText) {
    npText->push_back('"');
    for (const char lByte : nValue) {
      if (lByte == '"' || lByte == '\\') npText->push_back('\\');
      npText->push_back(lByte >= 0x20 && lByte <= 0x7E ? lByte : '?');
    }
    npText->push_back('"');
  }

 private:
  void separate() {
    if (mHasMembers) mpText->push_back(',');
    mHasMembers = true;
  }

  std::string* const mpText;
  const char mClose;
  bool mHasMembers = false;
};

}  // namespace tool
