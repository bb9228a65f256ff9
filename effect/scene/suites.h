#pragma once
// The host's suites: function tables fetched by name and version from its basic suite.
#include "hostapi/comp_suites.h"
#include "hostapi/effect.h"
#include "hostapi/layer_suites.h"
#include "hostapi/scene_suites.h"
#include "hostapi/stream_suites.h"

namespace zam {

// Calls that take a plug-in id get this one: an effect has no id of its own.
inline constexpr AEGP_PluginID kPluginId = 0;

// Fetches each suite the first time it is used and gives all of them back when it goes away. Lives for one
// scene function. A suite that the host does not supply ends the call by a thrown int,
// PF_Err_BAD_CALLBACK_PARAM.
class AEGP_SuiteHandler {
  public:
    explicit AEGP_SuiteHandler(const SPBasicSuite* basic) : basic_(basic) {}
    ~AEGP_SuiteHandler() { ReleaseAllSuites(); }
    AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
    AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

    // Each is named after its suite and wire version.
    const AEGP_PFInterfaceSuite1* PFInterface1() const {
        return Get<AEGP_PFInterfaceSuite1>(kPFInterface1, "AEGP PF Interface Suite", 1);
    }
    const AEGP_LayerSuite1* Layer5() const { return Get<AEGP_LayerSuite1>(kLayer5, "AEGP Layer Suite", 5); }
    const AEGP_LayerSuite3* Layer8() const { return Get<AEGP_LayerSuite3>(kLayer8, "AEGP Layer Suite", 8); }
    const AEGP_LightSuite1* Light1() const { return Get<AEGP_LightSuite1>(kLight1, "AEGP Light Suite", 1); }
    const AEGP_LightSuite2* Light2() const { return Get<AEGP_LightSuite2>(kLight2, "AEGP Light Suite", 2); }
    const AEGP_CameraSuite2* Camera2() const {
        return Get<AEGP_CameraSuite2>(kCamera2, "AEGP Camera Suite", 2);
    }
    const AEGP_StreamSuite1* Stream4() const {
        return Get<AEGP_StreamSuite1>(kStream4, "AEGP Stream Suite", 4);
    }
    const AEGP_CompSuite1* Comp4() const { return Get<AEGP_CompSuite1>(kComp4, "AEGP Comp Suite", 4); }
    const AEGP_CompSuite4* Comp9() const { return Get<AEGP_CompSuite4>(kComp9, "AEGP Comp Suite", 9); }
    const AEGP_ItemSuite1* Item3() const { return Get<AEGP_ItemSuite1>(kItem3, "AEGP Item Suite", 3); }
    const AEGP_KeyframeSuite1* Keyframe1() const {
        return Get<AEGP_KeyframeSuite1>(kKeyframe1, "AEGP Keyframe Suite", 1);
    }
    const AEGP_EffectSuite1* Effect1() const {
        return Get<AEGP_EffectSuite1>(kEffect1, "AEGP Effect Suite", 1);
    }

  private:
    enum Slot {
        kPFInterface1,
        kLayer5,
        kLayer8,
        kLight1,
        kLight2,
        kCamera2,
        kStream4,
        kComp4,
        kComp9,
        kItem3,
        kKeyframe1,
        kEffect1,
        kSlots
    };
    struct Loaded {
        const void* suite;
        const char* name;
        int version;
    };

    const void* LoadSuite(const char* name, int version) const;
    [[noreturn]] void MissingSuiteError() const;
    void ReleaseAllSuites();

    template <class Suite>
    const Suite* Get(Slot slot, const char* name, int version) const {
        if (!loaded_[slot].suite) loaded_[slot] = {LoadSuite(name, version), name, version};
        return static_cast<const Suite*>(loaded_[slot].suite);
    }

    const SPBasicSuite* basic_;
    mutable Loaded loaded_[kSlots] = {};
};

// Acquires a suite without a word; null when the host has no basic suite or does not supply this one.
const void* TryAcquireSuite(PF_InData* in_data, const char* name, int version);

// One suite at a time, for the effect side of the interface. On failure the message (or, for null, a standard
// one) goes into out_data as an error for the user and the result is PF_Err_BAD_CALLBACK_PARAM. Releasing
// fails only without a basic suite.
PF_Err AEFX_AcquireSuite(PF_InData* in_data, PF_OutData* out_data, const char* name, int version,
                         const char* error_msg, const void** suite);
PF_Err AEFX_ReleaseSuite(PF_InData* in_data, PF_OutData* out_data, const char* name, int version,
                         const char* error_msg);

}  // namespace zam
