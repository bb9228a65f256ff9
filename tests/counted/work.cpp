#include "tests/counted/work.h"

#include "effect/render/row_renderer.h"

namespace zam {
namespace {

Work work;

// One lane that counts.
struct Counted {
    double v;
    Counted() = default;
    Counted(double number) : v(number) {}  // NOLINT: a number is a lane of it

    friend Counted operator+(Counted a, Counted b) { return ++work.additions, a.v + b.v; }
    friend Counted operator-(Counted a, Counted b) { return ++work.additions, a.v - b.v; }
    friend Counted operator*(Counted a, Counted b) { return ++work.multiplications, a.v * b.v; }
    friend Counted operator/(Counted a, Counted b) { return ++work.divisions, a.v / b.v; }
    friend Counted operator-(Counted a) { return -a.v; }
    friend auto operator<=>(Counted a, Counted b) = default;

    friend Counted MulAdd(Counted a, Counted b, Counted c) { return ++work.multiplications, a.v * b.v + c.v; }
    friend Counted NegMulAdd(Counted a, Counted b, Counted c) {
        return ++work.multiplications, c.v - a.v * b.v;
    }
    friend Counted Quotient(Counted n, Counted d) { return n / d; }
    friend Counted Reciprocal(Counted a) { return ++work.reciprocals, 1.0 / a.v; }
    friend Counted Root(Counted a) { return ++work.roots, std::sqrt(a.v); }
    friend Counted ReciprocalRoot(Counted a) { return ++work.inverse_roots, 1.0 / std::sqrt(a.v); }

    friend Counted select(bool mask, Counted a, Counted b) { return mask ? a : b; }
    friend Counted Abs(Counted a) { return std::fabs(a.v); }
    friend Counted Floor(Counted a) { return std::floor(a.v); }
    friend Counted ScaleByPowerOfTwo(Counted a, Counted e) { return ScaleByPowerOfTwo(a.v, e.v); }
    friend void SplitExponent(Counted a, Counted* m, Counted* e) { SplitExponent(a.v, &m->v, &e->v); }
    friend void Store(double* to, Counted a) { *to = a.v; }
    friend void StorePacked(std::uint64_t* to, Counted a, Counted b, Counted c, Counted d, int bits) {
        work.bytes += 4 * bits / 8;
        StorePacked(to, a.v, b.v, c.v, d.v, bits);
    }
};

}  // namespace

template <>
struct LanesOf<Counted> {
    static constexpr int kCount = 1;
    static Counted Load(const double* from) { return *from; }
    static Counted Index() { return 0.0; }
};

void CountRow(const _RenderData& frame, A_long y, PF_Pixel* out, Work* sum) {
    work = *sum;
    RowRenderer<Counted>(frame, y).Render(out);
    *sum = work;
}

}  // namespace zam
