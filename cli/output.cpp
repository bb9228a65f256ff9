#include "cli/output.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/text.h"
#include "io/json_layout.h"

namespace zam::cli {
namespace {

// Characters of UTF-8; each is taken for as wide as a letter.
std::size_t width_of(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

void print_line(const std::string& text) { std::puts(printable(text).c_str()); }

void print_table(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width_of(row[i]));
    }
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += row[i] + std::string(widths[i] + 2 - width_of(row[i]), ' ');
        line.resize(line.find_last_not_of(' ') + 1);
        print_line(line);
    }
}

void print_json(const nlohmann::ordered_json& value) {
    std::istringstream lines(io::layout(value));
    for (std::string line; std::getline(lines, line);) print_line(line);
}

}  // namespace zam::cli
