#pragma once
// What commands print on stdout. Nothing in it commands the terminal: control characters, and bytes that are no UTF-8,
// are question marks.
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace zam::cli {

// One line.
void print_line(const std::string& text);

// Rows of equally many cells, columns aligned, two spaces between them.
void print_table(const std::vector<std::vector<std::string>>& rows);

// Laid out for people; for machines as well.
void print_json(const nlohmann::ordered_json& value);

}  // namespace zam::cli
