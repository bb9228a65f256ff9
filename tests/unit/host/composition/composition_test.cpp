#include "host/composition/composition.h"

#include <gtest/gtest.h>

#include "host/composition/layer_index.h"
#include "host/composition/queries.h"

namespace zam::host {
namespace {

Layer layer(LayerId id, LayerKind kind = LayerKind::solid) {
    Layer made;
    made.id = id;
    made.kind = kind;
    made.in_frame = 10;
    made.out_frame = 20;
    return made;
}

TEST(Animated, HoldsBeforeBetweenAndAfterKeys) {
    Animated<double> value(7.0);
    EXPECT_EQ(value.at(-3), 7.0);
    value.keys = {{0, 10.0, Interpolation::linear}, {4, 20.0, Interpolation::hold}, {8, 40.0}};
    const double expected[][2] = {{-1, 10}, {0, 10}, {1, 12.5}, {4, 20}, {7.99, 20}, {8, 40}, {100, 40}};
    for (const auto& [frame, at] : expected) EXPECT_DOUBLE_EQ(value.at(frame), at) << frame;
}

TEST(Composition, ActiveCameraIsTheTopmostThatIsOnAndInRange) {
    Composition composition;
    composition.layers = {layer(1), layer(2, LayerKind::camera), layer(3, LayerKind::camera),
                          layer(4, LayerKind::camera)};
    composition.layers[1].out_frame = 15;
    composition.layers[2].video = false;
    const auto active = [&](double frame) {
        const Layer* camera = active_camera(composition, frame);
        return camera ? camera->id : 0;
    };
    EXPECT_EQ(active(9.99), 0);
    EXPECT_EQ(active(10), 2);  // the in point counts
    EXPECT_EQ(active(14.99), 2);
    EXPECT_EQ(active(15), 4);  // the out point does not; 3 is off
    EXPECT_EQ(active(20), 0);
}

TEST(Composition, LayerTimeStartsAtTheLayerAndStretches) {
    Layer late = layer(1);
    late.start_frame = 5;
    late.stretch = 200;
    EXPECT_DOUBLE_EQ(comp_frame(late, 3), 11.0);
    EXPECT_DOUBLE_EQ(layer_frame(late, 11), 3.0);
    late.stretch = -100;
    EXPECT_DOUBLE_EQ(layer_frame(late, comp_frame(late, 7)), 7.0);
    late.stretch = 0;  // makes no sense, but no division by zero either
    EXPECT_DOUBLE_EQ(layer_frame(late, 7), 2.0);
}

TEST(Composition, IndexFollowsChanges) {
    Composition composition;
    composition.layers = {layer(4), layer(9)};
    LayerIndex index;
    EXPECT_EQ(index.find(composition, 9), &composition.layers[1]);
    composition.layers.insert(composition.layers.begin(), layer(composition.unused_layer_id()));
    EXPECT_EQ(composition.layers[0].id, 10);
    EXPECT_EQ(index.find(composition, 9), &composition.layers[2]);
    EXPECT_EQ(index.find(composition, 10), &composition.layers[0]);
    composition.layers.erase(composition.layers.begin() + 1);
    EXPECT_EQ(index.find(composition, 4), nullptr);
    EXPECT_EQ(index.find(composition, 9), &composition.layers[1]);
}

}  // namespace
}  // namespace zam::host
