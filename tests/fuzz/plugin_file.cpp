// Plug-in files of others, as `zam check` reads them before it loads anything; nothing is loaded here. An input is a
// library, or one with the resource file beside it, or a bundle: Info.plist, PkgInfo, executable, resource file.
#include <filesystem>
#include <functional>

#include "host/check/library_file.h"
#include "host/check/property_list.h"
#include "host/check/static_checks.h"
#include "tests/fuzz/target.h"

namespace {

using namespace zam;
namespace fs = std::filesystem;

constexpr std::string_view kNext = "\n----\n";
constexpr std::size_t kMostPieces = 4;

std::vector<std::string_view> pieces_of(std::string_view input) {
    std::vector<std::string_view> pieces;
    while (pieces.size() + 1 < kMostPieces) {
        const std::size_t end = input.find(kNext);
        if (end == std::string_view::npos) break;
        pieces.push_back(input.substr(0, end));
        input.remove_prefix(end + kNext.size());
    }
    pieces.push_back(input);
    return pieces;
}

// The files of an input, of which the last may be missing.
std::string library_of(const std::vector<std::string_view>& pieces) {
    const std::string library = fuzz::file_of(pieces[0], "Glass.library");
    fs::remove(fs::path(library).replace_extension(".rsrc"));
    if (pieces.size() > 1) fuzz::file_of(pieces[1], "Glass.rsrc");
    return library;
}

std::string bundle_of(const std::vector<std::string_view>& pieces) {
    static const fs::path bundle = fs::path(fuzz::file_of("", "here")).parent_path() / "Glass.plugin";
    for (const char* folder : {"MacOS", "Resources"}) fs::create_directories(bundle / "Contents" / folder);
    const std::string contents = "Glass.plugin/Contents/";
    fuzz::file_of(pieces[0], contents + "Info.plist");
    fuzz::file_of(pieces[1], contents + "PkgInfo");
    fuzz::file_of(pieces[2], contents + "MacOS/Glass");
    fs::remove(bundle / "Contents" / "Resources" / "Glass.rsrc");
    if (pieces.size() > 3) fuzz::file_of(pieces[3], contents + "Resources/Glass.rsrc");
    return bundle.string();
}

void check(const std::string& path) {
    host::Report report;
    const host::StaticResult result = host::check_without_loading(path, report);
    for (int i = 0; i < static_cast<int>(host::Check::count_); ++i) {
        const host::Finding& finding = report[static_cast<host::Check>(i)];
        const bool failed = finding.verdict == host::Verdict::failed;
        fuzz::require(finding.details.size() <= 10 && (!failed || !finding.details.empty()), "details");
        for (const std::string& detail : finding.details) fuzz::require_clear_line(detail);
    }
    if (!report.kind.empty()) fuzz::require_clear_line(report.kind);
    fuzz::require(!result.loadable || !report.kind.empty(), "a file is known before it is loaded");
    if (!result.loadable) fuzz::require_clear_line(result.why_not);
    fuzz::require(!result.entry.empty() && result.entry.size() <= 255, "name of the entry function");
    const fs::path library = fs::path(result.library).lexically_normal();
    fuzz::require(library.string().starts_with(path), "what would be loaded is in the bundle");
}

void refused_clearly(const std::function<void()>& read) {
    try {
        read();
    } catch (const host::FormatError& error) {
        fuzz::require_clear_line(error.what());
    }
}

// Readers that stand behind others, which let few mutations through.
void read_alone(std::string_view piece) {
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(piece.data()), piece.size());
    refused_clearly([&] {
        for (const auto& list : host::read_resource_file(bytes))
            fuzz::require(list.size() <= bytes.size(), "a resource is a part of its file");
    });
    refused_clearly([&] {
        const host::PropertyList list = host::read_property_list(bytes);
        std::size_t size = 0;
        for (const host::Property& property : list.properties) {
            size += property.data.size();
            fuzz::require(list.find(property.key) != nullptr, "a property is found");
            for (const auto& text : {list.counted_text(property.key), list.terminated_text(property.key)})
                fuzz::require(!text || text->size() <= 255, "a text is short");
            fuzz::require(list.code(property.key).has_value() == list.number(property.key).has_value(),
                          "codes are numbers");
        }
        fuzz::require(size <= bytes.size(), "properties do not overlap");
    });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto pieces = pieces_of(fuzz::text_of(data, size));
    for (const std::string_view piece : pieces) read_alone(piece);
    check(pieces.size() < 3 ? library_of(pieces) : bundle_of(pieces));
    return 0;
}
