// What glTF animations change of lights and cameras besides their places: values, angles of view, visibility.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/unit/io/gltf_file.h"

namespace zam::io {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kFirstLight = "/extensions/KHR_lights_punctual/lights/0";
constexpr const char* kVisible = "/extensions/KHR_node_visibility/visible";

std::string light_node(const std::string& name, const std::string& more = "") {
    return R"({"name": ")" + name + R"(", "extensions": {"KHR_lights_punctual": {"light": 0})" +
           (more.empty() ? "" : ", " + more) + "}}";
}

TEST(GltfMotion, PointersMoveLightsCamerasAndNodes) {
    GltfFile file;
    file.lights = R"({"type": "spot", "intensity": 7, "spot": {}}, {"type": "point", "intensity": 4})";
    file.nodes = light_node("A") + ", " + light_node("B") +
                 R"(, {"name": "Still", "extensions": {"KHR_lights_punctual": {"light": 1}}},
                     {"name": "Lens", "camera": 0})";
    file.cameras = R"({"type": "perspective", "perspective": {"yfov": 1, "znear": 1}})";
    const std::string light = kFirstLight;
    file.point(light + "/color", "LINEAR", "VEC3", {0, 1}, {0, 0, 1, 1, 0.5f, 0});
    file.point(light + "/intensity", "LINEAR", "SCALAR", {0, 0.5f, 1}, {0, 8, 2});
    file.point(light + "/range", "STEP", "SCALAR", {0, 0.5f}, {1, 3});
    file.point(light + "/spot/outerConeAngle", "LINEAR", "SCALAR", {0, 1}, {0.4f, 0.8f});
    file.point(light + "/spot/innerConeAngle", "CUBICSPLINE", "SCALAR", {0, 1}, {0, 0.2f, 0, 0, 0.2f, 0});
    file.point("/nodes/1/translation", "LINEAR", "VEC3", {0, 1}, {0, 0, 0, 0, 2, 0});
    file.point("/cameras/0/perspective/yfov", "LINEAR", "SCALAR", {0, 1},
               {2 * std::atan(0.5f), 2 * std::atan(0.25f)});
    const Scene scene = read_small(file);
    EXPECT_THAT(scene.warnings, IsEmpty());
    for (const char* name : {"A", "B"}) {  // both hang on the one definition
        const host::LightSettings& a = layer_named(scene, name).light;
        EXPECT_NEAR(a.color.at(12).red, 0.5, 1e-6);
        EXPECT_NEAR(a.color.at(12).green, 0.25, 1e-6);
        EXPECT_NEAR(a.color.at(12).blue, 0.5, 1e-6);
        // The peak of the animation, 8 cd, is 100 %; the 7 cd of the definition never show.
        EXPECT_NEAR(a.intensity.at(6), 50, 1e-4);
        EXPECT_NEAR(a.intensity.at(12), 100, 1e-4);
        EXPECT_NEAR(a.intensity.at(24), 25, 1e-4);
        EXPECT_EQ(a.shadow_diffusion.at(11.9), 100.0);  // holds up to the step
        EXPECT_EQ(a.shadow_diffusion.at(12), 300.0);
        EXPECT_NEAR(a.cone_angle.at(12), 1.2 * 180 / std::numbers::pi, 1e-4);
        EXPECT_NEAR(a.cone_feather.at(12), (1 - 0.2 / 0.6) * 100, 1e-4);
    }
    EXPECT_NEAR(layer_named(scene, "B").transform.position.at(12).y, 180 - 100, 1e-4);
    EXPECT_NEAR(layer_named(scene, "Still").light.intensity.at(9), 50, 1e-4);
    EXPECT_FALSE(layer_named(scene, "Still").light.intensity.varies());
    const host::Animated<double>& zoom = layer_named(scene, "Lens").camera.zoom;
    EXPECT_NEAR(zoom.at(0), 360, 1e-3);
    EXPECT_NEAR(zoom.at(24), 720, 1e-3);
}

TEST(GltfMotion, ValuesOutOfBoundsAreHeldAndTold) {
    GltfFile file;
    file.lights = R"({"type": "spot", "spot": {"innerConeAngle": 0.3}})";
    file.nodes = light_node("A");
    file.point(std::string(kFirstLight) + "/color", "LINEAR", "VEC3", {0, 1}, {0, 0, 0, 4, 0, 0});
    EXPECT_THAT(read_small(file).warnings, testing::ElementsAre(HasSubstr("are held")));
    EXPECT_EQ(layer_named(read_small(file), "A").light.color.at(24).red, 1.0);

    // A spot that opens from nothing, its inner angle larger on the way, is nothing to complain of.
    GltfFile opening;
    opening.lights = file.lights;
    opening.nodes = file.nodes;
    opening.point(std::string(kFirstLight) + "/spot/outerConeAngle", "LINEAR", "SCALAR", {0, 1},
                  {0, 1.57079637f});
    const Scene scene = read_small(opening);
    EXPECT_THAT(scene.warnings, IsEmpty());
    const host::LightSettings& light = layer_named(scene, "A").light;
    EXPECT_LT(light.cone_angle.at(0), 0.1);
    EXPECT_EQ(light.cone_feather.at(0), 0.0);
    EXPECT_EQ(light.cone_angle.at(24), 180.0);
}

