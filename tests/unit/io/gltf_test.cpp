// glTF scenes: where lights and cameras come to stand, and what is refused. The numbers are computed by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <numbers>

#include "host/composition/transforms.h"
#include "io/input_file.h"
#include "io/json_document.h"
#include "tests/unit/io/gltf_file.h"

namespace zam::io {
namespace {

using testing::HasSubstr;

constexpr float kHalf = 0.70710678f;  // sine and cosine of 45 degrees: a quaternion of a quarter turn

void expect_row(const Scene& scene, const std::string& name, double frame, int row,
                const host::Vec3& wanted) {
    const host::Matrix m = host::world_from_layer(scene.composition, layer_named(scene, name), frame);
    for (const auto& [column, part] : {std::pair(0, wanted.x), {1, wanted.y}, {2, wanted.z}})
        EXPECT_NEAR(m.at[row][column], part, row == 3 ? 1e-3 : 1e-6)
            << name << " row " << row << " column " << column << " at frame " << frame;
}
constexpr int kLook = 2, kPlace = 3;  // whither its own axis points, and where it stands

TEST(Gltf, HierarchyIsMappedWithoutMirroring) {
    GltfFile file;
    file.lights = R"({"type": "spot", "spot": {}})";
    // Turned by a quarter about y; its children look down, ahead and (by a matrix) along +x.
    file.nodes = R"(
        {"name": "Root", "translation": [1, 2, 3], "rotation": [0, 0.70710678, 0, 0.70710678],
         "children": [1, 2, 3]},
        {"name": "Down", "translation": [0, 0, -2], "rotation": [-0.70710678, 0, 0, 0.70710678],
         "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"name": "Ahead", "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"name": "Matrix", "matrix": [0, 0, 1, 0,  0, 1, 0, 0,  -1, 0, 0, 0,  0, 5, 0, 1], "camera": 0},
        {"name": "Rolled", "rotation": [0, 0, 0.70710678, 0.70710678], "camera": 0})";
    file.cameras = R"({"type": "perspective", "perspective": {"yfov": 0.9272952180016122, "znear": 1}})";
    const Scene scene = read_small(file);
    expect_row(scene, "Down", 0, kPlace, {320 - 100, 180 - 200, -300});
    expect_row(scene, "Down", 0, kLook, {0, 1, 0});
    expect_row(scene, "Ahead", 0, kPlace, {320 + 100, 180 - 200, -300});
    expect_row(scene, "Ahead", 0, kLook, {-1, 0, 0});
    // Its own -z, which the matrix takes to +x, is turned by the root to -z, away from the viewer. Upright
    // and not mirrored: right stays right.
    expect_row(scene, "Matrix", 0, kPlace, {420, 180 - 700, -300});
    expect_row(scene, "Matrix", 0, kLook, {0, 0, 1});
    expect_row(scene, "Matrix", 0, 0, {1, 0, 0});
    expect_row(scene, "Matrix", 0, 1, {0, 1, 0});
    // Rolled to the left: its right is up, its down is right.
    expect_row(scene, "Rolled", 0, kLook, {0, 0, 1});
    expect_row(scene, "Rolled", 0, 0, {0, -1, 0});
    expect_row(scene, "Rolled", 0, 1, {1, 0, 0});
    EXPECT_NEAR(layer_named(scene, "Matrix").camera.zoom.at(0), 360.0, 1e-9);  // tan(yfov / 2) = 0.5
    EXPECT_EQ(scene.composition.duration, 1);
}

TEST(Gltf, ScaleMovesLightsWithoutStretchingTheirAxes) {
    GltfFile file;
    file.lights = R"({"type": "spot", "spot": {}})";
    const std::string carrier = R"("extensions": {"KHR_lights_punctual": {"light": 0}}})";
    file.nodes =
        R"({"scale": [3, 3, 3], "children": [1]}, {"name": "A", "translation": [1, 0, 0], )" + carrier +
        R"(, {"scale": [1, 1, -1], "children": [3]}, {"name": "B", "translation": [0, 0, -1], )" + carrier +
        R"(, {"scale": [0, 0, 0], "rotation": [0, 1, 0, 0], "children": [5]}, {"name": "C", )" + carrier;
    const Scene scene = read_small(file);
    expect_row(scene, "A", 0, kPlace, {320 + 300, 180, 0});
    expect_row(scene, "A", 0, kLook, {0, 0, 1});
    expect_row(scene, "B", 0, kPlace, {320, 180, -100});
    expect_row(scene, "B", 0, kLook, {0, 0, -1});
    expect_row(scene, "C", 0, kPlace, {320, 180, 0});
    expect_row(scene, "C", 0, kLook, {0, 0, -1});  // scaled to nothing: the rotation still tells
}

TEST(Gltf, AnimationIsSampledAtEachFrame) {
    GltfFile file;
    file.lights = R"({"type": "spot", "spot": {}})";
    file.nodes = R"({"name": "Boom", "children": [1]},
        {"name": "Linear", "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"name": "Step", "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"name": "Cubic", "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"name": "Long way", "extensions": {"KHR_lights_punctual": {"light": 0}}})";
    file.animate(0, "rotation", "LINEAR", {0, 1}, {0, 0, 0, 1, 0, kHalf, 0, kHalf});
    file.animate(1, "translation", "LINEAR", {0.25f, 0.5f}, {0, 0, 1, 0, 2, 1});
    file.animate(2, "translation", "STEP", {0, 0.5f}, {1, 0, 0, 2, 0, 0});
    // From x = 0, leaving with 4 metres a second, to x = 1, arriving at rest, within half a second.
    file.animate(3, "translation", "CUBICSPLINE", {0, 0.5f},
                 {9, 9, 9, 0, 0, 0, 4, 0, 0, 0, 0, 0, 1, 0, 0, 9, 9, 9});
    // -q is the same rotation as q: a quarter turn, not three.
    file.animate(4, "rotation", "LINEAR", {0, 1}, {0, 0, 0, 1, 0, -kHalf, 0, -kHalf});
    const Scene scene = read_small(file);
    EXPECT_EQ(scene.composition.duration, 25);  // frames 0 to 24, the last key's

    const double quarter = 22.5 / 180 * std::numbers::pi;  // at 0.25 s
    expect_row(scene, "Linear", 6, kLook, {-std::sin(quarter), 0, std::cos(quarter)});
    expect_row(scene, "Linear", 6, kPlace, {320 + 100 * std::sin(quarter), 180, -100 * std::cos(quarter)});
    const double later = 2 * quarter * 9 / 12;  // at 0.375 s, half way of the translation
    expect_row(scene, "Linear", 9, kPlace, {320 + 100 * std::sin(later), 180 - 100, -100 * std::cos(later)});
    expect_row(scene, "Linear", 24, kLook, {-1, 0, 0});
    const double between = 90.0 * 6.5 / 24 / 180 * std::numbers::pi;  // between two keys of ours
    expect_row(scene, "Linear", 6.5, kLook, {-std::sin(between), 0, std::cos(between)});
    expect_row(scene, "Step", 11, kPlace, {420, 180, 0});
    expect_row(scene, "Step", 12, kPlace, {520, 180, 0});
    expect_row(scene, "Cubic", 6, kPlace, {320 + 100 * (0.5 + 4 * 0.5 * 0.125), 180, 0});
    expect_row(scene, "Long way", 12, kLook, {-std::sqrt(0.5), 0, std::sqrt(0.5)});
}

TEST(Gltf, LightValuesAndOptions) {
    GltfFile file;
    file.lights = R"({"type": "spot", "name": "S", "color": [1, 0.5, 0.25], "intensity": 50, "range": 3,
                      "spot": {"innerConeAngle": 0.1, "outerConeAngle": 0.4}},
                     {"type": "point", "intensity": 200}, {"type": "directional", "intensity": 5},
                     {"type": "point", "intensity": 9000},
                     {"type": "spot", "color": [1.0000001, 1, 1],
                      "spot": {"innerConeAngle": 1.57079637, "outerConeAngle": 1.57079637}})";
    for (const char* light : {"0", "1", "2", "4"})
        file.nodes = (light[0] == '0' ? "" : file.nodes + ", ") + R"({"name": "L)" + light +
                     R"(", "extensions": {"KHR_lights_punctual": {"light": )" + light + "}}}";
    file.nodes +=
        R"(, {"name": "Wide", "camera": 0}, {"name": "Flat", "camera": 1}, {"name": "Tele", "camera": 2})";
    file.cameras = R"({"type": "perspective", "perspective": {"yfov": 1, "znear": 1, "aspectRatio": 1}},
                      {"type": "orthographic", "orthographic": {"xmag": 1, "ymag": 1, "zfar": 2, "znear": 1}},
                      {"type": "perspective", "perspective": {"yfov": 0.2, "znear": 1}})";
    const Scene scene = read_small(file);
    const host::LightSettings& spot = layer_named(scene, "L0").light;
    EXPECT_EQ(spot.type, host::LightType::spot);
    EXPECT_EQ(spot.color.constant, (host::Color{1, 0.5, 0.25}));
    EXPECT_NEAR(spot.cone_angle.constant, 0.8 * 180 / std::numbers::pi, 1e-12);
    EXPECT_NEAR(spot.cone_feather.constant, 75.0, 1e-12);
    EXPECT_NEAR(spot.shadow_diffusion.constant, 300.0, 1e-12);
    EXPECT_NEAR(spot.intensity.constant, 25.0, 1e-12);  // the light of 9000 cd is nowhere in the scene
    EXPECT_NEAR(layer_named(scene, "L1").light.intensity.constant, 100.0, 1e-12);
    EXPECT_EQ(layer_named(scene, "L2").light.type, host::LightType::parallel);
    EXPECT_NEAR(layer_named(scene, "L2").light.intensity.constant, 100.0, 1e-12);
    EXPECT_EQ(layer_named(scene, "L4").light.cone_angle.constant, 180.0);
    EXPECT_EQ(layer_named(scene, "L4").light.cone_feather.constant, 0.0);
    EXPECT_EQ(layer_named(scene, "L4").light.color.constant, (host::Color{1, 1, 1}));
    EXPECT_THAT(scene.warnings,
                testing::ElementsAre(HasSubstr("orthographic cameras are left out: \"Flat\"")));
    EXPECT_THAT(scene.notes, testing::ElementsAre(HasSubstr("\"L1\" with 200 cd; --light-scale 200 keeps it"),
                                                  HasSubstr("1 of 4 lights never reach 2 %"),
                                                  HasSubstr("camera \"Wide\" was made for")));
    EXPECT_EQ(scene.composition.layers[5].name, "Wide");
    EXPECT_EQ(scene.composition.layers[0].id, scene.composition.effect.layer);

    GltfOptions options = small_options();
    options.light_scale = 400;
    options.camera = "Tele";
    options.pixels_per_metre = 10;
    const Scene other = gltf::read_gltf(file.write(), options);
    EXPECT_NEAR(layer_named(other, "L1").light.intensity.constant, 50.0, 1e-12);
    EXPECT_NEAR(layer_named(other, "L0").light.shadow_diffusion.constant, 30.0, 1e-12);
    EXPECT_EQ(other.composition.layers[5].name, "Tele");
}

