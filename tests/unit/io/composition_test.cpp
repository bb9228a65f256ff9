// Our composition format, read and refused.
#include "io/composition_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/composition/transforms.h"
#include "io/input_file.h"
#include "io/read_scene.h"
#include "tests/unit/message_of.h"

namespace zam::io {
namespace {

using host::Color;
using host::Interpolation;
using host::LayerKind;
using host::LightType;
using host::Vec3;
using testing::HasSubstr;

std::string own_file(const std::string& name) { return ZAM_IO_TESTS + name; }

host::Composition read_text(const std::string& text) {
    return read_composition(parse_json("scene.json", text));
}

// The message of the refusal; empty when the text is read.
std::string refusal(const std::string& text) {
    return message_of<SceneError>([&] { return read_text(text); });
}

TEST(Composition, RefusalsNamePlaceFaultAndWayOut) {
    const auto table = nlohmann::json::parse(read_file(own_file("rejects.json"), kLargestJson));
    ASSERT_GT(table["cases"].size(), 30u);
    for (const auto& entry : table["cases"]) {
        std::string text;
        for (const auto& line : table["frames"][entry["frame"].get<std::string>()])
            text.append(text.empty() ? "" : "\n").append(line.get<std::string>());
        text.replace(text.find('@'), 1, entry["text"].get<std::string>());
        SCOPED_TRACE(text);
        const std::string message = refusal(text);
        EXPECT_THAT(message, testing::StartsWith("scene.json:" + entry["place"].get<std::string>() + ": "));
        EXPECT_THAT(message, HasSubstr(entry["message"].get<std::string>()));
        EXPECT_THAT(message, HasSubstr("\nhint: "));
        const std::string hint = message.substr(std::min(message.find("\nhint: "), message.size()));
        EXPECT_THAT(hint, HasSubstr(entry.value("hint", std::string())));
    }
}

TEST(Composition, PlacesCountCharactersAndSurviveEscapes) {
    // The name before the fault holds an umlaut of two bytes, an escaped quote and brackets.
    EXPECT_THAT(refusal("{\"name\": \"\xC3\xBC\\\"[{\",\r\n\t\"x\": 1, \"layers\": []}"),
                testing::StartsWith("scene.json:2:2: "));
    EXPECT_THAT(refusal("{\"name\": \"\xC3\xBC\\\"[{\", \"x\": 1}"),
                testing::StartsWith("scene.json:1:19: "));
    EXPECT_THAT(refusal("{\"layers\": [], \"name\": \"\xFF\"}"), HasSubstr("not valid JSON"));
}

TEST(Composition, ExcessiveFilesAreRefusedAndNotObeyed) {
    EXPECT_THAT(refusal(std::string(100000, '[')), HasSubstr("nested deeper than 64"));
    std::string many = "[0";
    for (std::size_t i = 0; i < kMostJsonValues; ++i) many += ",0";
    EXPECT_THAT(refusal(many + "]"), HasSubstr("2 million"));
    EXPECT_THROW(static_cast<void>(read_file("/dev/zero", 1 << 20)), SceneError);
    // Each hangs below the next; the first has as many parents as there are others.
    const auto chain = [](int parents) {
        std::string layers = "{\"layers\": [";
        for (int i = 0; i < parents; ++i)
            layers += R"({"kind": "null", "id": )" + std::to_string(i + 1) + R"(, "parent": )" +
                      std::to_string(i + 2) + "},\n";
        return layers + R"({"kind": "null", "id": )" + std::to_string(parents + 1) + "}]}";
    };
    EXPECT_EQ(refusal(chain(100)), "");
    EXPECT_THAT(refusal(chain(101)),
                testing::AllOf(HasSubstr("scene.json:1:49: layer 1: there are 101 parents above each other"),
                               HasSubstr("\nhint: fix the layer to one that stands higher")));
}

TEST(Composition, SmallestSceneHasALightBelowItsHaze) {
    const Scene scene = read_scene(own_file("smallest.json"), {});
    const host::Composition& comp = scene.composition;
    EXPECT_TRUE(scene.warnings.empty());
    EXPECT_EQ(std::tuple(comp.width, comp.duration, comp.work_area_duration), std::tuple(1920, 1, 1));
    ASSERT_EQ(comp.layers.size(), 2u);
    const host::Layer& haze = comp.layers[0];
    EXPECT_EQ(comp.effect.layer, haze.id);
    EXPECT_EQ(haze.kind, LayerKind::solid);
    EXPECT_FALSE(haze.three_d);
    ASSERT_NE(comp.find_item(haze.source), nullptr);
    EXPECT_EQ(comp.find_item(haze.source)->height, 1080);
    const host::Layer& light = comp.layers[1];
    EXPECT_NE(light.id, haze.id);
    EXPECT_EQ(light.light.type, LightType::point);
    EXPECT_EQ(light.name, "Point light 1");
    EXPECT_EQ(light.transform.position.at(0), (Vec3{960, 540, 0}));
    EXPECT_EQ(light.out_frame, 1.0);
    EXPECT_EQ(read_text("{\"layers\": [{\"kind\": \"camera\"}]}").layers[1].transform.position.at(0).z,
              -1920.0 * 50 / 36);
}

class EveryKey : public testing::Test {
  protected:
    host::Composition comp = read_scene(own_file("every_key.json"), {}).composition;
};

TEST_F(EveryKey, FrameAndTimes) {
    EXPECT_EQ(std::tuple(comp.name, comp.width, comp.height), std::tuple("Everything", 640, 360));
    EXPECT_EQ(std::tuple(comp.pixel_aspect.num, comp.pixel_aspect.den), std::tuple(10, 11u));
    EXPECT_EQ(std::tuple(comp.frame_rate.num, comp.frame_rate.den), std::tuple(30000, 1001u));
    EXPECT_EQ(std::tuple(comp.duration, comp.work_area_start, comp.work_area_duration),
              std::tuple(20, 2, 16));
    EXPECT_EQ(read_text("{\"frame_rate\": 12.5, \"layers\": []}").frame_rate.den, 2u);
}

TEST_F(EveryKey, SpotLight) {
    const host::Layer& spot = comp.layers[2];
    EXPECT_EQ(std::tuple(spot.name, spot.id), std::tuple("Front key", 40));
    EXPECT_EQ(spot.parent, comp.layers[7].id);
    EXPECT_EQ(comp.layers[7].parent, comp.layers[8].id);  // by its id 9
    EXPECT_EQ(comp.layers[8].id, 9);
    EXPECT_EQ(std::tuple(spot.in_frame, spot.out_frame, spot.start_frame, spot.stretch),
              std::tuple(1.0, 19.5, -2.0, 150.0));
    EXPECT_FALSE(spot.video);
    EXPECT_TRUE(spot.solo && spot.shy && spot.locked && spot.three_d);
    EXPECT_EQ(spot.transform.position.at(2.5), (Vec3{2.5, 5, 7.5}));
    EXPECT_EQ(spot.transform.point_of_interest->at(0), (Vec3{0, 0, 1}));
    const host::LightSettings& light = spot.light;
    EXPECT_EQ(light.type, LightType::spot);
    EXPECT_EQ(std::tuple(light.intensity.at(2), light.intensity.at(7.9), light.intensity.at(8)),
              std::tuple(50.0, 100.0, -50.0));  // held, up to the last
    EXPECT_EQ(light.color.at(0), (Color{1.0, 128 / 255.0, 0.0}));
    EXPECT_TRUE(light.casts_shadows);
    EXPECT_EQ(std::tuple(light.cone_angle.at(0), light.cone_feather.at(0)), std::tuple(60.0, 25.5));
    EXPECT_EQ(std::tuple(light.shadow_darkness.at(0), light.shadow_diffusion.at(0)), std::tuple(80.0, 12.0));
    EXPECT_EQ(std::tuple(light.falloff.at(9.5), light.falloff.at(10)), std::tuple(1.0, 2.0));
    EXPECT_EQ(std::tuple(light.falloff_start.at(0), light.falloff_distance.at(5)), std::tuple(30.0, 50.0));
}

TEST_F(EveryKey, OtherLayers) {
    const host::Layer& carrier = comp.layers[0];
    EXPECT_EQ(comp.effect.layer, carrier.id);
    EXPECT_EQ(comp.layers.size(), 9u) << "no second carrier was made";
    EXPECT_FALSE(carrier.three_d);
    EXPECT_EQ(comp.find_item(carrier.source)->width, 320);
    EXPECT_EQ(carrier.transform.anchor.at(0), (Vec3{160, 90, 0}));
    const host::Layer& camera = comp.layers[1];
    EXPECT_EQ(camera.name, "\xC3\x84rial");
    EXPECT_EQ(camera.camera.zoom.at(5), 600.0);
    EXPECT_EQ(camera.transform.orientation.at(0), (Vec3{1, 2, 3}));
    const host::Transform& turned = camera.transform;
    EXPECT_EQ(std::tuple(turned.rotation_x.at(0), turned.rotation_y.at(4), turned.rotation_z.at(0)),
              std::tuple(10.0, 40.0, -30.0));
    EXPECT_EQ(comp.layers[3].light.color.at(1), (Color{0.5, 0.5, 0.0}));
    EXPECT_EQ(comp.layers[4].light.type, LightType::parallel);
    EXPECT_EQ(comp.layers[5].light.type, LightType::ambient);
    EXPECT_EQ(comp.layers[7].transform.scale.at(0), (Vec3{200, 100, 50}));
    EXPECT_EQ(comp.layers[7].transform.position.at(0), (Vec3{}));  // in its parent's corner
    EXPECT_EQ(comp.layers[8].transform.position.at(0), (Vec3{7, 8, 9}));
}

TEST_F(EveryKey, BakedLight) {
    const host::Layer& baked = comp.layers[6];
    ASSERT_TRUE(baked.world);
    EXPECT_EQ(baked.parent, comp.layers[7].id);
    const host::Matrix half = host::world_from_layer(comp, baked, 0.5);  // whatever its parent does
    const host::Matrix expected = {{{0.5, 0.5, 0, 0}, {-0.5, 0.5, 0, 0}, {0, 0, 1, 0}, {11, 20, 30, 1}}};
    EXPECT_EQ(half, expected);
    const auto& angle = baked.light.cone_angle;
    EXPECT_EQ(std::tuple(angle.at(4), angle.at(6.5), angle.at(8)), std::tuple(10.0, 30.0, 40.0));
    // Speeds are told per second, at 29.97 frames; the influence is half of ten frames.
    const auto& intensity = baked.light.intensity;
    EXPECT_NEAR((intensity.at(10) - intensity.at(10 - 1e-6)) / 1e-6, 30 / 29.97, 1e-4);
    EXPECT_NEAR(intensity.at(1e-5), 0.0, 1e-4);
    EXPECT_EQ(intensity.at(15), 100.0);
}

TEST_F(EveryKey, Controls) {
    const auto& controls = comp.effect.controls;
    ASSERT_EQ(controls.size(), 6u);
    EXPECT_EQ(controls[0].control, "Look");
    EXPECT_EQ(controls[0].value.constant, host::ControlValue(std::string("Strong")));
    EXPECT_THAT(controls[0].where, testing::EndsWith("every_key.json:41:7"));
    EXPECT_EQ(controls[1].control, "Spot Lights/Intensity");
    EXPECT_EQ(controls[2].value.at(5), host::ControlValue(15.0));
    EXPECT_EQ(controls[3].value.constant, host::ControlValue(false));
    EXPECT_EQ(controls[4].control, "Point Lights/Radius");
    EXPECT_EQ(controls[5].control, "#20");
}

}  // namespace
}  // namespace zam::io
