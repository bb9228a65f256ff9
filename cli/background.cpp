#include "cli/background.h"

#include <filesystem>

#include "cli/exit_code.h"
#include "host/utf8_path.h"
#include "io/images/png_reader.h"
#include "io/images/write_image.h"
#include "io/over.h"
#include "io/scene_error.h"

namespace zam::cli {
namespace {

void check_size(const std::string& file, const io::PngReader& plate, int width, int height) {
    const auto size = [](int w, int h) { return std::to_string(w) + " x " + std::to_string(h); };
    if (plate.width() == width && plate.height() == height) return;
    throw io::SceneError(
        file, {},
        "the plate has " + size(plate.width(), plate.height()) + " pixels, the frame " + size(width, height),
        "give plates of the frame's size; the scene's size (--size for glTF) and --resolution decide that "
        "one");
}

// In the codes of the frame that it goes behind.
host::Frame read_plate(const std::string& file, const host::Frame& frame) {
    io::PngReader plate(file);
    check_size(file, plate, frame.width, frame.height);  // it may have changed since check()
    return plate.read(frame.depth);
}

}  // namespace

Background::Background(const std::string& over) {
    if (over.empty()) return;
    color_ = io::parse_hex_color(over);
    if (color_) return;
    if (io::format_of(over) != io::ImageFormat::png)
        throw UsageError("--over " + over +
                         ": this is no colour and no PNG file\nhint: write '#rrggbb', or 'plate.####.png'");
    plates_ = NamePattern(over);
}

void Background::check(const std::vector<int>& frames, int width, int height) const {
    if (!plates_) return;
    for (const int frame : frames) {
        const std::string file = plates_->file(frame);
        check_size(file, io::PngReader(file), width, height);
        if (!plates_->varies()) return;
    }
}

void Background::spare_plates(const std::vector<int>& frames,
                              const std::function<std::string(int)>& output) const {
    if (!plates_) return;
    for (const int frame : frames) {
        std::error_code code;  // of a file that is not there: it is no plate
        const std::string file = output(frame);
        if (std::filesystem::equivalent(host::utf8_path(file), host::utf8_path(plates_->file(frame)), code))
            throw UsageError("-o " + file + ": that is the plate itself\nhint: give another name");
    }
}

void Background::put_behind(int number, host::Frame* frame) const {
    if (color_) io::lay_over(*color_, frame);
    if (!plates_) return;
    if (plates_->varies()) return io::lay_over(read_plate(plates_->file(number), *frame), frame);
    {
        const std::lock_guard lock(mutex_);
        if (!plate_) plate_ = read_plate(plates_->file(number), *frame);
    }
    io::lay_over(*plate_, frame);
}

}  // namespace zam::cli
