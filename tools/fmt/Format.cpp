// What fmt's headers declare and do not define for those that include them.
#include "Format.h"

#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template auto dragonbox::to_decimal(float nNumber) noexcept -> dragonbox::decimal_fp<float>;
template auto dragonbox::to_decimal(double nNumber) noexcept -> dragonbox::decimal_fp<double>;
template locale_ref::locale_ref(const std::locale& nLocale);
template auto locale_ref::get<std::locale>() const -> std::locale;
template auto thousands_sep_impl(locale_ref nLocale) -> thousands_sep_result<char>;
template auto decimal_point_impl(locale_ref nLocale) -> char;
template void buffer<char>::append(const char* npBegin, const char* npEnd);
template void vformat_to(buffer<char>& nBuffer, string_view nFormat,
                         basic_format_args<FMT_BUFFER_CONTEXT(char)> nValues, locale_ref nLocale);

}  // namespace detail
FMT_END_NAMESPACE
