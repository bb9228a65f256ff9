#include "cli/check.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string_view>

#include "cli/output.h"
#include "host/check/check_plugin.h"
#include "host/check/child_process.h"
#include "host/check/drive.h"
#include "host/runner/platform.h"
#include "host/runner/plugin.h"

namespace zam::cli {
namespace {

using host::Check;
using host::Finding;
using host::Verdict;

struct Options {
    std::string file;
    bool json = false, in_process = false;
    int limit = 60;  // seconds
};

constexpr std::string_view kChildCommand = "check-child";

const char* word_for(Verdict verdict) {
    switch (verdict) {
        case Verdict::passed:
            return "passed";
        case Verdict::failed:
            return "failed";
        default:
            return "not checked";
    }
}

template <class Visit>
void for_checks(Visit&& visit) {
    for (int i = 0; i < static_cast<int>(Check::count_); ++i) visit(static_cast<Check>(i));
}

void print_text(const std::string& file, const host::Report& report) {
    print_line(file + (report.kind.empty() ? "" : ": " + report.kind));
    int counts[3] = {};
    std::string told;  // one reason stands for all that follow and have the same
    for_checks([&](Check check) {
        const Finding& finding = report[check];
        const host::CheckText& text = host::text_of(check);
        ++counts[static_cast<int>(finding.verdict)];
        std::printf("%-11s  %-14s  %s\n", word_for(finding.verdict), std::string(text.name).c_str(),
                    std::string(text.sentence).c_str());
        for (const std::string& detail : finding.details) {
            if (detail != told) print_line(std::string(29, ' ') + detail);
            told = detail;
        }
    });
    std::printf("%d passed, %d failed, %d not checked\n", counts[1], counts[2], counts[0]);
}

void print_for_machines(const std::string& file, const host::Report& report) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for_checks([&](Check check) {
        const host::CheckText& text = host::text_of(check);
        list.push_back({{"name", text.name},
                        {"sentence", text.sentence},
                        {"result", word_for(report[check].verdict)},
                        {"details", report[check].details}});
    });
    const nlohmann::ordered_json all = {
        {"file", file}, {"kind", report.kind}, {"sound", !report.failed()}, {"checks", std::move(list)}};
    print_json(all);
}

void check(const Options& options) {
    host::CheckPlan plan;
    plan.file = options.file;
    plan.limit = std::chrono::seconds(options.limit);
    plan.in_process = options.in_process;
    plan.child_command = {host::platform::this_program(), std::string(kChildCommand)};
    const host::Report report = host::check_plugin(plan);
    if (options.json)
        print_for_machines(options.file, report);
    else
        print_text(options.file, report);
    std::fflush(stdout);
    std::string failed;
    for_checks([&](Check check) {
        if (report.failed(check))
            failed += (failed.empty() ? "" : ", ") + std::string(host::text_of(check).name);
    });
    if (!failed.empty()) throw host::PluginError(options.file + ": fails " + failed);
}

}  // namespace

Command add_check(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser =
        app.add_subcommand("check", "Tell why a plug-in file would not load, or would be rejected");
    parser->add_option("FILE", options->file, "Plug-in: .aex, .plugin, .so")->required()->option_text(" ");
    parser->add_flag("--json", options->json, "For machines");
    parser->add_option("--limit", options->limit, "Seconds that the plug-in's process may take [60]")
        ->option_text("SECONDS")
        ->check(CLI::Range(1, 3600));
    parser->add_flag("--in-process", options->in_process, "Load it into this process, for a debugger");
    return {parser, [options] { check(*options); }, "zam check Zam.so"};
}

bool is_check_child(int argc, char** argv) { return argc == 5 && argv[1] == kChildCommand; }

int check_child(char** argv) {
    host::prepare_for_crashes();
    host::drive_plugin(argv[2], argv[3], argv[4]);
    return 0;
}

}  // namespace zam::cli
