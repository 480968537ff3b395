// The parser against its reference.
#pragma once

#include <string>

/// Parses a text both ways as each kind of sentence. What differs first in verdict, record or log lines; else empty.
/// Captures the log meanwhile.
std::string differenceFromReference(const std::string& nText);
