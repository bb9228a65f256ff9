#include "io/gltf/track.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "host/text.h"
#include "io/gltf/accessor.h"

namespace zam::io::gltf {
namespace {

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

// Times are stored in single precision: what belongs to a frame may come out a little later than it.
double slack(double seconds) { return 1e-6 * (1.0 + std::abs(seconds)); }

std::size_t width_of(Shape shape) { return shape == Shape::rotation ? 4 : shape == Shape::vector ? 3 : 1; }

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

Track::Track(const Container& file, const JsonValue& sampler, Shape shape) : shape_(shape) {
    if (const JsonValue* kind = sampler.find("interpolation")) {
        if (kind->text == "STEP") {
            interpolation_ = Interpolation::step;
        } else if (kind->text == "CUBICSPLINE" && shape != Shape::truth) {
            interpolation_ = Interpolation::cubic_spline;
        } else if (kind->text != "LINEAR") {
            throw file.error(*kind, "interpolation " + quote(kind->text) + " is not known here",
                             shape == Shape::truth ? "true and false go in steps: use STEP"
                                                   : "use STEP, LINEAR or CUBICSPLINE");
        }
    }
    if (shape == Shape::truth) interpolation_ = Interpolation::step;
    const JsonValue& input = file.required(sampler, "input");
    const JsonValue& output = file.required(sampler, "output");
    times_ = read_accessor(file, input, 1);
    for (std::size_t i = 0; i < times_.size(); ++i)
        if (times_[i] < 0.0 || (i > 0 && times_[i] <= times_[i - 1]))
            throw file.error(input, "the times of the keys do not ascend from 0", "export the file again");

    const std::size_t width = width_of(shape);
    const std::vector<double> numbers = read_accessor(file, output, static_cast<int>(width));
    const std::size_t each = interpolation_ == Interpolation::cubic_spline ? 3 : 1;
    if (numbers.size() != times_.size() * each * width)
        throw file.error(output,
                         "there are " + std::to_string(numbers.size() / width) + " values for " +
                             std::to_string(times_.size()) + " keys",
                         "a key has one value, or three for CUBICSPLINE; export the file again");
    values_.reserve(numbers.size() / width);
    for (std::size_t at = 0; at < numbers.size(); at += width) {
        Value& v = values_.emplace_back(Value{});
        std::copy_n(numbers.begin() + static_cast<std::ptrdiff_t>(at), width, v.begin());
    }
}

Track::Value Track::value(std::size_t index) const {
    const Value& v = values_[interpolation_ == Interpolation::cubic_spline ? 3 * index + 1 : index];
    return shape_ == Shape::rotation ? unit(v) : v;
}

double Track::work() const {
    const bool on_arcs = shape_ == Shape::rotation && interpolation_ == Interpolation::linear;
    return (on_arcs ? 5.0 : 2.0) + static_cast<double>(std::bit_width(times_.size())) / 2.0;
}

Track::Value Track::at(double seconds) const {
    const auto after = std::upper_bound(times_.begin(), times_.end(), seconds + slack(seconds));
    if (after == times_.begin()) return value(0);
    const auto before = static_cast<std::size_t>(after - times_.begin()) - 1;
    if (after == times_.end() || interpolation_ == Interpolation::step) return value(before);
    const double span = *after - times_[before];
    const double t = std::max(0.0, (seconds - times_[before]) / span);
    if (interpolation_ == Interpolation::cubic_spline) return cubic(before, t, span);
    if (shape_ == Shape::rotation) return slerp(value(before), value(before + 1), t);
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
    return shape_ == Shape::rotation ? unit(result) : result;
}

}  // namespace zam::io::gltf
