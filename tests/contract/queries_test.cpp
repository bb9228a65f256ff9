// The exported scene functions, called by name in the loaded file as a command would call them.
#include <gmock/gmock.h>

#include <functional>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

using ::testing::DoubleEq;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;
using Numbers = std::vector<double>;

// Calls inside of a command at that frame, which must go well.
void inside(Running& running, double frame, const std::function<void(PF_InData*)>& ask) {
    const Outcome outcome = running.session.call_inside(frame, [&](PF_InData* in, PF_OutData*) {
        ask(in);
        return 0;
    });
    EXPECT_EQ(outcome.reports, std::vector<std::string>{});
}

// The matrix and the zoom, -1 where nothing is written.
Numbers camera(const char* name, PF_InData* in, A_Err expected_error = 0) {
    A_Matrix4 m;
    for (auto& row : m.mat) std::fill(row, row + 4, -1.0);
    double zoom = -1.0;
    EXPECT_EQ(call(name, in, &m, &zoom, in->current_time, in->time_scale, in->width, in->height),
              expected_error);
    Numbers all(&m.mat[0][0], &m.mat[0][0] + 16);
    all.push_back(zoom);
    return all;
}

TEST(Queries, DefaultViewOfEachCameraFunction) {
    Composition comp = make_composition(1920, 1080);
    comp.pixel_aspect = {2, 1};
    Running running(comp);
    const struct {
        const char* name;
        PF_RationalScale aspect;
        double scale_x, centre_x;
    } rows[] = {
        {"GetCameraMatrix", {2, 1}, 0.5, 960},
        {"GetCameraMatrix", {0, 1}, 1.0, 960},  // a ratio of nothing is 1
        {"GetCameraMatrix", {1, 0}, 1.0, 960},
        {"GetCameraMatrixAspect", {2, 1}, 1.0, 960},
        {"GetCameraMatrixNoAspect", {2, 1}, 1.0, 1920},
    };
    const double zoom = 2.0 * 1920 * 50 / 36;
    for (const auto& row : rows) {
        const Numbers expected{row.scale_x,  0,   0,     0, 0,   1, 0, 0, 0, 0, 1, 0,
                               row.centre_x, 540, -zoom, 1, zoom};
        inside(running, 0, [&](PF_InData* in) {
            in->pixel_aspect_ratio = row.aspect;
            EXPECT_THAT(camera(row.name, in), Pointwise(DoubleEq(), expected)) << row.name;
        });
    }
}

TEST(Queries, CameraIsReadAtCompositionTime) {
    Composition comp = make_composition();
    comp.layers.back().start_frame = 10;
    Layer& layer = add_camera(comp, {1, 2, -300}, {1, 2, 0}, 100);
    layer.camera.zoom.keys = {{0, 100.0}, {20, 300.0}};
    Running running(comp);
    for (const char* name : {"GetCameraMatrix", "GetCameraMatrixAspect", "GetCameraMatrixNoAspect"}) {
        const double wide = name == std::string("GetCameraMatrixNoAspect") ? 2.0 : 1.0;
        running.comp.pixel_aspect = {static_cast<int>(wide), 1};
        const Numbers expected{wide, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, wide, 2, -300, 1, 250};
        inside(running, 15, [&](PF_InData* in) { EXPECT_EQ(camera(name, in), expected) << name; });
    }
    // What was written before the first failing call stays.
    running.session.set_faults(FaultPlan().fail("Stream.AEGP_GetLayerStreamValue", 1, 7));
    const Numbers without_zoom{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, -300, 1, -1};
    inside(running, 15, [&](PF_InData* in) { EXPECT_EQ(camera("GetCameraMatrix", in, 7), without_zoom); });
}

