#pragma once

#include <fmt/format.h>

/// What fmt's headers leave to each file that formats, Format.cpp has once.
#ifndef FMT_HEADER_ONLY
FMT_BEGIN_NAMESPACE
namespace detail {
extern template void vformat_to(buffer<char>& nBuffer, string_view nFormat,
                                basic_format_args<FMT_BUFFER_CONTEXT(char)> nValues, locale_ref nLocale);
}  // namespace detail
FMT_END_NAMESPACE
#endif
