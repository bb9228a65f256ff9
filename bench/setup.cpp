// Setting up a frame: from PF_Cmd_RENDER to the first row, with the real plug-in file in the real host, beside the
// time of one row of the same frame.
#include <cstdio>

#include "bench/bare_host.h"
#include "bench/cases.h"
#include "bench/sections.h"
#include "bench/variants.h"
#include "effect/scene/lights.h"
#include "host/runner/session.h"

namespace zam::bench {
namespace {

constexpr double kCameraZoom = 2000.0;
constexpr double kReach = 400.0;  // of the control; lights add their own
constexpr int kRows = 3;

host::Layer& AddLayer(host::Composition* comp, host::LayerKind kind, const Vec3& position, const Vec3& aim) {
    host::Layer layer;
    layer.id = static_cast<host::LayerId>(comp->layers.size()) + 1;
    layer.kind = kind;
    layer.name = "Layer " + std::to_string(layer.id);
    layer.out_frame = comp->duration;
    layer.transform.position = host::Vec3{position.x, position.y, position.z};
    layer.transform.point_of_interest = host::Vec3{aim.x, aim.y, aim.z};
    comp->layers.push_back(std::move(layer));
    return comp->layers.back();
}

host::Layer& AddLight(host::Composition* comp, host::LightType type, const _VisLightStruct& light) {
    const Vec3 &p = light.pos, &d = light.dir;
    host::Layer& layer = AddLayer(comp, host::LayerKind::light, p, {p.x + d.x, p.y + d.y, p.z + d.z});
    layer.light.type = type;
    layer.light.color = host::Color{light.color.x, light.color.y, light.color.z};
    layer.light.intensity = 100.0 * light.intensity;
    return layer;
}

// The lights of the other parts as layers, and the camera that they are meant for.
host::Composition CompositionOf(const literal::Scene& scene) {
    host::Composition comp;
    comp.items.push_back({1, "Solid", scene.width, scene.height});
    AddLayer(&comp, host::LayerKind::solid, {}, {}).source = 1;
    comp.effect.layer = 1;
    AddLayer(&comp, host::LayerKind::camera, {}, {0.0, 0.0, 1.0}).camera.zoom = kCameraZoom;
    for (const _VisLightStruct& light : scene.point_lights) AddLight(&comp, host::LightType::point, light);
    for (const _VisLightStruct& light : scene.spot_lights) {
        host::Layer& layer = AddLight(&comp, host::LightType::spot, light);
        layer.light.cone_angle = light.coneAngle / kRadiansPerDegree;
        layer.light.cone_feather = light.coneFeather / kPercent;
        layer.light.shadow_diffusion = light.radius - kReach;
    }
    return comp;
}

// Stands between effect and host while a frame is timed. Clearing the picture belongs to its pixels: that is left
// out, and so is the pass over the rows, of which a few are rendered here.
struct Probe {
    const host::Session* session = nullptr;
    std::vector<Variant> targets;
    PF_UtilCallbacks utils{};
    double start = 0.0;
    std::size_t host_calls = 0;  // when the session records them
    std::vector<double> set_up;
    std::vector<std::vector<double>> row;  // of each target
};
Probe* probe = nullptr;

PF_Err LeaveOutFill(PF_ProgPtr, const PF_Pixel*, const PF_Rect*, PF_EffectWorld*) { return PF_Err_NONE; }

PF_Err TimeRows(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, void* refcon,
                PF_IteratePixel8Func, PF_EffectWorld*) {
    probe->set_up.push_back(ThreadCpuSeconds() - probe->start);
    probe->host_calls = probe->session->calls().size() + 2;  // those that the probe takes over
    const auto& frame = *static_cast<const _RenderData*>(refcon);
    std::vector<PF_Pixel16> pixels(static_cast<std::size_t>(frame.width));
    for (std::size_t i = 0; i < probe->targets.size(); ++i) {
        const auto render = [&](A_long y) {
            probe->targets[i].render(frame, y, reinterpret_cast<PF_Pixel*>(pixels.data()));
        };
        render(0);
        const double start = ThreadCpuSeconds();
        for (int n = 0; n < kRows; ++n) render((2 * n + 1) * frame.height / (2 * kRows));
        probe->row[i].push_back((ThreadCpuSeconds() - start) / kRows);
    }
    return PF_Err_NONE;
}

void StartTiming(PF_InData& in_data) {
    if (!probe) return;  // a command of the life cycle
    probe->utils = *in_data.utils;
    probe->utils.fill = LeaveOutFill;
    probe->utils.iterate = TimeRows;
    in_data.utils = &probe->utils;
    probe->start = ThreadCpuSeconds();
}

void Observe(const host::Plugin& plugin, host::Composition* comp, bool record_calls, int frames,
             Probe* watch) {
    host::Session session(plugin, *comp,
                          {.threads = 1, .amend_in_data = StartTiming, .record_calls = record_calls});
    session.start();
    const auto set = [&](const char* control, double value) {
        session.set_control(host::find_control(session.controls(), control).index, value);
    };
    set("Spot Lights/Reach", kReach);
    set("Individual Reach", 4);
    watch->session = &session;
    watch->row.resize(watch->targets.size());
    probe = watch;
    for (int frame = 0; frame < frames; ++frame) session.render(0.0, {.depth = host::Depth::bits16});
    probe = nullptr;
}

void BenchSetup(const host::Plugin& plugin, const std::string& name, const literal::Scene& scene, int rounds,
                Report* report) {
    const auto lights = static_cast<int>(scene.point_lights.size() + scene.spot_lights.size());
    const std::vector<double> bare_walks = TimeBareWalks(plugin, lights, rounds);
    const std::vector<Variant> targets = Targets();
    host::Composition comp = CompositionOf(scene);
    Probe counting, probing;
    Observe(plugin, &comp, true, 1, &counting);
    probing.targets = targets;
    Observe(plugin, &comp, false, rounds, &probing);

    const auto calls = static_cast<double>(counting.host_calls);
    const Spread ms = Scaled(probing.set_up, 1e3), ns = Scaled(probing.set_up, 1e9 / calls);
    const Spread bare = Scaled(bare_walks, 1e3);
    std::printf("\n%s\n  %s ms   %.0f host calls   %s ns each   bare walks %s ms\n", name.c_str(),
                Text(ms, 3).c_str(), calls, Text(ns, 2).c_str(), Text(bare, 3).c_str());
    report->Add(name, "host", "ms", ms);
    report->Add(name, "host", "ms of bare walks", bare);
    report->Add(name, "host", "host calls", {calls, calls, calls});
    report->Add(name, "host", "ns per host call", ns);
    for (std::size_t i = 0; i < targets.size(); ++i) {
        const Spread row = Scaled(probing.row[i], 1e3), times = Ratio(probing.set_up, probing.row[i]);
        std::printf("  %-10s row %s ms   set-up in rows %s\n", targets[i].name.c_str(), Text(row, 3).c_str(),
                    Text(times, 2).c_str());
        report->Add(name, targets[i].name, "ms per row", row);
        report->Add(name, targets[i].name, kTimesOneRow, times);
    }
    std::fflush(stdout);
}

}  // namespace

void BenchSetups(const Options& options, Report* report) {
    const host::Plugin plugin(ZAM_PLUGIN_FILE);
    bool heading = false;
    for (const bool spots : {false, true}) {
        for (const int lights : {1, 10, 100, 1000}) {
            const std::string name = "set-up " + std::to_string(lights) + (spots ? " spots" : " points");
            if (!options.Wants(name)) continue;
            if (!heading) {
                PrintHeading(
                    "Setting up a frame",
                    "From the command to the first row, plug-in file and host, 1920 x 1080 at 16 bits "
                    "without clearing it:\none thread's CPU time, the host calls made, and one row of "
                    "the same frame on every target.\nBare walks: as many walks over the layers, with a host "
                    "that answers without a check.");
            }
            heading = true;
            BenchSetup(plugin, name, spots ? MixedScene(0, lights) : MixedScene(lights, 0), options.rounds,
                       report);
        }
    }
}

}  // namespace zam::bench
