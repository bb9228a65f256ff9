// As much of After Effects' object model as tools/export-comp.jsx asks for, over layers described as plain objects.
//
// Matrices are computed here from positions and angles, expressions are run, and scripts live in a world with nothing
// newer than ECMAScript 3 in it. Values asked for before expressions come out as NaN.
"use strict";

const fs = require("fs");
const path = require("path");
const vm = require("vm");

const LightType = {PARALLEL: 4412, SPOT: 4413, POINT: 4414, AMBIENT: 4415, ENVIRONMENT: 4416};
const AutoOrientType = {NO_AUTO_ORIENT: 4212, ALONG_PATH: 4213, CAMERA_OR_POINT_OF_INTEREST: 4214};
const PropertyValueType = {NO_VALUE: 6412, ThreeD: 6414, OneD: 6417, COLOR: 6418, CUSTOM_VALUE: 6419, LAYER_INDEX: 6421};

// ---- An ES3 world ----

const ES3 = {
  "": `Object Function Array String Boolean Number Date RegExp Error EvalError RangeError ReferenceError SyntaxError
       TypeError URIError Math NaN Infinity undefined parseInt parseFloat isNaN isFinite eval encodeURI decodeURI encodeURIComponent
       decodeURIComponent globalThis`,
  "Object": "prototype length name", "Array": "prototype length name", "Number": `prototype length name MAX_VALUE MIN_VALUE
       NaN NEGATIVE_INFINITY POSITIVE_INFINITY`,
  "String": "prototype length name fromCharCode", "Date": "prototype length name parse UTC",
  "Math": `E LN10 LN2 LOG2E LOG10E PI SQRT1_2 SQRT2 abs acos asin atan atan2 ceil cos exp floor log max min pow random round
       sin sqrt tan`,
  "Object.prototype": "constructor toString toLocaleString valueOf hasOwnProperty isPrototypeOf propertyIsEnumerable",
  "Function.prototype": "constructor length name arguments caller toString apply call",
  "Array.prototype": `constructor length toString toLocaleString concat join pop push reverse shift slice sort splice
       unshift`,
  "String.prototype": `constructor length toString valueOf charAt charCodeAt concat indexOf lastIndexOf localeCompare match
       replace search slice split substring toLowerCase toLocaleLowerCase toUpperCase toLocaleUpperCase`,
  "Number.prototype": "constructor toString toLocaleString valueOf toFixed toExponential toPrecision",
};

function es3World() {
  const world = vm.createContext({});
  for (const [owner, kept] of Object.entries(ES3)) {
    const target = owner || "globalThis";
    const names = Object.getOwnPropertyNames(vm.runInContext(target, world));
    for (const name of names.filter(each => !kept.split(/\s+/).includes(each)))
      vm.runInContext(`delete ${target}.${name}`, world);
  }
  return world;
}

// ---- Matrices, for row vectors ----

function times(a, b) {
  return a.map(row => [0, 1, 2, 3].map(c => row.reduce((sum, value, k) => sum + value * b[k][c], 0)));
}
const moved = ([x, y, z]) => [[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 0], [x, y, z, 1]];
const scaled = ([x, y, z]) => [[x / 100, 0, 0, 0], [0, y / 100, 0, 0], [0, 0, z / 100, 0], [0, 0, 0, 1]];
function turned(axis, degrees) {
  const c = Math.cos(degrees * Math.PI / 180), s = Math.sin(degrees * Math.PI / 180);
  if (axis === "x") return [[1, 0, 0, 0], [0, c, s, 0], [0, -s, c, 0], [0, 0, 0, 1]];
  if (axis === "y") return [[c, 0, -s, 0], [0, 1, 0, 0], [s, 0, c, 0], [0, 0, 0, 1]];
  return [[c, s, 0, 0], [-s, c, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]];
}
function facing(from, to) {
  const [x, y, z] = to.map((value, i) => value - from[i]);
  if (x === 0 && y === 0 && z === 0) return moved([0, 0, 0]);
  const yaw = Math.atan2(x, z), pitch = -Math.asin(y / Math.hypot(x, y, z));
  return times(turned("x", pitch * 180 / Math.PI), turned("y", yaw * 180 / Math.PI));
}

// ---- Properties, layers, the composition ----

// A value is constant, or a function of the frame.
class Property {
  constructor(host, matchName, value, type = PropertyValueType.OneD) {
    Object.assign(this, {host, matchName, value, propertyValueType: type, expressionError: ""});
  }
  get isTimeVarying() { return typeof this.value === "function"; }
  frame(frame) { return this.isTimeVarying ? this.value(frame) : this.value; }
  valueAtTime(time, preExpression) {
    if (preExpression !== false) return NaN;
    return this.host.given(this.frame(Math.round(time / this.host.comp.frameDuration * 1e6) / 1e6));
  }
  set expression(text) {
    const evaluate = new Function("thisComp", `return ${text};`);
    this.value = frame => evaluate(this.host.expressionView(frame));
    this.expressionError = this.host.failing && text.includes(this.host.failing) ? "After Effects warning: no" : "";
  }
}

