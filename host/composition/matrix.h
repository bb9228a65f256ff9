#pragma once
// 4 x 4 matrices for points as row vectors: p' = p * M, so a * b applies a first. Rows 0 to 2 are the images
// of the axes, row 3 is the translation; the last column stays (0, 0, 0, 1).
#include <cmath>
#include <numbers>

#include "host/composition/animated.h"

namespace zam::host {

struct Matrix {
    double at[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    friend bool operator==(const Matrix&, const Matrix&) = default;

    // In-place steps: each stands for "then do this", as a matrix multiplied on the right.
    void translate(const Vec3& by) {
        at[3][0] += by.x;
        at[3][1] += by.y;
        at[3][2] += by.z;
    }
    void scale(const Vec3& by) {
        for (auto& row : at) {
            row[0] *= by.x;
            row[1] *= by.y;
            row[2] *= by.z;
        }
    }
    // Positive angles turn y towards z (x axis), z towards x (y axis), x towards y (z axis).
    void rotate_x(double degrees) { rotate(1, 2, degrees); }
    void rotate_y(double degrees) { rotate(2, 0, degrees); }
    void rotate_z(double degrees) { rotate(0, 1, degrees); }

  private:
    void rotate(int from, int to, double degrees) {
        if (degrees == 0.0) return;  // most angles of most layers
        const double angle = degrees * (std::numbers::pi / 180.0);
        const double c = std::cos(angle), s = std::sin(angle);
        for (auto& row : at) {
            const double u = row[from], v = row[to];
            row[from] = u * c - v * s;
            row[to] = u * s + v * c;
        }
    }
};

// Straight from entry to entry: for samples that lie close together.
inline Matrix mix(const Matrix& a, const Matrix& b, double t) {
    Matrix between;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            between.at[row][column] = mix(a.at[row][column], b.at[row][column], t);
    }
    return between;
}

inline Matrix operator*(const Matrix& a, const Matrix& b) {
    Matrix product;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) sum += a.at[row][k] * b.at[k][column];
            product.at[row][column] = sum;
        }
    }
    return product;
}

}  // namespace zam::host
