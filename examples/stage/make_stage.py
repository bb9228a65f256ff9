"""Builds a small concert stage in Blender and exports it as glTF with its lights, camera and animation.

    blender --background --factory-startup --python examples/stage/make_stage.py -- examples/stage/stage.gltf [plate.png]

Five moving heads hang from a slowly turning truss, three warm lanterns stand or float below them, and the
camera rides a boom around the stage. An output name in .glb gives one binary file, .gltf a pair with a .bin. A
second name renders what stands on the stage at frame 24, at half size, to lay the light over.

Blender's axes: x to the right, y away from the audience, z up; metres. The exporter turns them to y up.
"""

import math
import os
import sys

import bpy

FPS = 24
FIRST, LAST = 0, 47  # from 0, so that the exported times start at 0 s as well
PLATE_FRAME = 24

TRUSS_HEIGHT = 5.0

# name, place along the truss, colour, watts, cone (full angle, degrees), blend, then the keys of the two
# joints as (frame, degrees). "lean" swings the beam sideways, positive to the right; "tilt" brings it
# forward, towards the audience. The outer pair starts crossed and opens while the inner pair does the
# opposite; the middle keys are staggered so that the fan rolls across the truss instead of snapping.
HEADS = [
    ("Cyan", -4.0, (0.04, 0.70, 1.00), 60.0, 18.0, 0.25,
     [(0, 50), (22, 36), (47, -18)], [(0, 14), (47, 24)]),
    ("Violet", -2.0, (0.44, 0.15, 1.00), 110.0, 14.0, 0.60,
     [(0, -27), (20, 18), (47, 38)], [(0, 26), (47, 12)]),
    ("White", 0.0, (1.00, 0.80, 0.56), 32.0, 30.0, 0.85,
     [(0, -9), (24, 7), (47, -5)], [(0, 8), (26, 20), (47, 27)]),
    ("Magenta", 2.0, (1.00, 0.05, 0.46), 65.0, 22.0, 0.40,
     [(0, 25), (24, -20), (47, -37)], [(0, 22), (47, 15)]),
    ("Amber", 4.0, (1.00, 0.42, 0.05), 45.0, 26.0, 0.15,
     [(0, -48), (27, -34), (47, 17)], [(0, 17), (47, 28)]),
]

# name, colour, watts, keys as (frame, place); a single key means that the lantern stands still.
LANTERNS = [
    ("Bulb left", (1.00, 0.52, 0.18), 0.8, [(0, (-4.4, -2.2, 0.55))]),
    ("Bulb right", (1.00, 0.47, 0.14), 0.6, [(0, (3.7, -2.5, 0.40))]),
    ("Floating", (1.00, 0.60, 0.26), 1.1,
     [(0, (1.9, -1.4, 0.90)), (24, (0.8, -2.0, 1.55)), (47, (-0.9, -1.7, 1.25))]),
]


def add(name, data=None, parent=None, location=(0.0, 0.0, 0.0)):
    """Links a new object into the scene; without data it is an empty."""
    thing = bpy.data.objects.new(name, data)
    thing.location = location
    thing.parent = parent
    bpy.context.scene.collection.objects.link(thing)
    return thing


def animate(thing, path, index, keys):
    """Keys one component of a property; each key is (frame, value)."""
    for frame, value in keys:
        getattr(thing, path)[index] = value
        thing.keyframe_insert(path, index=index, frame=frame)


def degrees(keys, factor=1.0):
    return [(frame, math.radians(factor * angle)) for frame, angle in keys]


def box_mesh(name, boxes, material):
    """One mesh of axis-aligned boxes, each given by its centre and size."""
    corners, faces = [], []
    for centre, size in boxes:
        base = len(corners)
        for i in range(8):
            signs = [1 if i >> axis & 1 else -1 for axis in range(3)]
            corners.append([c + 0.5 * s * sign for c, s, sign in zip(centre, size, signs)])
        for face in ((0, 2, 3, 1), (4, 5, 7, 6), (0, 1, 5, 4), (2, 6, 7, 3), (0, 4, 6, 2), (1, 3, 7, 5)):
            faces.append([base + i for i in face])
    mesh = bpy.data.meshes.new(name)
    mesh.from_pydata(corners, [], faces)
    mesh.materials.append(material)
    return mesh


def metal(name, shade, roughness):
    material = bpy.data.materials.new(name)
    material.use_nodes = True
    shader = material.node_tree.nodes["Principled BSDF"].inputs
    shader["Base Color"].default_value = (shade, shade, shade, 1.0)
    shader["Metallic"].default_value = 1.0
    shader["Roughness"].default_value = roughness
    return material


def build_stage():
    floor = box_mesh("Floor", [((0, 0, -0.05), (10, 6, 0.1))], metal("Black floor", 0.02, 0.6))
    add("Floor", floor)