TEST(Gltf, BuffersAreFoundWhereverTheyMayBe) {
    using Store = GltfFile::Store;
    for (const auto store : {Store::file, Store::chunk, Store::elsewhere}) {
        GltfFile file;
        file.store = store;
        if (store == Store::elsewhere)
            file.uri = "data:application/octet-stream;base64,AAAAAAAAgD8AAAAAAAAAAAAAAAAAAIA/AAAAQAAAQEA=";
        file.json_filling = '\0';
        file.animate(0, "translation", "LINEAR", {0, 1}, {0, 0, 0, 1, 2, 3});
        const Scene scene =
            gltf::read_gltf(file.write("scene.bin"), small_options());  // known by its content
        expect_row(scene, "Light 1", 24, kPlace, {420, -20, -300});
    }
}

TEST(Gltf, MissingBuffersMatterOnlyWhenLightsNeedThem) {
    GltfFile file;
    file.store = GltfFile::Store::elsewhere;
    file.nodes = R"({"name": "Mesh"}, {"extensions": {"KHR_lights_punctual": {"light": 0}}})";
    file.animate(0, "translation", "LINEAR", {0, 1}, {0, 0, 0, 1, 2, 3});
    EXPECT_EQ(refusal(file), "");
    EXPECT_EQ(read_small(file).composition.duration, 25);
    file.animate(1, "translation", "LINEAR", {0, 1}, {0, 0, 0, 1, 2, 3});
    EXPECT_THAT(refusal(file), testing::AllOf(HasSubstr("/buffers/0/uri: "), HasSubstr("is missing"),
                                              HasSubstr("\nhint: put it into the scene's folder")));
    std::vector<const char*> outsiders = {
        "../secret.bin", "/etc/hostname",        "a/../../x",
        "%2e%2e/x",      "file:///etc/hostname", "https://example.org/a.bin"};
#ifdef _WIN32
    for (const char* name : {"C:/windows/win.ini", "%5c%5cserver%5cshare%5ca.bin", "..%5csecret.bin"})
        outsiders.push_back(name);
#else
    std::filesystem::create_symlink("/etc/hostname", file.folder() / "link.bin");
    std::filesystem::create_directory_symlink("/etc", file.folder() / "links");
    for (const char* name : {"link.bin", "links/hostname"}) outsiders.push_back(name);
#endif
    for (const char* outside : outsiders) {
        file.uri = outside;
        EXPECT_THAT(refusal(file), HasSubstr("outside of the scene's folder")) << outside;
    }
    for (const char* folded : {"x%00y", "a\\u001b[2Jb", "%1b[31m"}) {
        file.uri = folded;
        EXPECT_THAT(refusal(file), HasSubstr("holds control characters")) << folded;
        EXPECT_THAT(refusal(file), testing::Not(HasSubstr("\x1b"))) << folded;
    }
    std::filesystem::create_directory(file.folder() / "folder");
    std::vector<std::pair<std::string, const char*>> no_files = {{"folder", "\"folder\" is a folder"}};
#ifndef _WIN32
    ASSERT_EQ(mkfifo((file.folder() / "pipe").c_str(), 0600), 0);
    no_files.emplace_back("pipe", "\"pipe\" is a pipe or a device");
    no_files.emplace_back(std::string(5000, 'x'), "has too long a name");
#endif
    for (const auto& [name, wrong] : no_files) {
        file.uri = name;
        EXPECT_THAT(refusal(file),
                    testing::AllOf(HasSubstr("/buffers/0/uri: the buffer file "), HasSubstr(wrong)));
    }
    file.uri.clear();
    file.more = R"("extensionsRequired": ["EXT_meshopt_compression"])";
    EXPECT_THAT(refusal(file), HasSubstr("/buffers/0: the buffer stands for compressed data"));
}

