#pragma once
// What is compared: the literal renderer and every target of the effect that this machine runs.
#include <string>
#include <vector>

#include "effect/render/rows.h"
#include "tests/literal/random_frame.h"

namespace zam::bench {

struct Variant {
    std::string name;
    int lanes = 0;  // 0: the literal renderer
    RowFunc render = nullptr;
};

std::vector<Variant> Targets();
std::vector<Variant> LiteralAndTargets();  // the literal renderer first
Variant ChosenVariant();

// Some rows of a frame, evenly spread over its height, each with its own place in memory.
class Rows {
  public:
    Rows(const literal::Scene& scene, A_long count);

    void Render(const Variant& variant) const;
    void RenderRow(const Variant& variant, A_long index) const;

    [[nodiscard]] const literal::Frame& frame() const { return frame_; }
    [[nodiscard]] A_long count() const { return count_; }
    [[nodiscard]] double pixels() const { return static_cast<double>(count_) * frame_.data().width; }

  private:
    literal::Frame frame_;
    A_long count_;
    std::size_t row_bytes_;
    mutable std::vector<unsigned char> pixels_;
};

}  // namespace zam::bench
