// What a frame loses when one call of the host fails while it is rendered: the share of one light, or what that light
// alone would look like with the value of the light read before it.
#include <algorithm>
#include <utility>

#include "tests/contract/failing_life.h"

namespace zam::test {
namespace {

bool takes_part(const Layer& light) { return light.name.starts_with("Front") && light.video; }

// What becomes of a light of which something could not be read: its record then holds what the light before left there.
using Loss = void (*)(Layer& light, const Layer& before);
void lose_nothing(Layer&, const Layer&) {}
void lose_light(Layer& light, const Layer&) { light.light.intensity = 0.0; }
template <auto Field>
void lose(Layer& light, const Layer& before) {
    if (takes_part(light)) light.light.*Field = before.light.*Field;
}
void lose_all(Layer& light, const Layer& before) {
    if (before.light.type != light.light.type) return lose_light(light, before);  // a beam without an opening
    light.light = before.light;
    light.transform = before.transform;
    light.parent = before.parent;
    light.name = "Front";  // filters come after reading
}
void lose_all_but_color(Layer& light, const Layer& before) {
    const auto color = light.light.color;
    lose_all(light, before);
    light.light.color = color;
}
constexpr Loss kStreams[] = {  // of spots; points have neither the second nor the third
    lose<&LightSettings::color>,           lose<&LightSettings::cone_angle>,
    lose<&LightSettings::cone_feather>,    lose<&LightSettings::intensity>,
    lose<&LightSettings::shadow_darkness>, lose<&LightSettings::shadow_diffusion>};

// What a record holds when the light with this id has been read; at first nothing, of either kind.
Layer record_after(const Composition& comp, LayerId id, LightType next) {
    Layer record;
    LightSettings& nothing = record.light;
    nothing.type = next;
    nothing.color = Color{0, 0, 0};
    nothing.intensity = nothing.cone_angle = nothing.cone_feather = nothing.shadow_darkness = 0.0;
    if (id == 0) return record;
    record = *comp.find_layer(id);
    if (!takes_part(record)) record.light.intensity = 0.0;
    if (record.light.type != next) record.light.cone_angle = record.light.cone_feather = 0.0;
    return record;
}

// Follows the calls of a render, and tells what the frame loses with each.
class Follower {
  public:
    explicit Follower(const Composition& comp) : comp_(comp) {
        LayerId before = 0;
        for (const LightType type : {LightType::point, LightType::spot}) {
            parts_.push_back({type, 0, 0});  // they are counted, then described one by one
            for (const Layer& layer : comp.layers) {
                if (layer.kind == LayerKind::light && layer.light.type == type)
                    parts_.push_back({type, layer.id, std::exchange(before, layer.id)});
            }
        }
    }

    struct Expected {
        Composition comp;
        bool no_camera = false;
    };
    Expected next(const Call& call) {
        if (call.name == "Basic.AcquireSuite" && held_++ == 0) {
            ++part_;
            layer_ = -1;
            streams_ = 0;
        }
        if (call.name == "Basic.ReleaseSuite") --held_;
        if (call.name == "Layer.AEGP_GetCompLayerByIndex") ++layer_;
        if (call.name == "Stream.AEGP_GetLayerStreamValue") ++streams_;
        Expected expected{comp_};
        if (call.name == "Basic.ReleaseSuite") return expected;
        if (call.name.starts_with("Utils."))
            without_memory(call, expected.comp);
        else if (part_ == 0)
            without_reach(expected.comp);
        else if (part_ > static_cast<int>(parts_.size()))
            without_camera(expected);
        else
            without_part(call, parts_[static_cast<std::size_t>(part_ - 1)], expected.comp);
        return expected;
    }

