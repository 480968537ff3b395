/// @file
/// One field of a sentence, taken out of it.
#pragma once

namespace nfw {

/// The text of a field without the blanks around it.
class NmeaItem {
 public:
  static const unsigned int ITEM_SIZE = 20;  ///< with the terminator

  /// Takes the field at the start of a text, up to its ",", its "*" or the end.
  /// @return what is left of the text: nothing behind a "*". Null, with a line in the log, when there is no field.
  const char* extractHeadData(const char* npText);

  const char* text() const { return mpText; }

 private:
  const char* mpText = "";
  char mItem[ITEM_SIZE];
};

}  // namespace nfw
