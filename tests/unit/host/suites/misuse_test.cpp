#include <functional>

#include "host/runner/callbacks.h"
#include "tests/unit/host/suites/bench.h"

namespace zam::host {
namespace {

using Reports = std::vector<std::string>;

class MisuseTest : public Bench {
  protected:
    const PF_UtilCallbacks utils = util_callbacks(true);
    const AEGP_LayerSuite3& layers = kLayerSuite8;
    A_char name[32] = {};
    PF_Rect everything{0, 0, 10, 10};
};

TEST_F(MisuseTest, EachIsNamedAndAnswered) {
    // A handle of another session, and one from an earlier command.
    Composition other_composition = stage();
    Instance other(other_composition, {});
    const AEGP_LayerH foreign = other.handle(other_composition.layers[0]);
    const AEGP_LayerH expired = handle(kWall);
    begin(PF_Cmd_UPDATE_PARAMS_UI, 0);
    PF_EffectWorld world{};
    const A_Time no_time{1, 0};
    A_Matrix4 matrix{};
    A_long count = 0;
    AEGP_LayerH made = nullptr;
    AEGP_StreamRefH stream = nullptr;
    AEGP_StreamValue value{};
    int not_a_handle = 0;
    const PF_ParamDef definition{};
    PF_Handle block = utils.host_new_handle(4);
    const auto name_of = [&](AEGP_LayerH layer) { return layers.AEGP_GetLayerName(layer, name, nullptr); };
    const auto place_at = [&](const A_Time* time) {
        return layers.AEGP_GetLayerToWorldXform(handle(kWall), time, &matrix);
    };
    const auto iterate = [&](PF_InData* in_data) {
        return utils.iterate(in_data, 0, 1, nullptr, &everything, nullptr, nullptr, &world);
    };

    struct Case {
        const char* report;
        std::function<A_Err()> act;
    };
    const Case cases[] = {
        {"null layer handle in AEGP_GetLayerName", [&] { return name_of(nullptr); }},
        {"foreign layer handle in AEGP_GetLayerName", [&] { return name_of(foreign); }},
        {"foreign layer handle in AEGP_GetLayerName",
         [&] { return name_of(reinterpret_cast<AEGP_LayerH>(&not_a_handle)); }},
        {"foreign layer handle in AEGP_GetLayerName",  // of the right session, but no layer
         [&] { return name_of(reinterpret_cast<AEGP_LayerH>(comp)); }},
        {"expired layer handle in AEGP_GetLayerName", [&] { return name_of(expired); }},
        {"expired layer handle in AEGP_GetLayerName",
         [&] { return layers.AEGP_DeleteLayer(made = handle(kLight)), name_of(made); }},
        {"null composition handle in AEGP_GetCompNumLayers",
         [&] { return layers.AEGP_GetCompNumLayers(nullptr, &count); }},
        {"null result in AEGP_GetCompNumLayers", [&] { return layers.AEGP_GetCompNumLayers(comp, nullptr); }},
        {"null effect_ref in AEGP_GetEffectLayer",
         [&] { return kPfInterfaceSuite1.AEGP_GetEffectLayer(nullptr, &made); }},
        {"null time in AEGP_GetLayerToWorldXform", [&] { return place_at(nullptr); }},
        {"time with scale 0 in AEGP_GetLayerToWorldXform", [&] { return place_at(&no_time); }},
        {"null name in AEGP_SetLayerName", [&] { return layers.AEGP_SetLayerName(handle(kWall), nullptr); }},
        {"expired stream in AEGP_DisposeStream",
         [&] {
             kStreamSuite4.AEGP_GetNewLayerStream(0, handle(kWall), AEGP_LayerStream_POSITION, &stream);
             kStreamSuite4.AEGP_DisposeStream(stream);
             return kStreamSuite4.AEGP_DisposeStream(stream);
         }},
        {"stream value that is not held in AEGP_DisposeStreamValue",
         [&] { return kStreamSuite4.AEGP_DisposeStreamValue(&value); }},
        {"suite \"AEGP Item Suite\" 3 that is not held in ReleaseSuite",
         [&] { return basic_suite()->ReleaseSuite("AEGP Item Suite", 3); }},
        {"null suite name in AcquireSuite", [&] { return basic_suite()->AcquireSuite(nullptr, 1, nullptr); }},
        {"control index 0 in PF_UpdateParamUI",
         [&] { return kParamUtilsSuite1.PF_UpdateParamUI(effect_ref, 0, &definition); }},
        {"null world in fill", [&] { return utils.fill(effect_ref, nullptr, nullptr, nullptr); }},
        {"foreign world in fill", [&] { return utils.fill(effect_ref, nullptr, nullptr, &world); }},
        {"null in_data in iterate", [&] { return iterate(nullptr); }},
        {"null function in iterate", [&] { return iterate(&in.in_data); }},
        {"foreign handle in host_lock_handle",
         [&] { return utils.host_lock_handle(reinterpret_cast<PF_Handle>(&not_a_handle)) ? 0 : 1; }},
        {"handle that is not locked in host_unlock_handle",
         [&] { return utils.host_unlock_handle(block), 1; }},
        {"expired handle in host_dispose_handle",
         [&] { return utils.host_dispose_handle(block), utils.host_dispose_handle(block), 1; }},
        {"more than 1 GiB asked for (1073741825 bytes) in host_new_handle",
         [&] { return utils.host_new_handle((1U << 30) + 1) ? 0 : 1; }},
    };
    for (const Case& c : cases) {
        EXPECT_NE(c.act(), A_Err_NONE) << c.report;
        Reports reports = in.ledger.end();
        ASSERT_FALSE(reports.empty()) << c.report;
        EXPECT_EQ(reports[0], c.report);
        begin(PF_Cmd_UPDATE_PARAMS_UI, 0);
    }
}

// These have a shorter way in while nobody watches.
TEST_F(MisuseTest, TheCallsOfAWalkCheckWhatTheyAreGivenWatchedOrNot) {
    for (const bool watched : {false, true}) {
        in.record_calls(watched);
        const AEGP_LayerH expired = handle(kLight);
        const AEGP_CompH expired_comp = comp;
        begin(PF_Cmd_RENDER, 0);
        AEGP_LayerH light = nullptr;
        AEGP_ObjectType type = -7;
        AEGP_LightType light_type = 7;
        ASSERT_EQ(layers.AEGP_GetCompLayerByIndex(comp, 0, &light), 0);
        const auto never_there = reinterpret_cast<AEGP_LayerH>(reinterpret_cast<std::uintptr_t>(light) + 4);
        for (const AEGP_LayerH bad :
             {AEGP_LayerH{}, expired, never_there, reinterpret_cast<AEGP_LayerH>(comp)}) {
            EXPECT_NE(layers.AEGP_GetLayerObjectType(bad, &type), 0);
            EXPECT_NE(kLightSuite1.AEGP_GetLightType(bad, &light_type), 0);
        }
        EXPECT_NE(layers.AEGP_GetLayerObjectType(light, nullptr), 0);
        EXPECT_NE(kLightSuite1.AEGP_GetLightType(light, nullptr), 0);
        EXPECT_NE(kLightSuite1.AEGP_GetLightType(handle(kCamera), &light_type), 0);
        EXPECT_EQ(type, -7);
        EXPECT_EQ(light_type, 7U);
        AEGP_LayerH layer = nullptr;
        EXPECT_NE(layers.AEGP_GetCompLayerByIndex(comp, -1, &layer), 0);
        EXPECT_NE(layers.AEGP_GetCompLayerByIndex(comp, 4, &layer), 0);
        EXPECT_NE(layers.AEGP_GetCompLayerByIndex(expired_comp, 0, &layer), 0);
        EXPECT_NE(layers.AEGP_GetCompLayerByIndex(comp, 0, nullptr), 0);
        EXPECT_EQ(layer, nullptr);
        EXPECT_EQ(layers.AEGP_GetLayerObjectType(light, &type), 0);
        EXPECT_EQ(type, AEGP_ObjectType_LIGHT);
    }
}

TEST_F(MisuseTest, TheProjectStandsStillWhileAFrameIsRendered) {
    begin(PF_Cmd_RENDER, 0);
    AEGP_LayerH made = nullptr;
    AEGP_StreamRefH stream = nullptr;
    EXPECT_EQ(layers.AEGP_SetLayerName(handle(kWall), "other"), A_Err_CONST_PROJECT_MODIFICATION);
    EXPECT_EQ(kCompSuite9.AEGP_CreateLightInComp("x", {0, 0}, comp, &made), A_Err_CONST_PROJECT_MODIFICATION);
    EXPECT_EQ(kStreamSuite4.AEGP_GetNewLayerStream(0, handle(kWall), 1, &stream), A_Err_WRONG_THREAD);
    EXPECT_EQ(composition.layers.size(), 4U);
    EXPECT_EQ(in.ledger.end().size(), 3U);
}

// Writes where nobody may, which a sanitizer would stop; what was there.
__attribute__((no_sanitize_address)) char overwrite(char* place) {
    const char before = *place;
    *place = 'x';
    return before;
}

TEST_F(MisuseTest, BlocksMoveAtTheirLastUnlockAndStrayWritesAreSeen) {
    in.memory.move_when_unlocked(true);
    const PF_Handle handle = utils.host_new_handle(8);
    auto* block = static_cast<char*>(utils.host_lock_handle(handle));
    EXPECT_EQ(utils.host_lock_handle(handle), block);
    block[3] = 77;
    utils.host_unlock_handle(handle);
    EXPECT_EQ(*handle, block);  // still locked once
    utils.host_unlock_handle(handle);
    EXPECT_NE(*handle, block);
    EXPECT_NE(overwrite(block + 3), 77);  // what is left there is not the data
    block = static_cast<char*>(utils.host_lock_handle(handle));
    EXPECT_EQ(block[3], 77);
    block[8] = 1;
    utils.host_dispose_handle(handle);  // legal while locked
    in.memory.balance({});
    EXPECT_EQ(in.ledger.end(),
              (Reports{"write past the end of a handle's block of 8 bytes, seen at its disposal",
                       "write to a handle's block after it moved, seen after PF_Cmd_UPDATE_PARAMS_UI"}));
}

TEST_F(MisuseTest, WhatIsKeptIsChargedOnceAndNeverHidesAnEarlierReport) {
    const void* table = nullptr;
    basic_suite()->ReleaseSuite("AEGP Light Suite", 1);
    basic_suite()->AcquireSuite("AEGP Light Suite", 1, &table);
    EXPECT_EQ(in.ledger.end(), (Reports{"suite \"AEGP Light Suite\" 1 that is not held in ReleaseSuite",
                                        "suite \"AEGP Light Suite\" 1 held after PF_Cmd_UPDATE_PARAMS_UI"}));
    begin(PF_Cmd_RENDER, 0);
    basic_suite()->AcquireSuite("AEGP Light Suite", 1, &table);
    basic_suite()->ReleaseSuite("AEGP Light Suite", 1);
    EXPECT_EQ(in.ledger.end(), Reports{});  // the one from before is not repeated
    begin(PF_Cmd_RENDER, 0);
    basic_suite()->ReleaseSuite("AEGP Light Suite", 1);  // late
    EXPECT_EQ(in.ledger.end(), Reports{});
    begin(PF_Cmd_RENDER, 0);
    basic_suite()->AcquireSuite("AEGP Light Suite", 1, &table);
    EXPECT_EQ(in.ledger.end(), Reports{"suite \"AEGP Light Suite\" 1 held after PF_Cmd_RENDER"});
}

TEST_F(MisuseTest, PlannedFaultsSpoilResults) {
    using Results = Fault::Results;
    in.set_faults(FaultPlan()
                      .fail("Layer.AEGP_GetCompNumLayers", FaultPlan::kEvery, {77, Results::rubbish, 0x11})
                      .fail("Layer.AEGP_GetCompLayerByIndex", 1, {0, Results::null})
                      .fail("Layer.AEGP_GetLayerName", 1, {0, Results::wrong, 'x'})
                      .fail("Stream.AEGP_GetNewLayerStream", 1, {0, Results::null})
                      .fail("Layer.AEGP_SetLayerName", 1, {77, Results::rubbish}));
    A_long count = 0;
    EXPECT_EQ(layers.AEGP_GetCompNumLayers(comp, &count), 77);
    EXPECT_EQ(layers.AEGP_GetCompNumLayers(comp, &count), 77);
    EXPECT_EQ(count, 0x11111111);
    AEGP_LayerH layer = handle(kWall);
    EXPECT_EQ(layers.AEGP_GetCompLayerByIndex(comp, 0, &layer), 0);
    EXPECT_EQ(layer, nullptr);
    EXPECT_EQ(layers.AEGP_GetCompLayerByIndex(comp, 0, &layer), 0);
    EXPECT_NE(layer, nullptr);
    char own[AEGP_MAX_LAYER_NAME_SIZE] = {};
    EXPECT_EQ(layers.AEGP_GetLayerName(layer, own, nullptr), 0);
    EXPECT_EQ(std::string(own, sizeof own), std::string(sizeof own, 'x'));
    AEGP_StreamRefH stream = nullptr;
    EXPECT_EQ(kStreamSuite4.AEGP_GetNewLayerStream(0, layer, 1, &stream), 0);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(layers.AEGP_SetLayerName(handle(kWall), "done all the same"), 77);
    EXPECT_EQ(composition.find_layer(kWall)->name, "done all the same");
    EXPECT_EQ(in.log.faults_met(), 6);
    EXPECT_EQ(in.ledger.end(), Reports{});
}

}  // namespace
}  // namespace zam::host