  private:
    struct Part {
        LightType type;
        LayerId light, before;  // 0: the counting
    };
    static int place_of(const Composition& comp, LayerId id) {
        return static_cast<int>(comp.find_layer(id) - comp.layers.data());
    }
    // No kind of lights without its records or its constants; no reach without the sequence data.
    void without_memory(const Call& call, Composition& comp) const {
        const bool locks = call.name == "Utils.host_lock_handle";
        if (!locks && call.name != "Utils.host_new_handle") return;
        if (locks && call.nth == 1) return without_reach(comp);
        const int nth = call.nth - (locks ? 1 : 0);
        drop(comp, nth == 1 || nth == 4 ? LightType::point : LightType::spot, 0);
    }
    // Lights of this kind from this place on.
    static void drop(Composition& comp, LightType type, int from) {
        for (int i = std::max(from, 0); i < static_cast<int>(comp.layers.size()); ++i) {
            Layer& layer = comp.layers[static_cast<std::size_t>(i)];
            if (layer.kind == LayerKind::light && layer.light.type == type) layer.light.intensity = 0.0;
        }
    }
    void without_reach(Composition& comp) const {
        for (Layer& layer : comp.layers) {
            if (layer.parent == kWall && layer_ <= place_of(comp, layer.id)) layer.parent = 0;
        }
    }
    // Seen from the origin of the world.
    static void without_camera(Expected& expected) {
        expected.no_camera = true;
        std::erase_if(expected.comp.layers,
                      [](const Layer& layer) { return layer.kind == LayerKind::camera; });
        add_camera(expected.comp, {0, 0, 0}, {0, 0, 1}, 1000);
    }
    void without_part(const Call& call, const Part& part, Composition& comp) const {
        if (part.light == 0) return drop(comp, part.type, layer_);
        Layer& light = *comp.find_layer(part.light);
        loss_with(call.name, part.type, place_of(comp, part.light))(
            light, record_after(comp, part.before, part.type));
    }
    [[nodiscard]] Loss loss_with(const std::string& call, LightType type, int place) const {
        if (call == "Stream.AEGP_GetLayerStreamValue")
            return kStreams[streams_ - 1 + (type == LightType::point && streams_ > 1 ? 2 : 0)];
        if (call == "Layer.AEGP_GetLayerToWorldXform") return lose_all_but_color;
        if (call == "Layer.AEGP_GetLayerInPoint") return lose_nothing;  // from the start, then
        if (call == "Layer.AEGP_GetLayerName" || call == "Layer.AEGP_GetLayerDuration" ||
            call == "Layer.AEGP_IsLayerVideoReallyOn")
            return lose_light;
        return layer_ <= place ? lose_all : lose_nothing;
    }

    Composition comp_;
    std::vector<Part> parts_;
    int part_ = -1, held_ = 0, layer_ = -1, streams_ = 0;
};

TEST_F(Failures, AFrameLosesNoMoreThanTheCallWasFor) {
    for (const Depth depth : {Depth::bits8, Depth::bits16}) {
        const Circumstances which{.name = "", .camera = depth == Depth::bits8, .depth = depth};
        Life failing(which), usual(which);
        failing.live_until(kRender);
        usual.live_until(kRender);
        const Frame good = failing.render();
        ASSERT_TRUE(good.outcome.ok());
        const std::vector<Call> calls = calls_of(failing.session);
        const Composition whole = usual.comp;
        for (const Layer& light : whole.layers) {  // otherwise there is nothing to see
            if (light.kind != LayerKind::light) continue;
            usual.comp.find_layer(light.id)->light.intensity = 0.0;
            EXPECT_EQ(usual.render().argb != good.argb, takes_part(light)) << light.name;
            usual.comp = whole;
        }
        Follower follower(whole);
        int unlike = 0, tried = 0;
        for (const Call& call : calls) {
            const auto expected = follower.next(call);
            if (!call.suite.empty()) continue;  // ends the command
            usual.comp = expected.comp;
            const Frame lost = usual.render();
            EXPECT_FALSE(expected.no_camera && is_black(lost));  // otherwise any view would do
            for (const Fault& fault : {Fault{1}, Fault{PF_Interrupt_CANCEL, Fault::Results::rubbish}}) {
                SCOPED_TRACE(call.name + " " + std::to_string(call.nth) + ", answer " +
                             std::to_string(fault.code));
                failing.session.set_faults(FaultPlan().fail(call.name, call.nth, fault));
                const Frame frame = failing.render();
                failing.session.set_faults({});
                ++tried;
                unlike += lost.argb != good.argb;
                EXPECT_EQ(frame.outcome.message,
                          expected.no_camera
                              ? "Could not find camera at current time.\nChoose Layer>New>Camera "
                                "to create a camera."
                              : "");
                EXPECT_EQ(frame.outcome.message_is_error, expected.no_camera);
                const bool has_result =
                    fault.results == Fault::Results::untouched || !call.name.starts_with("Utils.");
                if (call.name == "Utils.iterate" || !has_result) continue;
                EXPECT_EQ(frame.argb, lost.argb);
            }
        }
        EXPECT_GT(unlike, tried / 4);
        EXPECT_LT(unlike, tried);
        cases += tried;
    }
}

}  // namespace
}  // namespace zam::test
