// The bodies of the library {fmt}, once. Its shared library would have to be found and mapped at
// every start; with its headers alone every source that formats would hold a copy of them all.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template FMT_API auto thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template FMT_API auto thousands_sep_impl(locale_ref) -> thousands_sep_result<wchar_t>;
template FMT_API auto decimal_point_impl(locale_ref) -> char;
template FMT_API auto decimal_point_impl(locale_ref) -> wchar_t;
template FMT_API void buffer<char>::append(const char*, const char*);
template FMT_API void vformat_to(buffer<char>&, basic_string_view<char>,
                                 basic_format_args<buffer_context<char>>, locale_ref);

}  // namespace detail
FMT_END_NAMESPACE
