#include "tests/literal/random_frame.h"

#include <cmath>
#include <numbers>

#include "tests/literal/formulas.h"

namespace zam::literal {
namespace {

constexpr double kSpotScale = 60.0;

void SetBoxes(const Scene& scene, std::vector<_OptSpotData>* spots) {
    if (scene.boxes == Boxes::own) return;
    for (_OptSpotData& opt : *spots) {
        const bool all = scene.boxes == Boxes::everywhere;
        opt.screenLeft = opt.screenTop = all ? -1 : 0;
        opt.screenRight = all ? scene.width : 0;
        opt.screenBottom = all ? scene.height : 0;
    }
}

// Does a cone of this kind cover so much? `light` has no feather.
bool Covers(_VisLightStruct light, Cones cones) {
    Scene scene;
    scene.spots.model = static_cast<std::int32_t>(SpotModel::natural);
    if (cones == Cones::filling) light.coneAngle *= 0.5;
    if (cones == Cones::outside) scene.zoom /= 1.5;
    scene.spot_lights = {light};
    const double coverage = Coverage(Resized(scene, 64, 36));
    if (cones == Cones::filling) return coverage == 1.0;
    if (cones == Cones::outside) return coverage == 0.0;
    return coverage > 0.12 && coverage < 0.22;
}

Vec3 RandomColor(test::Random& random) {
    return {random.between(0.2, 1), random.between(0.2, 1), random.between(0.2, 1)};
}

}  // namespace

MathsHost::MathsHost() {
    utils.ansi.atan = std::atan;
    utils.ansi.cos = std::cos;
    utils.ansi.fabs = std::fabs;
    utils.ansi.log = std::log;
    utils.ansi.pow = std::pow;
    utils.ansi.sin = std::sin;
    utils.ansi.sqrt = std::sqrt;
    utils.ansi.tan = std::tan;
    in_data.utils = &utils;
}

Scene Resized(Scene scene, A_long width, A_long height) {
    scene.downsample_x *= static_cast<double>(width) / scene.width;
    scene.downsample_y *= static_cast<double>(height) / scene.height;
    scene.width = width;
    scene.height = height;
    return scene;
}

Frame::Frame(const Scene& scene)
    : points_(scene.points),
      spots_(scene.spots),
      point_lights_(scene.point_lights),
      spot_lights_(scene.spot_lights),
      opt_points_(scene.point_lights.size()),
      opt_spots_(scene.spot_lights.size()) {
    points_.count = static_cast<std::int32_t>(point_lights_.size());
    spots_.count = static_cast<std::int32_t>(spot_lights_.size());
    const HostMaths maths(&host_.in_data);
    const Projection projection{scene.camera_from_world, scene.zoom,  scene.downsample_x,
                                scene.downsample_y,      scene.width, scene.height};

    data_.inData = &host_.in_data;
    data_.aspectOverDownsampleX = scene.aspect / scene.downsample_x;
    data_.invDownsampleY = 1.0 / scene.downsample_y;
    data_.invZoom = 1.0 / scene.zoom;
    data_.width = scene.width;
    data_.height = scene.height;
    data_.deep = scene.deep;
    data_.softK = 100.0 * scene.points.softness + 1.0;
    data_.softKSq = data_.softK * data_.softK;
    data_.softKRoot = 2.0 * maths.pow(data_.softK, 0.25);
    data_.spotScale = kSpotScale;
    data_.look = static_cast<A_long>(scene.look);
    data_.invGamma = 1.0 / scene.gamma;

    ToCameraSpace(scene.camera_from_world, points_, point_lights_.data());
    ToCameraSpace(scene.camera_from_world, spots_, spot_lights_.data());
    PreparePoints(maths, data_.softKSq, points_, point_lights_.data(), opt_points_.data());
    PrepareSpots(maths, projection, kSpotScale, scene.reach, &spots_, spot_lights_.data(), opt_spots_.data());
    SetBoxes(scene, &opt_spots_);
    data_.pointData = &points_;
    data_.spotData = &spots_;
    data_.pointLights = point_lights_.data();
    data_.spotLights = spot_lights_.data();
    data_.optPoint = opt_points_.data();
    data_.optSpot = opt_spots_.data();
}

_VisLightStruct RandomPoint(test::Random& random) {
    _VisLightStruct light;
    const double z = random.between(800, 3500);
    light.pos = {z * random.between(-0.45, 0.45), z * random.between(-0.25, 0.25), z};
    light.color = RandomColor(random);
    light.intensity = random.between(0.3, 1);
    light.sourceIntensity = random.between(0.3, 1);
    light.radius = random.between(0.1, 0.3) * z;
    return light;
}

_VisLightStruct RandomSpot(test::Random& random, Cones cones, double feather) {
    _VisLightStruct light;
    do {
        const double z = random.between(1500, 3000), turn = random.between(0, 2 * std::numbers::pi);
        const double away = random.between(0.4, 1.6) * (cones == Cones::filling ? 1.7 : 0.6) * z;
        light.pos = {away * std::cos(turn), away * std::sin(turn), z};
        const Vec3 aim{random.between(-0.3, 0.3) * z, random.between(-0.2, 0.2) * z,
                       z * (cones == Cones::filling ? 1.0 : random.between(0.7, 1.5))};
        light.dir = cones == Cones::outside
                        ? random.direction()
                        : Vec3{aim.x - light.pos.x, aim.y - light.pos.y, aim.z - light.pos.z};
        const double length = std::sqrt(dot(light.dir, light.dir));
        light.dir = {light.dir.x / length, light.dir.y / length, light.dir.z / length};
        light.coneAngle = (cones == Cones::filling ? random.between(110, 170) : random.between(15, 50)) *
                          std::numbers::pi / 180;
        light.radius = cones == Cones::filling ? 8000 : random.between(500, 4000);
    } while (!Covers(light, cones));
    light.coneFeather = feather;
    light.color = RandomColor(random);
    light.intensity = random.between(0.5, 1);
    return light;
}

void AddPoints(test::Random& random, int count, Scene* scene) {
    for (int i = 0; i < count; ++i) scene->point_lights.push_back(RandomPoint(random));
}

void AddSpots(test::Random& random, int count, Cones cones, double feather, Scene* scene) {
    for (int i = 0; i < count; ++i) scene->spot_lights.push_back(RandomSpot(random, cones, feather));
}

double Coverage(const Scene& scene) {
    const Frame frame(scene);
    const _RenderData& data = frame.data();
    const View view{data.invZoom, data.aspectOverDownsampleX, data.invDownsampleY, data.width, data.height};
    RayOpt ray_opt{};
    double lit = 0.0, all = 0.0;
    for (int j = 0; j < data.spotData->count; ++j) {
        for (int y = 0; y < data.height; ++y) {
            for (int x = 0; x < data.width; ++x) {
                const Ray ray = RayThrough(view, x, y);
                const double S =
                    SpotScattering(data.inData->utils->ansi, view, *data.spotData, data.spotLights[j],
                                   data.optSpot[j], data.spotScale, x, y, ray, &ray_opt);
                lit += S > 0.0;
                ++all;
            }
        }
    }
    return all > 0.0 ? lit / all : 0.0;
}

}  // namespace zam::literal