TEST(Gltf, ListsMustBeLists) {
    GltfFile file;
    for (const char* nodes : {"5", "{\"a\": {}}", "\"x\"", "null"}) {
        const std::string name = file.write();
        std::string text = read_file(name, kLargestJson);
        const auto from = text.find("\"nodes\": "), to = text.find("}}}]");
        text.replace(from, to + 4 - from, std::string("\"nodes\": ") + nodes);
        std::ofstream(name) << text;
        EXPECT_THAT(message_of<SceneError>([&] { return gltf::read_gltf(name, small_options()); }),
                    testing::AllOf(HasSubstr("/nodes: this is "), HasSubstr(", not an array\nhint: ")))
            << nodes;
    }
}

// Its header gives a binary file's length, the length of each chunk stands before it.
TEST(Gltf, LengthsOfBinaryFilesMustAgree) {
    GltfFile file;
    file.store = GltfFile::Store::chunk;
    file.animate(0, "translation", "LINEAR", {0, 1}, {0, 0, 0, 1, 2, 3});
    const std::string name = file.write(), whole = read_file(name, kLargestJson);
    const auto refused_with = [&](std::size_t at, std::size_t number) {
        std::string bytes = whole;
        for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(number >> 8 * i & 0xFF);
        std::ofstream(name, std::ios::binary) << bytes;
        return message_of<SceneError>([&] { return gltf::read_gltf(name, small_options()); });
    };
    const std::string size = std::to_string(whole.size());
    EXPECT_EQ(refused_with(8, whole.size()), "");
    EXPECT_THAT(refused_with(8, 5), HasSubstr("the header gives the file 5 bytes, the JSON chunk ends at "));
    EXPECT_THAT(refused_with(8, whole.size() - 1), HasSubstr("the chunk behind the JSON ends at " + size));
    EXPECT_THAT(refused_with(12, whole.size()), HasSubstr("the JSON chunk ends at "));
    EXPECT_THAT(refused_with(12, 0xFFFFFFFF), HasSubstr("the JSON chunk is larger than 64 MiB"));
}

