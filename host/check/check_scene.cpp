#include "host/check/check_scene.h"

namespace zam::host {
namespace {

constexpr int kWidth = 97, kHeight = 61;
constexpr Vec3 kCentre{kWidth / 2.0, kHeight / 2.0, 0.0};

Layer& add(Composition& scene, LayerId id, LayerKind kind, const char* name, Vec3 position) {
    Layer layer;
    layer.id = id;
    layer.kind = kind;
    layer.name = name;
    layer.out_frame = scene.duration;
    layer.transform.position = position;
    scene.layers.push_back(std::move(layer));
    return scene.layers.back();
}

}  // namespace

Composition check_scene() {
    Composition scene;
    scene.width = kWidth;
    scene.height = kHeight;
    scene.duration = scene.work_area_duration = 48;
    scene.items = {{1, "Haze", kWidth, kHeight}, {2, "Wall", 40, 40}};

    Layer& own = add(scene, 1, LayerKind::solid, "Haze", kCentre);
    own.source = 1;
    own.three_d = false;
    own.transform.anchor = kCentre;
    scene.effect.layer = own.id;

    Layer& wall = add(scene, kCheckWall, LayerKind::solid, "Wall", {70, 30, 20});
    wall.source = 2;
    wall.transform.anchor = Vec3{20, 20, 0};
    wall.transform.rotation_y = 60.0;

    Layer& lamp = add(scene, 3, LayerKind::light, "Lamp", {20, 20, 10});
    lamp.light.type = LightType::point;
    lamp.light.color = Color{1.0, 0.6, 0.2};

    Layer& beam = add(scene, 4, LayerKind::light, "Beam", {10, 5, -20});
    beam.light.cone_angle = 40.0;
    beam.light.color = Color{0.4, 0.7, 1.0};
    beam.transform.point_of_interest = Vec3{70, 50, 20};

    Layer& camera = add(scene, 5, LayerKind::camera, "Camera", {kCentre.x + 10.0, kCentre.y, -150.0});
    camera.transform.point_of_interest = kCentre;
    camera.camera.zoom = 150.0;
    return scene;
}

}  // namespace zam::host