def build_truss():
    aluminium = metal("Aluminium", 0.7, 0.35)
    truss = add("Truss", location=(0, 0, TRUSS_HEIGHT))
    animate(truss, "rotation_euler", 2, degrees([(FIRST, -5), (LAST, 6)]))
    animate(truss, "rotation_euler", 1, degrees([(FIRST, 1.2), (22, -0.8), (LAST, 1.0)]))

    bars = [((0, y, z), (9.6, 0.05, 0.05)) for y in (-0.15, 0.15) for z in (0.15, 0.45)]
    bars += [((x, 0, 0.3), (0.04, 0.34, 0.34)) for x in (-4.8, -3, -1, 1, 3, 4.8)]
    add("Truss bars", box_mesh("Truss bars", bars, aluminium), truss)

    housing = box_mesh("Housing", [((0, 0, 0.14), (0.24, 0.24, 0.2))], metal("Housing", 0.05, 0.5))
    for name, x, colour, watts, cone, blend, lean, tilt in HEADS:
        yoke = add(f"{name} yoke", None, truss, (x, 0, 0))
        animate(yoke, "rotation_euler", 1, degrees(lean, -1.0))

        lamp = bpy.data.lights.new(name, "SPOT")
        lamp.color = colour
        lamp.energy = watts
        lamp.spot_size = math.radians(cone)
        lamp.spot_blend = blend
        head = add(name, lamp, yoke, (0, 0, -0.2))
        animate(head, "rotation_euler", 0, degrees(tilt, -1.0))
        add(f"{name} housing", housing, head)


def build_lanterns():
    for name, colour, watts, keys in LANTERNS:
        lamp = bpy.data.lights.new(name, "POINT")
        lamp.color = colour
        lamp.energy = watts
        lantern = add(name, lamp, None, keys[0][1])
        if len(keys) > 1:
            for axis in range(3):
                animate(lantern, "location", axis, [(frame, place[axis]) for frame, place in keys])


def build_camera():
    """The boom turns about the stage's centre (the arc), the camera slides along it (the dolly)."""
    boom = add("Camera boom", location=(0, 0, 1.8))
    animate(boom, "rotation_euler", 2, degrees([(FIRST, -9), (LAST, 7)]))

    lens = bpy.data.cameras.new("Camera")
    lens.lens = 34.0
    lens.clip_start, lens.clip_end = 0.1, 100.0
    camera = add("Camera", lens, boom)
    camera.rotation_euler[0] = math.radians(90 + 3.8)
    animate(camera, "location", 1, [(FIRST, -14.6), (LAST, -13.4)])
    bpy.context.scene.camera = camera


def export(path):
    binary = path.lower().endswith(".glb")
    bpy.ops.export_scene.gltf(
        filepath=os.path.abspath(path),
        export_format="GLB" if binary else "GLTF_SEPARATE",
        export_lights=True,
        convert_lighting_mode="SPEC",  # watts to candela
        export_cameras=True,
        export_yup=True,
        export_texcoords=False,
        export_animations=True,
        export_frame_range=True,
        export_force_sampling=True,
        export_nla_strips=False,  # every object's action goes into one animation
        export_nla_strips_merged_animation_name="Show",
    )


def render_plate(scene, path):
    """What stands on the stage at one frame, lit by the same lights: to lay their beams over."""
    world = bpy.data.worlds.new("Dusk")
    world.use_nodes = True
    world.node_tree.nodes["Background"].inputs["Color"].default_value = (0.0016, 0.002, 0.0035, 1.0)
    scene.world = world
    floor = bpy.data.materials["Black floor"].node_tree.nodes["Principled BSDF"].inputs
    floor["Base Color"].default_value = (0.3, 0.3, 0.3, 1.0)  # that light on it is seen
    floor["Metallic"].default_value = 0.0
    scene.render.engine = "CYCLES"
    scene.cycles.samples = 400
    scene.cycles.use_denoising = False
    scene.view_settings.view_transform = "Standard"
    scene.view_settings.exposure = 3.0
    scene.render.resolution_percentage = 50
    scene.render.dither_intensity = 0.0
    scene.render.image_settings.color_mode = "RGB"
    scene.render.image_settings.compression = 100
    scene.render.filepath = os.path.abspath(path)
    scene.frame_set(PLATE_FRAME)
    bpy.ops.render.render(write_still=True)


def main():
    arguments = sys.argv[sys.argv.index("--") + 1:] if "--" in sys.argv else []
    if len(arguments) not in (1, 2):
        sys.exit("usage: blender --background --python make_stage.py -- OUTPUT.gltf|OUTPUT.glb [PLATE.png]")
    path, plate = (*arguments, None)[:2]

    bpy.ops.wm.read_factory_settings(use_empty=True)
    scene = bpy.context.scene
    scene.name = "Stage"
    scene.render.fps = FPS
    scene.render.resolution_x, scene.render.resolution_y = 1920, 1080
    scene.frame_start, scene.frame_end = FIRST, LAST

    build_stage()
    build_truss()
    build_lanterns()
    build_camera()
    scene.frame_set(FIRST)
    export(path)
    if plate:
        render_plate(scene, plate)


main()
