#include "cli/render_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/exit_code.h"
#include "io/images/write_image.h"

namespace zam::cli {

CLI::App* add_render_options(CLI::App& app, RenderOptions& options) {
    CLI::App* sub = app.add_subcommand("render", "Render a scene into image files: PNG, OpenEXR or TIFF");
    const auto add = [&](const char* name, auto& target, const char* value, const char* text) {
        return sub->add_option(name, target, text)->option_text(value);
    };
    add_open_options(*sub, options);
    add("--frames", options.frames, "LIST", "5, 0-47, 0-47x2 or 1,5,9 [the work area]");
    add("--resolution", options.resolution, "WORD", "full, half or quarter [full]")
        ->check(CLI::IsMember({"full", "half", "quarter"}));
    sub->add_flag("-q,--quiet", options.quiet, "Show no progress and no notes");
    add("--log", options.log, "text|json",
        "How to tell progress and messages: JSON has one object a line [text]")
        ->check(CLI::IsMember({"text", "json"}));

    const char* images = "Images";
    add("-o,--output", options.output, "FILES",
        "Image files, with # for the frame: 'out/light.####.png'; or .exr, .tif")
        ->group(images);
    add("--depth", options.bits, "8|16|32",
        "Bits per channel: 8 or 16 in PNG and TIFF [8], 16 (half) or 32 (float) in OpenEXR [16]")
        ->check(CLI::IsMember({8, 16, 32}))
        ->group(images);
    sub->add_flag("--dither", options.dither, "With 8 bits: render 16 and dither, against bands")
        ->group(images);
    add("--color", options.color, "linear|as-is",
        "OpenEXR: take colours for sRGB and make them linear, or leave them [linear]")
        ->check(CLI::IsMember({"linear", "as-is"}))
        ->group(images);
    add("--over", options.over, "COLOUR|FILES",
        "Lay the light over '#101018', or over 'plate.####.png', to look at it")
        ->group(images);
    sub->add_flag("--skip-existing", options.skip_existing, "Leave out frames whose files are there")
        ->group(images);
    return sub;
}

io::ImageOptions image_options(const RenderOptions& options) {
    const auto format = io::format_of(options.output);
    if (!format)
        throw UsageError("-o " + options.output +
                         ": only PNG, OpenEXR and TIFF files are written\n"
                         "hint: end the name in .png, .exr or .tif, for example out/light.####.png");
    if (!io::can_write(*format))
        throw UsageError("-o " + options.output +
                         ": this program was built without OpenEXR and TIFF\n"
                         "hint: end the name in .png, for example out/light.####.png");
    const std::vector<int> possible = io::bits_of(*format);
    const bool exr = *format == io::ImageFormat::exr;
    io::ImageOptions image;
    image.format = *format;
    image.bits = options.bits == 0 ? possible.front() : options.bits;
    image.linear = options.color == "linear";
    image.dither = options.dither;
    if (std::find(possible.begin(), possible.end(), image.bits) == possible.end())
        throw UsageError(
            "--depth " + std::to_string(image.bits) + ": " + options.output + " cannot have that\n" +
            (exr ? "hint: OpenEXR has 16 (half) or 32 (float)" : "hint: PNG and TIFF have 8 or 16"));
    if (options.dither && image.bits != 8)
        throw UsageError(
            "--dither: only images of 8 bits need it\nhint: leave it out, or write PNG or TIFF with --depth "
            "8");
    if (!exr && !image.linear)
        throw UsageError(
            "--color: only OpenEXR files can be linear or not\nhint: leave it out, or write .exr");
    return image;
}

host::RenderSettings render_settings(const RenderOptions& options) {
    const io::ImageOptions image = image_options(options);
    host::RenderSettings settings;
    settings.depth = image.bits == 8 && !image.dither ? host::Depth::bits8 : host::Depth::bits16;
    const std::uint32_t divisor = options.resolution == "half" ? 2 : options.resolution == "quarter" ? 4 : 1;
    settings.downsample_x = settings.downsample_y = host::Ratio{1, divisor};
    return settings;
}

}  // namespace zam::cli
