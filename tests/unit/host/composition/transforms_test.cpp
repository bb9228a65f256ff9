#include "host/composition/transforms.h"

#include <gtest/gtest.h>

#include <functional>

namespace zam::host {
namespace {

Vec3 row(const Matrix& m, int r) { return {m.at[r][0], m.at[r][1], m.at[r][2]}; }

Vec3 through(const Vec3& p, const Matrix& m) {
    const auto column = [&](int c) {
        return p.x * m.at[0][c] + p.y * m.at[1][c] + p.z * m.at[2][c] + m.at[3][c];
    };
    return {column(0), column(1), column(2)};
}

void expect_near(const Vec3& got, const Vec3& expected, double tolerance, const std::string& what) {
    EXPECT_NEAR(got.x, expected.x, tolerance) << what;
    EXPECT_NEAR(got.y, expected.y, tolerance) << what;
    EXPECT_NEAR(got.z, expected.z, tolerance) << what;
}

Layer solid(LayerId id, LayerId parent = 0) {
    Layer layer;
    layer.id = id;
    layer.parent = parent;
    return layer;
}

Layer spot(const Vec3& position, const Vec3& target) {
    Layer light;
    light.id = 1;
    light.kind = LayerKind::light;
    light.transform.position = position;
    light.transform.point_of_interest = target;
    return light;
}

TEST(Transforms, PointsGoWhereEachPropertyTakesThem) {
    const auto turn = [](auto property) { return [=](Layer& l) { l.transform.*property = 90.0; }; };
    const auto turn_all = [](Layer& l) {
        l.transform.rotation_x = l.transform.rotation_y = l.transform.rotation_z = 90.0;
    };
    const auto orient = [](Layer& l) {
        l.transform.rotation_x = 90.0;
        l.transform.orientation = Vec3{0, 90, 0};
    };
    const auto place = [](Layer& l) {
        l.transform.anchor = Vec3{10, 0, 0};
        l.transform.scale = Vec3{200, 50, 100};
        l.transform.position = Vec3{5, 6, 7};
    };
    const auto flatten = [](Layer& l) {
        l.three_d = false;
        l.transform.anchor = Vec3{0, 0, 9};
        l.transform.position = Vec3{1, 2, 9};
        l.transform.scale = Vec3{100, 100, 900};
        l.transform.rotation_x = l.transform.rotation_y = 45.0;
        l.transform.rotation_z = 90.0;
    };
    const auto make_camera = [](Layer& l) {
        l.kind = LayerKind::camera;
        l.transform.anchor = Vec3{10, 10, 10};
        l.transform.scale = Vec3{500, 500, 500};
    };
    struct Case {
        const char* what;
        std::function<void(Layer&)> set;
        Vec3 point, expected;
    };
    const Case cases[] = {
        {"turning about z takes x to y", turn(&Transform::rotation_z), {1, 0, 0}, {0, 1, 0}},
        {"turning about x takes y to z", turn(&Transform::rotation_x), {0, 1, 0}, {0, 0, 1}},
        {"turning about y takes z to x", turn(&Transform::rotation_y), {0, 0, 1}, {1, 0, 0}},
        {"z before y before x: to y, stays, to z", turn_all, {1, 0, 0}, {0, 0, 1}},
        {"rotations before the orientation: to z, then to x", orient, {0, 1, 0}, {1, 0, 0}},
        {"anchor, then scale, then position", place, {11, 4, 1}, {7, 8, 8}},
        {"a flat layer turns about z only and has no depth", flatten, {1, 0, 3}, {1, 3, 3}},
        {"cameras and lights have neither anchor nor scale", make_camera, {1, 2, 3}, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        Layer layer = solid(1);
        c.set(layer);
        expect_near(through(c.point, parent_from_layer(layer, 0)), c.expected, 1e-12, c.what);
    }
}

TEST(Transforms, FacingAPoint) {
    struct Case {
        const char* what;
        Vec3 target;
        LightType type;
        Vec3 x_axis, direction;
    };
    const Case cases[] = {
        {"straight behind", {0, 0, 50}, LightType::spot, {1, 0, 0}, {0, 0, 1}},
        {"in front of it", {0, 0, -50}, LightType::spot, {-1, 0, 0}, {0, 0, -1}},
        {"to the right", {50, 0, 0}, LightType::parallel, {0, 0, -1}, {1, 0, 0}},
        {"straight down", {0, 50, 0}, LightType::spot, {1, 0, 0}, {0, 1, 0}},
        {"straight up", {0, -50, 0}, LightType::spot, {1, 0, 0}, {0, -1, 0}},
        {"a stage from above", {0, 40, 9}, LightType::spot, {1, 0, 0}, {0, 40.0 / 41, 9.0 / 41}},
        {"where it stands", {0, 0, 0}, LightType::spot, {1, 0, 0}, {0, 0, 1}},
        {"a point light faces nothing", {50, 0, 0}, LightType::point, {1, 0, 0}, {0, 0, 1}},
        {"an ambient light stands nowhere", {50, 0, 0}, LightType::ambient, {1, 0, 0}, {0, 0, 1}},
    };
    for (const Case& c : cases) {
        Layer light = spot({0, 0, 0}, c.target);
        light.light.type = c.type;
        const Matrix m = parent_from_layer(light, 0);
        expect_near(row(m, 0), c.x_axis, 1e-12, c.what);
        expect_near(row(m, 2), c.direction, 1e-12, c.what);
    }
}

// A reach light sits in its parent's corner and takes over its axes, scale and all.
TEST(Transforms, ChildInTheCornerOfAScaledAndTurnedParent) {
    Composition composition;
    composition.layers = {spot({0, 0, 0}, {0, 0, 50}), solid(2)};  // looks along the parent's z axis
    composition.layers[0].parent = 2;
    Transform& parent = composition.layers[1].transform;
    parent.anchor = Vec3{50, 0, 0};
    parent.scale = Vec3{100, 100, 300};
    parent.rotation_y = 90.0;  // x to -z, z to x
    parent.position = Vec3{200, 100, 0};
    const Matrix m = world_from_layer(composition, composition.layers[0], 0);
    expect_near(row(m, 3), {200, 100, 50}, 1e-12, "the corner is 50 left of the anchor, turned");
    expect_near(row(m, 2), {3, 0, 0}, 1e-12, "the parent's z axis with its scale");

    composition.layers[0].transform.point_of_interest.reset();
    composition.layers[0].transform.position = Vec3{0, 0, 10};
    composition.layers[0].transform.rotation_x = 90.0;  // y to z, z to -y: in the parent's space
    const Matrix turned = world_from_layer(composition, composition.layers[0], 0);
    expect_near(row(turned, 3), {230, 100, 50}, 1e-12, "10 along the parent's z axis");
    expect_near(row(turned, 1), {3, 0, 0}, 1e-12, "first its own turn, then the parent's");

    composition.layers.push_back(solid(3));
    composition.layers[1].parent = 3;
    composition.layers[2].transform.position = Vec3{1, 2, 3};
    const Matrix carried = world_from_layer(composition, composition.layers[0], 0);
    expect_near(row(carried, 3), {231, 102, 53}, 1e-12, "and the parent's parent");
}

TEST(Transforms, AMatrixToTheWorldEndsTheWayUp) {
    Composition composition;
    composition.layers = {solid(1, 2), solid(2, 3), solid(3)};
    composition.layers[0].transform.position = Vec3{0, 0, 5};
    Matrix world;
    world.rotate_y(90.0);  // z to x
    world.translate({100, 0, 0});
    composition.layers[1].world = world;
    composition.layers[1].transform.position = composition.layers[2].transform.position = Vec3{7, 7, 7};
    EXPECT_EQ(world_from_layer(composition, composition.layers[1], 0), world);
    expect_near(row(world_from_layer(composition, composition.layers[0], 0), 3), {105, 0, 0}, 1e-12, "child");
}

TEST(Transforms, CirclesAndMissingParentsEnd) {
    Composition composition;
    composition.layers = {solid(1, 2), solid(2, 1), solid(3, 3), solid(4, 99)};
    for (Layer& layer : composition.layers) layer.transform.position = Vec3{1, 0, 0};
    for (const Layer& layer : composition.layers) {
        EXPECT_LE(world_from_layer(composition, layer, 0).at[3][0], 5.0) << layer.id;
    }
    EXPECT_DOUBLE_EQ(world_from_layer(composition, composition.layers[3], 0).at[3][0], 1.0);
}

}  // namespace
}  // namespace zam::host
