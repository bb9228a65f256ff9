// tools/export-comp.jsx, run against a mock of After Effects, and `zam` on what it wrote.
//
//     export_test.js PROGRAM ROOT
"use strict";

const acorn = require("acorn");
const assert = require("assert");
const {spawnSync} = require("child_process");
const fs = require("fs");
const os = require("os");
const path = require("path");
const {Host} = require("./after_effects.js");

const [PROGRAM, ROOT] = process.argv.slice(2);
const SCRIPT = fs.readFileSync(path.join(ROOT, "tools/export-comp.jsx"), "utf8");
const FOLDER = fs.mkdtempSync(path.join(os.tmpdir(), "zam-export-"));
const OUT = path.join(FOLDER, "a scene.json");

function zam(...words) {
  const run = spawnSync(PROGRAM, words, {encoding: "utf8"});
  assert.strictEqual(run.status, 0, `zam ${words.join(" ")}: ${run.stderr}`);
  return run.stdout;
}
const CONTROLS = JSON.parse(zam("controls", "--json"));

// The PNG files of a scene, by name.
function render(scene, ...options) {
  const folder = fs.mkdtempSync(path.join(FOLDER, "frames-"));
  zam("render", scene, "-o", path.join(folder, "#.png"), "--quiet", ...options);
  return Object.fromEntries(fs.readdirSync(folder).sort().map(name => [name, fs.readFileSync(path.join(folder, name))]));
}

function host(more = {}) {
  fs.rmSync(OUT, {force: true});
  const {comp, ...rest} = more;
  return new Host({comp: {width: 64, height: 36, frameRate: 24, frames: 8, workArea: [0, 7], ...comp}, controls: CONTROLS,
    saveAs: OUT, ...rest});
}

// Runs the script; the scene it wrote.
function exported(made) {
  made.run(SCRIPT);
  assert.ok(fs.existsSync(OUT), made.alerts.join("\n"));
  return JSON.parse(fs.readFileSync(OUT, "utf8"));
}

// ---- Animation, as functions of the frame ----

function between(keys, shape = part => part) {
  const mix = (a, b, t) => Array.isArray(a) ? a.map((each, i) => mix(each, b[i], t)) : a + (b - a) * t;
  return frame => {
    const [[first, from], [last, to]] = keys;
    return mix(from, to, shape(Math.min(Math.max((frame - first) / (last - first), 0), 1)));
  };
}
const eased = keys => between(keys, part => part * part * (3 - 2 * part));
const switched = (at, before, after) => frame => frame < at ? before : after;

// The composition of hand_written.json, with what the script must pass over besides.
function composition() {
  const made = host({comp: {frameRate: 23.976, workArea: [1, 6], pixelAspect: 1, displayStartTime: 100 / 23.976}});
  const frame = made.comp.frameDuration;
  const reach = made.add({kind: "light", type: "spot", name: "Zam Reach [Wall]", intensity: 0, point_of_interest: [0, 0, 0],
    switches: {enabled: false, shy: true, locked: true}});
  const haze = made.add({kind: "solid", name: "Haze", switches: {threeDLayer: false, startTime: -3 * frame}});
  const camera = made.add({kind: "camera", name: "Camera", rotation_z: 7, point_of_interest: [0.4, 0.2, 3.3],
    position: between([[0, [3.3, -2.1, -80.7]], [7, [-6.2, 1.9, -71.3]]]), zoom: between([[2, 71.3], [5, 64.9]])});
  made.add({kind: "text", name: "Title", switches: {threeDLayer: false}});
  made.add({kind: "light", type: "spot", name: "Beam", point_of_interest: [40.2, 33.7, 19.9], color: [1, 0.4, 0.2, 1],
    position: eased([[0, [9.3, 3.1, 8.7]], [6, [21.7, 7.3, -4.1]]]), intensity: eased([[1, 40], [7, 130]]), cone_angle: 37,
    cone_feather: 60, shadow_darkness: 85});
  const bulb = made.add({kind: "light", type: "point", name: "Bulb", position: [12.2, 4.4, 9.1], shadow_diffusion: 3,
    intensity: f => [20, 20, 20, 60, 35, 80, 50, 50][f], color: between([[0, [1, 0.2, 0.4, 1]], [7, [0.2, 0.6, 1, 1]]])});
  made.add({kind: "light", type: "spot", name: "Beam", position: [57.9, 2.2, 31.3], orientation: [65, 331, 12],
    rotation_x: -21, rotation_y: between([[0, -40], [7, -13]]), rotation_z: 5, cone_angle: 24, cone_feather: 0, color: [0.3, 0.6, 1, 1],
    switches: {inPoint: 2 * frame, outPoint: 5 * frame}});
  made.add({kind: "light", type: "spot", name: "Off", position: [31, 8, 4], point_of_interest: [31, 30, 4],
    switches: {enabled: false}});
  made.add({kind: "light", type: "ambient", name: "Fill", intensity: 10});
  made.add({kind: "light", type: "parallel", name: "Sun", position: [0, 0, -50], point_of_interest: [30, 20, 0]});
  made.add({kind: "light", type: "environment", name: "Dome"});
  const crane = made.add({kind: "null", name: "Crane", position: [32.1, 17.3, 2.2], scale: [100, 90, 110],
    rotation_y: between([[0, -8], [7, 14]])});
  const rig = made.add({kind: "null", name: "Rig", anchor: [5, 5, 0], position: [10, 20, -6], orientation: [10, 20, 30]});
  const wall = made.add({kind: "solid", name: "Wall", anchor: [15, 20, 0], position: [34.3, 2.1, 6.7], rotation_x: 11,
    rotation_y: between([[0, 73], [7, 49]]), switches: {width: 30, height: 40}});
  [camera.parent, bulb.parent, rig.parent, reach.parent] = [crane, rig, wall, wall];
  haze.property("ADBE Effect Parade").properties.push(made.effect({
    13: switched(4, 2, 4), 15: between([[0, 70], [7, 300]]), 2: 4, 6: 21, 9: 4.5, 16: 1, 17: 55, 18: 3, 7: 4, 19: 1,
    20: wall.index, 28: switched(5, 1, 0), 25: 5, 27: between([[0, 1], [7, 1.7]]),
  }));
  return made;
}