TEST(GltfMotion, HiddenNodesHideTheirLights) {
    GltfFile file;
    file.lights = R"({"type": "point", "intensity": 3}, {"type": "point", "intensity": 6000})";
    const std::string hidden = R"("KHR_node_visibility": {"visible": false})";
    file.nodes = R"({"name": "Rig", "children": [1, 2], "extensions": {)" + hidden + "}}, " +
                 light_node("Child", R"("KHR_node_visibility": {"visible": true})") +
                 R"(, {"name": "Bright", "extensions": {"KHR_lights_punctual": {"light": 1}}}, )" +
                 light_node("Blinking", hidden) + R"(, {"children": [5]}, )" + light_node("Below");
    // At 0.1 s and 0.3 s, as single precision has them: at 30 fps frames 3 and 9, the second a little late.
    file.point(std::string(kFirstLight) + "/intensity", "LINEAR", "SCALAR", {0, 1}, {3, 6});
    file.point_bytes(std::string("/nodes/3") + kVisible, {0, 0.1f, 0.3f}, std::string("\0\1\0", 3));
    GltfOptions options = small_options();
    options.frame_rate = {30, 1};
    const Scene scene = gltf::read_gltf(file.write(), options);
    EXPECT_THAT(scene.warnings, IsEmpty());
    // The switch is off for good; what is hidden does not count as the brightest light either.
    EXPECT_FALSE(layer_named(scene, "Child").video);
    EXPECT_FALSE(layer_named(scene, "Bright").video);
    EXPECT_TRUE(layer_named(scene, "Below").video);
    EXPECT_NEAR(layer_named(scene, "Below").light.intensity.at(30), 100, 1e-4);
    const host::Layer& blinking = layer_named(scene, "Blinking");
    EXPECT_TRUE(blinking.video);
    const host::Animated<double>& intensity = blinking.light.intensity;
    for (const double frame : {0.0, 2.0, 2.9, 9.0, 20.0}) EXPECT_EQ(intensity.at(frame), 0.0) << frame;
    for (const double frame : {3.0, 3.5, 8.0})
        EXPECT_NEAR(intensity.at(frame), 50 + 50 * frame / 30, 1e-4) << frame;
    EXPECT_NEAR(intensity.at(8.9), 50 + 50 * 8.0 / 30, 1e-4);  // dark at once, not by and by
}

TEST(GltfMotion, PointersAtOtherThingsAreNoHindrance) {
    GltfFile file;
    file.store = GltfFile::Store::elsewhere;  // none of these needs its keys
    file.nodes = light_node("A") + R"(, {"name": "Mesh"}, {"camera": 0})";
    file.cameras = R"({"type": "perspective", "perspective": {"yfov": 1, "znear": 1}})";
    for (const char* pointer :
         {"/materials/3/emissiveFactor", "/nodes/1/translation", "/nodes/1/weights",
          "/cameras/0/perspective/znear", "/nodes/2/extensions/KHR_node_visibility/visible"})
        file.point(pointer, "LINEAR", "VEC3", {0, 1}, {0, 0, 0, 1, 1, 1});
    EXPECT_THAT(read_small(file).warnings, IsEmpty());
    file.point("/nodes/0/extensions/EXT_x/rotation", "LINEAR", "SCALAR", {0, 2}, {0, 1});
    file.point("/scenes/0/name", "STEP", "SCALAR", {0, 2}, {0, 1});
    const Scene scene = read_small(file);
    EXPECT_THAT(scene.warnings,
                testing::ElementsAre(HasSubstr("move \"/nodes/0/extensions/EXT_x/rotation\" and 1 more")));
    EXPECT_EQ(scene.composition.duration, 49);
    file.point(std::string(kFirstLight) + "/intensity", "LINEAR", "SCALAR", {0, 1}, {0, 1});
    EXPECT_THAT(refusal(file), HasSubstr("is missing, and the animation at /animations/7/samplers/0/input "));
}

TEST(GltfMotion, BrokenPointersAreRefused) {
    const std::string light = kFirstLight;
    for (const auto& [pointer, message] :
         {std::pair<std::string, std::string>{"/nodes/7/rotation", "points at nothing: there are 1"},
          {"/nodes/-1/rotation", "points at nothing"},
          {"/nodes/0x/rotation", "points at nothing"},
          {"/extensions/KHR_lights_punctual/lights/99999999999999999999/color", "points at nothing"},
          {"/cameras/0/perspective/yfov", "there are 0 in that list"},
          {light + "/color", "the accessor's type is not VEC3"}}) {
        GltfFile file;
        file.point(pointer, "LINEAR", "SCALAR", {0, 1}, {0, 1});
        EXPECT_THAT(refusal(file), testing::AllOf(HasSubstr(message), HasSubstr("\nhint: "))) << pointer;
    }
    GltfFile spline, word;
    spline.point(std::string("/nodes/0") + kVisible, "CUBICSPLINE", "SCALAR", {0}, {0, 1, 0});
    EXPECT_THAT(refusal(spline), HasSubstr("true and false go in steps"));
    word.nodes = light_node("A", R"("KHR_node_visibility": {"visible": "no"})");
    EXPECT_THAT(refusal(word),
                HasSubstr("/nodes/0/extensions/KHR_node_visibility/visible: visible is a text"));
}

}  // namespace
}  // namespace zam::io
