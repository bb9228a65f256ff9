#include "cli/participation.h"

#include <cmath>
#include <limits>
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

double dot(const host::Vec3& a, const host::Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
host::Vec3 cross(const host::Vec3& a, const host::Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
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
}

double Participation::number(const std::string& control) const {
    return session_.control_at(host::find_control(session_.controls(), control).index, frame_);
}

std::string Participation::choice(const std::string& control) const {
    const host::Control& found = host::find_control(session_.controls(), control);
    return found.choices.at(static_cast<std::size_t>(session_.control_at(found.index, frame_)) - 1);
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

// Of a spot light's axis in the camera's space: 1 unless parents, matrices or the default view bring a scale.
double Participation::axis_length(const host::Layer& light) const {
    const host::Layer* camera = host::active_camera(composition_, at_);
    host::Matrix view;
    view.at[0][0] = 1.0 / composition_.pixel_aspect.value();
    if (camera) view = host::world_from_layer(composition_, *camera, at_);
    const host::Matrix world = host::world_from_layer(composition_, light, at_);
    const auto row = [](const host::Matrix& m, int i) {
        return host::Vec3{m.at[i][0], m.at[i][1], m.at[i][2]};
    };
    const host::Vec3 a = row(view, 0), b = row(view, 1), c = row(view, 2), axis = row(world, 2);
    const double volume = dot(a, cross(b, c));
    if (volume == 0.0)
        return std::numeric_limits<double>::infinity();  // nobody knows what such a camera sees
    return std::hypot(dot(axis, cross(b, c)), dot(axis, cross(c, a)), dot(axis, cross(a, b))) /
           std::abs(volume);
}

void Participation::check_filters(const host::Layer& light, Reasons& reasons) const {
    const bool some_solo = host::any_solo(composition_);
    const std::string wanted = choice("Use Lights that are");
    if (host::video_really_on(light, some_solo)) {
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

void Participation::check_spot(const host::Layer& light, Reasons& reasons) const {
    if (choice("Spot Light Model") == "Off") return reasons.push_back(at_value("Spot Light Model", "Off"));
    if (number("Spot Lights/Intensity") == 0.0) reasons.push_back(at_value("Spot Lights/Intensity", "0"));
    // deliberate: the effect does not make the axis a unit long, so scale widens cones, or takes them away. One
    // of angle 0 is seen where a ray runs exactly along its axis; that is nothing to look for.
    const double angle = light.light.cone_angle.at(at_), length = axis_length(light);
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

Reasons Participation::reasons_against(const host::Layer& light) const {
    if (light.light.type == LightType::parallel) return {"the effect shows no parallel lights"};
    if (light.light.type == LightType::ambient) return {"the effect shows no ambient lights"};
    Reasons reasons;
    check_filters(light, reasons);
    light.light.type == LightType::point ? check_point(light, reasons) : check_spot(light, reasons);
    return reasons;
}

}  // namespace zam::cli
