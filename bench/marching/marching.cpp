// The closed forms beside a marcher that has everything its way: no noise in the air, no shadows, no reads.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "bench/cases.h"
#include "bench/marching/loops.h"
#include "bench/sections.h"
#include "bench/variants.h"
#include "tests/literal/formulas.h"

namespace zam::bench {
namespace {

constexpr A_long kWidth = 64, kHeight = 36;
constexpr double kTail = 8.0;        // a point's march ends at so many times its depth
constexpr double kFaintest = 0.001;  // of the brightest pixel; fainter ones have no say in the error

// One kind's lights: the light of a pixel by the closed form and by steps.
class Marched {
  public:
    explicit Marched(const literal::Scene& scene) : frame_(scene), data_(frame_.data()) {
        for (int i = 0; i < data_.pointData->count; ++i) {
            const Vec3& p = data_.pointLights[i].pos;
            points_.push_back({p.x, p.y, p.z, data_.softKSq, data_.softKRoot});
        }
        for (int i = 0; i < data_.spotData->count; ++i) {
            const _VisLightStruct& light = data_.spotLights[i];
            const _OptSpotData& opt = data_.optSpot[i];
            spots_.push_back({light.pos.x, light.pos.y, light.pos.z, light.dir.x, light.dir.y, light.dir.z,
                              opt.cosOuter, opt.cosInner, 0.0, light.radius, data_.spotScale});
        }
    }

    // Light of all pixels and lights, one after the other.
    template <class T>
    void March(int steps, std::vector<double>* out) const {
        out->clear();
        ForAllRays([&](double x, double y) {
            const T dx = static_cast<T>(x), dy = static_cast<T>(y);
            for (const MarchedPoint& light : points_) {
                out->push_back(MarchPoint(light, dx, dy, T(0), static_cast<T>(kTail * light.z), steps));
            }
            for (const MarchedSpot& light : spots_) {
                const double from = std::max(0.0, light.z - light.reach), to = light.z + light.reach;
                out->push_back(MarchSpot(light, dx, dy, static_cast<T>(from), static_cast<T>(to), steps));
            }
        });
    }
    std::vector<double> Exact() const {
        std::vector<double> out;
        const literal::Maths& maths = data_.inData->utils->ansi;
        const literal::View view{data_.invZoom, data_.aspectOverDownsampleX, data_.invDownsampleY,
                                 data_.width, data_.height};
        ForAllRays([&](double x, double y) {
            const literal::Ray ray{x, y, 1.0, x * x + y * y + 1.0};
            for (int i = 0; i < data_.pointData->count; ++i) {
                const _VisLightStruct& light = data_.pointLights[i];
                out.push_back(literal::PointLight(maths, ray, light, data_.optPoint[i], *data_.pointData,
                                                  {data_.softKSq, data_.softKRoot})
                                  .alpha /
                              light.intensity);
            }
            for (int i = 0; i < data_.spotData->count; ++i) {
                literal::RayOpt ray_opt{};
                out.push_back(literal::SpotScattering(maths, view, *data_.spotData, data_.spotLights[i],
                                                      data_.optSpot[i], data_.spotScale, 0, 0, ray,
                                                      &ray_opt));
            }
        });
        return out;
    }

  private:
    template <class Call>
    void ForAllRays(Call call) const {
        for (A_long y = 0; y < data_.height; ++y) {
            for (A_long x = 0; x < data_.width; ++x) {
                call((x - data_.width * 0.5) * data_.aspectOverDownsampleX * data_.invZoom,
                     (y - data_.height * 0.5) * data_.invDownsampleY * data_.invZoom);
            }
        }
    }

    literal::Frame frame_;
    const _RenderData& data_;
    std::vector<MarchedPoint> points_;
    std::vector<MarchedSpot> spots_;
};

double MeanRelativeError(const std::vector<double>& marched, const std::vector<double>& exact) {
    const double faintest = kFaintest * *std::max_element(exact.begin(), exact.end());
    double sum = 0.0, count = 0.0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
        if (!(exact[i] > faintest)) continue;
        sum += std::fabs(marched[i] - exact[i]) / exact[i];
        ++count;
    }
    return sum / count;
}

void MarchCase(const Case& c, const Options& options, Report* report) {
    const Marched marched(literal::Resized(c.scene, kWidth, kHeight));
    const std::vector<double> exact = marched.Exact();
    const Rows rows(literal::Resized(Dark(c.scene), 960, 540), 24);  // nothing to finish here either
    std::vector<double> out;
    out.reserve(exact.size());

    const Variant chosen = ChosenVariant(), literal_variant = LiteralAndTargets().front();
    std::vector<std::string> names{chosen.name, "literal"};
    std::vector<double> per_light{rows.pixels() * c.lights, rows.pixels() * c.lights}, errors{0.0, 0.0};
    std::vector<std::function<void()>> bodies{[&] { rows.Render(chosen); },
                                              [&] { rows.Render(literal_variant); }};
    for (const int steps : {64, 256, 1024}) {
        for (const bool single : {true, false}) {
            names.push_back(std::to_string(steps) + (single ? " steps, float" : " steps, double"));
            bodies.push_back([&, steps, single] {
                single ? marched.March<float>(steps, &out) : marched.March<double>(steps, &out);
            });
            bodies.back()();
            errors.push_back(MeanRelativeError(out, exact));
            per_light.push_back(static_cast<double>(exact.size()));
        }
    }
    const std::vector<Timing> timings = Interleave(bodies, options.rounds, 0.005);
    std::printf("\n%d %s\n", c.lights, c.name.c_str());
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const Spread ns = Scaled(timings[i].cpu, 1e9 / per_light[i]);
        std::printf("  %-20s %s ns   x %-6.1f", names[i].c_str(), Text(ns, 2).c_str(),
                    ns.median / (Scaled(timings[0].cpu, 1e9 / per_light[0]).median));
        if (i >= 2) std::printf("  error %.2f %%", 100 * errors[i]);
        std::printf("\n");
        report->Add("marching: " + c.name, names[i], kNsPerLight, ns);
        if (i >= 2) {
            report->Add("marching: " + c.name, names[i], "mean relative error",
                        {errors[i], errors[i], errors[i]});
        }
    }
}

}  // namespace

void BenchMarching(const Options& options, Report* report) {
    if (!options.Wants("marching")) return;
    PrintHeading(
        "Marching beside the closed form",
        "Equal steps, each taken at its middle, added on the widest vectors; points up to 8 times their "
        "depth, spots\nover the depths that their reach can touch. ns per pixel and light, in units of "
        "the chosen target's rows,\nmean relative error where there is light.");
    for (const Case& c : LightCases()) {
        if (c.name == "points Natural" || c.name == "spots Natural feather 50 typical") {
            MarchCase(c, options, report);
        }
    }
}

}  // namespace zam::bench
