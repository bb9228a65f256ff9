#include "io/composition_reader.h"

#include <algorithm>
#include <set>

#include "host/text.h"
#include "io/control_settings.h"
#include "io/effect_layer.h"
#include "io/keyframes.h"
#include "io/layer_reader.h"
#include "io/values.h"

namespace zam::io {
namespace {

using Kind = JsonValue::Kind;

constexpr NumberRule kSize{1, 30000, "pixels", ""};
constexpr NumberRule kRate{1, 999, "frames per second", ""};
constexpr NumberRule kAspect{0.01, 100, "", "the width of a pixel over its height; 1 is square"};
constexpr NumberRule kDuration{1, 1'000'000, "frames", ""};
constexpr NumberRule kFrame{0, 999'999, "frames", ""};
constexpr std::size_t kMostLayers = 10'000;
constexpr std::size_t kMostParents = 100;  // one above the other; each costs a matrix for each layer below

class CompositionReader {
  public:
    explicit CompositionReader(const JsonDocument& document) : document_(document) {}

    host::Composition read() {
        if (const JsonValue* controls = document_.root.find("controls"))
            throw document_.error_at_name(
                *controls, "the composition: \"controls\" is not known here",
                "this looks like a preset, which --preset takes; in a composition they "
                "are in \"effect\"");
        check_members(document_, document_.root, "the composition",
                      {"$schema", "note", "name", "size", "pixel_aspect", "frame_rate", "duration",
                       "work_area", "layers", "effect"});
        read_frame();
        read_times();
        read_layers();
        read_effect();
        return std::move(composition_);
    }

  private:
    template <class Use>
    void with(const char* name, Use use) {
        if (const JsonValue* member = document_.root.find(name)) use(*member, std::string(name));
    }

    void read_frame() {
        for (const char* name : {"$schema", "note"})
            with(name, [&](const JsonValue& v, const std::string& subject) {
                static_cast<void>(read_text(document_, v, subject));
            });
        with("name", [&](const JsonValue& v, const std::string& subject) {
            composition_.name = read_text(document_, v, subject);
        });
        with("size", [&](const JsonValue& v, const std::string& subject) {
            const auto [width, height] = read_pair(v, subject, kSize, "write [width, height], in pixels");
            composition_.width = width;
            composition_.height = height;
        });
        with("pixel_aspect", [&](const JsonValue& v, const std::string& subject) {
            composition_.pixel_aspect = read_ratio(document_, v, subject, kAspect);
        });
    }

    void read_times() {
        with("frame_rate", [&](const JsonValue& v, const std::string& subject) {
            composition_.frame_rate = read_ratio(document_, v, subject, kRate);
        });
        with("duration", [&](const JsonValue& v, const std::string& subject) {
            composition_.duration = read_whole(document_, v, subject, kDuration);
        });
        composition_.work_area_duration = composition_.duration;
        with("work_area", [&](const JsonValue& v, const std::string& subject) {
            const auto [first, last] =
                read_pair(v, subject, kFrame, "write [first frame, last frame], both counted from 0");
            if (first > last || last >= composition_.duration)
                throw document_.error(
                    v,
                    "work_area " + std::to_string(first) + ".." + std::to_string(last) +
                        " does not lie within the frames 0.." + std::to_string(composition_.duration - 1),
                    "frames count from 0; \"duration\" is " + std::to_string(composition_.duration) +
                        (document_.root.find("duration") ? "" : " because none is given"));
            composition_.work_area_start = first;
            composition_.work_area_duration = last - first + 1;
        });
    }

    std::pair<int, int> read_pair(const JsonValue& value, const std::string& subject, const NumberRule& rule,
                                  const char* hint) {
        if (!value.is(Kind::array) || value.children.size() != 2)
            throw document_.error(value, subject + " is not a pair of numbers", hint);
        return {read_whole(document_, value.children[0], subject, rule),
                read_whole(document_, value.children[1], subject, rule)};
    }

    void read_layers() {
        const JsonValue* list = document_.root.find("layers");
        if (!list)
            throw document_.error(document_.root, "the composition has no \"layers\"",
                                  R"(add "layers": [{"kind": "light", "type": "point"}])");
        if (!list->is(Kind::array))
            throw document_.error(*list, std::string("layers is ") + list->kind_name() + ", not an array",
                                  "write the layers in brackets, the topmost first");
        if (list->children.size() > kMostLayers)
            throw document_.error(*list, "more than " + std::to_string(kMostLayers) + " layers",
                                  "split the scene");
        layer_values_ = &list->children;
        for (std::size_t i = 0; i < list->children.size(); ++i)
            composition_.layers.push_back(read_layer(document_, list->children[i], i + 1, composition_));
        number_layers();
        link_parents();
    }

    void number_layers() {
        std::set<host::LayerId> taken;
        for (std::size_t i = 0; i < composition_.layers.size(); ++i) {
            const host::LayerId id = composition_.layers[i].id;
            if (id != 0 && !taken.insert(id).second)
                throw document_.error(*(*layer_values_)[i].find("id"),
                                      subject(i) + ": id " + std::to_string(id) + " is another layer's",
                                      "give each layer an id of its own, or none");
        }
        host::LayerId next = 1;
        for (host::Layer& layer : composition_.layers) {
            if (layer.id != 0) continue;
            while (taken.count(next) > 0) ++next;
            layer.id = next++;
        }
    }

    void link_parents() {
        constexpr std::size_t kNone = kMostLayers;
        const std::size_t count = composition_.layers.size();
        std::vector<std::size_t> parents(count, kNone);
        for (std::size_t i = 0; i < count; ++i) {
            const JsonValue* told = (*layer_values_)[i].find("parent");
            if (!told) continue;
            parents[i] = find_layer(*told, subject(i) + ": parent");
            composition_.layers[i].parent = composition_.layers[parents[i]].id;
        }
        // Whoever climbs more steps than there are layers goes round in a circle.
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t steps = 0;
            for (std::size_t at = parents[i]; at != kNone; at = parents[at])
                if (at == i || ++steps > count)
                    throw document_.error(*(*layer_values_)[i].find("parent"),
                                          subject(i) + ": parent leads round in a circle",
                                          "remove one \"parent\" of the circle");
            if (steps > kMostParents)
                throw document_.error(*(*layer_values_)[i].find("parent"),
                                      subject(i) + ": there are " + std::to_string(steps) +
                                          " parents above each other, more than " +
                                          std::to_string(kMostParents),
                                      "fix the layer to one that stands higher, or give it a world_matrix");
        }
    }

    // Index of the layer that a name or an id stands for.
    std::size_t find_layer(const JsonValue& value, const std::string& what) {
        const auto& layers = composition_.layers;
        if (value.is(Kind::number)) {
            const auto id = read_whole(document_, value, what, kAnyNumber);
            for (std::size_t i = 0; i < layers.size(); ++i)
                if (layers[i].id == id && (*layer_values_)[i].find("id")) return i;
            throw document_.error(value, what + ": no layer has the id " + std::to_string(id),
                                  "give the layer an \"id\", or refer to it by its name");
        }
        const std::string name = read_text(document_, value, what);
        std::vector<std::size_t> found;
        for (std::size_t i = 0; i < layers.size(); ++i)
            if (layers[i].name == name) found.push_back(i);
        if (found.size() == 1) return found.front();
        if (found.size() > 1)
            throw document_.error(
                value, what + ": " + std::to_string(found.size()) + " layers are called " + quote(name),
                "give the one that is meant an \"id\" and refer to that number");
        std::vector<std::string> names;
        for (const host::Layer& layer : layers) names.push_back(layer.name);
        const std::string near = nearest(name, names);
        throw document_.error(value, what + ": there is no layer " + quote(name),
                              near.empty() ? "refer to a layer by its name or its \"id\""
                                           : "did you mean " + quote(near) + "?");
    }

    void read_effect() {
        const JsonValue* effect = document_.root.find("effect");
        const JsonValue* layer = nullptr;
        if (effect) {
            check_members(document_, *effect, "effect", {"layer", "controls"});
            layer = effect->find("layer");
            if (const JsonValue* controls = effect->find("controls"))
                composition_.effect.controls =
                    read_controls(document_, *controls, composition_.frame_rate.value());
        }
        if (!layer) {
            add_effect_layer(composition_);
            return;
        }
        const host::Layer& carrier = composition_.layers[find_layer(*layer, "effect layer")];
        if (carrier.kind != host::LayerKind::solid)
            throw document_.error(*layer, "effect layer " + quote(carrier.name) + " is no solid",
                                  "name a solid of the composition's size, or leave \"layer\" out: one "
                                  "is then made");
        composition_.effect.layer = carrier.id;
    }

    [[nodiscard]] std::string subject(std::size_t index) const {
        return layer_subject((*layer_values_)[index], index + 1);
    }

    const JsonDocument& document_;
    host::Composition composition_;
    const std::vector<JsonValue>* layer_values_ = nullptr;
};

}  // namespace

host::Composition read_composition(const JsonDocument& document) {
    return CompositionReader(document).read();
}

}  // namespace zam::io
