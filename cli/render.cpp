#include "cli/render.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/background.h"
#include "cli/exit_code.h"
#include "cli/faintness.h"
#include "cli/frame_list.h"
#include "cli/frame_pipeline.h"
#include "cli/interrupt.h"
#include "cli/messages.h"
#include "cli/name_pattern.h"
#include "cli/preset.h"
#include "cli/progress.h"
#include "cli/render_options.h"
#include "cli/settings.h"
#include "cli/stage_times.h"
#include "cli/version.h"
#include "host/composition/queries.h"
#include "host/runner/cores.h"
#include "host/utf8_path.h"
#include "io/core_clock.h"
#include "io/images/write_image.h"

namespace zam::cli {
namespace {

constexpr const char* kExample = "zam render stage.gltf -o 'out/light.####.png' --over '#101018'";

// What the command line and the scene come to.
struct Job {
    io::ImageOptions image;
    host::RenderSettings settings;
    std::vector<int> frames;  // that are to be rendered
    NamePattern names;
    Background background;
    io::Metadata metadata;
};

std::vector<int> chosen_frames(const std::string& list, const host::Composition& composition) {
    if (!list.empty()) return parse_frames(list, composition.duration);
    std::vector<int> frames;
    for (int i = 0; i < composition.work_area_duration; ++i)
        frames.push_back(composition.work_area_start + i);
    return frames;
}

void check_names(const std::string& output, const Job& job) {
    if (job.frames.size() <= 1 || job.names.varies()) return;
    const std::filesystem::path file = host::utf8_path(output);
    std::string name = file.stem().string();  // without what other programs put a number at
    if (const auto sign = name.find_first_of("%$@"); sign != std::string::npos) name.resize(sign);
    while (name.ends_with(".")) name.pop_back();
    throw UsageError("-o " + output + ": several frames would all get this name\n" +
                     "hint: put # where the frame's number goes, for example " +
                     (file.parent_path() / (name + ".####" + file.extension().string())).string());
}

void leave_out_existing(Job& job) {
    std::erase_if(job.frames, [&](int frame) {
        std::error_code code;
        const std::filesystem::path file = host::utf8_path(job.names.file(frame));
        return std::filesystem::is_regular_file(file, code) && std::filesystem::file_size(file, code) > 0;
    });
}

// Frames are rendered one after the other on this thread and its helpers, and go into files on others meanwhile.
void render_frames(const Job& job, host::Session& session, PluginAnswers& answers, int threads,
                   Progress& progress, StageTimes& times, Faintness& faintness) {
    const auto into_file = [&](RenderedFrame& rendered) {
        faintness.look_at(rendered.image);
        const double start = io::core_seconds();
        job.background.put_behind(rendered.frame, &rendered.image);
        times.add(StageTimes::lay_over, io::core_seconds() - start);
        io::Metadata metadata = job.metadata;
        metadata.frame = rendered.frame;
        const io::WriteTimes spent = io::write_image(rendered.file, rendered.image, metadata, job.image);
        times.add(StageTimes::encode, spent.encode);
        times.add(StageTimes::write, spent.write);
    };
    FramePipeline pipeline(threads, into_file,
                           [&](int frame, const std::string& file) { progress.frame_done(frame, file); });
    for (const int frame : job.frames) {
        RenderedFrame rendered{frame, job.names.file(frame), {}};
        rendered.image =
            times.measure(StageTimes::render, [&] { return session.render(frame, job.settings); });
        if (caught_signal()) break;  // given up, perhaps half-way
        const host::Outcome& outcome = rendered.image.outcome;
        if (!outcome.ok() || !outcome.message.empty()) progress.clear();
        answers.check(outcome, "frame " + std::to_string(frame));
        times.measure(StageTimes::wait, [&] { pipeline.put(std::move(rendered)); });
    }
    if (const int signal = caught_signal()) {
        pipeline.drop();
        progress.clear();
        throw Interrupted(signal, "interrupted with " + std::to_string(progress.done()) + " of " +
                                      std::to_string(job.frames.size()) + " frames written\n" +
                                      "hint: the same command with --skip-existing goes on from here");
    }
    times.measure(StageTimes::wait, [&] { pipeline.finish(); });
}

void tell_start(const Job& job, const RenderOptions& options, std::size_t skipped, int threads) {
    if (!telling_in_json()) return;
    print_event({{"event", "start"},
                 {"scene", options.scene.file},
                 {"digest", job.metadata.digest},
                 {"software", job.metadata.software},
                 {"frames", job.frames.size()},
                 {"skipped", skipped},
                 {"threads", threads}});
}

void tell_end(std::size_t rendered, std::size_t skipped, double seconds, const StageTimes& times) {
    if (telling_in_json()) {
        print_event({{"event", "end"},
                     {"frames", rendered},
                     {"skipped", skipped},
                     {"seconds", seconds},
                     {"stages", times.json()}});
        return;
    }
    const auto count = [](std::size_t frames) {
        return std::to_string(frames) + (frames == 1 ? " frame" : " frames");
    };
    std::string line = count(rendered) + " in " + clock_text(seconds);
    if (skipped > 0) line += "; " + count(skipped) + " there already";
    std::fprintf(stderr, "%s\n", line.c_str());
}

void render(const RenderOptions& options) {
    if (options.output.empty() && !options.scene.file.empty())
        throw UsageError("no output is given\nhint: add -o 'out/light.####.png'");
    if (options.scene.file.empty()) throw UsageError(std::string("no scene is given\nhint: ") + kExample);
    Job job{image_options(options),      render_settings(options), {},
            NamePattern(options.output), Background(options.over), {}};
    StageTimes times;
    io::Scene scene = times.measure(StageTimes::read_scene,
                                    [&] { return load_scene(options.scene, options.quiet, kExample); });
    host::Composition& composition = scene.composition;
    add_preset(options.preset, composition);
    job.frames = chosen_frames(options.frames, composition);
    const std::size_t asked = job.frames.size();
    check_names(options.output, job);
    if (options.skip_existing) leave_out_existing(job);

    const host::Plugin plugin =
        times.measure(StageTimes::load_plugin, [&] { return host::Plugin(plugin_file(options.plugin)); });
    host::Session session(plugin, composition, session_options(options.threads));
    times.measure(StageTimes::load_plugin, [&] { session.start(); });
    PluginAnswers answers;
    const GivenControls given = apply_settings(session, composition, options.settings, answers);
    job.metadata = {0, composition.frame_rate, composition.pixel_aspect, "zam " + program_version(),
                    scene_digest(options.files(), composition, given, job.settings)};
    const host::Layer* carrier =
        composition.find_layer(composition.effect.layer);  // the session vouches for it
    const host::Size size = host::downsampled(host::layer_size(composition, *carrier),
                                              job.settings.downsample_x, job.settings.downsample_y);
    job.background.check(job.frames, size.width, size.height);
    job.background.spare_plates(job.frames, [&](int frame) { return job.names.file(frame); });

    catch_interrupts();
    io::make_folders_for(options.output);
    const int threads = host::thread_count(options.threads);
    tell_start(job, options, asked - job.frames.size(), threads);
    const auto style = options.quiet ? Progress::Style::silent : Progress::style_for(stderr);
    Progress progress(stderr, style, static_cast<int>(job.frames.size()));
    Faintness faintness;
    render_frames(job, session, answers, threads, progress, times, faintness);
    progress.clear();
    session.stop();
    if (const std::string note = faintness.note(options.scene.file); !options.quiet && !note.empty())
        print_note(note);
    if (!options.quiet || telling_in_json())
        tell_end(job.frames.size(), asked - job.frames.size(), progress.seconds(), times);
}

}  // namespace

Command add_render(CLI::App& app) {
    const auto options = std::make_shared<RenderOptions>();
    CLI::App* parser = add_render_options(app, *options);
    return {parser, [options] { render(*options); }, kExample};
}

}  // namespace zam::cli
