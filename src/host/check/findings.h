// What was found about a file, with the lines that it was found in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Ombe {

enum class Severity { kWarning, kError };

const char* severityName(Severity severity);

struct Finding {
  Severity severity;
  const char* kind;    ///< a word for programs, a literal: "bad-line"
  std::uint64_t line;  ///< as an editor counts; 0 for the file as a whole
  std::string message;
  std::string text;  ///< the line that is meant, when it is to be shown
};

/// Findings of one file. Keeps the first `limit` of each kind (0 keeps all) and counts the others.
class Findings {
 public:
  explicit Findings(std::size_t limit = 0) : limit_(limit) {}

  void add(Finding finding);

  /// Those kept, by line.
  [[nodiscard]] std::vector<Finding> sorted() const;
  /// How many of each kind were not kept; kinds that lost none are not in it.
  [[nodiscard]] std::map<std::string_view, std::size_t> omitted() const;
  /// How many were found, kept or not.
  [[nodiscard]] std::size_t count(Severity severity) const;
  [[nodiscard]] std::size_t count(std::string_view kind) const;

 private:
  std::size_t limit_;
  std::vector<Finding> kept_;
  std::map<std::string_view, std::size_t> byKind_;
  std::map<Severity, std::size_t> bySeverity_;
};

}  // namespace Ombe