TEST(Queries, LightsAreCountedAndDescribed) {
    Composition comp = make_composition();
    add_point(comp, {1, 2, 3}, "Second point");  // by its name the topmost is found
    add_point(comp, {7, 8, 9}, "Second point");
    add_point(comp, {4, 5, 6}, "First point").light.color = Color{0.1, 0.2, 0.3};
    Layer& spot = add_spot(comp, {10, 20, 30}, {10, 20, 130}, "Spot");
    spot.transform.rotation_z = 90.0;  // x to y
    spot.light.cone_angle = 60.0;
    spot.light.cone_feather = 25.0;
    spot.light.intensity = 150.0;
    spot.light.shadow_darkness = 40.0;
    spot.light.shadow_diffusion = 12.0;
    Running running(comp);
    inside(running, 0, [&](PF_InData* in) {
        EXPECT_EQ(call("GetNoLights", in, int{AEGP_LightType_POINT}), 3);
        EXPECT_EQ(call("GetNoLights", in, int{AEGP_LightType_SPOT}), 1);
        EXPECT_EQ(call("GetNoLights", in, int{AEGP_LightType_PARALLEL}), 0);
        const auto expect_light = [&](const char* name, int nth, const Numbers& expected) {
            Numbers light(14, -7.0);
            const char* prefix = nullptr;
            EXPECT_EQ(call(name, in, A_long{0}, A_u_long{24}, light.data(), nth, true, false, prefix), 0);
            EXPECT_THAT(light, Pointwise(DoubleEq(), expected)) << name;
        };
        // pos, dir, colour, cone angle, feather, intensity, shadow darkness, shadow diffusion
        expect_light("GetPointLight", 0, {4, 5, 6, -7, -7, -7, 0.1, 0.2, 0.3, -7, -7, 1.0, 1.0, 0.0});
        expect_light("GetSpotLight", 0,
                     {10, 20, 30, 0, 0, 1, 1, 1, 1, 60 * 0.017453292519943295, 0.25, 1.5, 0.4, 12.0});
        expect_light("GetSpotLight", 1, Numbers(14, -7.0));

        EXPECT_EQ(call("PCheckLightExists", in, "First"), 1);
        EXPECT_EQ(call("PCheckLightExists", in, "Spot light"), 1);  // up to the end of the shorter one
        EXPECT_EQ(call("PCheckLightExists", in, "Third"), 0);
        int type = 0;
        float at[3] = {}, axes[9], color[3], cone[2];
        for (const auto& [name, found] :
             {std::pair{"Second point", int{AEGP_LightType_POINT}}, {"Second", -1}}) {
            EXPECT_EQ(call("PGetLightPos", in, A_long{0}, A_u_long{24}, name, &type, &at[0], &at[1], &at[2]),
                      0);
            EXPECT_EQ(type, found);
            EXPECT_THAT(at, ElementsAre(7, 8, 9));
        }
        EXPECT_EQ(call("GetLightByName", in, A_long{0}, A_u_long{24}, "Spot", &type, &at[0], &axes[0],
                       &color[0], &cone[0], &cone[1]),
                  0);
        EXPECT_EQ(type, AEGP_LightType_SPOT);
        EXPECT_THAT(at, ElementsAre(10, 20, 30));
        EXPECT_THAT(axes, Pointwise(DoubleNear(1e-7), Numbers{0, 1, 0, -1, 0, 0, 0, 0, 1}));
        EXPECT_THAT(cone, ElementsAre(::testing::FloatEq(1.0471976F), 0.25F));
    });
}

TEST(Queries, ReachLightIsFoundThroughSinglePrecision) {
    Composition comp = make_composition();
    Layer& wall = add_layer(comp, LayerKind::null_object, "Wall", {0.1, 20, 30});
    const LayerId wall_id = wall.id;
    Layer& light = add_spot(comp, {0, 0, 0}, {0, 0, 0}, "Zam Reach [Wall]");
    light.parent = wall_id;
    light.transform.rotation_x = 90.0;  // z to -y
    light.light.color = Color{0.5, 0.25, 1.0};
    add_spot(comp, {1, 1, 1}, {2, 2, 2}, "Zam Reach [other]");
    Running running(comp);
    inside(running, 0, [&](PF_InData* in) {
        int index = 0;
        double v[6] = {-7, -7, -7, -7, -7, -7};
        const auto ask = [&](LayerId parent) {
            return call("GetControlLight", in, A_long{parent}, A_long{0}, A_u_long{24}, &index, &v[0], &v[1],
                        &v[2], &v[3], &v[4], &v[5]);
        };
        EXPECT_EQ(ask(999), 0);
        EXPECT_EQ(index, -1);
        EXPECT_THAT(v, ::testing::Each(-7));
        EXPECT_EQ(ask(wall_id), 0);
        EXPECT_EQ(index, 1);
        EXPECT_THAT(v, Pointwise(DoubleNear(1e-12), Numbers{0.1F, 20, 30, 0, -1, 0}));
        EXPECT_EQ(call("PGetControlLightIDX", in, &index, "Zam Reach [W"), 0);
        EXPECT_EQ(index, 1);
        float values[9];
        EXPECT_EQ(call("PGetControlLightFromIDX", in, A_long{0}, A_u_long{24}, index, &values[0]), 0);
        EXPECT_THAT(values, Pointwise(DoubleNear(1e-12), Numbers{0.1F, 20, 30, 0, -1, 0, 0.5, 0.25, 1}));
        A_Matrix4 matrix;
        EXPECT_EQ(call("PGetControlMatrixFromIDX", in, A_long{0}, A_u_long{24}, 2, &matrix), 0);
        EXPECT_EQ(matrix.mat[3][0], 0.1);
    });
}

TEST(Queries, WorkAreaAndPickedLayer) {
    Composition comp = make_composition();
    comp.work_area_start = 12;
    comp.work_area_duration = 36;
    comp.layers.back().start_frame = 6;
    comp.items.push_back({2, "Wall source", 40, 30});
    Layer& wall = add_layer(comp, LayerKind::solid, "Wall", {0, 0, 0});
    wall.source = 2;
    Running running(comp);
    running.set("Set Reach Layer", wall.id);
    inside(running, 0, [&](PF_InData* in) {
        double area[2];
        EXPECT_EQ(call("GetWorkArea", in, &area[0], &area[1]), 0);
        EXPECT_THAT(area, ElementsAre((12 - 6) / 24.0, (48 - 6) / 24.0));
        for (const char* name : {"GetLayerInfo", "GetLayerSize", "GetLayerSizeAndType"}) {
            float size[2] = {-7, -7};
            EXPECT_EQ(call(name, in, 19, &size[0], &size[1]), 0);
            EXPECT_THAT(size, ElementsAre(40, 30)) << name;
        }
        EXPECT_EQ(call("PAddControlLightIfNeeded", in, 19, "Mark"), 0);
    });
    EXPECT_EQ(running.comp.layers.front().name, "Mark [Wall]");
}

}  // namespace
}  // namespace zam::test
