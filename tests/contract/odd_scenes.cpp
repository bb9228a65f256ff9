#include "tests/contract/odd_scenes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace zam::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity(),
                 kNan = std::numeric_limits<double>::quiet_NaN();

class Dice {
  public:
    explicit Dice(unsigned seed, double wild = 0.0) : wildness(wild), engine_(seed) {}
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }
    double decades(double low, double high) {
        return std::pow(10.0, between(std::log10(low), std::log10(high)));
    }
    bool chance(double share) { return between(0, 1) < share; }
    template <class T>
    T of(std::initializer_list<T> choices) {
        return choices.begin()[static_cast<std::size_t>(between(0, static_cast<double>(choices.size())))];
    }
    Vec3 direction() {
        const double z = between(-1, 1), angle = between(0, 2 * std::numbers::pi), r = std::sqrt(1 - z * z);
        return {r * std::cos(angle), r * std::sin(angle), z};
    }
    // This value, or with the scene's wildness one that no host should answer.
    double wild(double value) {
        if (!chance(wildness)) return value;
        if (chance(0.5)) return of({1.0, -1.0}) * decades(1e-12, 1e12);
        return of({0.0, -0.0, kInf, -kInf, kNan, 1e-300, 1e-150, 1e16, -1e40, 1e100, 1e200, -1e300, -1.0,
                   std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()});
    }
    Vec3 wild(const Vec3& v) { return {wild(v.x), wild(v.y), wild(v.z)}; }

    const double wildness;

  private:
    std::mt19937_64 engine_;
};

Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Vec3 operator*(double s, const Vec3& v) { return {s * v.x, s * v.y, s * v.z}; }

double any_value(Dice& dice, const Control& c) {
    if (!interpolates(c.type)) return std::floor(dice.between(c.valid_min, c.valid_max + 1));
    return dice.of({c.valid_min, c.valid_max, c.default_value, dice.between(c.valid_min, c.valid_max),
                    dice.between(c.slider_min, c.slider_max),
                    dice.decades(std::max(c.valid_min, 1.0 / 65536), c.valid_max)});
}

// Mirrored, flat and stretched in wild scenes, and with entries out of nowhere.
Matrix any_matrix(Dice& dice, const Vec3& place) {
    Matrix m;
    m.rotate_x(dice.between(-180, 180));
    m.rotate_y(dice.of({0.0, dice.between(-180, 180)}));
    if (dice.chance(3 * dice.wildness))
        m.scale({dice.of({1.0, -1.0, 0.0}), dice.of({1.0, 1e-12, 1e12}), dice.of({1.0, -1.0})});
    m.translate(place);
    for (auto& row : m.at) {
        for (double& entry : row) entry = dice.wild(entry);
    }
    return m;
}

void add_any_light(Dice& dice, Shot& shot, LightType type) {
    const double size = shot.comp.width;
    const Vec3 place = dice.decades(0.5, 10) * size * dice.direction();
    Layer& layer = add_layer(shot.comp, LayerKind::light, dice.of({"Light", "Zam", "Front", "Back"}),
                             dice.wild(dice.chance(dice.wildness) ? Vec3{} : place));  // {}: at the camera
    if (dice.chance(0.5))
        layer.transform.point_of_interest = dice.wild(dice.between(0, size) * dice.direction());
    if (dice.chance(0.3)) layer.world = any_matrix(dice, place);
    layer.video = dice.chance(0.95);
    LightSettings& light = layer.light;
    light.type = type;
    light.intensity = dice.wild(dice.of({100.0, dice.between(0, 400), dice.decades(1e-3, 1e3)}));
    light.color = {{dice.wild(dice.between(0, 1)), dice.wild(dice.of({0.0, 1.0})), dice.wild(0.5)}};
    light.cone_angle = dice.wild(dice.chance(dice.wildness) ? dice.of({0.0, 180.0}) : dice.between(1, 175));
    light.cone_feather = dice.wild(dice.of({0.0, 100.0, dice.between(1, 100)}));
    light.shadow_darkness = dice.wild(dice.between(0, 100));
    light.shadow_diffusion = dice.wild(dice.between(0, 100));
}

