#pragma once
// Light along a ray as a sum over equal steps, each step taken at its middle.

namespace zam::bench {

// "Natural" of either kind, camera space; colours and intensity left out.
struct MarchedPoint {
    double x, y, z;
    double soft_k_sq, strength;
};
struct MarchedSpot {
    double x, y, z;
    double axis_x, axis_y, axis_z;  // unit length
    double cos_outer, cos_inner;
    double start, reach;
    double strength;
};

// Along the ray (dx, dy, 1) from depth `from` to depth `to`.
double MarchPoint(const MarchedPoint& light, double dx, double dy, double from, double to, int steps);
float MarchPoint(const MarchedPoint& light, float dx, float dy, float from, float to, int steps);
double MarchSpot(const MarchedSpot& light, double dx, double dy, double from, double to, int steps);
float MarchSpot(const MarchedSpot& light, float dx, float dy, float from, float to, int steps);

}  // namespace zam::bench
