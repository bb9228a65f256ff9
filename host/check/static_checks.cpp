#include "host/check/static_checks.h"

#include <algorithm>

#include "host/check/library_file.h"
#include "host/check/plugin_files.h"
#include "host/check/property_list.h"
#include "host/utf8_path.h"

namespace zam::host {
namespace fs = std::filesystem;
namespace {

#if defined(_WIN32)
constexpr Format kThisSystem = Format::windows;
#elif defined(__APPLE__)
constexpr Format kThisSystem = Format::macos;
#else
constexpr Format kThisSystem = Format::linux_;
#endif
#if defined(__x86_64__) || defined(_M_X64)
constexpr const char* kThisProcessor = "x86-64";
#elif defined(__aarch64__) || defined(_M_ARM64)
constexpr const char* kThisProcessor = "arm64";
#else
constexpr const char* kThisProcessor = "another processor";
#endif

const char* name_of(Format format) {
    switch (format) {
        case Format::windows:
            return "Windows";
        case Format::macos:
            return "macOS";
        default:
            return "Linux";
    }
}

// Where a property list names the entry function for a slice; empty where it cannot.
std::string entry_key(Format format, const std::string& processor) {
    if (format == Format::windows) return processor == "x86-64" ? "8664" : "";
    return processor == "x86-64" ? "mi64" : processor == "arm64" ? "ma64" : "";
}

bool runs_on(Format format, const std::string& processor) {
    if (format == Format::linux_) return processor == kThisProcessor;
    return !entry_key(format, processor).empty();
}

class Checker {
  public:
    Checker(const std::string& path, Report& report) : report_(report) {
        result_.library = path;
        result_.why_not = "there is no library to load";
    }

    StaticResult run() {
        fs::path file = utf8_path(result_.library);
        fs::path resource_file = file;
        resource_file.replace_extension(".rsrc");
        std::error_code error;
        if (fs::is_directory(file, error)) {
            in_bundle_ = true;
            const auto bundle = read_bundle(file, report_);
            if (!bundle) return result_;
            file = bundle->executable;
            result_.library = file.string();
            resource_file = bundle->resources;
        } else {
            report_.skip(Check::bundle, "it is a single file");
        }
        const auto bytes = read_plugin_file(file, report_);
        if (!bytes || !read_library_file(*bytes)) return result_;
        if (library_.property_resources.empty() && library_.format != Format::windows &&
            !resource_file.empty() && fs::is_regular_file(resource_file, error))
            read_resources_beside(resource_file);
        check_property_list(resource_file);
        check_entry();
        return result_;
    }

  private:
    bool read_library_file(const FileBytes& bytes) {
        try {
            library_ = read_library(bytes);
        } catch (const FormatError& error) {
            report_.fail(Check::library, std::string("the file is damaged: ") + error.what());
            return false;
        }
        if (library_.format == Format::none) {
            report_.fail(Check::library, "the file is no library of Windows, macOS or Linux");
            return false;
        }
        report_.kind = std::string(name_of(library_.format)) + " library";
        bool here = false, anywhere = false;
        for (const Slice& slice : library_.slices) {
            report_.kind += ", " + slice.processor;
            if (!slice.library)
                report_.fail(Check::library, "the code for " + slice.processor + " is no loadable library");
            anywhere = anywhere || runs_on(library_.format, slice.processor);
            here = here || (slice.library && slice.processor == kThisProcessor);
        }
        report_.pass(Check::library);
        if (!anywhere) {
            report_.fail(
                Check::processor,
                "it is built for " + (library_.slices.empty() ? "none" : library_.slices[0].processor) +
                    "; build it for x86-64" + (library_.format == Format::macos ? " and arm64" : ""));
        }
        report_.pass(Check::processor);
        result_.loadable = library_.format == kThisSystem && here;
        result_.why_not = library_.format != kThisSystem
                              ? std::string("a library of ") + name_of(library_.format) +
                                    " cannot be loaded on " + name_of(kThisSystem)
                              : "it holds no library for this processor";
        return true;
    }