// A PNG without the remarks that name the scene's file.
function picture(png) {
  const chunks = [png.subarray(0, 8)];
  for (let at = 8; at < png.length;) {
    const size = 12 + png.readUInt32BE(at);
    if (png.toString("latin1", at + 4, at + 8) !== "tEXt") chunks.push(png.subarray(at, at + size));
    at += size;
  }
  return Buffer.concat(chunks);
}

// A light and the haze, for what is not about frames.
function small(more) {
  const made = host(more);
  made.haze = made.add({kind: "solid", name: "Haze", effects: [made.effect()], switches: {threeDLayer: false}});
  made.light = made.add({kind: "light", type: "point", name: "Bulb", position: [32, 18, 0]});
  return made;
}

const TESTS = {
  "the script is ES3"() {
    acorn.parse(SCRIPT, {ecmaVersion: 3, allowReserved: "never"});
  },

  "what is exported renders to the same frames as what is written by hand"() {
    const scene = exported(composition());
    for (const options of [[], ["--depth", "16"]]) {
      const theirs = render(OUT, ...options), ours = render(path.join(ROOT, "tests/export/hand_written.json"), ...options);
      assert.deepStrictEqual(Object.keys(theirs), ["1.png", "2.png", "3.png", "4.png", "5.png", "6.png"]);
      for (const name of Object.keys(ours)) assert.ok(picture(ours[name]).equals(picture(theirs[name])), `${name} ${options} differs`);
      const distinct = new Set(Object.values(ours).map(each => picture(each).toString("base64")));
      assert.strictEqual(distinct.size, 6, "nothing moves");
    }
    const layer = name => scene.layers.find(each => each.name === name);
    assert.deepStrictEqual(scene.layers.map(each => each.name), ["Zam Reach [Wall]", "Haze", "Camera", "Beam", "Bulb",
      "Beam", "Off", "Fill", "Sun", "Crane", "Rig", "Wall"]);
    assert.deepStrictEqual(layer("Bulb").intensity, {samples: [20, 60, 35, 80, 50], from: 2});
    assert.strictEqual(layer("Bulb").parent, layer("Rig").id);
    assert.ok(layer("Bulb").world_matrix.samples, "its grandparent moves");
    assert.strictEqual(layer("Off").world_matrix.length, 12, "nothing of it moves");
    assert.strictEqual(scene.effect.controls["#6"], 21);
    assert.strictEqual(Object.keys(scene.effect.controls).length, CONTROLS.filter(each => !/group/.test(each.kind)).length);
    assert.match(scene.note, /"Dome" is a light of a type/);
    assert.match(scene.note, /Frame 0 of the scene is shown as frame 100/);
  },

  "the composition is left as it was, also when an expression fails"() {
    for (const failing of ["", "toWorld(["]) {
      const made = small();
      Object.assign(made, {failing});
      made.light.selected = true;
      made.run(SCRIPT);
      assert.deepStrictEqual(made.layers, [made.haze, made.light]);
      assert.deepStrictEqual([made.items.length, made.openUndoGroups], [0, 0]);
      assert.ok(made.light.selected);
      assert.strictEqual(fs.existsSync(OUT), failing === "");
      assert.match(made.alerts[0], failing ? /not exported.*toWorld/ : /^Written: /);
    }
  },

  "whatever cannot be written is told, and an older file survives"() {
    for (const [writing, message] of [["forbidden", /Allow Scripts to Write Files/], ["full", /cannot be written/]]) {
      const made = small({writing});
      fs.writeFileSync(OUT, "older");
      made.run(SCRIPT);
      assert.match(made.alerts[0], message);
      assert.strictEqual(fs.readFileSync(OUT, "utf8"), "older");
      assert.ok(!fs.existsSync(OUT + ".part"));
    }
    const again = small();
    fs.writeFileSync(OUT, "older");
    assert.ok(exported(again).layers);
    const without = small();
    without.comp = null;
    without.run(SCRIPT);
    assert.match(without.alerts[0], /no active composition/);
    const cancelled = small();
    cancelled.saveAs = null;
    cancelled.run(SCRIPT);
    assert.deepStrictEqual(cancelled.alerts, []);
  },

  "the effect on a selected layer counts, then the topmost"() {
    for (const selected of [false, true]) {
      const made = small();
      const other = made.add({kind: "solid", name: "Other", switches: {selected},
        effects: [made.effect({25: 6}, {enabled: false}), made.effect({25: 1})]});
      const scene = exported(made);
      assert.strictEqual(scene.effect.layer, (selected ? other : made.haze).id);
      assert.strictEqual(scene.effect.controls["#25"], selected ? 6 : 3);
      assert.match(scene.note, /Of 3 effects/);
      assert.strictEqual(/switched off/.test(scene.note), selected);
      render(OUT);
    }
    const bare = host();
    bare.add({kind: "light", type: "point", name: "Bulb"});
    assert.strictEqual(exported(bare).effect, undefined);
    assert.match(bare.alerts[0], /no effect "Zam"/);
    render(OUT);
  },

  "odd names, times, values and older versions"() {
    const made = small({comp: {pixelAspect: 0.9090909, frameRate: 29.9700012207, name: "a/b \u{1F4A1}"}});
    const frame = made.comp.frameDuration;
    const plain = "\"\\ \n\u00e9 \u{1F4A1} ", name = plain + "\uD83D";  // and half a character
    const flat = made.add({kind: "text", name: "Flat", switches: {threeDLayer: false, solo: true}});
    const spot = made.add({kind: "light", type: "spot", name, color: [1.5, -0.25, 1 / 3, 1], shadow_diffusion: -1,
      switches: {inPoint: 6.5 * frame, outPoint: 2 * frame, stretch: -50, startTime: 7 * frame}});
    spot.parent = flat;
    made.haze.property("ADBE Effect Parade").properties[0] = made.effect({20: flat.index, 27: 66 / 65536});
    for (const each of made.layers) delete each.id;
    const scene = exported(made);
    const layer = scene.layers[2];
    assert.deepStrictEqual(scene.layers.map(each => each.id), [1, 2, 4]);
    assert.strictEqual(layer.name, plain + "\uFFFD");
    assert.deepStrictEqual([layer.in, layer.out, layer.start, layer.stretch, layer.parent], [2, 6.5, 7, 50, undefined]);
    assert.deepStrictEqual([layer.color, layer.shadow_diffusion], [[1, 0, 0.333333333333333], 0]);
    assert.deepStrictEqual([scene.frame_rate, scene.pixel_aspect, scene.effect.controls["#20"]], [29.97, 0.909091, 0]);
    for (const word of [/runs backwards/, /"Flat" is soloed/, /"Flat" is chosen in the effect/])
      assert.match(scene.note, word);
    render(OUT);
  },
};

let failed = 0;
for (const [name, test] of Object.entries(TESTS)) {
  try {
    test();
    console.log(`ok    ${name}`);
  } catch (error) {
    ++failed;
    console.log(`FAIL  ${name}\n${error.stack}`);
  }
}
fs.rmSync(FOLDER, {recursive: true});
process.exit(failed ? 1 : 0);
