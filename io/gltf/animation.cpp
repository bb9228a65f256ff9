#include "io/gltf/animation.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "io/gltf/accessor.h"
#include "io/text.h"

namespace zam::io::gltf {
namespace {

using Kind = JsonValue::Kind;

double dot4(const Track::Value& a, const Track::Value& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

Track::Value blend(const Track::Value& a, double weight_a, const Track::Value& b, double weight_b) {
    Track::Value result;
    for (std::size_t i = 0; i < 4; ++i) result[i] = a[i] * weight_a + b[i] * weight_b;
    return result;
}

// A quaternion of length 0 turns nothing.
Track::Value unit(const Track::Value& q) {
    const double size = std::sqrt(dot4(q, q));
    if (size < 1e-12) return {0.0, 0.0, 0.0, 1.0};
    return {q[0] / size, q[1] / size, q[2] / size, q[3] / size};
}

const JsonValue& required(const Container& file, const JsonValue& object, const char* member) {
    if (const JsonValue* value = object.find(member)) return *value;
    throw file.error(object, std::string("there is no \"") + member + "\" here", "export the file again");
}

}  // namespace

Track::Value slerp(const Track::Value& from, Track::Value to, double t) {
    double cosine = dot4(from, to);
    if (cosine < 0.0) {  // q and -q are the same rotation: take the one that is nearer
        for (double& c : to) c = -c;
        cosine = -cosine;
    }
    if (cosine > 1.0 - 1e-9) return unit(blend(from, 1.0 - t, to, t));
    const double angle = std::acos(cosine);
    const double sine = std::sin(angle);
    return blend(from, std::sin((1.0 - t) * angle) / sine, to, std::sin(t * angle) / sine);
}

Track::Track(const Container& file, const JsonValue& sampler, NodePath path) : path_(path) {
    if (const JsonValue* kind = sampler.find("interpolation")) {
        if (kind->text == "STEP") {
            interpolation_ = Interpolation::step;
        } else if (kind->text == "CUBICSPLINE") {
            interpolation_ = Interpolation::cubic_spline;
        } else if (kind->text != "LINEAR") {
            throw file.error(*kind, "interpolation " + quote(kind->text) + " is not known",
                             "use STEP, LINEAR or CUBICSPLINE");
        }
    }
    const JsonValue& input = required(file, sampler, "input");
    const JsonValue& output = required(file, sampler, "output");
    times_ = read_accessor(file, input, 1);
    for (std::size_t i = 0; i < times_.size(); ++i)
        if (times_[i] < 0.0 || (i > 0 && times_[i] <= times_[i - 1]))
            throw file.error(input, "the times of the keys do not ascend from 0", "export the file again");

    const std::size_t width = path == NodePath::rotation ? 4 : 3;
    const std::vector<double> numbers = read_accessor(file, output, static_cast<int>(width));
    const std::size_t each = interpolation_ == Interpolation::cubic_spline ? 3 : 1;
    if (numbers.size() != times_.size() * each * width)
        throw file.error(output,
                         "there are " + std::to_string(numbers.size() / width) + " values for " +
                             std::to_string(times_.size()) + " keys",
                         "a key has one value, or three for CUBICSPLINE; export the file again");
    for (std::size_t at = 0; at < numbers.size(); at += width) {
        Value& v = values_.emplace_back(Value{});
        std::copy_n(numbers.begin() + static_cast<std::ptrdiff_t>(at), width, v.begin());
    }
}

Track::Value Track::value(std::size_t index) const {
    const Value& v = values_[interpolation_ == Interpolation::cubic_spline ? 3 * index + 1 : index];
    return path_ == NodePath::rotation ? unit(v) : v;
}

Track::Value Track::at(double seconds) const {
    const auto after = std::upper_bound(times_.begin(), times_.end(), seconds);
    if (after == times_.begin()) return value(0);
    const auto before = static_cast<std::size_t>(after - times_.begin()) - 1;
    if (after == times_.end() || interpolation_ == Interpolation::step) return value(before);
    const double span = *after - times_[before];
    const double t = (seconds - times_[before]) / span;
    if (interpolation_ == Interpolation::cubic_spline) return cubic(before, t, span);
    if (path_ == NodePath::rotation) return slerp(value(before), value(before + 1), t);
    return blend(value(before), 1.0 - t, value(before + 1), t);
}

// Hermite spline; the tangents are per second.
Track::Value Track::cubic(std::size_t before, double t, double span) const {
    const Value& from = values_[3 * before + 1];
    const Value& leaving = values_[3 * before + 2];
    const Value& arriving = values_[3 * before + 3];
    const Value& to = values_[3 * before + 4];
    const double t2 = t * t, t3 = t2 * t;
    const Value points = blend(from, 2.0 * t3 - 3.0 * t2 + 1.0, to, 3.0 * t2 - 2.0 * t3);
    const Value slopes = blend(leaving, span * (t3 - 2.0 * t2 + t), arriving, span * (t3 - t2));
    const Value result = blend(points, 1.0, slopes, 1.0);
    return path_ == NodePath::rotation ? unit(result) : result;
}

Channels read_channels(const Container& file) {
    Channels result;
    const JsonValue* animations = file.root().find("animations");
    if (!animations) return result;
    std::set<std::pair<std::size_t, NodePath>> moved;
    std::size_t pointers = 0, doubles = 0;
    for (const JsonValue& animation : animations->children) {
        const JsonValue& samplers = required(file, animation, "samplers");
        for (const JsonValue& channel : required(file, animation, "channels").children) {
            const JsonValue& index = required(file, channel, "sampler");
            const bool valid = index.is(Kind::number) && index.number >= 0.0 &&
                               index.number < static_cast<double>(samplers.children.size());
            if (!valid) throw file.error(index, "there is no such sampler", "export the file again");
            const JsonValue& sampler = samplers.children[static_cast<std::size_t>(index.number)];
            // The accessor's "max" tells the last time without its buffer.
            const JsonValue& input = file.element("accessors", required(file, sampler, "input"));
            if (const JsonValue* max = input.find("max"); max && !max->children.empty())
                result.last_second = std::max(result.last_second, max->children[0].number);

            const JsonValue& target = required(file, channel, "target");
            const JsonValue& path = required(file, target, "path");
            if (path.text == "pointer") ++pointers;
            if (path.text == "pointer" || path.text == "weights") continue;
            if (path.text != "translation" && path.text != "rotation" && path.text != "scale")
                throw file.error(path, "path " + quote(path.text) + " is not known",
                                 "nodes are animated by translation, rotation, scale or weights");
            const JsonValue* node = target.find("node");
            if (!node) continue;  // meant for an extension
            Channel found;
            static_cast<void>(file.element("nodes", *node));
            found.node = static_cast<std::size_t>(node->number);
            found.path = path.text == "rotation" ? NodePath::rotation
                         : path.text == "scale"  ? NodePath::scale
                                                 : NodePath::translation;
            found.sampler = &sampler;
            found.place = &channel;
            if (moved.insert({found.node, found.path}).second)
                result.nodes.push_back(found);
            else
                ++doubles;
        }
    }
    if (pointers > 0)
        result.warnings.push_back(
            std::to_string(pointers) +
            " animation channels of KHR_animation_pointer are left out: only nodes are animated");
    if (doubles > 0)
        result.warnings.push_back(std::to_string(doubles) +
                                  " animation channels move what another animation moves already and are "
                                  "left out: the first counts");
    return result;
}

}  // namespace zam::io::gltf