    void read_resources_beside(const fs::path& file) {
        try {
            if (const auto bytes = read_plugin_file(file, report_))
                library_.property_resources = read_resource_file(*bytes);
            if (library_.property_resources.empty())
                report_.fail(Check::property_list,
                             file.filename().string() + " holds no resource of type PiPL");
        } catch (const FormatError& error) {
            report_.fail(Check::property_list, file.filename().string() + " is damaged: " + error.what());
        }
    }

    void check_property_list(const fs::path& resource_file) {
        const auto& lists = library_.property_resources;
        if (lists.empty() && (library_.format == Format::windows || in_bundle_)) {
            report_.fail(Check::property_list,
                         "there is none; the host does not even look at the code without it");
        } else if (lists.empty()) {
            report_.skip(Check::property_list, "no property resource: such a library holds none, and " +
                                                   resource_file.filename().string() + " is not beside it");
        }
        // A file may hold several effects, and other kinds of plug-ins; the first effect is the one that is driven.
        std::optional<PropertyList> chosen;
        for (const auto& bytes : lists) {
            try {
                PropertyList list = read_property_list(bytes);
                const bool effect = list.code("kind") == "eFKT";
                if (!chosen || (effect && chosen->code("kind") != "eFKT")) chosen = std::move(list);
            } catch (const FormatError& error) {
                report_.fail(Check::property_list, std::string("it is damaged: ") + error.what());
            }
        }
        if (!chosen) return;
        check_properties(*chosen);
        report_.pass(Check::property_list);
    }

    void check_properties(const PropertyList& list) {
        const auto fail = [&](const std::string& text) { report_.fail(Check::property_list, text); };
        if (list.code("kind") != "eFKT")
            fail("its kind is \"" + escaped(list.code("kind").value_or("")) + "\" and not eFKT, an effect");
        const ByteOrder wanted = library_.format == Format::windows ? ByteOrder::little : ByteOrder::big;
        if (list.order != wanted) fail("its numbers are in the byte order of the other platform");
        check_name(list, "name", "name", 47);
        check_name(list, "catg", "category", 31);
        check_name(list, "eMNA", "match name", 31);
        for (const Property& property : list.properties)
            if (list.find(property.key) != &property)
                fail("property " + escaped(property.key) + " is there twice");
        const auto version = list.number("eVER"), flags = list.number("eGLO"), flags2 = list.number("eGL2");
        if (!version || !flags || !flags2) {
            fail("of eVER, eGLO and eGL2, the version and flags, not all are there");
        } else {
            result_.words = ReportedWords{*version, *flags, *flags2};
        }
        for (const Slice& slice : library_.slices) {
            const std::string key = entry_key(library_.format, slice.processor);
            if (key.empty()) continue;
            const auto entry = key == "8664" ? list.terminated_text(key) : list.counted_text(key);
            if (!entry || entry->empty()) {
                fail("no property " + key + " names the entry function for " + slice.processor);
            } else if (slice.processor == kThisProcessor || result_.entry == "EntryPointFunc") {
                result_.entry = *entry;
            }
        }
    }

    void check_name(const PropertyList& list, const std::string& key, const std::string& what,
                    std::size_t longest) {
        const auto name = list.counted_text(key);
        if (!name || name->empty())
            report_.fail(Check::property_list, "no property " + key + " gives a " + what);
        else if (name->size() > longest)
            report_.fail(Check::property_list, "the " + what + " \"" + escaped(*name) + "\" has more than " +
                                                   std::to_string(longest) + " characters");
    }

    void check_entry() {
        for (const Slice& slice : library_.slices) {
            const auto& names = slice.exports;
            if (!slice.knows_exports)
                report_.skip(Check::entry, "its section table is gone; loading it will tell");
            else if (std::find(names.begin(), names.end(), result_.entry) == names.end())
                report_.fail(Check::entry, "the code for " + slice.processor + " exports no " +
                                               escaped(result_.entry) + " among its " +
                                               std::to_string(names.size()) + " names");
            else
                report_.pass(Check::entry);
        }
    }

    Report& report_;
    StaticResult result_;
    LibraryFile library_;
    bool in_bundle_ = false;
};

}  // namespace

StaticResult check_without_loading(const std::string& path, Report& report) {
    return Checker(path, report).run();
}

}  // namespace zam::host
