#include "tests/contract/failing_life.h"

#include <algorithm>
#include <map>

namespace zam::test {
namespace {

constexpr A_u_long kScale = 24;
constexpr auto kTime = static_cast<A_long>(kFailingFrame);
const std::vector<std::string> kOfALight = {"Layer.AEGP_GetLayerName", "Stream.AEGP_GetLayerStreamValue",
                                            "Layer.AEGP_IsLayerVideoReallyOn", "Layer.AEGP_GetLayerInPoint",
                                            "Layer.AEGP_GetLayerDuration"};

int ask_camera(const char* name, PF_InData* in, Answers& to) {
    return call(name, in, &to.matrix, &to.d[0], kTime, kScale, A_long{24}, A_long{16});
}
int ask_light(const char* name, PF_InData* in, Answers& to) {
    return call(name, in, kTime, kScale, &to.d[0], 1, true, false, "Front");
}
int ask_size(const char* name, PF_InData* in, Answers& to) { return call(name, in, 19, &to.f[0], &to.f[1]); }

}  // namespace

Composition rich_composition(bool camera) {
    Composition comp = make_composition(24, 16);
    comp.items.push_back({2, "Wall source", 40, 40});
    Layer& wall = add_layer(comp, LayerKind::solid, "", {16, 0, 0});
    wall.source = 2;
    wall.transform.rotation_y = 70.0;
    Layer& rig = add_layer(comp, LayerKind::null_object, "Rig", {2, 1, 3});
    rig.transform.rotation_z = 20.0;
    const LayerId rig_id = rig.id;
    const struct {
        const char* name;
        LightType type;
        Vec3 at;
        Color color;
        double strength;  // of everything
    } rows[] = {{"Front beam 2", LightType::spot, {6, 14, 1}, {0.2, 1.0, 0.3}, 40},
                {"Front beam 1", LightType::spot, {4, 2, 0}, {1.0, 0.4, 0.3}, 55},
                {"Front lamp 4", LightType::point, {3, 9, 9}, {0.9, 0.8, 0.1}, 25},
                {"Back lamp", LightType::point, {18, 12, 9}, {0.3, 0.9, 0.4}, 35},
                {"Front lamp 2", LightType::point, {20, 4, 12}, {0.1, 0.5, 1.0}, 30},
                {"Front lamp 1", LightType::point, {3, 2, 5}, {1.0, 0.2, 0.6}, 20}};
    for (const auto& row : rows) {
        Layer& light = add_spot(comp, row.at, {20, 9, 5}, row.name);
        light.light.type = row.type;
        light.light.color = row.color;
        light.light.intensity = light.light.cone_angle = light.light.cone_feather = row.strength;
        light.light.shadow_darkness = row.strength;
        light.light.shadow_diffusion = row.strength * 0.1;
        light.in_frame = 2;
        if (row.strength == 25) light.parent = rig_id;
    }
    if (camera) add_camera(comp, {12, 8, -30}, {12, 8, 0}, 30);
    return comp;
}

const std::vector<Query>& queries() {
    static const std::vector<Query> all = {
        {"GetCameraMatrix", ask_camera},
        {"GetCameraMatrixAspect", ask_camera},
        {"GetCameraMatrixNoAspect", ask_camera},
        {"GetPointLight", ask_light, kOfALight},
        {"GetSpotLight", ask_light, kOfALight},
        {"GetLayerInfo", ask_size},
        {"GetLayerSize", ask_size},
        {"GetLayerSizeAndType", ask_size},
        {"GetWorkArea", [](auto* name, auto* in, Answers& to) { return call(name, in, &to.d[0], &to.d[1]); }},
        {"GetNoLights", [](auto* name, auto* in, Answers&) { return call(name, in, 1); }, {}, true},
        {"GetLightByName",
         [](auto* name, auto* in, Answers& to) {
             return call(name, in, kTime, kScale, "Front beam 1", &to.i, &to.f[0], &to.f[3], &to.f[12],
                         &to.f[15], &to.f[16]);
         }},
        {"PGetLightPos",
         [](auto* name, auto* in, Answers& to) {
             return call(name, in, kTime, kScale, "Front lamp 2", &to.i, &to.f[0], &to.f[1], &to.f[2]);
         }},
        {"PCheckLightExists",
         [](auto* name, auto* in, Answers&) { return call(name, in, "Front l"); },
         {},
         true},
        {"GetControlLight",
         [](auto* name, auto* in, Answers& to) {
             return call(name, in, A_long{kWall}, kTime, kScale, &to.i, &to.d[0], &to.d[1], &to.d[2],
                         &to.d[3], &to.d[4], &to.d[5]);
         }},
        {"PAddControlLightIfNeeded",
         [](auto* name, auto* in, Answers&) { return call(name, in, 19, "Zam Reach"); }},
        {"PGetControlLightIDX",
         [](auto* name, auto* in, Answers& to) { return call(name, in, &to.i, "Zam Reach"); }},
        {"PGetControlLightFromIDX",
         [](auto* name, auto* in, Answers& to) { return call(name, in, kTime, kScale, 2, &to.f[0]); }},
        {"PGetControlMatrixFromIDX",
         [](auto* name, auto* in, Answers& to) { return call(name, in, kTime, kScale, 2, &to.matrix); }},
    };
    return all;
}

std::string name_of_step(int step) {
    static const char* const kNames[] = {
        "GLOBAL_SETUP", "PARAMS_SETUP",    "sequence set-up", "UPDATE_PARAMS_UI",
        "pick",         "pick and rename", "ABOUT",           "RENDER"};
    if (step < kFirstQuery) return kNames[step];
    if (step < sequence_setdown()) return queries()[static_cast<std::size_t>(step - kFirstQuery)].name;
    return step == sequence_setdown() ? "SEQUENCE_SETDOWN" : "GLOBAL_SETDOWN";
}

Life::Life(const Circumstances& which, SessionOptions options)
    : circumstances(which), comp(rich_composition(which.camera)), session(zam_plugin(), comp, [&] {
          options.threads = 1;
          options.api_version = which.host_version;
          options.new_light_type = which.new_light;
          options.handle_callbacks = which.handle_callbacks;
          options.move_unlocked_handles = true;
          options.record_calls = true;
          options.amend_in_data = [this](PF_InData& in) {
              if (amend) amend(in);
          };
          return options;
      }()) {}

Outcome Life::take(int step) {
    if (step == kGlobalSetup) return session.send(PF_Cmd_GLOBAL_SETUP);
    if (step == kParamsSetup) {
        const Outcome outcome = session.send(PF_Cmd_PARAMS_SETUP);
        const std::pair<int, double> settings[] = {{2, 4},  {6, 3},  {7, 4},  {9, 2}, {13, 2},
                                                   {17, 3}, {18, 1}, {24, 3}, {25, 2}};
        if (outcome.error) return outcome;
        for (const auto& [index, value] : settings) session.set_control(index, value);
        return outcome;
    }
    if (step == kSequenceSetup) return session.send(circumstances.setup);
    if (step == kUpdateUi) return session.send(PF_Cmd_UPDATE_PARAMS_UI);
    if (step == kPick || step == kRename) return session.choose_layer(19, kWall, kFailingFrame);
    if (step == kAbout) return session.send(PF_Cmd_ABOUT);
    if (step == kRender) return render().outcome;
    if (step == sequence_setdown()) return session.send(PF_Cmd_SEQUENCE_SETDOWN);
    if (step == global_setdown()) return session.send(PF_Cmd_GLOBAL_SETDOWN);
    const Query& query = queries()[static_cast<std::size_t>(step - kFirstQuery)];
    return session.call_inside(kFailingFrame, [&](PF_InData* in, PF_OutData*) {
        Answers answers;
        const int answer = query.ask(query.name, in, answers);
        return query.counts ? 0 : answer;
    });
}

void Life::live_until(int step) {
    for (int before = kGlobalSetup; before < std::min(step, int{kRename}); ++before) take(before);
    if (step == global_setdown()) take(sequence_setdown());
}

std::vector<Call> calls_of(const Session& session) {
    std::vector<Call> all;
    std::map<std::string, int> seen;
    for (const std::string& name : session.calls()) {
        const bool acquires = name == "Basic.AcquireSuite";
        const int nth = ++seen[name];
        all.push_back({name, nth, acquires ? session.suites()[static_cast<std::size_t>(nth - 1)] : ""});
    }
    return all;
}

}  // namespace zam::test
