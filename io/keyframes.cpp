#include "io/keyframes.h"

#include "host/text.h"

namespace zam::io {
namespace {

using Kind = JsonValue::Kind;

constexpr std::size_t kMostKeys = 1'000'000;
constexpr const char* kKeysForm =
    R"(keys are written [frame, value], [frame, value, "hold"] or [frame, value, {"ease_in": [speed, influence]}])";
constexpr NumberRule kInfluence{0, 100, "percent", "the influence is percent of the time to the next key"};
constexpr host::Ease kEasy{0.0, 1.0 / 3.0};

// A member that must be a list with one to kMostKeys entries.
const std::vector<JsonValue>& entries(const JsonDocument& document, const JsonValue& list,
                                      const std::string& subject, const std::string& what, const char* form) {
    if (!list.is(Kind::array))
        throw document.error(list, subject + " " + what + " are " + list.kind_name() + ", not an array",
                             form);
    if (list.children.empty())
        throw document.error(list, subject + " has no " + what, "give at least one, or a plain value");
    if (list.children.size() > kMostKeys)
        throw document.error(list, subject + " has more than a million " + what,
                             "keep only keys where the value turns; it is interpolated between them");
    return list.children;
}

host::Ease read_ease(const JsonDocument& document, const JsonValue& value, const std::string& subject,
                     double frame_rate) {
    if (!value.is(Kind::array) || value.children.size() != 2)
        throw document.error(value, subject + " is not [speed, influence]",
                             "the speed is in units per second, the influence in percent, as in [0, 33.3]");
    return {read_number(document, value.children[0], subject + " speed", kAnyNumber) / frame_rate,
            read_number(document, value.children[1], subject + " influence", kInfluence) / 100.0};
}

// The third entry of a key: a word, or an object with the eases.
void read_manner(const JsonDocument& document, const JsonValue& manner, const std::string& subject,
                 double frame_rate, RawKey& key) {
    const auto must_ease = [&] {
        if (frame_rate == kNoEases)
            throw document.error(manner, subject + " cannot be eased", R"(use "linear" or "hold")");
    };
    if (!manner.is(Kind::object)) {
        const std::string word =
            read_choice(document, manner, subject + " key kind", {"linear", "hold", "ease"});
        if (word == "hold") key.interpolation = host::Interpolation::hold;
        if (word != "ease") return;
        must_ease();
        key.ease_in = key.ease_out = kEasy;
        return;
    }
    must_ease();
    check_members(document, manner, subject + " key", {"ease_in", "ease_out"});
    if (const JsonValue* in = manner.find("ease_in"))
        key.ease_in = read_ease(document, *in, subject + " ease_in", frame_rate);
    const JsonValue* out = manner.find("ease_out");
    if (out && out->is(Kind::string)) {
        static_cast<void>(read_choice(document, *out, subject + " ease_out", {"hold"}));
        key.interpolation = host::Interpolation::hold;
    } else if (out) {
        key.ease_out = read_ease(document, *out, subject + " ease_out", frame_rate);
    }
}

std::vector<RawKey> read_samples(const JsonDocument& document, const JsonValue& value,
                                 const std::string& subject) {
    check_members(document, value, subject, {"samples", "from"});
    double frame = 0.0;
    if (const JsonValue* from = value.find("from"))
        frame = read_number(document, *from, subject + " from", kFrames);
    std::vector<RawKey> keys;
    for (const JsonValue& sample : entries(document, *value.find("samples"), subject, "samples",
                                           "samples are written [value, value, ...], one for each frame")) {
        keys.push_back({frame, &sample, host::Interpolation::linear, {}, {}});
        frame += 1.0;
    }
    return keys;
}

}  // namespace

bool is_animated(const JsonValue& value) { return value.find("keys") || value.find("samples"); }

std::vector<RawKey> read_keys(const JsonDocument& document, const JsonValue& value,
                              const std::string& subject, double frame_rate) {
    if (!value.find("keys")) return read_samples(document, value, subject);
    check_members(document, value, subject, {"keys"});
    std::vector<RawKey> keys;
    for (const JsonValue& entry : entries(document, *value.find("keys"), subject, "keys", kKeysForm)) {
        const bool shaped =
            entry.is(Kind::array) && (entry.children.size() == 2 || entry.children.size() == 3);
        if (!shaped)
            throw document.error(entry, subject + " key " + std::to_string(keys.size() + 1) + " is no key",
                                 kKeysForm);
        RawKey key;
        key.frame = read_number(document, entry.children[0], subject + " key frame", kFrames);
        key.value = &entry.children[1];
        if (entry.children.size() == 3) read_manner(document, entry.children[2], subject, frame_rate, key);
        if (!keys.empty() && key.frame <= keys.back().frame)
            throw document.error(entry.children[0],
                                 subject + " key frame " + format_number(key.frame) +
                                     " does not come after " + format_number(keys.back().frame),
                                 "sort the keys by frame, one for each frame");
        keys.push_back(key);
    }
    return keys;
}

host::Animated<double> read_animated_number(const JsonDocument& document, const JsonValue& value,
                                            const std::string& subject, double frame_rate,
                                            const NumberRule& rule) {
    auto result = read_animated<double>(document, value, subject, frame_rate, [&](const JsonValue& one) {
        return read_number(document, one, subject, rule);
    });
    result.least = rule.min;
    result.most = rule.max;
    return result;
}

host::Animated<host::Vec3> read_animated_vec3(const JsonDocument& document, const JsonValue& value,
                                              const std::string& subject, double frame_rate,
                                              const NumberRule& rule) {
    return read_animated<host::Vec3>(document, value, subject, frame_rate, [&](const JsonValue& one) {
        return read_vec3(document, one, subject, rule);
    });
}

host::Animated<host::Color> read_animated_color(const JsonDocument& document, const JsonValue& value,
                                                const std::string& subject, double frame_rate) {
    return read_animated<host::Color>(document, value, subject, frame_rate, [&](const JsonValue& one) {
        return read_color(document, one, subject);
    });
}

host::Animated<host::Matrix> read_animated_matrix(const JsonDocument& document, const JsonValue& value,
                                                  const std::string& subject) {
    return read_animated<host::Matrix>(document, value, subject, kNoEases, [&](const JsonValue& one) {
        const char* hint = "give twelve numbers: where the x, y and z axes point, then the position";
        if (!one.is(Kind::array))
            throw document.error(one, subject + " is " + one.kind_name() + ", not an array", hint);
        if (one.children.size() != 12)
            throw document.error(
                one, subject + " has " + std::to_string(one.children.size()) + " numbers instead of 12",
                hint);
        host::Matrix matrix;
        for (std::size_t i = 0; i < 12; ++i)
            matrix.at[i / 3][i % 3] = read_number(document, one.children[i], subject, kAnyNumber);
        return matrix;
    });
}

}  // namespace zam::io
