#pragma once

#include <string_view>

#include "Record.h"

namespace logtool {

/// Whether the data is a sentence as text.
inline bool isSentenceText(std::string_view nData) { return nData.size() >= 6 && (nData[0] == '$' || nData[0] == '!'); }

/// What a record holds, in a word:
/// - of a sentence, in text or binary: its kind, as "GGA" or "PUBX"; the address of one that is its maker's own
/// - "DR": a report of dead reckoning (several sentences)
/// - "LOG": a line of the application log
/// - "DATA": anything else
/// The view is of the record's data or of a constant.
std::string_view recordType(const tool::Record& nRecord);

}  // namespace logtool
