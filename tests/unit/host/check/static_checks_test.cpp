// The checks that need no loading, on files of systems other than this one, too.
#include "host/check/static_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/unit/host/check/small_files.h"

namespace zam::host {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Lt;
using ::testing::SizeIs;

class StaticChecks : public ::testing::Test {
  protected:
    StaticChecks() { fs::create_directories(folder); }
    ~StaticChecks() override { fs::remove_all(folder); }

    std::string write(const fs::path& name, const Bytes& bytes) const {
        fs::create_directories((folder / name).parent_path());
        std::ofstream(folder / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return (folder / name).string();
    }
    std::string write(const fs::path& name, const std::string& text) const {
        return write(name, Bytes(text.begin(), text.end()));
    }
    std::string aex(const ListPlan& plan) const {
        return write("small.aex", small_windows_library(small_list(plan)));
    }
    std::string bundle(const std::string& type, const std::string& executable) const {
        const fs::path contents = fs::path("Glass.plugin") / "Contents";
        write(contents / "Info.plist", "<key>CFBundlePackageType</key>\n<string>" + type +
                                           "</string><key>CFBundleSignature</key><string>FXTC</string>"
                                           "<key>CFBundleExecutable</key><string>" +
                                           executable + "</string>");
        write(contents / "PkgInfo", "eFKTFXTC");
        write(contents / "MacOS" / "Glass", small_macos_library());
        write(contents / "Resources" / "Glass.rsrc", small_resource_file(small_list(kMacosList)));
        return (folder / "Glass.plugin").string();
    }

    const fs::path folder =
        fs::temp_directory_path() /
        (std::string("zam-test-") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

std::vector<Check> failed(const Report& report) {
    std::vector<Check> all;
    for (int i = 0; i < static_cast<int>(Check::count_); ++i)
        if (report.failed(static_cast<Check>(i))) all.push_back(static_cast<Check>(i));
    return all;
}

TEST_F(StaticChecks, OfAWindowsLibraryGoByItsPropertyList) {
    Report report;
    const StaticResult result = check_without_loading(aex({}), report);
    EXPECT_EQ(failed(report), std::vector<Check>{});
    EXPECT_EQ(report.kind, "Windows library, x86-64");
    EXPECT_EQ(result.entry, "Entry");
    ASSERT_TRUE(result.words);
    EXPECT_EQ(result.words->out_flags, 0x04030201U);

    const struct {
        ListPlan plan;
        Check check;
        const char* detail;
    } cases[] = {
        {{.kind = "AEgx"}, Check::property_list, "its kind is \"AEgx\""},
        {{.name = ""}, Check::property_list, "no property name gives a name"},
        {{.match = std::string(32, 'm')}, Check::property_list, "more than 31"},
        {{.entry = ""}, Check::property_list, "no property 8664 names"},
        {{.flags = false}, Check::property_list, "not all are there"},
        {{.twice = true}, Check::property_list, "property name is there twice"},
        {{.entry = "Main"}, Check::entry, "exports no Main among its 2 names"},
    };
    for (const auto& each : cases) {
        Report found;
        check_without_loading(aex(each.plan), found);
        EXPECT_THAT(failed(found), Contains(each.check));
        EXPECT_THAT(found[each.check].details, Contains(HasSubstr(each.detail)));
    }
}

TEST_F(StaticChecks, OfAWindowsLibraryGoByItsHeaders) {
    const struct {
        std::size_t at;
        std::uint8_t byte;
        Check check;
        const char* detail;
    } cases[] = {
        {0x44, 0x00, Check::processor, "it is built for"},
        {0x57, 0x00, Check::library, "no loadable library"},
        {0x372, 'X', Check::property_list, "there is none"},  // another type of resource
        {0x200 + 24, 0, Check::entry, "exports no"},
    };
    for (const auto& each : cases) {
        Bytes file = small_windows_library();
        file[each.at] = each.byte;
        Report report;
        check_without_loading(write("small.aex", file), report);
        EXPECT_THAT(report[each.check].details, Contains(HasSubstr(each.detail)));
    }
}

TEST_F(StaticChecks, OfAMacosBundleGoByItsFiles) {
    Report sound;
    const StaticResult result = check_without_loading(bundle("eFKT", "Glass"), sound);
    EXPECT_EQ(failed(sound), std::vector<Check>{});
    EXPECT_EQ(sound.kind, "macOS library, x86-64, arm64");
    EXPECT_EQ(result.entry, "Entry");

    Report type, outside, bare;
    check_without_loading(bundle("BNDL", "Glass"), type);
    EXPECT_EQ(failed(type), std::vector<Check>{Check::bundle});
    EXPECT_EQ(type[Check::bundle].details.size(), 2U);  // PkgInfo is another, too
    check_without_loading(bundle("eFKT", "../../small.aex"), outside);
    EXPECT_THAT(outside[Check::bundle].details, Contains("CFBundleExecutable names no file"));
    for (const char* name : {"..", "..\\Glass", "Gl\x1b[2Jass"}) {
        Report other;
        check_without_loading(bundle("eFKT", name), other);
        EXPECT_THAT(other[Check::bundle].details, Contains("CFBundleExecutable names no file"));
    }
    fs::remove(bundle("eFKT", "Glass") + "/Contents/Resources/Glass.rsrc");
    check_without_loading((folder / "Glass.plugin").string(), bare);
    EXPECT_THAT(failed(bare), Contains(Check::property_list));
}

TEST_F(StaticChecks, DoNotLetFilesCommandTheTerminal) {
    Report missing, long_type;
    check_without_loading((folder / "no\x1b[2J\n\x9bsuch").string(), missing);
    EXPECT_THAT(missing[Check::file].details, Contains(HasSubstr("no?[2J??such: no such file")));
    check_without_loading(bundle(std::string(100000, '\x1b'), "Glass"), long_type);
    EXPECT_THAT(long_type[Check::bundle].details, Each(SizeIs(Lt(200U))));
    Report told;
    told.fail(Check::survives, std::string(100000, 'x') + "\x1b");
    told.skip(Check::loads, "a\r\x7f");
    EXPECT_THAT(told[Check::survives].details, ElementsAre(SizeIs(4003)));
    EXPECT_THAT(told[Check::loads].details, ElementsAre("a??"));
}

}  // namespace
}  // namespace zam::host
