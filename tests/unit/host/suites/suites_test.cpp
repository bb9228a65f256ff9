#include <cmath>
#include <cstring>

#include "host/runner/callbacks.h"
#include "tests/unit/host/suites/bench.h"

namespace zam::host {
namespace {

using SuitesTest = Bench;

const auto& layers = kLayerSuite8;
const auto& streams = kStreamSuite4;

TEST_F(SuitesTest, EverySlotOfEveryTableExistsAndUnservedOnesAnswerAnError) {
    const std::pair<const void*, std::size_t> tables[] = {
        {&kPfInterfaceSuite1, 5}, {&kLayerSuite5, 39},     {&kLayerSuite8, 43},    {&kLightSuite1, 1},
        {&kLightSuite2, 2},       {&kCameraSuite2, 5},     {&kStreamSuite4, 20},   {&kCompSuite4, 17},
        {&kCompSuite9, 28},       {&kItemSuite3, 20},      {&kKeyframeSuite1, 16}, {&kEffectSuite1, 16},
        {&kParamUtilsSuite1, 10}, {&kParamUtilsSuite3, 9}, {basic_suite(), 7},
    };
    for (const auto& [table, slots] : tables) {
        for (std::size_t i = 0; i < slots; ++i) {
            void* slot = nullptr;
            std::memcpy(&slot, static_cast<const char*>(table) + i * sizeof slot, sizeof slot);
            EXPECT_NE(slot, nullptr) << i << " of " << slots;
        }
    }
    in.record_calls(true);
    EXPECT_NE(layers.AEGP_ReorderLayer(handle(kWall), 0), A_Err_NONE);
    EXPECT_EQ(in.log.names().back(), "Layer.AEGP_ReorderLayer");
    EXPECT_TRUE(in.ledger.end().empty());
}

TEST_F(SuitesTest, SuitesAreFoundByExactNameAndVersion) {
    const void* table = nullptr;
    SPBasicSuite& basic = *basic_suite();
    EXPECT_NE(basic.AcquireSuite("AEGP Layer Suite", 7, &table), 0);
    EXPECT_NE(basic.AcquireSuite("AEGP layer suite", 8, &table), 0);
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(basic.AcquireSuite("AEGP Layer Suite", 8, &table), 0);
    EXPECT_EQ(table, &kLayerSuite8);
}

// 30000/1001 frames per second: whole frames must come through without a rounding error.
TEST_F(SuitesTest, TimesAreExactAndTheEffectsAreLayerTimes) {
    A_Time time{};
    const auto& pf = kPfInterfaceSuite1;
    EXPECT_EQ(pf.AEGP_ConvertEffectToCompTime(effect_ref, 7 * 1001, 30000, &time), 0);
    EXPECT_EQ(time.value, 24 * 1001);  // 10 + 7 * 2
    EXPECT_EQ(time.scale, 30000U);
    const A_Time odd = frame_time(31);  // layer time 10.5 frames
    EXPECT_EQ(layers.AEGP_ConvertCompToLayerTime(handle(kCarrier), &odd, &time), 0);
    EXPECT_DOUBLE_EQ(static_cast<double>(time.value) / time.scale, 10.5 * 1001 / 30000);
    composition.find_layer(kLight)->in_frame = 12;
    EXPECT_EQ(layers.AEGP_GetLayerInPoint(handle(kLight), AEGP_LTimeMode_CompTime, &time), 0);
    EXPECT_EQ(time.value, 12 * 1001);
    EXPECT_EQ(layers.AEGP_GetLayerDuration(handle(kLight), AEGP_LTimeMode_CompTime, &time), 0);
    EXPECT_EQ(time.value, 88 * 1001);
}

TEST_F(SuitesTest, NamesAreCutTo31CharactersAndUnwantedOnesLeftOut) {
    A_char own[40], source[40];
    std::memset(own, '#', sizeof own);
    std::memset(source, '#', sizeof source);
    EXPECT_EQ(layers.AEGP_GetLayerName(handle(kWall), own, source), 0);
    EXPECT_STREQ(own, "A very long layer name that goe");
    EXPECT_EQ(own[32], '#');
    EXPECT_STREQ(source, "");
    EXPECT_EQ(layers.AEGP_GetLayerName(handle(kCarrier), nullptr, source), 0);
    EXPECT_STREQ(source, "White Solid with quite a long n");
    AEGP_ItemH item = nullptr;
    A_long width = 0, height = 0;
    EXPECT_EQ(layers.AEGP_GetLayerSourceItem(handle(kCarrier), &item), 0);
    EXPECT_EQ(kItemSuite3.AEGP_GetItemName(item, own), 0);
    EXPECT_STREQ(own, source);
    EXPECT_EQ(kItemSuite3.AEGP_GetItemDimensions(item, &width, &height), 0);
    EXPECT_EQ(width * 1000 + height, 320200);
    EXPECT_EQ(layers.AEGP_GetLayerSourceItem(handle(kLight), &item), 0);
    EXPECT_EQ(item, nullptr);
    char endless[64];
    std::memset(endless, 'x', sizeof endless);
    EXPECT_EQ(layers.AEGP_SetLayerName(handle(kWall), endless), 0);
    EXPECT_EQ(composition.find_layer(kWall)->name, std::string(31, 'x'));
}

TEST_F(SuitesTest, StreamsBelongToTheirKindsOfLayers) {
    composition.find_layer(kLight)->light.cone_angle = 60.0;
    const A_Time now = frame_time(5);
    AEGP_StreamVal value{};
    const auto ask = [&](LayerId id, AEGP_LayerStream stream) {
        return streams.AEGP_GetLayerStreamValue(handle(id), stream, AEGP_LTimeMode_CompTime, &now, 0, &value,
                                                nullptr);
    };
    EXPECT_EQ(ask(kLight, AEGP_LayerStream_CONE_ANGLE), 0);
    EXPECT_EQ(value.one_d, 60.0);
    EXPECT_EQ(ask(kLight, AEGP_LayerStream_COLOR), 0);
    EXPECT_EQ(value.color.alphaF + value.color.blueF, 2.0);
    composition.find_layer(kLight)->light.falloff_start.keys = {{0, 100.0}, {20, 300.0}};
    EXPECT_EQ(ask(kLight, AEGP_LayerStream_LIGHT_FALLOFF_START), 0);
    EXPECT_EQ(value.one_d, 150.0);
    EXPECT_EQ(ask(kLight, AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE), 0);
    EXPECT_EQ(value.one_d, 500.0);
    EXPECT_EQ(ask(kCamera, AEGP_LayerStream_ZOOM), 0);
    EXPECT_EQ(value.one_d, 500.0);
    EXPECT_NE(ask(kLight, AEGP_LayerStream_ZOOM), 0);
    EXPECT_NE(ask(kWall, AEGP_LayerStream_INTENSITY), 0);
    EXPECT_NE(ask(kLight, AEGP_LayerStream_SCALE), 0);
}

TEST_F(SuitesTest, StreamsAreReadInTheTimeAskedForAndSetOnlyWhileTheyStandStill) {
    Animated<Vec3>& position = composition.find_layer(kCarrier)->transform.position;
    AEGP_StreamRefH stream = nullptr;
    EXPECT_EQ(streams.AEGP_GetNewLayerStream(0, handle(kCarrier), AEGP_LayerStream_POSITION, &stream), 0);
    A_long keys = -5;
    EXPECT_EQ(kKeyframeSuite1.AEGP_GetStreamNumKFs(stream, &keys), 0);
    EXPECT_EQ(keys, 0);
    AEGP_StreamValue set{};
    set.val.three_d = {1, 2, 3};
    EXPECT_EQ(streams.AEGP_SetStreamValue(0, stream, &set), 0);
    EXPECT_EQ(position.constant, (Vec3{1, 2, 3}));

    position.keys = {{0, {0, 0, 0}}, {100, {100, 0, 0}}};
    EXPECT_NE(streams.AEGP_SetStreamValue(0, stream, &set), 0);
    EXPECT_EQ(kKeyframeSuite1.AEGP_GetStreamNumKFs(stream, &keys), 0);
    EXPECT_EQ(keys, 2);
    const A_Time ten = frame_time(10);
    for (const auto& [mode, expected] :
         {std::pair{AEGP_LTimeMode_CompTime, 10.0}, {AEGP_LTimeMode_LayerTime, 30.0}}) {
        AEGP_StreamValue got{};
        const auto narrow = static_cast<AEGP_LTimeMode>(mode);
        EXPECT_EQ(streams.AEGP_GetNewStreamValue(0, stream, narrow, &ten, 0, &got), 0);
        EXPECT_EQ(got.streamH, stream);
        EXPECT_DOUBLE_EQ(got.val.three_d.x, expected);
        EXPECT_EQ(streams.AEGP_DisposeStreamValue(&got), 0);
    }
    EXPECT_EQ(streams.AEGP_DisposeStream(stream), 0);
    EXPECT_TRUE(in.ledger.end().empty());
}

TEST_F(SuitesTest, NewLightsAreSpotsOnTopThatKeepTheirNumbersWhenParented) {
    AEGP_LayerH light = nullptr;
    const AEGP_LayerH wall = handle(kWall);
    EXPECT_EQ(kCompSuite9.AEGP_CreateLightInComp("Reach", {3, 4}, comp, &light), 0);
    const Layer& made = composition.layers[0];
    EXPECT_EQ(in.layer(wall).id, kWall);  // a handle from before is still good
    EXPECT_EQ(made.name, "Reach");
    EXPECT_EQ(made.light.type, LightType::spot);
    EXPECT_EQ(made.transform.point_of_interest->constant, (Vec3{3, 4, 0}));
    EXPECT_LT(made.transform.position.constant.z, 0.0);
    EXPECT_EQ(made.start_frame, 20.0);  // where the time stands

    const A_Time start{0, 1};
    EXPECT_EQ(layers.AEGP_SetLayerOffset(light, &start), 0);
    EXPECT_EQ(made.in_frame, 0.0);
    EXPECT_EQ(made.out_frame, 100.0);
    const Vec3 before = made.transform.position.constant;
    EXPECT_EQ(layers.AEGP_SetLayerParent(light, wall), 0);
    EXPECT_EQ(made.parent, kWall);
    EXPECT_EQ(made.transform.position.constant, before);
    EXPECT_NE(layers.AEGP_SetLayerParent(wall, light), 0);  // a circle
    EXPECT_NE(layers.AEGP_SetLayerParent(wall, wall), 0);
    EXPECT_EQ(layers.AEGP_SetLayerFlag(light, AEGP_LayerFlag_LOCKED, 1), 0);
    EXPECT_EQ(layers.AEGP_SetLayerName(light, "Renamed"), 0);  // locked or not
    EXPECT_NE(layers.AEGP_SetLayerFlag(light, AEGP_LayerFlag_SHY | AEGP_LayerFlag_LOCKED, 1), 0);
    EXPECT_EQ(kLightSuite2.AEGP_SetLightType(light, AEGP_LightType_POINT), 0);
    EXPECT_EQ(made.light.type, LightType::point);
    EXPECT_TRUE(in.ledger.end().empty());
}

TEST_F(SuitesTest, TextsAreBounded) {
    const PF_ANSICallbacks ansi = ansi_callbacks();
    char text[400];
    std::memset(text, '#', sizeof text);
    ansi.sprintf(text, "%s-%0600d", "Zam", 5);
    EXPECT_EQ(std::strlen(text), 255U);
    EXPECT_EQ(text[256], '#');
    EXPECT_EQ(std::strcmp(ansi.strcpy(text, "Spot"), "Spot"), 0);
    EXPECT_EQ(ansi.atan2(1.0, 0.0), std::atan2(1.0, 0.0));  // y first
}

}  // namespace
}  // namespace zam::host
