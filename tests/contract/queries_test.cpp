// The exported scene functions, called by name in the loaded file as a command would call them.
#include <functional>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

A_Err get_camera(const char* name, PF_InData* in, A_Matrix4* matrix, double* zoom) {
    return call(name, in, matrix, zoom, in->current_time, in->time_scale, in->width, in->height);
}

void expect_matrix(const A_Matrix4& m, const double (&expected)[4][4], const char* name) {
    for (int i = 0; i < 16; ++i) EXPECT_EQ(m.mat[i / 4][i % 4], expected[i / 4][i % 4]) << name << " " << i;
}

// Calls inside of a command at that frame, which must go well.
void inside(Running& running, double frame, const std::function<void(PF_InData*)>& ask) {
    const Outcome outcome = running.session.call_inside(frame, [&](PF_InData* in, PF_OutData*) {
        ask(in);
        return 0;
    });
    EXPECT_EQ(outcome.reports, std::vector<std::string>{});
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
        inside(running, 0, [&](PF_InData* in) {
            A_Matrix4 m;
            double zoom = 0.0;
            EXPECT_EQ(get_camera(row.name, in, &m, &zoom), 0);
            expect_matrix(m,
                          {{row.scale_x, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {row.centre_x, 540, -zoom, 1}},
                          row.name);
            EXPECT_NEAR(zoom, 2.0 * 1920 * 50 / 36, 1e-9);
        });
    }
}

