#include "cli/contact_sheet.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "cli/background.h"
#include "cli/exit_code.h"
#include "cli/frame_list.h"
#include "cli/frame_pipeline.h"
#include "cli/interrupt.h"
#include "cli/open_scene.h"
#include "cli/progress.h"
#include "cli/scene_digest.h"
#include "cli/sheet.h"
#include "cli/version.h"
#include "host/composition/queries.h"
#include "host/runner/cores.h"
#include "host/text.h"
#include "io/images/write_image.h"
#include "io/over.h"
#include "io/shrink.h"

namespace zam::cli {
namespace {

constexpr const char* kExample = "zam contact-sheet stage.gltf -o sheet.png --frames 0-47x4";
constexpr int kUsualFrames = 24;
constexpr double kMostPixels = 100e6;  // of a sheet; it is held in memory
constexpr double kLongestSide = 30000;
constexpr host::Color kDark{16 / 255.0, 16 / 255.0, 24 / 255.0};

struct Options : OpenOptions {
    std::string output, frames, over;
    int columns = 0, width = 320;
    bool quiet = false;
};

// Spread evenly over the work area, its first and last among them.
std::vector<int> usual_frames(const host::Composition& composition) {
    const int last = composition.work_area_duration - 1, count = std::min(kUsualFrames, last + 1);
    std::vector<int> frames;
    for (int i = 0; i < count; ++i)
        frames.push_back(composition.work_area_start +
                         (count == 1 ? 0 : static_cast<int>(std::lround(1.0 * i * last / (count - 1)))));
    return frames;
}

struct Layout {
    int columns = 0, width = 0, height = 0;  // of one picture
};

Layout layout_of(const Options& options, std::size_t count, const host::Size& frame, double pixel_aspect) {
    Layout layout;
    layout.columns = options.columns > 0 ? std::min(options.columns, static_cast<int>(count))
                                         : static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
    layout.width = options.width;
    const double height = options.width * static_cast<double>(frame.height) / (frame.width * pixel_aspect);
    const double columns = layout.columns, rows = std::ceil(static_cast<double>(count) / columns);
    const double pixels = (options.width + 8.0) * columns * (height + 26.0) * rows;
    const double longest = std::max((options.width + 8.0) * columns, (height + 26.0) * rows);
    if (pixels > kMostPixels || longest > kLongestSide)
        throw UsageError("the sheet would have " + std::to_string(static_cast<long>(pixels / 1e6)) +
                         " million pixels\nhint: ask for fewer --frames, or a smaller --width");
    layout.height = std::max(1, static_cast<int>(std::lround(height)));
    return layout;
}

void check_output(const Options& options) {
    if (options.scene.file.empty()) throw UsageError(std::string("no scene is given\nhint: ") + kExample);
    if (options.output.empty()) throw UsageError("no output is given\nhint: add -o sheet.png");
    if (io::format_of(options.output) != io::ImageFormat::png)
        throw UsageError("-o " + options.output + ": sheets are PNG files\nhint: end the name in .png");
}

void contact_sheet(const Options& options) {
    check_output(options);
    const Background background(options.over);
    OpenScene open(options, options.quiet, kExample);
    const host::Composition& composition = open.composition;
    const std::vector<int> frames = options.frames.empty()
                                        ? usual_frames(composition)
                                        : parse_frames(options.frames, composition.duration);
    const host::Layer* carrier =
        composition.find_layer(composition.effect.layer);  // the session vouches for it
    const host::Size size = host::layer_size(composition, *carrier);
    const Layout layout = layout_of(options, frames.size(), size, composition.pixel_aspect.value());
    background.check(frames, size.width, size.height);
    background.spare_plates(frames, [&](int) { return options.output; });
    catch_interrupts();
    io::make_folders_for(options.output);

    Sheet sheet(static_cast<int>(frames.size()), layout.columns, layout.width, layout.height);
    const auto onto_sheet = [&](RenderedFrame& rendered) {
        background.put_behind(rendered.frame, &rendered.image);
        io::lay_over(kDark, &rendered.image);
        const auto place = std::find(frames.begin(), frames.end(), rendered.frame) - frames.begin();
        sheet.put(static_cast<int>(place), io::shrink(rendered.image, layout.width, layout.height),
                  rendered.frame);
    };
    const int threads = host::thread_count(options.threads);
    const bool bar = !options.quiet && Progress::style_for(stderr) == Progress::Style::bar;
    Progress progress(stderr, bar ? Progress::Style::bar : Progress::Style::silent,
                      static_cast<int>(frames.size()));
    FramePipeline pipeline(threads, onto_sheet, [&](int frame, const std::string&) {
        progress.frame_done(frame, options.output);
    });
    for (const int frame : frames) {
        RenderedFrame rendered{frame, "", open.session.render(frame, {})};
        if (const int signal = caught_signal()) {  // given up, perhaps half-way
            pipeline.drop();
            throw Interrupted(signal, "interrupted; no sheet is written");
        }
        if (!rendered.image.outcome.message.empty()) progress.clear();
        open.answers.check(rendered.image.outcome, "frame " + std::to_string(frame));
        pipeline.put(std::move(rendered));
    }
    pipeline.finish();
    progress.clear();
    io::Metadata metadata;
    metadata.frame_rate = composition.frame_rate;
    metadata.software = "zam " + program_version();
    metadata.digest = scene_digest(options.files(), composition, open.given, {});
    io::write_image(options.output, sheet.image(), metadata, {});
    if (!options.quiet)
        std::fprintf(stderr, "%s: %zu frames, %d to a row, each %d x %d, its number below it\n",
                     printable(options.output).c_str(), frames.size(), layout.columns, layout.width,
                     layout.height);
}

}  // namespace

Command add_contact_sheet(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser = app.add_subcommand("contact-sheet",
                                          "Put frames as small pictures on one sheet, to look over a scene");
    add_open_options(*parser, *options);
    const auto add = [&](const char* name, auto& target, const char* value, const char* text) {
        return parser->add_option(name, target, text)->option_text(value);
    };
    add("-o,--output", options->output, "FILE.png", "The sheet");
    add("--frames", options->frames, "LIST",
        "5, 0-47, 0-47x2 or 1,5,9 [up to 24, spread over the work area]");
    add("--columns", options->columns, "N", "Pictures to a row [as many as rows]")
        ->check(CLI::Range(1, 1000));
    add("--width", options->width, "PIXELS", "Width of a picture [320]")->check(CLI::Range(1, 30000));
    add("--over", options->over, "COLOUR|FILES",
        "What lies below the light: '#101018', or 'plate.####.png' ['#101018']");
    parser->add_flag("-q,--quiet", options->quiet, "Show no notes");
    return {parser, [options] { contact_sheet(*options); }, kExample};
}

}  // namespace zam::cli
