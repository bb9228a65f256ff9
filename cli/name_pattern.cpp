#include "cli/name_pattern.h"

#include "host/utf8_path.h"

namespace zam::cli {

NamePattern::NamePattern(const std::string& pattern) : before_(pattern) {
    const std::size_t name = pattern.size() - host::utf8_path(pattern).filename().string().size();
    const std::size_t last = pattern.rfind('#');
    if (last == std::string::npos || last < name) return;
    std::size_t first = last;
    while (first > name && pattern[first - 1] == '#') --first;
    before_ = pattern.substr(0, first);
    after_ = pattern.substr(last + 1);
    digits_ = last + 1 - first;
}

std::string NamePattern::file(int frame) const {
    if (digits_ == 0) return before_;
    std::string number = std::to_string(frame);
    if (number.size() < digits_) number.insert(0, digits_ - number.size(), '0');
    return before_ + number + after_;
}

}  // namespace zam::cli
