#include "io/values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>

#include "host/text.h"
#include "io/over.h"

namespace zam::io {
namespace {

using Kind = JsonValue::Kind;

std::string with_unit(const std::string& number, const NumberRule& rule) {
    return *rule.unit == '\0' ? number : number + " " + rule.unit;
}

std::string range_text(const NumberRule& rule) {
    if (rule.max >= 1e9) return "below " + with_unit(format_number(rule.min), rule);
    return "outside " + format_number(rule.min) + ".." + with_unit(format_number(rule.max), rule);
}

std::string range_hint(const NumberRule& rule) {
    if (*rule.hint != '\0') return rule.hint;
    if (rule.min <= -1e9) return with_unit("give a number in", rule) + ", for example 120";
    if (rule.max >= 1e9) return "give " + with_unit(format_number(rule.min), rule) + " or more";
    return "give a number from " + format_number(rule.min) + " to " +
           with_unit(format_number(rule.max), rule);
}

void expect(const JsonDocument& document, const JsonValue& value, Kind kind, const std::string& subject,
            const char* wanted, const std::string& hint) {
    if (value.is(kind)) return;
    throw document.error(value, subject + " is " + value.kind_name() + ", not " + wanted, hint);
}

}  // namespace

double read_number(const JsonDocument& document, const JsonValue& value, const std::string& subject,
                   const NumberRule& rule) {
    const std::string plain = *rule.unit == '\0' ? "give a plain number such as 120"
                                                 : std::string("give a plain number, in ") + rule.unit;
    expect(document, value, Kind::number, subject, "a number", plain);
    const bool beyond_sense = std::abs(value.number) > 1e9;
    if (beyond_sense)
        throw document.error(value, subject + " " + format_number(value.number) + " is beyond 1e9",
                             "numbers of a scene stay within -1e9..1e9");
    if (value.number < rule.min || value.number > rule.max)
        throw document.error(value, subject + " " + format_number(value.number) + " is " + range_text(rule),
                             range_hint(rule));
    return value.number;
}

int read_whole(const JsonDocument& document, const JsonValue& value, const std::string& subject,
               const NumberRule& rule) {
    const double number = read_number(document, value, subject, rule);
    if (number != std::floor(number))
        throw document.error(value, subject + " " + format_number(number) + " is not a whole number",
                             "write it without decimals");
    return static_cast<int>(number);
}

bool read_flag(const JsonDocument& document, const JsonValue& value, const std::string& subject) {
    expect(document, value, Kind::boolean, subject, "true or false", "write true or false, without quotes");
    return value.truth;
}

std::string read_text(const JsonDocument& document, const JsonValue& value, const std::string& subject) {
    expect(document, value, Kind::string, subject, "a text", "put it in double quotes");
    return value.text;
}

std::string read_choice(const JsonDocument& document, const JsonValue& value, const std::string& subject,
                        const std::vector<std::string>& choices) {
    std::string text = read_text(document, value, subject);
    if (std::find(choices.begin(), choices.end(), text) != choices.end()) return text;
    const std::string near = nearest(text, choices);
    throw document.error(value, subject + " " + quote(text) + " is not known",
                         near.empty() ? "use " + join_or(choices) : "did you mean " + quote(near) + "?");
}

host::Vec3 read_vec3(const JsonDocument& document, const JsonValue& value, const std::string& subject,
                     const NumberRule& rule) {
    const std::string form = with_unit("three numbers, [x, y, z], in", rule);
    const std::string hint = *rule.unit == '\0' ? "give three numbers, [x, y, z]" : "give " + form;
    expect(document, value, Kind::array, subject, "an array", hint);
    if (value.children.size() != 3)
        throw document.error(
            value, subject + " has " + std::to_string(value.children.size()) + " numbers instead of 3", hint);
    return {read_number(document, value.children[0], subject + " x", rule),
            read_number(document, value.children[1], subject + " y", rule),
            read_number(document, value.children[2], subject + " z", rule)};
}

host::Color read_color(const JsonDocument& document, const JsonValue& value, const std::string& subject) {
    constexpr NumberRule kFraction{0.0, 1.0, "", "1 is full; write 8 bit colours as \"#rrggbb\""};
    const char* hint = "write \"#ffcc88\" or [1, 0.8, 0.53]";
    if (value.is(Kind::string)) {
        if (const auto color = parse_hex_color(value.text)) return *color;
        throw document.error(value, subject + " " + quote(value.text) + " is not a colour", hint);
    }
    if (!value.is(Kind::array) || value.children.size() != 3)
        throw document.error(value, subject + " is not a colour", hint);
    return {read_number(document, value.children[0], subject + " red", kFraction),
            read_number(document, value.children[1], subject + " green", kFraction),
            read_number(document, value.children[2], subject + " blue", kFraction)};
}

host::Ratio ratio_of(double value) {
    for (const int rate : {24, 30, 48, 60, 120})
        if (std::abs(value - rate / 1.001) < 0.0051) return {rate * 1000, 1001};
    constexpr std::int32_t kParts = 1'000'000;
    const auto parts = static_cast<std::int32_t>(std::lround(value * kParts));
    const std::int32_t divisor = std::gcd(parts, kParts);
    return {parts / divisor, static_cast<std::uint32_t>(kParts / divisor)};
}

host::Ratio read_ratio(const JsonDocument& document, const JsonValue& value, const std::string& subject,
                       const NumberRule& rule) {
    if (!value.is(Kind::array)) return ratio_of(read_number(document, value, subject, rule));
    if (value.children.size() != 2)
        throw document.error(value, subject + " is not a ratio",
                             "write a number, or [numerator, denominator] such as [24000, 1001]");
    constexpr NumberRule kPart{1.0, 1e6, "", "numerator and denominator are whole numbers up to 1000000"};
    const host::Ratio ratio{
        read_whole(document, value.children[0], subject + " numerator", kPart),
        static_cast<std::uint32_t>(read_whole(document, value.children[1], subject + " denominator", kPart))};
    if (ratio.value() < rule.min || ratio.value() > rule.max)
        throw document.error(value, subject + " " + format_number(ratio.value()) + " is " + range_text(rule),
                             range_hint(rule));
    return ratio;
}

void check_members(const JsonDocument& document, const JsonValue& object, const std::string& subject,
                   const std::vector<std::string>& allowed) {
    expect(document, object, Kind::object, subject, "an object", "put it in braces, { ... }");
    for (const JsonValue& member : object.children) {
        if (std::find(allowed.begin(), allowed.end(), member.name) != allowed.end()) continue;
        const std::string near = nearest(member.name, allowed);
        throw document.error_at_name(
            member, subject + ": " + quote(member.name) + " is not known here",
            near.empty() ? "use " + join_or(allowed) : "did you mean " + quote(near) + "?");
    }
}

}  // namespace zam::io
