#include "cli/lone_lights.h"

#include <algorithm>

#include "cli/interrupt.h"
#include "cli/participation.h"

namespace zam::cli {
namespace {

constexpr double kFull = 32768.0;

// Renders pixels of one frame with some lights dark. The effect leaves lights of intensity 0 out, whatever its
// controls.
class PixelRenderer {
  public:
    PixelRenderer(OpenScene& scene, int frame, int x, int y)
        : scene_(scene), before_(scene.composition.layers), frame_(frame), x_(x), y_(y) {}
    ~PixelRenderer() { scene_.composition.layers = before_; }
    PixelRenderer(const PixelRenderer&) = delete;
    PixelRenderer& operator=(const PixelRenderer&) = delete;

    [[nodiscard]] PixelColor all() {
        return render([](host::LayerId) { return true; });
    }
    [[nodiscard]] PixelColor only(host::LayerId one) {
        return render([one](host::LayerId light) { return light == one; });
    }
    [[nodiscard]] PixelColor without(host::LayerId one) {
        return render([one](host::LayerId light) { return light != one; });
    }

  private:
    template <class Shines>
    PixelColor render(Shines shines) {
        std::vector<host::Layer>& layers = scene_.composition.layers;
        for (std::size_t i = 0; i < layers.size(); ++i)
            layers[i].light.intensity = shines(layers[i].id) ? before_[i].light.intensity : 0.0;
        const host::Frame frame = scene_.session.render(frame_, {.depth = host::Depth::bits16});
        if (const int signal = caught_signal())
            throw Interrupted(signal, "interrupted");  // given up, perhaps
        scene_.answers.check(frame.outcome, "frame " + std::to_string(frame_));
        const std::size_t at = 4 * (static_cast<std::size_t>(y_) * static_cast<std::size_t>(frame.width) +
                                    static_cast<std::size_t>(x_));
        const auto part = [&](std::size_t channel) { return frame.argb.at(at + channel) / kFull; };
        return {part(0), {part(1), part(2), part(3)}};
    }

    OpenScene& scene_;
    const std::vector<host::Layer> before_;
    int frame_, x_, y_;
};

}  // namespace

double ExplainedPixel::light() const {
    double sum = 0.0;
    for (const LoneLight& light : lights) sum += std::max(0.0, light.light);
    return sum;
}

ExplainedPixel explain_pixel(OpenScene& scene, int frame, int x, int y) {
    ExplainedPixel pixel;
    const Participation participation(scene.session, scene.composition, frame);
    for (const host::Layer& layer : scene.composition.layers)
        if (layer.kind == host::LayerKind::light && participation.reasons_against(layer).empty())
            pixel.lights.push_back({layer.id, {}, 0.0, false});

    PixelRenderer renderer(scene, frame, x, y);
    pixel.all = renderer.all();
    for (LoneLight& light : pixel.lights) light.alone = renderer.only(light.layer);

    const host::Control& look = host::find_control(scene.session.controls(), "Look");
    const auto& looks = look.choices;
    const auto now = static_cast<std::size_t>(scene.session.control_at(look.index, frame)) - 1;
    pixel.look = looks.at(now);
    const auto linear =
        static_cast<std::size_t>(std::find(looks.begin(), looks.end(), "Linear") - looks.begin());
    scene.session.set_control(look.index, static_cast<double>(linear + 1));
    const double all = renderer.all().alpha;
    for (LoneLight& light : pixel.lights) {
        light.light = now == linear ? light.alone.alpha : renderer.only(light.layer).alpha;
        light.at_least = light.light >= 1.0;
        // Alone, nothing is to be seen of a light that takes light away.
        const host::Layer& layer = *scene.composition.find_layer(light.layer);
        if (light.light == 0.0 && layer.light.intensity.at(participation.frame()) <= 0.0)
            light.light = all - renderer.without(light.layer).alpha;
    }
    return pixel;
}

}  // namespace zam::cli
