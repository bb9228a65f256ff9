#include "host/composition/transforms.h"

namespace zam::host {
namespace {

// Turns z to the direction d = (to - from) / |to - from| without roll: row 2 is d, row 0 is horizontal. This
// is Rx(-asin d.y) Ry(atan2(d.x, d.z)), written without angles. Coinciding points turn nothing.
Matrix facing(const Vec3& from, const Vec3& to) {
    Matrix turn;
    const double x = to.x - from.x, y = to.y - from.y, z = to.z - from.z;
    const double length = std::hypot(x, y, z);
    if (!(length > 0.0)) return turn;
    const double dx = x / length, dy = y / length, dz = z / length;
    const double level = std::hypot(dx, dz);  // cosine of the pitch
    const double sin_yaw = level > 0.0 ? dx / level : 0.0;
    const double cos_yaw = level > 0.0 ? dz / level : 1.0;
    const Vec3 rows[3] = {{cos_yaw, 0.0, -sin_yaw},
                          {-dy * sin_yaw, level, -dy * cos_yaw},
                          {level * sin_yaw, dy, level * cos_yaw}};
    for (int row = 0; row < 3; ++row) {
        turn.at[row][0] = rows[row].x;
        turn.at[row][1] = rows[row].y;
        turn.at[row][2] = rows[row].z;
    }
    return turn;
}

bool may_face_a_point(const Layer& layer) {
    if (layer.kind == LayerKind::camera) return true;
    return layer.kind == LayerKind::light &&
           (layer.light.type == LightType::spot || layer.light.type == LightType::parallel);
}

}  // namespace

Matrix parent_from_layer(const Layer& layer, double frame) {
    const Transform& t = layer.transform;
    Matrix m;
    const bool is_light = layer.kind == LayerKind::light;
    if (is_light && layer.light.type == LightType::ambient) return m;  // ambient light stands nowhere

    const bool has_image = !is_light && layer.kind != LayerKind::camera;
    const bool flat = has_image && !layer.three_d;
    if (has_image) {
        Vec3 anchor = t.anchor.at(frame), scale = t.scale.at(frame);
        if (flat) {
            anchor.z = 0.0;
            scale.z = 100.0;
        }
        m.translate({-anchor.x, -anchor.y, -anchor.z});
        m.scale({scale.x / 100.0, scale.y / 100.0, scale.z / 100.0});
    }
    m.rotate_z(t.rotation_z.at(frame));
    Vec3 position = t.position.at(frame);
    if (flat) {
        position.z = 0.0;
        m.translate(position);
        return m;
    }
    m.rotate_y(t.rotation_y.at(frame));
    m.rotate_x(t.rotation_x.at(frame));
    const Vec3 orientation = t.orientation.at(frame);
    m.rotate_z(orientation.z);
    m.rotate_y(orientation.y);
    m.rotate_x(orientation.x);
    if (t.point_of_interest && may_face_a_point(layer)) {
        m = m * facing(position, t.point_of_interest->at(frame));
    }
    m.translate(position);
    return m;
}

}  // namespace zam::host
