#include "host/check/plugin_files.h"

#include <fstream>
#include <iterator>

#include "host/text.h"
#include "host/utf8_path.h"

namespace zam::host {
namespace fs = std::filesystem;
namespace {

constexpr std::uintmax_t kMostBytes = 512u << 20;

std::string small_text(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) > (1u << 20)) return {};
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Of a file in the bundle: nothing that leads out of its folder, on any system, and nothing that paths cannot hold.
bool is_file_name(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string::npos &&
           printable(name) == name;
}

// The text behind a key of an XML property list.
std::string plist_value(const std::string& plist, const std::string& key) {
    const auto at = plist.find("<key>" + key + "</key>");
    if (at == std::string::npos) return {};
    const auto open = plist.find("<string>", at), close = plist.find("</string>", at);
    if (open == std::string::npos || close == std::string::npos || close < open) return {};
    return plist.substr(open + 8, close - open - 8);
}

}  // namespace

std::optional<FileBytes> read_plugin_file(const fs::path& path, Report& report) {
    std::error_code error;
    const std::string name = path.string();
    if (!fs::exists(path, error)) {
        report.fail(Check::file, name + ": no such file");
    } else if (!fs::is_regular_file(path, error)) {
        report.fail(Check::file, name + ": neither a file nor a bundle");
    } else if (const auto size = fs::file_size(path, error); error || size > kMostBytes) {
        report.fail(Check::file, name + ": larger than 512 MiB");
    } else {
        FileBytes bytes(static_cast<std::size_t>(size));
        std::ifstream file(path, std::ios::binary);
        file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
        if (file.gcount() == static_cast<std::streamsize>(size)) {
            report.pass(Check::file);
            return bytes;
        }
        report.fail(Check::file, name + ": cannot be read");
    }
    return std::nullopt;
}

std::optional<Bundle> read_bundle(const fs::path& folder, Report& report) {
    const fs::path contents = folder / "Contents";
    const std::string plist = small_text(contents / "Info.plist");
    if (plist.empty()) {
        report.fail(Check::bundle, "Contents/Info.plist is missing, empty or larger than 1 MiB");
        return std::nullopt;
    }
    if (plist.starts_with("bplist")) {
        report.skip(Check::bundle, "Contents/Info.plist is in its binary form, which is not read");
        return std::nullopt;
    }
    const std::string type = plist_value(plist, "CFBundlePackageType");
    const std::string signature = plist_value(plist, "CFBundleSignature");
    if (type != "eFKT") report.fail(Check::bundle, "CFBundlePackageType is " + quote(type) + " and not eFKT");
    if (const std::string info = small_text(contents / "PkgInfo"); info != type + signature)
        report.fail(Check::bundle, "Contents/PkgInfo is not " + quote(type + signature));
    const std::string name = plist_value(plist, "CFBundleExecutable");
    if (!is_file_name(name)) {
        report.fail(Check::bundle, "CFBundleExecutable names no file");
        return std::nullopt;
    }
    Bundle bundle{contents / "MacOS" / utf8_path(name), contents / "Resources" / utf8_path(name + ".rsrc")};
    std::error_code error;
    if (!fs::is_regular_file(bundle.resources, error)) bundle.resources.clear();
    report.pass(Check::bundle);
    return bundle;
}

}  // namespace zam::host