class Group {
  constructor(matchName, properties, more = {}) { Object.assign(this, {matchName, properties}, more); }
  get numProperties() { return this.properties.length; }
  property(key) {
    if (typeof key === "number") return this.properties[key - 1];
    return this.properties.find(each => each.matchName === key) || null;
  }
}

const TRANSFORM = {
  anchor: "ADBE Anchor Point", position: "ADBE Position", scale: "ADBE Scale", orientation: "ADBE Orientation",
  rotation_x: "ADBE Rotate X", rotation_y: "ADBE Rotate Y", rotation_z: "ADBE Rotate Z",
};
const LIGHT = {
  intensity: "ADBE Light Intensity", color: "ADBE Light Color", cone_angle: "ADBE Light Cone Angle",
  cone_feather: "ADBE Light Cone Feather 2", shadow_darkness: "ADBE Light Shadow Darkness",
  shadow_diffusion: "ADBE Light Shadow Diffusion",
};
const LIGHT_DEFAULTS = {intensity: 100, color: [1, 1, 1, 1], cone_angle: 90, cone_feather: 50, shadow_darkness: 100,
  shadow_diffusion: 0};
const MATCH_NAMES = {camera: "ADBE Camera Layer", light: "ADBE Light Layer", text: "ADBE Text Layer"};

class Layer {
  constructor(host, told) {
    const isImage = told.kind !== "camera" && told.kind !== "light";
    Object.assign(this, {
      matchName: MATCH_NAMES[told.kind] || "ADBE AV Layer", nullLayer: told.kind === "null", threeDLayer: isImage,
      parent: null,
      inPoint: 0, outPoint: host.comp.duration, startTime: 0, stretch: 100, enabled: true, solo: false, shy: false,
      locked: false, selected: false, width: host.comp.width, height: host.comp.height,
      autoOrient: AutoOrientType.NO_AUTO_ORIENT,
    }, told.switches);
    this.host = host;
    this.told = {orientation: [0, 0, 0], rotation_x: 0, rotation_y: 0, rotation_z: 0, anchor: [0, 0, 0],
      scale: [100, 100, 100], position: [0, 0, 0], ...told};
    this.name = told.name;
    this.id = host.nextId++;
    const property = (name, value, type) => new Property(host, name, value, type);
    this.groups = [new Group("ADBE Transform Group",
      Object.entries(TRANSFORM).map(([key, name]) => property(name, this.told[key])))];
    if (told.point_of_interest) this.groups[0].property("ADBE Anchor Point").value = told.point_of_interest;
    if (told.kind === "camera")
      this.groups.push(new Group("ADBE Camera Options Group", [property("ADBE Camera Zoom", told.zoom)]));
    if (told.kind === "light") {
      this.lightType = LightType[told.type.toUpperCase()];
      this.groups.push(new Group("ADBE Light Options Group",
        Object.entries(LIGHT).map(([key, name]) => property(name, told[key] ?? LIGHT_DEFAULTS[key]))));
    }
    if (isImage) this.groups.push(new Group("ADBE Effect Parade", told.effects || []));
  }
  get index() { return this.host.layers.indexOf(this) + 1; }
  property(name) { return this.groups.find(each => each.matchName === name) || null; }
  moveToEnd() { this.host.layers.push(this.host.layers.splice(this.index - 1, 1)[0]); }
  remove() { this.host.layers.splice(this.index - 1, 1); }

  // Of transform values at a frame; the point of interest of lights and cameras stands as their anchor point.
  world(frame) {
    const at = key => this.groups[0].property(TRANSFORM[key]).frame(frame);
    const isImage = !["camera", "light"].includes(this.told.kind);
    let matrix = isImage ? times(moved(at("anchor").map(v => -v)), scaled(at("scale"))) : moved([0, 0, 0]);
    for (const axis of "zyx") matrix = times(matrix, turned(axis, at("rotation_" + axis)));
    for (const axis of "zyx") matrix = times(matrix, turned(axis, at("orientation")["xyz".indexOf(axis)]));
    if (this.told.point_of_interest) matrix = times(matrix, facing(at("position"), at("anchor")));
    matrix = times(matrix, moved(at("position")));
    return this.parent ? times(matrix, this.parent.world(frame)) : matrix;
  }
}

class CompItem {}

