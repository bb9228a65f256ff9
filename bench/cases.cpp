#include "bench/cases.h"

namespace zam::bench {
namespace {

using literal::Boxes;
using literal::Cones;
using literal::Scene;

constexpr int kLights = 8;

Case Points(const std::string& name, PointModel model, double softness) {
    test::Random random(1);
    Scene scene;
    scene.points.model = static_cast<std::int32_t>(model);
    scene.points.softness = softness;
    scene.points.sourceRadius = 150.0;
    literal::AddPoints(random, kLights, &scene);
    return {name, scene, kLights};
}

Case Spots(const std::string& name, SpotModel model, double feather, Cones cones, bool refined = false) {
    test::Random random(2);
    Scene scene;
    scene.spots.model = static_cast<std::int32_t>(model);
    scene.boxes = refined ? Boxes::everywhere : Boxes::nowhere;
    literal::AddSpots(random, kLights, cones, feather, &scene);
    return {name, scene, kLights};
}

}  // namespace

std::vector<Case> LightCases() {
    const auto typical = Cones::typical, filling = Cones::filling;
    return {
        Points("points Natural", PointModel::natural, 0.0),
        Points("spheres Radius softness 50", PointModel::radius, 0.5),
        Points("spheres Radius+Source", PointModel::radius_source, 0.0),
        Points("spheres Source", PointModel::source, 0.0),
        Spots("spots Natural feather 50 typical", SpotModel::natural, 0.5, typical),
        Spots("spots Natural feather 50 filling", SpotModel::natural, 0.5, filling),
        Spots("spots Natural feather 0 typical", SpotModel::natural, 0.0, typical),
        Spots("spots Natural feather 0 filling", SpotModel::natural, 0.0, filling),
        Spots("spots Natural feather 50 typical refined", SpotModel::natural, 0.5, typical, true),
        Spots("spots Natural feather 50 filling refined", SpotModel::natural, 0.5, filling, true),
        Spots("spots Natural feather 0 filling refined", SpotModel::natural, 0.0, filling, true),
        Spots("spots Distance feather 50 typical", SpotModel::distance, 0.5, typical),
        Spots("spots Distance feather 50 filling", SpotModel::distance, 0.5, filling),
        Spots("spots Distance feather 0 typical", SpotModel::distance, 0.0, typical),
        Spots("spots Distance feather 0 filling", SpotModel::distance, 0.0, filling),
        Spots("spots Constant feather 50 typical", SpotModel::constant, 0.5, typical),
        Spots("spots Constant feather 50 filling", SpotModel::constant, 0.5, filling),
        Spots("spots Constant feather 0 typical", SpotModel::constant, 0.0, typical),
        Spots("spots Constant feather 0 filling", SpotModel::constant, 0.0, filling),
    };
}

Scene MixedScene(int points, int spots) {
    test::Random random(3);
    Scene scene;
    scene.points.model = static_cast<std::int32_t>(PointModel::natural);
    scene.spots.model = static_cast<std::int32_t>(SpotModel::natural);
    literal::AddPoints(random, points, &scene);
    literal::AddSpots(random, spots, Cones::typical, 0.5, &scene);
    return scene;
}

Scene FourPoints(bool with_outside_spots) {
    Scene scene = MixedScene(4, 0);
    test::Random random(4);
    if (with_outside_spots) literal::AddSpots(random, 64, Cones::outside, 0.5, &scene);
    return scene;
}

Scene SphereAroundTheCamera(Look look) {
    test::Random random(5);
    Scene scene;
    scene.look = look;
    scene.points.model = static_cast<std::int32_t>(PointModel::radius);
    literal::AddPoints(random, 1, &scene);
    scene.point_lights[0].radius = 6000.0;
    scene.point_lights[0].intensity = 0.5;
    return scene;
}

Scene Dark(Scene scene) {
    for (auto* lights : {&scene.point_lights, &scene.spot_lights}) {
        for (_VisLightStruct& light : *lights) light.intensity = light.sourceIntensity = 0.0;
    }
    return scene;
}

}  // namespace zam::bench
