#include "io/gltf/accessor.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "host/text.h"

namespace zam::io::gltf {
namespace {

constexpr std::uint64_t kMostElements = 1'000'000;

struct ComponentType {
    int code;
    std::size_t bytes;
    bool is_signed;
    double full;  // the integer that stands for 1.0 when normalized; 0 for floats
};
constexpr ComponentType kTypes[] = {{5120, 1, true, 127.0},         {5121, 1, false, 255.0},
                                    {5122, 2, true, 32767.0},       {5123, 2, false, 65535.0},
                                    {5125, 4, false, 4294967295.0}, {5126, 4, true, 0.0}};

double component(const std::string& bytes, std::size_t at, const ComponentType& type, bool normalized) {
    std::uint32_t code = 0;
    for (std::size_t i = type.bytes; i-- > 0;) code = code << 8 | static_cast<unsigned char>(bytes[at + i]);
    if (type.full == 0.0) return static_cast<double>(std::bit_cast<float>(code));
    double value = code;
    const double range = type.bytes == 1 ? 256.0 : 65536.0;
    if (type.is_signed && value >= range / 2.0) value -= range;
    return normalized ? std::max(value / type.full, -1.0) : value;
}

}  // namespace

std::vector<double> read_accessor(const Container& file, const JsonValue& user, int components) {
    const JsonValue& accessor = file.element("accessors", user);
    const char* shape = components == 1 ? "SCALAR" : components == 3 ? "VEC3" : "VEC4";
    const JsonValue* told = accessor.find("type");
    if (!told || told->text != shape)
        throw file.error(accessor, std::string("the accessor's type is not ") + shape,
                         "export the file again");
    if (const JsonValue* sparse = accessor.find("sparse"))
        throw file.error(*sparse, "sparse accessors are not read", "export again without sparse accessors");

    const std::uint64_t count = file.whole(accessor, "count", 0);
    if (count == 0 || count > kMostElements)
        throw file.error(accessor, "the accessor's count " + std::to_string(count) + " is out of range",
                         "an animation has from 1 to a million keys");
    const auto width = static_cast<std::size_t>(components);
    file.spend(user, count * width);
    const JsonValue* view_index = accessor.find("bufferView");
    if (!view_index) return std::vector<double>(count * width, 0.0);

    const std::uint64_t code = file.whole(accessor, "componentType", 0);
    const auto type = std::find_if(std::begin(kTypes), std::end(kTypes), [&](const ComponentType& known) {
        return static_cast<std::uint64_t>(known.code) == code;
    });
    if (type == std::end(kTypes))
        throw file.error(accessor, "component type " + std::to_string(code) + " is not known",
                         "animations use floats (5126) or integers (5120 to 5125)");
    const JsonValue* told_normalized = accessor.find("normalized");
    const bool normalized = told_normalized && told_normalized->truth;

    const JsonValue& view = file.element("bufferViews", *view_index);
    const JsonValue* buffer = view.find("buffer");
    if (!buffer) throw file.error(view, "the view has no buffer", "export the file again");
    const std::uint64_t element = type->bytes * width;
    const std::uint64_t stride = file.whole(view, "byteStride", element);
    const std::uint64_t start = file.whole(accessor, "byteOffset", 0);
    const std::uint64_t size = file.whole(view, "byteLength", 0);
    const bool fits = stride >= element && stride <= 252 + element && start <= size &&
                      (count - 1) * stride + element <= size - start;
    if (!fits)
        throw file.error(accessor, "the accessor reaches beyond its buffer view", "export the file again");

    const std::uint64_t length = (count - 1) * stride + element;
    const std::string bytes = file.bytes(*buffer, file.whole(view, "byteOffset", 0) + start, length, user);
    std::vector<double> numbers;
    numbers.reserve(count * width);
    for (std::uint64_t i = 0; i < count; ++i)
        for (std::size_t c = 0; c < width; ++c) {
            numbers.push_back(component(bytes, i * stride + c * type->bytes, *type, normalized));
            if (!std::isfinite(numbers.back()))
                throw file.error(accessor, "element " + std::to_string(i) + " is not a finite number",
                                 "export the file again");
        }
    return numbers;
}

}  // namespace zam::io::gltf
