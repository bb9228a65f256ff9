#include "effect/scene/suites.h"

#include "effect/scene/messages.h"

namespace zam {

const void* AEGP_SuiteHandler::LoadSuite(const char* name, int version) const {
    const void* suite = nullptr;
    if (!basic_ || basic_->AcquireSuite(name, version, &suite) != 0 || !suite) MissingSuiteError();
    return suite;
}

void AEGP_SuiteHandler::MissingSuiteError() const { throw int{PF_Err_BAD_CALLBACK_PARAM}; }

void AEGP_SuiteHandler::ReleaseAllSuites() {
    for (Loaded& loaded : loaded_) {
        if (loaded.suite) basic_->ReleaseSuite(loaded.name, loaded.version);
        loaded = {};
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
