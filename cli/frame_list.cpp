#include "cli/frame_list.h"

#include <charconv>
#include <string_view>

#include "cli/exit_code.h"

namespace zam::cli {
namespace {

[[noreturn]] void fail(const std::string& text, const std::string& what, const std::string& hint) {
    throw UsageError("--frames " + text + ": " + what + "\nhint: " + hint);
}

// Takes digits from the front of `rest`; false when there are none.
bool take_number(std::string_view& rest, int& number) {
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (error != std::errc() || rest[0] == '-') return false;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    return true;
}

bool take(std::string_view& rest, char c) {
    if (rest.empty() || rest[0] != c) return false;
    rest.remove_prefix(1);
    return true;
}

}  // namespace

std::vector<int> parse_frames(const std::string& text, int frame_count) {
    std::vector<int> frames;
    std::vector<bool> listed(static_cast<std::size_t>(frame_count), false);
    std::string_view rest = text;
    do {
        int first = 0, step = 1;
        bool valid = take_number(rest, first);
        int last = first;
        if (valid && take(rest, '-')) {
            valid = take_number(rest, last);
            if (valid && take(rest, 'x')) valid = take_number(rest, step) && step > 0;
        }
        if (!valid || (!rest.empty() && rest[0] != ','))
            fail(text, "this is no list of frames", "write 5, 0-47, 0-47x2 or 1,5,9");
        const std::string range = "0-" + std::to_string(frame_count - 1);
        if (first >= frame_count || last >= frame_count)
            fail(text, "the scene has only the frames " + range, "frames count from 0");
        if (last < first) fail(text, "the range runs backwards", "write the lower frame first");
        for (int frame = first; frame <= last; frame += step) {
            if (!listed[static_cast<std::size_t>(frame)]) frames.push_back(frame);
            listed[static_cast<std::size_t>(frame)] = true;
            if (frame > last - step) break;  // frame + step may be more than an int holds
        }
    } while (take(rest, ','));
    return frames;
}

}  // namespace zam::cli
