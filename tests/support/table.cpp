#include "support/table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string_view>

#include "support/paths.h"

namespace ombe_test {

std::vector<std::vector<std::string>> readTable(const std::string& name) {
  constexpr std::string_view kLetters("nrt0\\"), kBytes("\n\r\t\0\\", 5);
  std::vector<std::vector<std::string>> rows;
  std::ifstream file(std::string(kTables) + "/" + name);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    auto& cells = rows.emplace_back(1);
    for (std::size_t at = 0; at < line.size(); ++at) {
      if (line[at] == '\t') {
        cells.emplace_back();
      } else if (line[at] != '\\') {
        cells.back() += line[at];
      } else if (line.at(++at) == 'x') {
        cells.back() += static_cast<char>(std::stoi(line.substr(at + 1, 2), nullptr, 16));
        at += 2;
      } else {
        cells.back() += kBytes.at(kLetters.find(line[at]));
      }
    }
  }
  EXPECT_FALSE(rows.empty()) << "no table " << name;
  return rows;
}

std::vector<std::map<std::string, std::string>> readNamedTable(const std::string& name) {
  std::vector<std::map<std::string, std::string>> rows;
  const auto table = readTable(name);
  for (std::size_t i = 1; i < table.size(); ++i) {
    auto& row = rows.emplace_back();
    EXPECT_LE(table[i].size(), table[0].size()) << name << ": " << table[i][0];
    for (std::size_t c = 0; c < table[0].size(); ++c) {
      row[table[0][c]] = c < table[i].size() ? table[i][c] : "";
    }
  }
  EXPECT_FALSE(rows.empty()) << "no rows in " << name;
  return rows;
}

}  // namespace ombe_test