TEST(Gltf, RefusalsNamePlaceAndWayOut) {
    struct Case {
        const char *lights, *nodes, *more, *message;
    };
    const char* point = R"({"type": "point"})";
    const char* carrier = R"({"extensions": {"KHR_lights_punctual": {"light": 0}}})";
    const Case cases[] = {
        {R"({"type": "area"})", carrier, "",
         ":3:10: /extensions/KHR_lights_punctual/lights/0/type: light type \"area\""},
        {R"({})", carrier, "", "lights/0: the light has no type"},
        {R"({"type": "spot"})", carrier, "", "lights/0: a spot light needs an object \"spot\""},
        {R"({"type": "spot", "spot": {"innerConeAngle": 0.31, "outerConeAngle": 0.3}})", carrier, "",
         "lights/0/spot: innerConeAngle 0.31 does not lie between"},
        {R"({"type": "spot", "spot": {"innerConeAngle": -0.1}})", carrier, "", "innerConeAngle -0.1"},
        {R"({"type": "spot", "spot": {"outerConeAngle": 1.5708}})", carrier, "",
         "outerConeAngle 1.5708 is outside"},
        {R"({"type": "spot", "spot": {"outerConeAngle": true}})", carrier, "",
         "outerConeAngle is true or false"},
        {R"({"type": "point", "color": [1, 1]})", carrier, "", "lights/0/color: "},
        {R"({"type": "point", "intensity": -1})", carrier, "", "intensity is negative"},
        {R"({"type": "point", "range": 0})", carrier, "", "range is not above 0"},
        {point, R"({"extensions": {"KHR_lights_punctual": {"light": 1}}})", "",
         ":5:50: /nodes/0/extensions/KHR_lights_punctual/light: there is no such light: the file defines 1"},
        {point, R"({"camera": 0})", "", "/nodes/0/camera: there is no element 0 in cameras"},
        {point, R"({"extensions": []})", "", "/nodes/0/extensions: this is an array, not an object"},
        {point, R"({}, null)", "", "/nodes/1: this is null, not an object"},
        {point, R"({"children": 1}, {})", "", "/nodes/0/children: this is a number, not an array"},
        {R"("x")", carrier, "", "lights/0: this is a text, not an object"},
        {point, carrier, R"("scenes": {})", "/scenes: this is an object, not an array"},
        {point, carrier, R"("scenes": [[]])", "/scenes/0: this is an array, not an object"},
        {point, carrier, R"("scenes": [{"nodes": true}])", "/scenes/0/nodes: this is true or false"},
        {point, carrier, R"("animations": [5])", "/animations/0: this is a number, not an object"},
        {point, carrier, R"("animations": [{"samplers": {}, "channels": []}])",
         "/animations/0/samplers: this is an object, not an array"},
        {point, carrier, R"("extensionsRequired": "EXT_fog")", "/extensionsRequired: this is a text"},
        {point, carrier, R"("extensionsRequired": [1])", "an extension is a number, not a text"},
        {point, R"({"rotation": [0, 0, 0]})", "", "/nodes/0/rotation: rotation is not an array of 4"},
        {point, R"({"rotation": [0, 0, 0, 0]})", "", "no unit quaternion"},
        {point, R"({"children": [1]}, {"children": [0]})", R"("scenes": [{"nodes": [0]}])",
         "/nodes/0: node 0 hangs below itself"},
        {point, R"({}, {"children": [0]})", R"("scenes": [{"nodes": [0]}])",
         "/scenes/0/nodes/0: node 0 is no root"},
        {point, R"({"children": [2]}, {"children": [2]}, {})", "", "node 2 has two parents"},
        {point, carrier, R"("extensionsRequired": ["KHR_lights_punctual", "EXT_fog"])",
         "/extensionsRequired/1: the file requires the extension \"EXT_fog\""},
        {point, carrier,
         R"("animations": [{"samplers": [{"input": 0, "output": 7}],
             "channels": [{"sampler": 0, "target": {"node": 0, "path": "translation"}}]}])",
         "/animations/0/samplers/0/output: there is no element 7 in accessors"},
    };
    for (const Case& each : cases) {
        GltfFile file;
        file.lights = each.lights;
        file.nodes = each.nodes;
        file.more = each.more;
        static_cast<void>(file.floats("SCALAR", {0, 1}));
        const std::string message = refusal(file);
        EXPECT_THAT(message, HasSubstr(each.message)) << each.lights << each.nodes << each.more;
        EXPECT_THAT(message, HasSubstr("\nhint: "));
        EXPECT_THAT(message, HasSubstr("scene.gltf:"));
    }
}

