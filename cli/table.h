#pragma once
// Tables on the terminal.
#include <string>
#include <vector>

namespace zam::cli {

// Prints rows of equally many cells to stdout, columns aligned, two spaces between them.
void print_table(const std::vector<std::vector<std::string>>& rows);

}  // namespace zam::cli
