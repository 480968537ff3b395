/// @file
/// A text.
#pragma once

#include <string>

namespace utl {

/// A text that owns its characters. Null makes the empty text.
template <class C>
class BasicString {
 public:
  BasicString() = default;
  explicit BasicString(const C* npText)
      : mText(npText != nullptr ? std::basic_string<C>(npText) : std::basic_string<C>()) {}

  const C* c_str() const { return mText.c_str(); }

 private:
  std::basic_string<C> mText;
};

}  // namespace utl
