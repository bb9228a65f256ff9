// Writes the active After Effects composition as a scene for `zam render`. docs/after-effects.md tells how to run it.
//
// ExtendScript is ECMAScript 3: no JSON, no forEach, no trim. It also mistakes a chain of ?: without brackets.
//
// Nothing of how After Effects computes is repeated here: values are sampled after expressions, once per frame, and
// where a layer stands is asked of After Effects itself, through expressions on a temporary null.
(function () {
    var EFFECT = "Zam";  // the effect's match name; its controls are "Zam-0002" and so on, by their persistent ids
    var DIGITS = 15;     // significant ones; fewer could show in the frames

    var comp;           // the composition
    var frames = 0;     // how many it has
    var exported = {};  // by layer index: the layer is written
    var warnings = [];
    var reading = "";  // what is being read, for messages
    var useIds = false;  // After Effects 2022 and later know ids; before, the place in the stack has to do

    function warn(text) {
        for (var i = 0; i < warnings.length; ++i) {
            if (warnings[i] === text) return;
        }
        warnings.push(text);
    }

    // ---- JSON texts ----

    function hex4(code) {
        var digits = code.toString(16);
        while (digits.length < 4) digits = "0" + digits;
        return "\\u" + digits;
    }

    // Printable ASCII only, so that no encoding can come between. Half a surrogate pair is no character.
    function quote(text) {
        var out = "";
        for (var i = 0; i < text.length; ++i) {
            var code = text.charCodeAt(i);
            var next = i + 1 < text.length ? text.charCodeAt(i + 1) : 0;
            if (code >= 0xD800 && code < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
                out += hex4(code) + hex4(next);
                ++i;
            } else if (code >= 0xD800 && code < 0xE000) {
                out += "\\ufffd";
            } else if (code === 34 || code === 92) {
                out += "\\" + text.charAt(i);
            } else if (code < 32 || code > 126) {
                out += hex4(code);
            } else {
                out += text.charAt(i);
            }
        }
        return '"' + out + '"';
    }

    function number(value) {
        if (typeof value !== "number" || !isFinite(value)) throw new Error("a value is no number: " + value);
        if (Math.abs(value) < 1e-12) return "0";  // what is left of a right angle's cosine
        return String(Number(value.toPrecision(DIGITS)));
    }

    function numbers(values, count) {
        var texts = [];
        for (var i = 0; i < count; ++i) texts.push(number(values[i]));
        return "[" + texts.join(", ") + "]";
    }

    function limit(value, least, most) {
        return Math.max(least, Math.min(value, most));
    }

    // One text for each frame as a constant or as samples, without those at either end that only repeat.
    function varying(texts) {
        var first = 0, last = texts.length - 1;
        while (first < last && texts[first + 1] === texts[0]) ++first;
        if (first === last) return texts[0];
        while (texts[last - 1] === texts[texts.length - 1]) --last;
        var from = first > 0 ? ', "from": ' + first : "";
        return '{"samples": [' + texts.slice(first, last + 1).join(", ") + "]" + from + "}";
    }

    // ---- Times and values ----

    function timeOf(frame) {
        return frame * comp.frameDuration;
    }

    // Seconds as frames, whole where only rounding keeps them from it.
    function framesOf(seconds) {
        var exact = limit(seconds / comp.frameDuration, -1e6, 1e6);
        var whole = Math.round(exact);
        return Math.abs(exact - whole) < 1e-4 ? whole : exact;
    }

    // A property over the composition's frames; `text` turns one value into JSON.
    function sampled(property, text) {
        var count = property.isTimeVarying ? frames : 1;
        var texts = [];
        for (var frame = 0; frame < count; ++frame) texts.push(text(property.valueAtTime(timeOf(frame), false)));
        return varying(texts);
    }

    function within(least, most) {
        return function (value) { return number(limit(value, least, most)); };
    }

    function color(value) {
        return numbers([limit(value[0], 0, 1), limit(value[1], 0, 1), limit(value[2], 0, 1)], 3);
    }

    // ---- Layers ----

    function idOf(layer) {
        return useIds ? layer.id : layer.index;
    }

    function named(layer) {
        return "layer " + layer.index + " \"" + layer.name + "\"";
    }

    function lightType(layer) {
        if (layer.lightType === LightType.SPOT) return "spot";
        if (layer.lightType === LightType.POINT) return "point";
        if (layer.lightType === LightType.PARALLEL) return "parallel";
        if (layer.lightType === LightType.AMBIENT) return "ambient";
        return "";
    }

    // Empty for a layer that is not written.
    function kindOf(layer, carrier) {
        if (layer.matchName === "ADBE Camera Layer") return "camera";
        if (layer.matchName === "ADBE Light Layer") {
            if (lightType(layer)) return "light";
            warn(named(layer) + " is a light of a type that zam does not know; it is left out.");
            return "";
        }
        if (carrier && (layer.index === carrier.index)) return "solid";
        if (!layer.threeDLayer) return "";
        return layer.nullLayer ? "null" : "solid";
    }

    function findProperty(layer, group, name) {
        var found = layer.property(group);
        found = found ? found.property(name) : null;
        if (!found) warn(named(layer) + ": \"" + name + "\" cannot be read; the default is taken.");
        return found;
    }

    // Adds '"key": value' for a property of the layer.
    function addProperty(out, key, layer, group, name, text) {
        reading = named(layer) + ", " + key;
        var property = findProperty(layer, group, name);
        if (property) out.push('"' + key + '": ' + sampled(property, text));
    }

    function addLight(out, layer) {
        var group = "ADBE Light Options Group", type = lightType(layer);
        addProperty(out, "intensity", layer, group, "ADBE Light Intensity", number);
        addProperty(out, "color", layer, group, "ADBE Light Color", color);
        if (type === "spot") {
            addProperty(out, "cone_angle", layer, group, "ADBE Light Cone Angle", within(0, 180));
            addProperty(out, "cone_feather", layer, group, "ADBE Light Cone Feather 2", within(0, 100));
        }
        if (type !== "ambient")
            addProperty(out, "shadow_darkness", layer, group, "ADBE Light Shadow Darkness", within(0, 100));
        if ((type === "spot") || (type === "point"))
            addProperty(out, "shadow_diffusion", layer, group, "ADBE Light Shadow Diffusion", within(0, 1e9));
    }

    function layerText(layer, kind, matrix) {
        reading = named(layer);
        var out = ['"kind": "' + kind + '"'];
        if (kind === "light") out.push('"type": "' + lightType(layer) + '"');
        out.push('"name": ' + quote(layer.name), '"id": ' + idOf(layer));
        if (layer.parent && exported[layer.parent.index]) out.push('"parent": ' + idOf(layer.parent));
        // A layer that runs backwards has its out point before its in point.
        var from = framesOf(layer.inPoint), to = framesOf(layer.outPoint);
        out.push('"in": ' + number(Math.min(from, to)), '"out": ' + number(Math.max(from, to)));
        if (layer.startTime !== 0) out.push('"start": ' + number(framesOf(layer.startTime)));
        if (layer.stretch < 1) {
            warn(named(layer) + " runs backwards; zam takes it to run at " + Math.abs(layer.stretch) +
                 " percent. Its animation is as it was.");
        }
        var stretch = limit(Math.abs(layer.stretch), 1, 9900);
        if (stretch !== 100) out.push('"stretch": ' + number(stretch));
        if (!layer.enabled) out.push('"video": false');
        if (layer.solo) out.push('"solo": true');
        if (layer.shy) out.push('"shy": true');
        if (layer.locked) out.push('"locked": true');
        if (kind === "solid")
            out.push('"size": ' + numbers([limit(layer.width, 1, 30000), limit(layer.height, 1, 30000)], 2));
        if (matrix) out.push('"world_matrix": ' + matrix);
        if ((kind === "solid") && !layer.threeDLayer) out.push('"three_d": false');
        if (kind === "light") addLight(out, layer);
        if (kind === "camera") {
            addProperty(out, "zoom", layer, "ADBE Camera Options Group", "ADBE Camera Zoom", within(0.01, 1e9));
        }
        return "{" + out.join(", ") + "}";
    }

    // ---- World matrices ----

    // False where nothing of the layer's transform or its parents' can change, so that one frame tells all.
    function moves(layer) {
        for (var at = layer; at; at = at.parent) {
            var isImage = (at.matchName !== "ADBE Camera Layer") && (at.matchName !== "ADBE Light Layer");
            if (isImage && (at.autoOrient === AutoOrientType.CAMERA_OR_POINT_OF_INTEREST)) return true;
            var transform = at.property("ADBE Transform Group");
            for (var i = 1; transform && (i <= transform.numProperties); ++i) {
                if (transform.property(i).isTimeVarying) return true;
            }
        }
        return false;
    }

    // A null at the bottom of the stack, where it moves no other layer to another place.
    function addProbe() {
        var probe = {itemsBefore: app.project.numItems, layer: comp.layers.addNull()};
        probe.source = probe.layer.source;
        return probe;
    }

    function removeProbe(probe) {
        probe.layer.remove();
        if (!probe.source) return;
        var folder = probe.source.parentFolder;
        probe.source.remove();
        // The first null of a project brings a folder for its source.
        if ((app.project.numItems > probe.itemsBefore) && (folder.numItems === 0)) folder.remove();
    }

    // What the expression gives at each frame.
    function evaluate(position, expression, count) {
        position.expression = expression;
        if (position.expressionError) throw new Error(expression + ": " + position.expressionError);
        var values = [];
        for (var frame = 0; frame < count; ++frame) values.push(position.valueAtTime(timeOf(frame), false));
        return values;
    }

    // Axes go through toWorldVec, which loses nothing to a far away position.
    function worldMatrix(position, layer) {
        reading = named(layer);
        var count = moves(layer) ? frames : 1;
        var self = "thisComp.layer(" + layer.index + ").";
        var rows = [
            evaluate(position, self + "toWorldVec([1, 0, 0])", count),
            evaluate(position, self + "toWorldVec([0, 1, 0])", count),
            evaluate(position, self + "toWorldVec([0, 0, 1])", count),
            evaluate(position, self + "toWorld([0, 0, 0])", count)
        ];
        var texts = [];
        for (var frame = 0; frame < count; ++frame) {
            var entries = [];
            for (var row = 0; row < 4; ++row) {
                entries.push(rows[row][frame][0], rows[row][frame][1], rows[row][frame][2]);
            }
            texts.push(numbers(entries, 12));
        }
        return varying(texts);
    }

    // Ambient light is everywhere, and 2D layers are not in the world.
    function standsInWorld(layer) {
        if (layer.matchName === "ADBE Camera Layer") return true;
        if (layer.matchName === "ADBE Light Layer") return lightType(layer) !== "ambient";
        return layer.threeDLayer;
    }

    // By layer index. The composition is left as it was found, whatever happens.
    function bakeMatrices(layers) {
        var matrices = {}, selected = comp.selectedLayers, probe = null, i;
        app.beginUndoGroup("Export for zam");
        try {
            probe = addProbe();
            probe.layer.moveToEnd();
            probe.layer.threeDLayer = true;
            var position = probe.layer.property("ADBE Transform Group").property("ADBE Position");
            for (i = 0; i < layers.length; ++i) {
                if (standsInWorld(layers[i])) matrices[layers[i].index] = worldMatrix(position, layers[i]);
            }
        } finally {
            try {
                if (probe) removeProbe(probe);
                for (i = 0; i < selected.length; ++i) selected[i].selected = true;
            } finally {
                app.endUndoGroup();
            }
        }
        return matrices;
    }

    // ---- The effect ----

    function effectsOn(layer) {
        var found = [], parade = layer.property("ADBE Effect Parade");
        for (var i = 1; parade && (i <= parade.numProperties); ++i) {
            if (parade.property(i).matchName === EFFECT) found.push({layer: layer, effect: parade.property(i)});
        }
        return found;
    }

    // The first on a selected layer, from the top; else the first of all. Null when there is none.
    function findEffect() {
        var all = [], chosen = null;
        for (var i = 1; i <= comp.numLayers; ++i) {
            var here = effectsOn(comp.layer(i));
            if (here.length && (!chosen || (comp.layer(i).selected && !chosen.layer.selected))) chosen = here[0];
            all = all.concat(here);
        }
        if (!chosen) {
            warn("The composition has no effect \"" + EFFECT + "\"; zam takes its defaults.");
            return null;
        }
        if (all.length > 1) {
            warn("Of " + all.length + " effects \"" + EFFECT + "\" the one on " + named(chosen.layer) +
                 " is written; select a layer to have its own.");
        }
        if (!chosen.effect.enabled) {
            warn("The effect on " + named(chosen.layer) + " is switched off; it is written as if it were on.");
        }
        return chosen;
    }

    function layerReference(index) {
        if (index < 1) return "0";
        if (exported[index]) return String(idOf(comp.layer(index)));
        warn(named(comp.layer(index)) + " is chosen in the effect and is not a 3D layer; none is written instead.");
        return "0";
    }

    function effectText(found) {
        var out = [], pattern = new RegExp("^" + EFFECT + "-(\\d+)$");
        for (var i = 1; i <= found.effect.numProperties; ++i) {
            var property = found.effect.property(i), match = pattern.exec(property.matchName);
            if (!match || (Number(match[1]) === 0)) continue;  // 0 is the layer itself
            reading = named(found.layer) + ", control " + property.matchName;
            var type = property.propertyValueType;
            if ((type === PropertyValueType.NO_VALUE) || (type === PropertyValueType.CUSTOM_VALUE)) continue;
            var text = type === PropertyValueType.LAYER_INDEX ? layerReference : number;
            out.push('"#' + Number(match[1]) + '": ' + sampled(property, text));
        }
        return '{"layer": ' + idOf(found.layer) + ', "controls": {\n    ' + out.join(",\n    ") + "\n  }}";
    }

    // ---- The scene ----

    function sceneText() {
        var found = findEffect(), layers = [], kinds = [], texts = [], i;
        for (i = 1; i <= comp.numLayers; ++i) {
            var layer = comp.layer(i), kind = kindOf(layer, found ? found.layer : null);
            if (!kind) {
                if (layer.solo) warn(named(layer) + " is soloed and not written; nothing tells zam so.");
                continue;
            }
            exported[i] = true;
            layers.push(layer);
            kinds.push(kind);
        }
        var matrices = bakeMatrices(layers);
        for (i = 0; i < layers.length; ++i) texts.push(layerText(layers[i], kinds[i], matrices[layers[i].index]));
        var effect = found ? ',\n  "effect": ' + effectText(found) : "";

        var first = limit(framesOf(comp.workAreaStart), 0, frames - 1);
        var last = limit(framesOf(comp.workAreaStart + comp.workAreaDuration) - 1, first, frames - 1);
        var start = framesOf(comp.displayStartTime);
        if (start !== 0) warn("Frame 0 of the scene is shown as frame " + start + " in After Effects.");
        return '{\n  "name": ' + quote(comp.name) + ',\n  "note": ' +
            quote("Exported from After Effects. " + warnings.join(" ")) + ',\n  "size": [' + comp.width + ", " +
            comp.height + '], "pixel_aspect": ' + number(Math.round(comp.pixelAspect * 1e6) / 1e6) +
            ',\n  "frame_rate": ' + number(Math.round(comp.frameRate * 1000) / 1000) + ', "duration": ' + frames +
            ', "work_area": [' + Math.round(first) + ", " + Math.round(last) + '],\n  "layers": [\n    ' +
            texts.join(",\n    ") + "\n  ]" + effect + "\n}\n";
    }

    // ---- Files and messages ----

    // Tried, not asked: where the setting is kept has changed between versions.
    function mayWriteFiles() {
        var probe = new File(Folder.temp.fsName + "/zam-export-probe.txt"), works = false;
        try {
            works = probe.open("w") && probe.write("zam") && probe.close();
            probe.remove();
        } catch (refused) {
            works = false;
        }
        return works;
    }

    function askForFile() {
        var folder = app.project.file ? app.project.file.parent : Folder.myDocuments;
        var name = comp.name.replace(/[^A-Za-z0-9._ -]/g, "_") + ".json";
        var file = new File(folder.fsName + "/" + name).saveDlg("Export \"" + comp.name + "\" for zam");
        if (!file || /\.json$/i.test(file.name)) return file;
        file = new File(file.fsName + ".json");
        return !file.exists || confirm(file.fsName + " exists. Replace it?") ? file : null;
    }

    // Beside the old file first, so that a full disk does not cost it.
    function save(file, text) {
        var part = new File(file.fsName + ".part");
        part.encoding = "UTF-8";
        part.lineFeed = "Unix";
        var written = part.open("w") && part.write(text);
        written = part.close() && written;
        if (!written) {
            var reason = part.error || "the disk may be full";
            part.remove();
            throw new Error(file.fsName + " cannot be written: " + reason);
        }
        // File names come with %20 for a space; rename takes them plain.
        if ((file.exists && !file.remove()) || !part.rename(decodeURI(file.name)))
            throw new Error(file.fsName + " cannot be replaced. The scene is at " + part.fsName + ".");
    }

    function run() {
        comp = app.project ? app.project.activeItem : null;
        if (!(comp instanceof CompItem)) {
            alert("There is no active composition. Click into the one to export, then run the script again.");
            return;
        }
        if (!mayWriteFiles()) {
            alert("Scripts may not write files. In Preferences > Scripting & Expressions (older versions: General) " +
                  "switch on \"Allow Scripts to Write Files and Access Network\", then run the script again.");
            return;
        }
        var file = askForFile();
        if (!file) return;
        frames = Math.max(1, Math.round(comp.duration / comp.frameDuration));
        useIds = (comp.numLayers > 0) && (typeof comp.layer(1).id === "number");
        var text = sceneText();
        reading = "";
        save(file, text);
        var told = warnings.slice(0, 12).join("\n");
        if (warnings.length > 12) told += "\nand " + (warnings.length - 12) + " more; all stand in the file's note.";
        alert("Written: " + file.fsName + (told ? "\n\n" + told : "") + "\n\nzam render \"" + file.fsName +
              "\" -o \"light.####.png\"");
    }

    try {
        run();
    } catch (error) {
        alert("The composition was not exported. " + (reading ? reading + ": " : "") + (error.message || error));
    }
})();
