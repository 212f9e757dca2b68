#include "text/source_path.h"

#include <algorithm>
#include <boost/url/encode.hpp>
#include <boost/url/grammar/ci_string.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/pchars.hpp>
#include <string>
#include <string_view>

#include "text/utf8.h"

namespace Ombe {
namespace {

namespace urls = boost::urls;

std::string escape(std::string_view text) {
  constexpr auto kPathCharacters = urls::pchars + '/';
  // The encoder looks back three bytes from the end of its buffer, so it gets at least as many.
  constexpr std::size_t kSmallestBuffer = 3;
  std::string out(std::max(kSmallestBuffer, urls::encoded_size(text, kPathCharacters)), '\0');
  out.resize(urls::encode(out.data(), out.size(), text, kPathCharacters));
  return out;
}

}  // namespace

Status uriToFilePath(const ByteString& uri, ByteString& out) {
  const std::string_view text(view(uri).data());
  if (!isWellFormedUtf8(text)) return kNotALocalFile;
  const std::string escaped = escape(text);
  const auto url = urls::parse_uri_reference(escaped);
  if (!url) return kNotALocalFile;
  if (url->has_scheme() && !urls::grammar::ci_is_equal(url->scheme(), "file")) {
    return kNotALocalFile;
  }
  const std::string path = url->path();
  if (path.empty()) return kNotALocalFile;
  // The parser takes what it does not understand behind a host ("//host:x/y") for a path.
  if (!url->encoded_authority().empty() && path.front() != '/') return kNotALocalFile;
  out = toByteString(path);
  return kSuccess;
}

}  // namespace Ombe
