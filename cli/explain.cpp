#include "cli/explain.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/exit_code.h"
#include "cli/interrupt.h"
#include "cli/lone_lights.h"
#include "cli/open_scene.h"
#include "cli/output.h"
#include "host/composition/queries.h"
#include "host/text.h"

namespace zam::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kExample = "zam explain stage.gltf --frame 12 --pixel 960,540";

struct Options : OpenOptions {
    std::string frame, pixel;
    bool json = false;
};

struct Pixel {
    int x = 0, y = 0;
};

// "960,540"
Pixel parse_pixel(const std::string& text, const host::Size& size) {
    Pixel pixel;
    const char* end = text.data() + text.size();
    const auto x = std::from_chars(text.data(), end, pixel.x);
    bool valid = x.ec == std::errc() && x.ptr != end && *x.ptr == ',';
    if (valid) {
        const auto y = std::from_chars(x.ptr + 1, end, pixel.y);
        valid = y.ec == std::errc() && y.ptr == end;
    }
    if (!valid)
        throw UsageError("--pixel " + text +
                         ": this is no pixel\nhint: write X,Y, counted from 0 at the top left");
    if (pixel.x < 0 || pixel.y < 0 || pixel.x >= size.width || pixel.y >= size.height)
        throw UsageError("--pixel " + text + ": this lies outside of the frame\nhint: give 0,0 to " +
                         std::to_string(size.width - 1) + "," + std::to_string(size.height - 1));
    return pixel;
}

Json json_of(const PixelColor& pixel) {
    return {{"color", {pixel.color.red, pixel.color.green, pixel.color.blue}}, {"alpha", pixel.alpha}};
}

Json json_of(const ExplainedPixel& explained, const host::Composition& composition, int frame, Pixel pixel) {
    Json json = {{"frame", frame}, {"pixel", {pixel.x, pixel.y}}};
    json.update(json_of(explained.all));
    json["look"] = explained.look;
    json["light"] = explained.light();
    json["lights"] = Json::array();
    for (const LoneLight& light : explained.lights) {
        Json entry = {{"name", composition.find_layer(light.layer)->name}, {"id", light.layer}};
        entry.update(json_of(light.alone));
        entry["light"] = light.light;
        entry["share"] = explained.light() > 0.0 ? light.light / explained.light() : 0.0;
        entry["at_least"] = light.at_least;
        json["lights"].push_back(std::move(entry));
    }
    return json;
}

std::string percent(double fraction) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f %%", 100.0 * fraction);
    return text;
}

// "#ff9900 at 12.34 %": straight colour and alpha.
std::string shown(const PixelColor& pixel) {
    if (pixel.alpha == 0.0) return "nothing";
    const auto code = [](double part) { return static_cast<unsigned>(std::lround(255.0 * part)); };
    char text[16];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", code(pixel.color.red), code(pixel.color.green),
                  code(pixel.color.blue));
    return text + (" at " + percent(pixel.alpha));
}

void print_text(ExplainedPixel explained, const host::Composition& composition, int frame, Pixel pixel) {
    std::printf("Frame %d, pixel %d,%d: %s\n", frame, pixel.x, pixel.y, shown(explained.all).c_str());
    auto& lights = explained.lights;
    const double sum = explained.light();
    const std::size_t all = lights.size();
    std::erase_if(lights,
                  [](const LoneLight& light) { return light.light == 0.0 && light.alone.alpha == 0.0; });
    std::printf("%zu of the %zu lights that take part are seen here\n", lights.size(), all);
    if (lights.empty()) return;
    std::stable_sort(lights.begin(), lights.end(), [](const LoneLight& a, const LoneLight& b) {
        return std::abs(a.light) > std::abs(b.light);
    });
    std::vector<std::vector<std::string>> rows = {{"share", "light", "alone"}};
    bool some_full = false;
    for (const LoneLight& light : lights) {
        some_full = some_full || light.at_least;
        rows.push_back({(sum > 0.0 ? percent(light.light / sum) : "-") + (light.at_least ? " *" : ""),
                        quote(composition.find_layer(light.layer)->name), shown(light.alone)});
    }
    print_table(rows);
    print_line("Shares are of the light as it adds up in the look Linear.");
    if (explained.look != "Linear")
        print_line("The look " + explained.look +
                   " adds lights up in another way: what they show alone is no sum.");
    if (some_full) print_line("* adds more than full scale holds, so its share is larger than that");
}

void explain(const Options& options) {
    if (options.pixel.empty() && !options.scene.file.empty())
        throw UsageError("no pixel is given\nhint: add --pixel X,Y, counted from 0 at the top left");
    OpenScene open(options, options.json, kExample);
    const host::Composition& composition = open.composition;
    const int frame = parse_frame(options.frame, composition.work_area_start, composition);
    const host::Layer* carrier =
        composition.find_layer(composition.effect.layer);  // the session vouches for it
    const Pixel pixel = parse_pixel(options.pixel, host::layer_size(composition, *carrier));
    catch_interrupts();
    const ExplainedPixel explained = explain_pixel(open, frame, pixel.x, pixel.y);
    if (options.json)
        print_json(json_of(explained, composition, frame, pixel));
    else
        print_text(explained, composition, frame, pixel);
}

}  // namespace

Command add_explain(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser = app.add_subcommand(
        "explain", "Tell which light adds how much at a pixel, found by rendering one light at a time");
    add_open_options(*parser, *options);
    parser->add_option("--frame", options->frame, "Frame to look at [the first of the work area]")
        ->option_text("N");
    parser->add_option("--pixel", options->pixel, "Pixel of the frame, 0,0 at the top left")
        ->option_text("X,Y");
    parser->add_flag("--json", options->json,
                     "For machines: every light that takes part, fractions of full scale");
    return {parser, [options] { explain(*options); }, kExample};
}

}  // namespace zam::cli