class Host {
  constructor({comp, controls, writing = "allowed", saveAs}) {
    Object.assign(this, {writing, saveAs, layers: [], nextId: 1001, alerts: [], openUndoGroups: 0, failing: ""});
    this.world = es3World();
    this.items = [];
    this.comp = Object.assign(new CompItem(), {name: "Comp 1", pixelAspect: 1, displayStartTime: 0}, comp);
    this.comp.frameDuration = 1 / comp.frameRate;
    this.comp.duration = comp.frames * this.comp.frameDuration;
    const [first, last] = comp.workArea;
    this.comp.workAreaStart = first * this.comp.frameDuration;
    this.comp.workAreaDuration = (last - first + 1) * this.comp.frameDuration;
    this.controls = controls;
    const host = this;
    Object.defineProperties(this.comp, {
      numLayers: {get: () => host.layers.length},
      selectedLayers: {get: () => host.given(host.layers.filter(each => each.selected))},
    });
    this.comp.layer = index => this.layers[index - 1];
    this.comp.layers = {addNull: () => this.addNull()};
  }

  // At the bottom of the stack.
  add(told) {
    this.layers.push(new Layer(this, told));
    return this.layers[this.layers.length - 1];
  }

  // An effect with its controls as the plug-in registers them; `set` holds other values by persistent id.
  effect(set = {}, more = {}) {
    const types = {"group": PropertyValueType.NO_VALUE, "group end": PropertyValueType.NO_VALUE,
      "layer": PropertyValueType.LAYER_INDEX};
    const properties = this.controls.map(each => new Property(this, `Zam-${String(each.id).padStart(4, "0")}`,
      set[each.id] ?? (each.kind === "layer" ? 0 : each.default), types[each.kind] || PropertyValueType.OneD));
    properties.unshift(new Property(this, "Zam-0000", 0, PropertyValueType.LAYER_INDEX));
    properties.push(new Group("ADBE Effect Built In Params", []));
    return new Group("Zam", properties, {enabled: true, ...more});
  }

  addNull() {
    const folder = {numItems: 1, remove: () => this.items.splice(this.items.indexOf(folder), 1)};
    const source = {parentFolder: folder, remove: () => {
      this.items.splice(this.items.indexOf(source), 1);
      folder.numItems -= 1;
    }};
    this.items.push(folder, source);
    for (const each of this.layers) each.selected = false;
    const added = this.add({kind: "null", name: "Null 1"});
    Object.assign(added, {selected: true, threeDLayer: false, source});
    this.layers.unshift(this.layers.pop());
    return added;
  }

  expressionView(frame) {
    const through = (index, point, w) => times([[...point, w]], this.layers[index - 1].world(frame))[0].slice(0, 3);
    return {layer: index => ({toWorld: point => through(index, point, 1), toWorldVec: vector => through(index, vector, 0)})};
  }

  // Arrays as the script's own world has them.
  given(value) {
    if (!Array.isArray(value)) return value;
    const own = vm.runInContext("[]", this.world);
    for (const each of value) own.push(each);
    return own;
  }

  // "allowed", "forbidden", or "full": only little fits on the disk.
  fileClass() {
    const host = this;
    return class File {
      constructor(name) { this.fsName = name; this.error = ""; this.text = null; }
      get name() { return encodeURI(path.basename(this.fsName)); }
      get exists() { return fs.existsSync(this.fsName); }
      open(mode) {
        if (mode !== "w") throw new Error("only written to");
        if (host.writing === "forbidden") this.error = "Permission denied (is security enabled?)";
        else this.text = "";
        return this.text !== null;
      }
      write(text) {
        this.text += text;
        const fits = host.writing !== "full" || this.text.length < 100;
        fs.writeFileSync(this.fsName, fits ? this.text : "");
        return fits;
      }
      close() { this.text = null; return true; }
      remove() { fs.rmSync(this.fsName, {force: true}); return true; }
      rename(name) {
        const target = path.join(path.dirname(this.fsName), name);
        if (fs.existsSync(target)) return false;
        fs.renameSync(this.fsName, target);
        return true;
      }
      saveDlg() { return host.saveAs ? new File(host.saveAs) : null; }
    };
  }

  run(script) {
    const File = this.fileClass(), temp = {fsName: path.dirname(this.saveAs || "/tmp/x")};
    const project = {activeItem: this.comp, file: null, get numItems() { return host.items.length; }};
    const host = this;
    Object.assign(this.world, {
      LightType, AutoOrientType, PropertyValueType, CompItem, File, Folder: {temp, myDocuments: temp},
      alert: text => this.alerts.push(text), confirm: () => true,
      app: {project, beginUndoGroup: () => ++this.openUndoGroups, endUndoGroup: () => --this.openUndoGroups},
    });
    vm.runInContext(script, this.world);
  }
}

module.exports = {Host, LightType};
