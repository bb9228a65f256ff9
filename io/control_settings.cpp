#include "io/control_settings.h"
#include "io/input_file.h"

#include "host/text.h"
#include "io/keyframes.h"
#include "io/values.h"

namespace zam::io {
namespace {

using Kind = JsonValue::Kind;

host::ControlSetting read_control(const JsonDocument& document, const JsonValue& value,
                                  const std::string& name, double frame_rate) {
    const std::string what = "control " + quote(name);
    host::ControlSetting setting;
    setting.control = name;
    setting.where = SceneError::describe(document.file, value.name_place);
    setting.value = read_animated<host::ControlValue>(
        document, value, what, frame_rate, [&](const JsonValue& one) -> host::ControlValue {
            if (one.is(Kind::number)) return read_number(document, one, what, kAnyNumber);
            if (one.is(Kind::boolean)) return one.truth;
            if (one.is(Kind::string)) return one.text;
            throw document.error(one, what + " is " + one.kind_name(),
                                 "a control takes a number, true or false, a choice or a layer's "
                                 "name; or {\"keys\": [[frame, value], ...]}");
        });
    return setting;
}

}  // namespace

std::vector<host::ControlSetting> read_controls(const JsonDocument& document, const JsonValue& controls,
                                                double frame_rate) {
    if (!controls.is(Kind::object))
        throw document.error(controls,
                             std::string("effect controls are ") + controls.kind_name() + ", not an object",
                             R"(write {"Look": "Strong", "Spot Lights": {"Reach": 800}})");
    std::vector<host::ControlSetting> settings;
    for (const JsonValue& member : controls.children) {
        if (!member.is(Kind::object) || is_animated(member)) {
            settings.push_back(read_control(document, member, member.name, frame_rate));
            continue;
        }
        for (const JsonValue& inner : member.children)
            settings.push_back(read_control(document, inner, member.name + "/" + inner.name, frame_rate));
    }
    return settings;
}

std::vector<host::ControlSetting> read_preset(const std::string& file, double frame_rate) {
    const JsonDocument document = parse_json(file, read_file(file, kLargestJson));
    check_members(document, document.root, "the preset", {"note", "controls"});
    if (const JsonValue* note = document.root.find("note"))
        static_cast<void>(read_text(document, *note, "note"));
    const JsonValue* controls = document.root.find("controls");
    if (!controls)
        throw document.error(document.root, "the preset has no \"controls\"",
                             R"(write {"controls": {"Look": "Strong", "Spot Lights": {"Reach": 800}}})");
    return read_controls(document, *controls, frame_rate);
}

}  // namespace zam::io
