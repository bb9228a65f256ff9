// Suites by name and version.
#include <cstring>
#include <string>
#include <string_view>

#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

struct Entry {
    const char* name;
    int32 version;
    const void* table;
};

constexpr Entry kServed[] = {
    {"AEGP PF Interface Suite", 1, &kPfInterfaceSuite1},
    {"AEGP Layer Suite", 5, &kLayerSuite5},
    {"AEGP Layer Suite", 8, &kLayerSuite8},
    {"AEGP Light Suite", 1, &kLightSuite1},
    {"AEGP Light Suite", 2, &kLightSuite2},
    {"AEGP Camera Suite", 2, &kCameraSuite2},
    {"AEGP Stream Suite", 4, &kStreamSuite4},
    {"AEGP Comp Suite", 4, &kCompSuite4},
    {"AEGP Comp Suite", 9, &kCompSuite9},
    {"AEGP Item Suite", 3, &kItemSuite3},
    {"AEGP Keyframe Suite", 1, &kKeyframeSuite1},
    {"AEGP Effect Suite", 1, &kEffectSuite1},
    {"PF Param Utils Suite", 1, &kParamUtilsSuite1},
    {"PF Param Utils Suite", 2, &kParamUtilsSuite1},
    {"PF Param Utils Suite", 3, &kParamUtilsSuite3},
};

bool is_withheld(const Instance& in, const Entry& entry) {
    const auto& withheld = in.options.withheld_suites;
    if (withheld.empty()) return false;
    const std::string full = std::string(entry.name) + " " + std::to_string(entry.version);
    return std::find(withheld.begin(), withheld.end(), full) != withheld.end();
}

SPErr acquire_suite(const char* name, int32 version, const void** suite) {
    return serve("Basic.AcquireSuite", [&](Instance& in) {
        if (!name) throw Misuse{"null suite name", PF_Err_BAD_CALLBACK_PARAM};
        in.log.asked_for_suite({name, strnlen(name, 100)}, version);
        const void*& table = result(suite);
        for (const Entry& entry : kServed) {
            if (entry.version != version || std::strcmp(entry.name, name) != 0) continue;
            if (is_withheld(in, entry)) break;
            in.ledger.suite_acquired(entry.name, version);
            table = entry.table;
            return;
        }
        in.ledger.missing("suite \"" + std::string(name, strnlen(name, 100)) + "\" " +
                          std::to_string(version));
        throw Refusal{A_Err_MISSING_SUITE};
    });
}

SPErr release_suite(const char* name, int32 version) {
    return serve(
        "Basic.ReleaseSuite",
        [&](Instance& in) {
            if (!name) throw Misuse{"null suite name", PF_Err_BAD_CALLBACK_PARAM};
            const std::string_view text(name, strnlen(name, 100));
            if (!in.ledger.suite_released(text, version)) {
                throw Misuse{
                    "suite \"" + std::string(text) + "\" " + std::to_string(version) + " that is not held",
                    PF_Err_BAD_CALLBACK_PARAM};
            }
        },
        Door::giving_back);
}

SPBoolean is_equal(const char* a, const char* b) {
    bool equal = false;
    serve("Basic.IsEqual", [&](Instance&) { equal = a && b && std::strcmp(a, b) == 0; });
    return equal;
}

constexpr SPBasicSuite kBasic = {
    .AcquireSuite = acquire_suite,
    .ReleaseSuite = release_suite,
    .IsEqual = is_equal,
    .AllocateBlock = unserved<"Basic.AllocateBlock">,
    .FreeBlock = unserved<"Basic.FreeBlock">,
    .ReallocateBlock = unserved<"Basic.ReallocateBlock">,
    .Undefined = unserved<"Basic.Undefined">,
};

}  // namespace

SPBasicSuite* basic_suite() { return const_cast<SPBasicSuite*>(&kBasic); }

}  // namespace zam::host
