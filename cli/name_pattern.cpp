#include "cli/name_pattern.h"

#include "cli/exit_code.h"

namespace zam::cli {

NamePattern::NamePattern(const std::string& pattern, bool several) {
    constexpr std::string_view kExtension = ".png";
    const std::size_t name = pattern.rfind('/') == std::string::npos ? 0 : pattern.rfind('/') + 1;
    const std::size_t last = pattern.rfind('#');
    const std::string stem = pattern.substr(0, pattern.size() - std::min(pattern.size(), kExtension.size()));
    if (!pattern.ends_with(kExtension) || stem.size() == name)
        throw UsageError("-o " + pattern + ": only PNG files are written\n" +
                         "hint: end the name in .png, for example out/light.####.png");
    before_ = pattern;
    if (last == std::string::npos || last < name) {
        if (several)
            throw UsageError("-o " + pattern + ": several frames would all get this name\n" +
                             "hint: put # where the frame's number goes, for example " + stem + ".####.png");
        return;
    }
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
