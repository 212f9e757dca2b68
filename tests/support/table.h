// Cases kept as text, one a line.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace ombe_test {

/// Rows of a file in tests/tables. Tabs separate the cells; \n, \r, \t, \0, \\ and \xHH in a cell
/// stand for those bytes. Empty lines and lines that begin with # are left out. Fails the test when
/// there is no row.
std::vector<std::vector<std::string>> readTable(const std::string& name);

/// The same where the first row names the columns: each row as a map that holds every column, those
/// that are missing at its end as empty.
std::vector<std::map<std::string, std::string>> readNamedTable(const std::string& name);

}  // namespace ombe_test
