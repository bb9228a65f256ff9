#include "cli/info.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/open_scene.h"
#include "cli/output.h"
#include "cli/participation.h"
#include "host/composition/queries.h"
#include "host/text.h"

namespace zam::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kExample = "zam info stage.gltf --frame 12";

struct Options : OpenOptions {
    std::string frame;
    bool json = false;
};

const char* type_of(const host::Layer& light) {
    switch (light.light.type) {
        case host::LightType::spot:
            return "spot";
        case host::LightType::point:
            return "point";
        case host::LightType::parallel:
            return "parallel";
        case host::LightType::ambient:
            break;
    }
    return "ambient";
}

// Everything that is told; the text is made of it.
class Report {
  public:
    Report(const host::Composition& composition, const host::Session& session, int frame)
        : participation_(session, composition, frame), at_(participation_.frame()) {
        const host::Composition& c = composition;
        json_ = {{"name", c.name},
                 {"size", {c.width, c.height}},
                 {"pixel_aspect", c.pixel_aspect.value()},
                 {"frame_rate", c.frame_rate.value()},
                 {"frames", c.duration},
                 {"work_area", {c.work_area_start, c.work_area_start + c.work_area_duration - 1}},
                 {"frame", frame},
                 {"cameras", Json::array()},
                 {"lights", Json::array()}};
        for (const host::Layer& layer : c.layers) {
            if (layer.kind == host::LayerKind::camera) add_camera(layer);
            if (layer.kind == host::LayerKind::light) add_light(layer);
        }
    }

    [[nodiscard]] const Json& json() const { return json_; }

  private:
    // Null where it is no place.
    [[nodiscard]] static Json place(const host::Matrix& world) {
        const double x = world.at[3][0], y = world.at[3][1], z = world.at[3][2];
        if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return nullptr;
        return Json::array({x, y, z});
    }

    void add_camera(const host::Layer& layer) {
        const host::Layer* active = participation_.camera();
        Json camera = {{"name", layer.name},
                       {"id", layer.id},
                       {"position", place(participation_.world(layer))},
                       {"zoom", layer.camera.zoom.at(at_)},
                       {"active", &layer == active}};
        if (&layer != active)
            camera["reason"] = !layer.video                  ? "it is switched off"
                               : !host::in_range(layer, at_) ? "it is not there at this frame"
                                                             : "it stands below the other in the stack";
        json_["cameras"].push_back(std::move(camera));
    }

    void add_light(const host::Layer& layer) {
        const host::Color color = layer.light.color.at(at_);
        const host::Matrix world = participation_.world(layer);
        const std::vector<std::string> reasons = participation_.reasons_against(layer, world);
        json_["lights"].push_back({{"name", layer.name},
                                   {"id", layer.id},
                                   {"type", type_of(layer)},
                                   {"position", place(world)},
                                   {"intensity", layer.light.intensity.at(at_)},
                                   {"color", {color.red, color.green, color.blue}},
                                   {"takes_part", reasons.empty()},
                                   {"reasons", reasons}});
    }

    const Participation participation_;
    const double at_;
    Json json_;
};

// Rounded to what a reader can make use of.
std::string shown(double number) {
    if (std::abs(number) >= 1e12) return format_number(number);
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", number);
    return format_number(std::stod(text) + 0.0);
}

std::string shown(const Json& numbers) {
    if (numbers.is_null()) return "beyond all bounds";
    std::string text;
    for (const double number : numbers) text += (text.empty() ? "" : ", ") + shown(number);
    return "[" + text + "]";
}

std::string name_of(const Json& layer) { return quote(layer["name"].get<std::string>()); }

void print_text(const Json& info) {
    const auto whole = [](const Json& value) { return std::to_string(value.get<int>()); };
    std::string line = whole(info["size"][0]) + " x " + whole(info["size"][1]) + ", " +
                       shown(info["frame_rate"].get<double>()) + " frames per second, frames 0-" +
                       std::to_string(info["frames"].get<int>() - 1);
    if (info["pixel_aspect"] != 1.0) line += ", pixel aspect " + shown(info["pixel_aspect"].get<double>());
    if (info["work_area"] != Json::array({0, info["frames"].get<int>() - 1}))
        line += ", work area " + whole(info["work_area"][0]) + "-" + whole(info["work_area"][1]);
    std::printf("%s: %s\n\nAt frame %d:\n", name_of(info).c_str(), line.c_str(), info["frame"].get<int>());

    bool seen = false;
    for (const Json& camera : info["cameras"]) {
        const bool active = camera["active"].get<bool>();
        seen = seen || active;
        line = "camera " + name_of(camera) + " at " + shown(camera["position"]) + ", zoom " +
               shown(camera["zoom"].get<double>()) + ": " +
               (active ? "it is looked through" : camera["reason"].get<std::string>());
        print_line(line);
    }
    if (!seen) print_line("seen by the default view: no camera is there and switched on");

    std::size_t shining = 0;
    std::vector<std::vector<std::string>> rows = {{"light", "type", "place", "intensity", "takes part"}};
    for (const Json& light : info["lights"]) {
        shining += light["takes_part"].get<bool>() ? 1 : 0;
        std::string why;
        for (const std::string reason : light["reasons"]) why += (why.empty() ? "no: " : "; ") + reason;
        const bool stands = light["type"] != "ambient";
        rows.push_back({name_of(light), light["type"].get<std::string>(),
                        stands ? shown(light["position"]) : "",
                        shown(light["intensity"].get<double>()) + " %", why.empty() ? "yes" : why});
    }
    std::printf("%zu of %zu lights take part\n", shining, rows.size() - 1);
    if (rows.size() > 1) print_table(rows);
}

void info(const Options& options) {
    const OpenScene open(options, options.json, kExample);
    const int frame = parse_frame(options.frame, open.composition.work_area_start, open.composition);
    const Report report(open.composition, open.session, frame);
    if (options.json)
        print_json(report.json());
    else
        print_text(report.json());
}

}  // namespace

Command add_info(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser = app.add_subcommand(
        "info", "Tell what is in a scene: cameras, lights, and which of them take part in a frame");
    add_open_options(*parser, *options);
    parser->add_option("--frame", options->frame, "Frame to look at [the first of the work area]")
        ->option_text("N");
    parser->add_flag("--json", options->json, "For machines");
    return {parser, [options] { info(*options); }, kExample};
}

}  // namespace zam::cli