TEST(Gltf, NumbersBeyondAnyCompositionAreHeld) {
    GltfFile file;
    file.lights =
        R"({"type": "point", "intensity": 1e300, "range": 1e308}, {"type": "point", "intensity": 2})";
    file.nodes =
        R"({"name": "Far", "translation": [1e9, -1e9, 2], "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"scale": [1e9, 1e9, 1e9], "children": [2]})";
    for (int i = 2; i < 40; ++i)
        file.nodes += R"(, {"scale": [1e9, -1e9, 1e9], "translation": [1e9, 1, 0], "children": [)" +
                      std::to_string(i + 1) + "]}";
    file.nodes += R"(, {"name": "Lost", "extensions": {"KHR_lights_punctual": {"light": 1}}})";
    GltfOptions options = small_options();
    options.light_scale = 1.0;
    const Scene scene = gltf::read_gltf(file.write(), options);
    EXPECT_THAT(scene.warnings, testing::ElementsAre(HasSubstr("leave their bounds and are held at them")));
    const host::Layer& far = layer_named(scene, "Far");
    EXPECT_EQ(far.transform.position.at(0), (host::Vec3{1e9, 1e9, -200.0}));
    EXPECT_EQ(far.light.intensity.at(0), 1e9);
    EXPECT_EQ(far.light.shadow_diffusion.at(0), 1e9);
    const host::Vec3 lost = layer_named(scene, "Lost").transform.position.at(0);
    for (const double part : {lost.x, lost.y, lost.z}) EXPECT_LE(std::abs(part), 1e9);
    EXPECT_EQ(layer_named(scene, "Lost").light.intensity.at(0), 200.0);
}

