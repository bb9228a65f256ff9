// The whole road: the program itself, from the scene file to image files on disk, and how long each stage was at work.
#include <sys/resource.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "bench/sections.h"

namespace zam::bench {
namespace {

namespace fs = std::filesystem;

const std::string kWait = "wait";
constexpr const char* kStages[] = {"read_scene", "load_plugin", "render", "wait",
                                   "lay_over",   "encode",      "write"};

struct Road {
    const char* name;
    const char* arguments;
};
constexpr Road kRoads[] = {
    {"road PNG 16", "-o light.####.png --depth 16"},
    {"road PNG 8", "-o light.####.png"},
    {"road PNG 8 over a plate", "-o light.####.png --over plate.png"},
    {"road TIFF 16", "-o light.####.tif --depth 16"},
    {"road OpenEXR half", "-o light.####.exr"},
    {"road OpenEXR float", "-o light.####.exr --depth 32"},
};

// Four spot and four point lights that cross a picture of 1920 x 1080 while their colours stay.
nlohmann::json scene_of(int frames) {
    const auto moving = [&](nlohmann::json from, nlohmann::json to) {
        return nlohmann::json{{"keys", {{0, std::move(from)}, {frames - 1, std::move(to)}}}};
    };
    nlohmann::json layers = nlohmann::json::array();
    for (int i = 0; i < 4; ++i) {
        const int x = 200 + 450 * i;
        layers.push_back({{"kind", "light"},
                          {"type", "spot"},
                          {"position", moving({x, -50, 100}, {x + 200, -50, -100})},
                          {"point_of_interest", moving({x, 1080, 300}, {1920 - x, 1080, 0})},
                          {"cone_angle", 30},
                          {"color", {1.0, 0.5 + 0.1 * i, 0.2 * i}}});
        layers.push_back({{"kind", "light"},
                          {"type", "point"},
                          {"position", moving({x, 700, 100}, {1920 - x, 500, 300})},
                          {"color", {0.3 + 0.2 * i, 0.6, 1.0 - 0.2 * i}}});
    }
    return {{"duration", frames}, {"layers", layers}};
}

// A folder that is gone in the end.
struct Folder {
    fs::path path = fs::temp_directory_path() / ("zam_road_" + std::to_string(getpid()));
    Folder() { fs::create_directories(path); }
    ~Folder() {
        std::error_code code;
        fs::remove_all(path, code);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
};

// What all cores have done so far for programs that this one has run, in seconds.
double core_seconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// The last event that a run of the program told; empty when it failed. The program tells for how long frames were
// rendered, on several threads; what the cores did for that is what they did for none of the other stages.
nlohmann::json run(const fs::path& folder, const std::string& arguments) {
    const fs::path zam = fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "zam";
    const std::string command = "cd '" + folder.string() + "' && '" + zam.string() + "' render scene.json " +
                                arguments + " --log json 2>&1";
    const double before = core_seconds();
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return {};
    std::string last;
    char line[4096];
    while (std::fgets(line, sizeof line, pipe)) last = line;
    if (pclose(pipe) != 0) std::printf("  %s", last.c_str());
    nlohmann::json event = nlohmann::json::parse(last, nullptr, false);
    if (!event.is_object() || event.value("event", "") != "end") return {};
    double render = core_seconds() - before;
    for (const auto& [stage, seconds] : event["stages"].items())
        if (stage != "render" && stage != kWait) render -= seconds.get<double>();
    event["stages"]["render"] = render;
    return event;
}

double megabytes(const fs::path& folder, const std::string& start) {
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().starts_with(start)) bytes += entry.file_size();
    return static_cast<double>(bytes) * 1e-6;
}

void print(const Road& road, const nlohmann::json& end, int frames, double size, Report* report) {
    const auto per_frame = [&](double seconds) { return 1e3 * seconds / frames; };
    const double wall = end["seconds"];
    double work = 0.0;
    for (const char* stage : kStages)
        if (stage != kWait) work += end["stages"][stage].get<double>();
    std::printf("  %-24s %7.1f", road.name, per_frame(wall));
    for (const char* stage : kStages) {
        const double seconds = end["stages"][stage];
        const std::string share =
            stage == kWait ? "" : std::to_string(std::lround(100.0 * seconds / work)) + "%";
        std::printf("  %7.1f %4s", per_frame(seconds), share.c_str());
        report->Add(road.name, "zam", std::string(stage) + ", ms", SpreadOf({per_frame(seconds)}));
    }
    std::printf("  %7.2f %7.2f\n", work / wall, size / frames);
    report->Add(road.name, "zam", "ms", SpreadOf({per_frame(wall)}));
    std::fflush(stdout);
}

void print_heading(int frames, const fs::path& folder) {
    PrintHeading(
        "The whole road",
        std::to_string(frames) + " frames of 1920 x 1080 with 8 moving lights, from scene.json to files in " +
            folder.string() +
            ", one run each.\nms a frame: the run, then each stage on all cores with its share of all work "
            "(waiting for room is none).\nOverlap: work over the run's time. Size: MB a file.");
    std::printf("\n  %-24s %7s", "", "run");
    for (const char* stage : kStages) std::printf("  %12s", stage);
    std::printf("  %7s %7s\n", "overlap", "size");
}

}  // namespace

void BenchRoad(const Options& options, Report* report) {
    const int frames = options.quick ? 20 : 100;
    const Folder folder;
    std::ofstream(folder.path / "scene.json") << scene_of(frames);
    bool heading = false;
    for (const Road& road : kRoads) {
        if (!options.Wants(road.name)) continue;
        if (!heading) {
            print_heading(frames, folder.path.parent_path());
            run(folder.path, "-o plate.png --frames 0 --over '#203050'");
        }
        heading = true;
        const nlohmann::json end = run(folder.path, road.arguments);
        if (end.is_object()) print(road, end, frames, megabytes(folder.path, "light."), report);
        for (const auto& entry : fs::directory_iterator(folder.path))
            if (entry.path().filename().string().starts_with("light.")) fs::remove(entry.path());
    }
}

}  // namespace zam::bench