TEST(Queries, CameraIsReadAtCompositionTime) {
    Composition comp = make_composition();
    comp.layers.back().start_frame = 10;
    Layer& camera = add_camera(comp, {1, 2, -300}, {1, 2, 0}, 100);
    camera.camera.zoom.keys = {{0, 100.0}, {20, 300.0}};
    Running running(comp);
    for (const char* name : {"GetCameraMatrix", "GetCameraMatrixAspect", "GetCameraMatrixNoAspect"}) {
        const bool no_aspect = name == std::string("GetCameraMatrixNoAspect");
        running.comp.pixel_aspect = {no_aspect ? 2 : 1, 1};
        inside(running, 15, [&](PF_InData* in) {
            A_Matrix4 m;
            double zoom = 0.0;
            EXPECT_EQ(get_camera(name, in, &m, &zoom), 0);
            EXPECT_EQ(zoom, 250.0) << name;
            const double wide = no_aspect ? 2.0 : 1.0;
            expect_matrix(m, {{wide, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {wide, 2, -300, 1}}, name);
        });
    }
    // What was written before the first failing call stays.
    running.session.set_faults(FaultPlan().fail("Stream.AEGP_GetLayerStreamValue", 1, 7));
    inside(running, 15, [&](PF_InData* in) {
        A_Matrix4 m{};
        double zoom = -1.0;
        EXPECT_EQ(get_camera("GetCameraMatrix", in, &m, &zoom), 7);
        EXPECT_EQ(zoom, -1.0);
        EXPECT_EQ(m.mat[3][2], -300.0);
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
    inside(running, 0, [&](PF_InData* in) {
        EXPECT_EQ(call("GetNoLights", in, int{AEGP_LightType_POINT}), 3);
        EXPECT_EQ(call("GetNoLights", in, int{AEGP_LightType_SPOT}), 1);
        EXPECT_EQ(call("GetNoLights", in, int{AEGP_LightType_PARALLEL}), 0);
        // pos, dir, colour, cone angle, feather, intensity, shadow darkness, shadow diffusion
        double light[14];
        const auto expect_light = [&](const char* name, int nth, const std::vector<double>& expected) {
            std::fill(light, light + 14, -7.0);
            const char* prefix = nullptr;
            EXPECT_EQ(call(name, in, A_long{0}, A_u_long{24}, &light[0], nth, true, false, prefix), 0);
            for (std::size_t i = 0; i < 14; ++i) EXPECT_DOUBLE_EQ(light[i], expected[i]) << name << i;
        };
        expect_light("GetPointLight", 0, {4, 5, 6, -7, -7, -7, 0.1, 0.2, 0.3, -7, -7, 1.0, 1.0, 0.0});
        expect_light("GetSpotLight", 0,
                     {10, 20, 30, 0, 0, 1, 1, 1, 1, 60 * 0.017453292519943295, 0.25, 1.5, 0.4, 12.0});
        expect_light("GetSpotLight", 1, std::vector<double>(14, -7.0));

        EXPECT_EQ(call("PCheckLightExists", in, "First"), 1);
        EXPECT_EQ(call("PCheckLightExists", in, "Spot light"), 1);  // up to the end of the shorter one
        EXPECT_EQ(call("PCheckLightExists", in, "Third"), 0);
        int type = 0;
        float at[3] = {}, axes[9], color[3], angle = 0, feather = 0;
        const auto ask_position = [&](const char* name) {
            return call("PGetLightPos", in, A_long{0}, A_u_long{24}, name, &type, &at[0], &at[1], &at[2]);
        };
        EXPECT_EQ(ask_position("Second point"), 0);
        EXPECT_EQ(type, AEGP_LightType_POINT);
        EXPECT_EQ(at[0], 7.0F);
        EXPECT_EQ(at[2], 9.0F);
        EXPECT_EQ(ask_position("Second"), 0);
        EXPECT_EQ(type, -1);
        EXPECT_EQ(call("GetLightByName", in, A_long{0}, A_u_long{24}, "Spot", &type, &at[0], &axes[0],
                       &color[0], &angle, &feather),
                  0);
        EXPECT_EQ(type, AEGP_LightType_SPOT);
        EXPECT_EQ(at[1], 20.0F);
        EXPECT_EQ(axes[1], 1.0F);
        EXPECT_EQ(axes[8], 1.0F);
        EXPECT_FLOAT_EQ(angle, 1.0471976F);
        EXPECT_EQ(feather, 0.25F);
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
        int found = 0;
        double v[6] = {-7, -7, -7, -7, -7, -7};
        const auto ask = [&](LayerId parent) {
            return call("GetControlLight", in, A_long{parent}, A_long{0}, A_u_long{24}, &found, &v[0], &v[1],
                        &v[2], &v[3], &v[4], &v[5]);
        };
        EXPECT_EQ(ask(999), 0);
        EXPECT_EQ(found, -1);
        EXPECT_EQ(v[0], -7);
        EXPECT_EQ(ask(wall_id), 0);
        EXPECT_EQ(found, 1);
        EXPECT_EQ(v[0], static_cast<double>(0.1F));
        EXPECT_EQ(v[4], -1.0);

        int index = 0;
        EXPECT_EQ(call("PGetControlLightIDX", in, &index, "Zam Reach [W"), 0);
        EXPECT_EQ(index, 1);
        float values[9];
        EXPECT_EQ(call("PGetControlLightFromIDX", in, A_long{0}, A_u_long{24}, index, &values[0]), 0);
        EXPECT_EQ(values[1], 20.0F);
        EXPECT_EQ(values[4], -1.0F);
        EXPECT_EQ(values[7], 0.25F);
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
        double start = 0, end = 0;
        EXPECT_EQ(call("GetWorkArea", in, &start, &end), 0);
        EXPECT_EQ(start, (12 - 6) / 24.0);
        EXPECT_EQ(end, (48 - 6) / 24.0);
        for (const char* name : {"GetLayerInfo", "GetLayerSize", "GetLayerSizeAndType"}) {
            float width = -7, height = -7;
            EXPECT_EQ(call(name, in, 19, &width, &height), 0);
            EXPECT_EQ(width, 40.0F) << name;
            EXPECT_EQ(height, 30.0F) << name;
        }
        EXPECT_EQ(call("PAddControlLightIfNeeded", in, 19, "Mark"), 0);
    });
    EXPECT_EQ(running.comp.layers.front().name, "Mark [Wall]");
}

TEST(Queries, ARatioOfNothingIsOne) {
    Running running(make_composition());
    inside(running, 0, [&](PF_InData* in) {
        for (const PF_RationalScale aspect : {PF_RationalScale{0, 1}, PF_RationalScale{1, 0}}) {
            in->pixel_aspect_ratio = aspect;
            A_Matrix4 m;
            double zoom = 0.0;
            EXPECT_EQ(get_camera("GetCameraMatrix", in, &m, &zoom), 0);
            EXPECT_EQ(m.mat[0][0], 1.0);
        }
    });
}

}  // namespace
}  // namespace zam::test
