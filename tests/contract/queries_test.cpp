// The exported scene functions, called by name in the loaded file as a command would call them.
#include <cmath>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

template <class Function>
Function* exported(const char* name) {
    void* symbol = zam_plugin().symbol(name);
    EXPECT_NE(symbol, nullptr) << name;
    return reinterpret_cast<Function*>(symbol);
}

using CameraQuery = A_Err(PF_InData*, A_Matrix4*, double*, A_long, A_u_long, A_long, A_long);
using LightQuery = A_Err(PF_InData*, A_long, A_u_long, double*, int, bool, bool, const char*);

A_Err get_camera(const char* name, PF_InData* in, A_Matrix4* matrix, double* zoom) {
    return exported<CameraQuery>(name)(in, matrix, zoom, in->current_time, in->time_scale, in->width,
                                       in->height);
}

TEST(Queries, DefaultViewOfEachCameraFunction) {
    Composition comp = make_composition(1920, 1080);
    comp.pixel_aspect = {2, 1};
    Running running(comp);
    const struct {
        const char* name;
        double scale_x, centre_x;
    } rows[] = {{"GetCameraMatrix", 0.5, 960},
                {"GetCameraMatrixAspect", 1.0, 960},
                {"GetCameraMatrixNoAspect", 1.0, 1920}};
    for (const auto& row : rows) {
        const Outcome outcome = running.session.call_inside(0, [&](PF_InData* in, PF_OutData*) {
            A_Matrix4 m;
            double zoom = 0.0;
            const A_Err err = get_camera(row.name, in, &m, &zoom);
            const double expected[4][4] = {
                {row.scale_x, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {row.centre_x, 540, -zoom, 1}};
            for (int i = 0; i < 16; ++i)
                EXPECT_EQ(m.mat[i / 4][i % 4], expected[i / 4][i % 4]) << row.name << " " << i;
            EXPECT_NEAR(zoom, 2.0 * 1920 * 50 / 36, 1e-9);
            return err;
        });
        EXPECT_TRUE(outcome.ok()) << row.name;
    }
}

TEST(Queries, CameraIsReadAtCompositionTime) {
    Composition comp = make_composition();
    comp.layers.back().start_frame = 10;
    Layer& camera = add_camera(comp, {1, 2, -300}, {1, 2, 0}, 100);
    camera.camera.zoom.keys = {{0, 100.0}, {20, 300.0}};
    Running running(comp);
    for (const char* name : {"GetCameraMatrix", "GetCameraMatrixAspect"}) {
        EXPECT_TRUE(running.session
                        .call_inside(15,
                                     [&](PF_InData* in, PF_OutData*) {
                                         A_Matrix4 m;
                                         double zoom = 0.0;
                                         const A_Err err = get_camera(name, in, &m, &zoom);
                                         EXPECT_EQ(zoom, 250.0) << name;
                                         EXPECT_EQ(m.mat[3][2], -300.0) << name;
                                         EXPECT_EQ(m.mat[2][2], 1.0) << name;
                                         return err;
                                     })
                        .ok());
    }
    running.comp.pixel_aspect = {2, 1};
    running.session.call_inside(15, [&](PF_InData* in, PF_OutData*) {
        A_Matrix4 m;
        double distance = 0.0;
        EXPECT_EQ(get_camera("GetCameraMatrixNoAspect", in, &m, &distance), 0);
        EXPECT_EQ(distance, 250.0);
        const double expected[4][4] = {{2, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {2, 2, -300, 1}};
        for (int i = 0; i < 16; ++i) EXPECT_EQ(m.mat[i / 4][i % 4], expected[i / 4][i % 4]) << i;
        return 0;
    });
    // What was written before the first failing call stays.
    running.session.set_faults(FaultPlan().fail("Stream.AEGP_GetLayerStreamValue", 1, 7));
    running.session.call_inside(15, [&](PF_InData* in, PF_OutData*) {
        A_Matrix4 m{};
        double zoom = -1.0;
        EXPECT_EQ(get_camera("GetCameraMatrix", in, &m, &zoom), 7);
        EXPECT_EQ(zoom, -1.0);
        EXPECT_EQ(m.mat[3][2], -300.0);
        return 0;
    });
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
    running.session.call_inside(0, [&](PF_InData* in, PF_OutData*) {
        auto* count = exported<int(PF_InData*, int)>("GetNoLights");
        EXPECT_EQ(count(in, AEGP_LightType_POINT), 3);
        EXPECT_EQ(count(in, AEGP_LightType_SPOT), 1);
        EXPECT_EQ(count(in, AEGP_LightType_PARALLEL), 0);
        // pos, dir, colour, cone angle, feather, intensity, shadow darkness, shadow diffusion
        double light[14];
        std::fill(light, light + 14, -7.0);
        EXPECT_EQ(exported<LightQuery>("GetPointLight")(in, 0, 24, light, 0, true, false, nullptr), 0);
        const double point[14] = {4, 5, 6, -7, -7, -7, 0.1, 0.2, 0.3, -7, -7, 1.0, 1.0, 0.0};
        for (int i = 0; i < 14; ++i) EXPECT_DOUBLE_EQ(light[i], point[i]) << i;
        EXPECT_EQ(exported<LightQuery>("GetSpotLight")(in, 0, 24, light, 0, true, false, nullptr), 0);
        const double beam[14] = {10,   20,  30,  0,   0, 1, 1, 1, 1, 60 * 0.017453292519943295,
                                 0.25, 1.5, 0.4, 12.0};
        for (int i = 0; i < 14; ++i) EXPECT_DOUBLE_EQ(light[i], beam[i]) << i;
        std::fill(light, light + 14, -7.0);
        EXPECT_EQ(exported<LightQuery>("GetSpotLight")(in, 0, 24, light, 1, true, false, nullptr), 0);
        for (const double untouched : light) EXPECT_EQ(untouched, -7.0);

        auto* exists = exported<int(PF_InData*, const char*)>("PCheckLightExists");
        EXPECT_EQ(exists(in, "First"), 1);
        EXPECT_EQ(exists(in, "Spot light"), 1);  // up to the end of the shorter one
        EXPECT_EQ(exists(in, "Third"), 0);
        int type = 0;
        float x = 0, y = 0, z = 0;
        using Position = A_Err(PF_InData*, A_long, A_u_long, const char*, int*, float*, float*, float*);
        EXPECT_EQ(exported<Position>("PGetLightPos")(in, 0, 24, "Second point", &type, &x, &y, &z), 0);
        EXPECT_EQ(type, AEGP_LightType_POINT);
        EXPECT_EQ(x, 7.0F);
        EXPECT_EQ(z, 9.0F);
        EXPECT_EQ(exported<Position>("PGetLightPos")(in, 0, 24, "Second", &type, &x, &y, &z), 0);
        EXPECT_EQ(type, -1);
        using ByName =
            A_Err(PF_InData*, A_long, A_u_long, const char*, int*, float*, float*, float*, float*, float*);
        float position[3], axes[9], color[3], angle = 0, feather = 0;
        EXPECT_EQ(exported<ByName>("GetLightByName")(in, 0, 24, "Spot", &type, position, axes, color, &angle,
                                                     &feather),
                  0);
        EXPECT_EQ(type, AEGP_LightType_SPOT);
        EXPECT_EQ(position[1], 20.0F);
        EXPECT_EQ(axes[1], 1.0F);
        EXPECT_EQ(axes[8], 1.0F);
        EXPECT_FLOAT_EQ(angle, 1.0471976F);
        EXPECT_EQ(feather, 0.25F);
        return 0;
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
    using Reach = A_Err(PF_InData*, A_long, A_long, A_u_long, int*, double*, double*, double*, double*,
                        double*, double*);
    running.session.call_inside(0, [&](PF_InData* in, PF_OutData*) {
        int found = 0;
        double v[6] = {-7, -7, -7, -7, -7, -7};
        auto* get = exported<Reach>("GetControlLight");
        EXPECT_EQ(get(in, 999, 0, 24, &found, v, v + 1, v + 2, v + 3, v + 4, v + 5), 0);
        EXPECT_EQ(found, -1);
        EXPECT_EQ(v[0], -7);
        EXPECT_EQ(get(in, wall_id, 0, 24, &found, v, v + 1, v + 2, v + 3, v + 4, v + 5), 0);
        EXPECT_EQ(found, 1);
        EXPECT_EQ(v[0], static_cast<double>(0.1F));
        EXPECT_EQ(v[4], -1.0);

        int index = 0;
        EXPECT_EQ((exported<A_Err(PF_InData*, int*, const char*)>("PGetControlLightIDX")(in, &index,
                                                                                         "Zam Reach [W")),
                  0);
        EXPECT_EQ(index, 1);
        float values[9];
        EXPECT_EQ((exported<A_Err(PF_InData*, A_long, A_u_long, int, float*)>("PGetControlLightFromIDX")(
                      in, 0, 24, index, values)),
                  0);
        EXPECT_EQ(values[1], 20.0F);
        EXPECT_EQ(values[4], -1.0F);
        EXPECT_EQ(values[7], 0.25F);
        A_Matrix4 matrix;
        EXPECT_EQ((exported<A_Err(PF_InData*, A_long, A_u_long, int, A_Matrix4*)>("PGetControlMatrixFromIDX")(
                      in, 0, 24, 2, &matrix)),
                  0);
        EXPECT_EQ(matrix.mat[3][0], 0.1);
        return 0;
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
    const Outcome outcome = running.session.call_inside(0, [&](PF_InData* in, PF_OutData*) {
        double start = 0, end = 0;
        EXPECT_EQ((exported<A_Err(PF_InData*, double*, double*)>("GetWorkArea")(in, &start, &end)), 0);
        EXPECT_EQ(start, (12 - 6) / 24.0);
        EXPECT_EQ(end, (48 - 6) / 24.0);
        for (const char* name : {"GetLayerInfo", "GetLayerSize", "GetLayerSizeAndType"}) {
            float width = -7, height = -7;
            auto* size = exported<A_Err(PF_InData*, int, float*, float*)>(name);
            EXPECT_EQ(size(in, 19, &width, &height), 0);
            EXPECT_EQ(width, 40.0F) << name;
            EXPECT_EQ(height, 30.0F) << name;
        }
        EXPECT_EQ((exported<A_Err(PF_InData*, int, const char*)>("PAddControlLightIfNeeded")(in, 19, "Mark")),
                  0);
        return 0;
    });
    EXPECT_TRUE(outcome.ok()) << ::testing::PrintToString(outcome.reports);
    EXPECT_EQ(running.comp.layers.front().name, "Mark [Wall]");
}

TEST(Queries, ARatioOfNothingIsOne) {
    Running running(make_composition());
    running.session.call_inside(0, [&](PF_InData* in, PF_OutData*) {
        for (const PF_RationalScale aspect : {PF_RationalScale{0, 1}, PF_RationalScale{1, 0}}) {
            in->pixel_aspect_ratio = aspect;
            A_Matrix4 m;
            double zoom = 0.0;
            EXPECT_EQ(get_camera("GetCameraMatrix", in, &m, &zoom), 0);
            EXPECT_EQ(m.mat[0][0], 1.0);
        }
        return 0;
    });
}

}  // namespace
}  // namespace zam::test
