#pragma once
// A row on any lane type: included once by each file of a target (rows_scalar.cpp, rows_avx2.cpp ...), compiled for it.
// The pixel loop is inside the light loop, over blocks of a row; each pixel still adds its lights in array order.
#include "effect/render/row_finish.h"
#include "effect/render/row_points.h"
#include "effect/render/row_spots.h"

namespace zam {

// V is the lane type of points and of the finishing pass, S that of spots.
template <class V, class S = V>
class RowRenderer {
  public:
    RowRenderer(const _RenderData& frame, A_long y) : block_(frame, y), points_(block_), spots_(block_) {}
    RowRenderer(const RowRenderer&) = delete;

    void Render(PF_Pixel* out) {
        static_assert(sizeof(RowRenderer) <= 48 * 1024,
                      "it stands on the stack of one of the host's threads");
        const _RenderData& frame = block_.frame;
        for (int first = 0; first < frame.width; first += block_.kSize) {
            block_.Start(first);
            points_.Add();
            spots_.Add();
            if (frame.deep) {
                WriteBlock<V, A_u_short>(block_, reinterpret_cast<PF_Pixel16*>(out) + first);
            } else {
                WriteBlock<V, A_u_char>(block_, out + first);
            }
        }
    }

  private:
    RowBlock<V> block_;
    PointRows<V> points_;
    SpotRows<V, S> spots_;
};

}  // namespace zam