Shot any_shot(Dice& dice) {
    const bool wide = dice.chance(0.05);  // more than the rows' blocks hold
    const double mad = dice.wildness;
    Shot shot(wide ? dice.of({257, 290}) : dice.of({1, 2, 3, 5, 7, 8, 9, 15, 17, 33, 41}),
              wide ? 1 : dice.of({1, 2, 3, 9, 16}));
    const int width = shot.comp.width;
    shot.settings = {
        dice.of({Depth::bits8, Depth::bits16}), {1, dice.of({1U, 2U, 4U})}, {1, dice.of({1U, 2U, 4U})}};
    for (const Control& c : Shot::table()) {
        if (holds_value(c.type) && c.type != PF_Param_LAYER) shot.controls[c.index] = any_value(dice, c);
    }
    if (dice.chance(0.8)) shot.set("Name starts with", 1);
    if (dice.chance(0.8)) shot.set("Use Lights that are", 1);
    for (int i = static_cast<int>(dice.between(0, 4)); i > 0; --i)
        add_any_light(dice, shot, LightType::point);
    for (int i = static_cast<int>(dice.between(0, 4)); i > 0; --i) add_any_light(dice, shot, LightType::spot);
    if (dice.chance(0.4)) {
        Layer& wall = add_layer(shot.comp, LayerKind::solid, "Wall", {});
        wall.source = 1;
        wall.world = any_matrix(dice, dice.between(0, width) * dice.direction());
        shot.wall = wall.id;
        shot.set("Reach Comp Layer", 1);
    }
    if (dice.chance(0.8)) {
        const Vec3 place = dice.wild(dice.chance(mad) ? Vec3{} : Vec3{width * 0.5, 0, -1.5 * width});
        const double zoom = dice.wild(dice.decades(0.3, 3) * width);
        Layer& camera = add_camera(shot.comp, place, place + Vec3{0, 0, 1}, zoom);
        if (dice.chance(mad)) camera.world = any_matrix(dice, place);
    } else if (dice.chance(mad)) {
        shot.shown_width = dice.of({0, -7, 30000});
        shot.shown_height = dice.of({0, -7, 30000});
    }
    if (dice.chance(mad)) {
        const PF_RationalScale ratio{dice.of({0, 1, -1, 7, 2147483647}), dice.of({0U, 1U, 3U, 4294967295U})};
        const int what = dice.of({0, 1, 2, 3});
        shot.amend = [=](PF_InData& in) {
            if (in.extent_hint.right <= 0) return;
            if (what == 0) in.pixel_aspect_ratio = ratio;
            if (what == 1) in.downsample_x = ratio;
            if (what == 2) in.downsample_y = ratio;
            if (what == 3) in.width = in.height = ratio.num;
        };
    }
    return shot;
}

// Where the formulas are known to be weak: one light before a camera at the origin that looks along z.
Shot weak_shot(Dice& dice, const Vec3& place, const Vec3& axis, double cone, double model) {
    Shot shot(16, 9);
    add_camera(shot.comp, {}, {0, 0, 1}, 16);
    Layer& spot = add_spot(shot.comp, place, place + axis);
    spot.light.color = Color{1, 0.5, 0.25};
    spot.light.cone_angle = cone;
    spot.light.cone_feather = dice.of({0.0, 50.0, 100.0});
    shot.set("Spot Light Model", model);
    shot.set("Start Distance", dice.of({0.0, 10.0}));
    shot.set("Look", 2);
    return shot;
}
double any_model(Dice& dice) { return dice.of({2.0, 3.0, 4.0}); }
// In the middle of some pixel's ray.
Vec3 on_a_ray(Dice& dice, double depth) {
    return depth *
           Vec3{std::floor(dice.between(-7, 8)) / 16, (std::floor(dice.between(-4, 5)) - 0.5) / 16, 1};
}
Shot near_apex(Dice& dice) {
    return weak_shot(dice, dice.decades(1e-6, 1) * dice.direction(), dice.direction(), dice.between(1, 175),
                     any_model(dice));
}
Shot half_space(Dice& dice) {
    return weak_shot(dice, on_a_ray(dice, dice.decades(1, 500)), dice.direction(), dice.between(176, 180),
                     any_model(dice));
}
Shot far_apex(Dice& dice) {
    const double far = dice.decades(1e5, 5e6);
    Shot shot = weak_shot(dice, on_a_ray(dice, far) + dice.decades(1e-3, 1) * dice.direction(),
                          dice.direction(), dice.between(20, 175), any_model(dice));
    shot.set("Individual Reach", 4);
    shot.comp.layers.front().light.shadow_diffusion = 2 * far;
    return shot;
}
Shot through_apex(Dice& dice) {
    return weak_shot(dice, on_a_ray(dice, dice.of({16.0, 64.0, 1024.0})), dice.direction(),
                     dice.between(1, 179), 4);
}
Shot negative_lights(Dice& dice) {
    Shot shot = weak_shot(dice, on_a_ray(dice, 30), dice.direction(), 90, any_model(dice));
    for (int i = 0; i < 2; ++i) {
        Layer& light = add_point(shot.comp, dice.decades(10, 100) * dice.direction());
        light.light.intensity = dice.between(-100, 100);
        light.light.color = Color{dice.between(0, 1), dice.between(-1, 1), 1};
    }
    shot.comp.layers.back().light.intensity = dice.between(-100, 100);
    shot.set("Point Light Model", dice.of({1.0, 2.0, 3.0}));
    shot.set("Look", std::floor(dice.between(1, 7)));
    return shot;
}

}  // namespace

std::span<const Kind> odd_kinds() {
    const auto drawn = [](Shot (*draw)(Dice&), double wildness = 0.0) {
        return [=](unsigned seed) {
            Dice dice(seed, wildness);
            return draw(dice);
        };
    };
    static const Kind kinds[] = {
        {"sensible", 1e-5, kNotCompared, drawn(any_shot)},
        {"a few wild", 2e-3, kNotCompared, drawn(any_shot, 0.02)},
        {"wild", 2e-3, kNotCompared, drawn(any_shot, 0.15)},
        {"mad", 2e-3, kNotCompared, drawn(any_shot, 0.35)},
        {"apex at the camera", 1e-4, 1e-4, drawn(near_apex)},
        {"half space", 1e-4, 1e-3, drawn(half_space)},
        {"apex far away", 2e-3, 1e-2, drawn(far_apex)},
        {"through the apex", 1e-4, 1e-4, drawn(through_apex)},
        {"negative lights", 1e-4, 1e-4, drawn(negative_lights)},
    };
    return kinds;
}

}  // namespace zam::test
