// Numbers as a settings file holds them.
#pragma once

namespace nfw {

/// Bytes of the longest value with its terminator.
const unsigned int SETTING_VALUE_SIZE = 201;

/// The number that the value begins with: a sign ("-" only where `nMin` is negative), then digits up to the first
/// character that is none. Full-width characters count as their half-width forms; `npValue` is changed. False, and
/// `*npNumber` as it was, without a digit and for a number that is not in `nMin` to `nMax`.
bool parseSettingNumber(char (&npValue)[SETTING_VALUE_SIZE], long long nMin, long long nMax, long long* npNumber);

void formatSettingNumber(long long nNumber, char (&npValue)[SETTING_VALUE_SIZE]);

}  // namespace nfw
