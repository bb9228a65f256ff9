#include "bench/bare_host.h"

#include <string>

#include "bench/timing.h"
#include "hostapi/constants.h"
#include "hostapi/effect.h"
#include "hostapi/layer_suites.h"
#include "hostapi/scene_suites.h"

namespace zam::bench {
namespace {

PF_Err GetEffectLayer(PF_ProgPtr, AEGP_LayerH* layer) { return *layer = reinterpret_cast<AEGP_LayerH>(1), 0; }
A_Err GetParentComp(AEGP_LayerH, AEGP_CompH* comp) { return *comp = reinterpret_cast<AEGP_CompH>(1), 0; }
A_long num_layers = 0;
A_Err GetNumLayers(AEGP_CompH, A_long* count) { return *count = num_layers, 0; }
A_Err GetLayer(AEGP_CompH, A_long, AEGP_LayerH* layer) {
    return *layer = reinterpret_cast<AEGP_LayerH>(1), 0;
}
A_Err GetObjectType(AEGP_LayerH, AEGP_ObjectType* type) { return *type = AEGP_ObjectType_LIGHT, 0; }
A_Err GetLightType(AEGP_LayerH, AEGP_LightType* type) { return *type = AEGP_LightType_POINT, 0; }

SPErr Acquire(const char* name, int32, const void** suite) {
    static const auto pf = [] {
        AEGP_PFInterfaceSuite1 table{};
        table.AEGP_GetEffectLayer = GetEffectLayer;
        return table;
    }();
    static const auto layer = [] {
        AEGP_LayerSuite1 table{};
        table.AEGP_GetCompNumLayers = GetNumLayers;
        table.AEGP_GetCompLayerByIndex = GetLayer;
        table.AEGP_GetLayerParentComp = GetParentComp;
        table.AEGP_GetLayerObjectType = GetObjectType;
        return table;
    }();
    static const AEGP_LightSuite1 light{.AEGP_GetLightType = GetLightType};
    const std::string wanted(name);
    *suite = wanted == "AEGP Layer Suite"   ? static_cast<const void*>(&layer)
             : wanted == "AEGP Light Suite" ? static_cast<const void*>(&light)
                                            : &pf;
    return 0;
}
SPErr Release(const char*, int32) { return 0; }

}  // namespace

std::vector<double> TimeBareWalks(const host::Plugin& plugin, int lights, int rounds) {
    const auto count_lights = reinterpret_cast<int (*)(PF_InData*, int)>(plugin.symbol("GetNoLights"));
    if (!count_lights) return {};
    SPBasicSuite basic{};
    basic.AcquireSuite = Acquire;
    basic.ReleaseSuite = Release;
    PF_InData in_data{};
    in_data.pica_basicP = &basic;
    num_layers = lights + 2;
    const auto walks = [&] {
        for (int walk = 0; walk < lights + 2; ++walk) count_lights(&in_data, AEGP_LightType_POINT);
    };
    return Interleave({walks}, rounds, 0.005).front().cpu;
}

}  // namespace zam::bench
