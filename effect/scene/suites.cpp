#include "effect/scene/suites.h"

#include "effect/scene/messages.h"

namespace zam {

const AEGP_SuiteHandler::Name AEGP_SuiteHandler::kNames[kSlots] = {
    {"AEGP PF Interface Suite", 1}, {"AEGP Layer Suite", 5},    {"AEGP Layer Suite", 8},
    {"AEGP Light Suite", 1},        {"AEGP Light Suite", 2},    {"AEGP Camera Suite", 2},
    {"AEGP Stream Suite", 4},       {"AEGP Comp Suite", 4},     {"AEGP Comp Suite", 9},
    {"AEGP Item Suite", 3},         {"AEGP Keyframe Suite", 1}, {"AEGP Effect Suite", 1},
};

const void* AEGP_SuiteHandler::LoadSuite(const char* name, int version) const {
    const void* suite = nullptr;
    if (!basic_ || basic_->AcquireSuite(name, version, &suite) != 0 || !suite) MissingSuiteError();
    return suite;
}

void AEGP_SuiteHandler::MissingSuiteError() const { throw int{PF_Err_BAD_CALLBACK_PARAM}; }

void AEGP_SuiteHandler::ReleaseAllSuites() {
    for (int slot = 0; slot < kSlots; ++slot) {
        if (!suites_[slot]) continue;
        basic_->ReleaseSuite(kNames[slot].name, kNames[slot].version);
        suites_[slot] = nullptr;
    }
}

const void* TryAcquireSuite(PF_InData* in_data, const char* name, int version) {
    const void* suite = nullptr;
    const SPBasicSuite* basic = in_data->pica_basicP;
    if (!basic || basic->AcquireSuite(name, version, &suite) != 0) return nullptr;
    return suite;
}

PF_Err AEFX_AcquireSuite(PF_InData* in_data, PF_OutData* out_data, const char* name, int version,
                         const char* error_msg, const void** suite) {
    *suite = TryAcquireSuite(in_data, name, version);
    if (*suite) return PF_Err_NONE;
    ShowError(in_data, out_data, error_msg ? error_msg : "Not able to acquire AEFX Suite.");
    return PF_Err_BAD_CALLBACK_PARAM;
}

PF_Err AEFX_ReleaseSuite(PF_InData* in_data, PF_OutData* out_data, const char* name, int version,
                         const char* error_msg) {
    if (in_data->pica_basicP) {
        in_data->pica_basicP->ReleaseSuite(name, version);
        return PF_Err_NONE;
    }
    ShowError(in_data, out_data, error_msg ? error_msg : "Not able to release AEFX Suite.");
    return PF_Err_BAD_CALLBACK_PARAM;
}

}  // namespace zam
