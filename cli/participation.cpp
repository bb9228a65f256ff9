#include "cli/participation.h"

#include <cmath>
#include <numbers>

#include "host/composition/queries.h"
#include "host/composition/transforms.h"
#include "host/suites/times.h"
#include "host/text.h"

namespace zam::cli {
namespace {

using host::LightType;
using Reasons = std::vector<std::string>;

// Times as the effect meets them, rounding included.
double seconds_of(const host::Composition& composition, double frame) {
    const A_Time time = host::time_of_frame(composition.frame_rate, frame);
    return static_cast<double>(time.value) / static_cast<double>(time.scale);
}

double told_frame(const host::Composition& composition, double frame) {
    return host::frame_of_time(composition.frame_rate, host::time_of_frame(composition.frame_rate, frame));
}

host::Vec3 row(const host::Matrix& m, int i) { return {m.at[i][0], m.at[i][1], m.at[i][2]}; }
double dot(const host::Vec3& a, const host::Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
host::Vec3 cross(const host::Vec3& a, const host::Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// By the effect's arithmetic, which knows no end of a double's range and no view that cannot be turned round.
host::Matrix inverse(const host::Matrix& m) {
    const host::Vec3 a = row(m, 0), b = row(m, 1), c = row(m, 2), origin = row(m, 3);
    const host::Vec3 columns[3] = {cross(b, c), cross(c, a), cross(a, b)};
    const double determinant = dot(a, columns[0]), by = determinant == 0.0 ? 1.0 : determinant;
    host::Matrix result;
    for (int column = 0; column < 3; ++column) {
        const host::Vec3& v = columns[column];
        const double parts[4] = {v.x, v.y, v.z, -dot(origin, v)};
        for (int i = 0; i < 4; ++i) result.at[i][column] = parts[i] / by;
    }
    return result;
}

// As the effect keeps its lights: beyond it, or where there is no number, they are left out.
constexpr double kFarthest = 1e15;
bool in_bounds(const host::Matrix& m, int i) {
    const host::Vec3 v = row(m, i);
    return std::abs(v.x) <= kFarthest && std::abs(v.y) <= kFarthest && std::abs(v.z) <= kFarthest;
}

std::string at_value(const std::string& control, const std::string& value) {
    return "\"" + control + "\" is " + value;
}

}  // namespace

Participation::Participation(const host::Session& session, const host::Composition& composition, int frame)
    : session_(session), composition_(composition), frame_(frame), at_(frame), now_(0.0) {
    // The effect is told its own layer's time, and makes it the composition's again.
    if (const host::Layer* carrier = composition.find_layer(composition.effect.layer))
        at_ = host::comp_frame(*carrier, told_frame(composition, host::layer_frame(*carrier, frame)));
    now_ = seconds_of(composition, at_);
    at_ = told_frame(composition, at_);
    for (std::size_t i = 0; i < composition.layers.size(); ++i) places_.emplace(composition.layers[i].id, i);
    some_solo_ = host::any_solo(composition);
    camera_ = host::active_camera(composition, at_);
    host::Matrix view = camera_ ? world(*camera_) : host::default_camera_matrix(composition);
    if (!camera_) view.at[0][0] = 1.0 / composition.pixel_aspect.value();
    camera_from_world_ = inverse(view);
}

const Participation::Setting& Participation::setting(const std::string& control) const {
    const auto known = settings_.find(control);
    if (known != settings_.end()) return known->second;
    const host::Control& found = host::find_control(session_.controls(), control);
    const double value = session_.control_at(found.index, frame_);
    return settings_
        .emplace(control, Setting{value, found.choices.empty()
                                             ? std::string()
                                             : found.choices.at(static_cast<std::size_t>(value) - 1)})
        .first->second;
}

host::Matrix Participation::world(const host::Layer& layer) const {
    const std::vector<host::Layer>& layers = composition_.layers;
    return host::world_from_layer(layer, at_, layers.size(), [&](host::LayerId id) {
        const auto place = places_.find(id);
        return place == places_.end() ? nullptr : &layers[place->second];
    });
}

// The out point counts, too.
bool Participation::is_there(const host::Layer& light) const {
    const double from = seconds_of(composition_, light.in_frame);
    return now_ >= from && now_ <= from + seconds_of(composition_, light.out_frame - light.in_frame);
}

// A light's radius or reach, which something of the light may change.
double Participation::own_size(const host::Layer& light, double size, const std::string& individual) const {
    const std::string by = choice(individual);
    if (by == "Intensity (mult)") return size * light.light.intensity.at(at_) / 100.0;
    if (by == "Shadow Darkness (mult)") return size * light.light.shadow_darkness.at(at_) / 100.0;
    if (by == "Shadow Diffusion (add)") return size + light.light.shadow_diffusion.at(at_);
    return size;
}

void Participation::check_filters(const host::Layer& light, Reasons& reasons) const {
    const std::string wanted = choice("Use Lights that are");
    if (host::video_really_on(light, some_solo_)) {
        if (wanted == "Off")
            reasons.push_back("it is switched on, and " + at_value("Use Lights that are", "Off"));
    } else if (wanted == "On") {
        reasons.push_back((light.video ? "others are soloed, and it is not; " : "it is switched off, and ") +
                          at_value("Use Lights that are", "On"));
    }
    const std::string prefix = choice("Name starts with");
    if (prefix != "Anything" && !light.name.starts_with(prefix))
        reasons.push_back("its name does not start with " + prefix);
    const double intensity = light.light.intensity.at(at_);
    if (intensity == 0.0) reasons.push_back("its intensity is 0 %");
    // deliberate: of lights that take light away the effect does not ask whether they are there
    if (intensity > 0.0 && !is_there(light))
        reasons.push_back("it is there from frame " + format_number(light.in_frame) + " to " +
                          format_number(light.out_frame) + " only");
}

void Participation::check_point(const host::Layer& light, Reasons& reasons) const {
    const std::string model = choice("Point Light Model");
    if (model == "Off") return reasons.push_back(at_value("Point Light Model", "Off"));
    const double radius = own_size(light, number("Radius"), "Individual Radius");
    if (radius < 0.0)
        return reasons.push_back("\"Individual Radius\" makes its radius negative, " + format_number(radius));
    std::string glow, source;  // why there is none
    if (number("Point Lights/Intensity") == 0.0)
        glow = at_value("Point Lights/Intensity", "0");
    else if (model != "Natural" && radius == 0.0)
        glow = "its radius is 0";
    if (number("Source Intensity") == 0.0)
        source = at_value("Source Intensity", "0");
    else if (number("Source Radius") == 0.0)
        source = at_value("Source Radius", "0");
    if (model == "Source") {
        if (!source.empty()) reasons.push_back(source);
    } else if (!glow.empty() && (model != "Radius+Source" || !source.empty())) {
        reasons.push_back(glow + (model == "Radius+Source" ? ", " + source : ""));
    }
}

void Participation::check_spot(const host::Layer& light, const host::Matrix& world, Reasons& reasons) const {
    if (choice("Spot Light Model") == "Off") return reasons.push_back(at_value("Spot Light Model", "Off"));
    if (number("Spot Lights/Intensity") == 0.0) reasons.push_back(at_value("Spot Lights/Intensity", "0"));
    // deliberate: the effect does not make the axis a unit long, so scale widens cones, or takes them away. One
    // of angle 0 is seen where a ray runs exactly along its axis; that is nothing to look for.
    const double angle = light.light.cone_angle.at(at_);
    const host::Matrix seen = world * camera_from_world_;
    // 1 unless parents, matrices or the default view bring a scale.
    const double length = std::hypot(seen.at[2][0], seen.at[2][1], seen.at[2][2]);
    if (length <= std::cos(angle / 2.0 * (std::numbers::pi / 180.0)) + 1e-12)
        reasons.push_back("its cone angle is " + format_number(angle) +
                          (std::abs(length - 1.0) < 1e-9
                               ? ""
                               : ", and a scale makes its axis " + format_number(length) + " long"));
    const double reach = own_size(light, number("Reach"), "Individual Reach"),
                 start = number("Start Distance");
    if (reach < 0.0)
        return reasons.push_back("\"Individual Reach\" makes its reach negative, " + format_number(reach));
    // With a reach layer the cone does not end by its reach.
    if (number("Reach Comp Layer") == 0.0 && reach <= start)
        reasons.push_back("its reach, " + format_number(reach) +
                          ", ends before it begins: " + at_value("Start Distance", format_number(start)));
}

bool Participation::is_in_bounds(const host::Layer& light, const host::Matrix& world,
                                 Reasons& reasons) const {
    const bool aimed = light.light.type == LightType::spot;
    const auto fits = [&](const host::Matrix& m) { return in_bounds(m, 3) && (!aimed || in_bounds(m, 2)); };
    if (fits(world * camera_from_world_)) return true;
    const bool stands = fits(world);
    reasons.push_back(std::string(stands ? "seen by the camera its place is" : "its place is") +
                      " beyond all bounds: check the scales of " +
                      (stands ? "the camera's parents" : "its parents"));
    return false;
}

Reasons Participation::reasons_against(const host::Layer& light, const host::Matrix& world) const {
    if (light.light.type == LightType::parallel) return {"the effect shows no parallel lights"};
    if (light.light.type == LightType::ambient) return {"the effect shows no ambient lights"};
    Reasons reasons;
    check_filters(light, reasons);
    if (!is_in_bounds(light, world, reasons)) return reasons;
    light.light.type == LightType::point ? check_point(light, reasons) : check_spot(light, world, reasons);
    return reasons;
}

}  // namespace zam::cli