TEST(Gltf, ExcessiveScenesAreRefusedAndNotObeyed) {
    GltfFile many, deep, work, members;
    for (int i = 0; i < 10'000; ++i)
        many.nodes += R"(, {"extensions": {"KHR_lights_punctual": {"light": 0}}})";
    EXPECT_THAT(refusal(many), HasSubstr("more than 10000 lights"));
    for (int i = 0; i < 1001; ++i) deep.nodes += ", {\"children\": [" + std::to_string(i) + "]}";
    EXPECT_THAT(refusal(deep), HasSubstr("deeper than 1000"));
    work.nodes.clear();
    std::string children = "2";
    for (int i = 3; i < 2500; ++i) children += ", " + std::to_string(i);
    work.nodes = R"({"children": [1]}, {"children": [)" + children + "]}";
    for (int i = 2; i < 2500; ++i) work.nodes += R"(, {"extensions": {"KHR_lights_punctual": {"light": 0}}})";
    work.animate(0, "translation", "LINEAR", {0, 4000}, {0, 0, 0, 1, 1, 1});
    EXPECT_THAT(refusal(work), HasSubstr("too many animated lights"));
    // One light, far down; what moves each node on the way counts as well.
    GltfFile chain;
    chain.nodes = R"({"children": [1]})";
    for (int i = 1; i < 500; ++i) chain.nodes += R"(, {"children": [)" + std::to_string(i + 1) + "]}";
    chain.nodes += R"(, {"extensions": {"KHR_lights_punctual": {"light": 0}}})";
    chain.animate(0, "translation", "LINEAR", {0, 100}, {0, 0, 0, 1, 1, 1});
    EXPECT_EQ(read_small(chain).composition.duration, 2401);
    for (int i = 0; i < 500; ++i) {
        chain.animate(i, "rotation", "LINEAR", {0, 4000}, {0, 0, 0, 1, 0, 1, 0, 0});
        chain.animate(i, "scale", "LINEAR", {0, 4000}, {0, 0, 0, 0, 0, 0});
    }
    EXPECT_THAT(refusal(chain), testing::AllOf(HasSubstr("too many animated lights"),
                                               HasSubstr("\nhint: export fewer lights or a shorter range")));
    // Many members of one object are no fault, and none is overlooked.
    for (int i = 0; i < 100; ++i)
        members.more += (i > 0 ? ", \"" : "\"") + std::to_string(i * 7919) + "\": 0";
    EXPECT_EQ(read_small(members).composition.layers.size(), 2u);
}

TEST(Gltf, AnimationsThatCannotBeAreRefused) {
    GltfFile backwards, few, huge, matrix;
    backwards.animate(0, "translation", "LINEAR", {1, 0.5f}, {0, 0, 0, 1, 1, 1});
    EXPECT_THAT(refusal(backwards), HasSubstr("do not ascend"));
    few.animate(0, "translation", "CUBICSPLINE", {0, 1}, {0, 0, 0, 1, 1, 1});
    EXPECT_THAT(refusal(few), HasSubstr("2 values for 2 keys"));
    huge.animate(0, "translation", "LINEAR", {0, 1e9f}, {0, 0, 0, 1, 1, 1});
    EXPECT_THAT(refusal(huge), HasSubstr("more than 100000"));
    matrix.nodes = R"({"matrix": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1],
                       "extensions": {"KHR_lights_punctual": {"light": 0}}})";
    matrix.animate(0, "translation", "LINEAR", {0, 1}, {0, 0, 0, 1, 1, 1});
    EXPECT_THAT(refusal(matrix), HasSubstr("/animations/0/channels/0: node 0 has a matrix"));
}

}  // namespace
}  // namespace zam::io
