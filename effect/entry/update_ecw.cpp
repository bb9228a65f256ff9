#include "effect/entry/update_ecw.h"

#include "effect/params/params.h"
#include "effect/render/choices.h"
#include "effect/scene/host_memory.h"
#include "effect/scene/reach.h"
#include "effect/scene/sequence_data.h"
#include "effect/scene/suites.h"
#include "hostapi/param_utils_suites.h"

namespace zam {
namespace {

constexpr char kSuiteName[] = "PF Param Utils Suite";

// The suite of the control updates in whichever version the host has. All of them start with the one call
// used here.
class ParamUtils {
  public:
    ParamUtils(PF_InData* in_data, PF_OutData* out_data) : in_data_(in_data), out_data_(out_data) {
        for (const int version : {1, 2}) {
            if (suite_) break;
            suite_ = TryAcquireSuite(in_data, kSuiteName, version);
            if (suite_) version_ = version;
        }
        if (suite_) return;
        AEFX_AcquireSuite(in_data, out_data, kSuiteName, 3, "Failed to acquire suite.", &suite_);
        if (suite_) version_ = 3;
    }
    // deliberate: also after a failed acquisition, and then it is version 1 that is given back
    ~ParamUtils() {
        if (!kept_) AEFX_ReleaseSuite(in_data_, out_data_, kSuiteName, version_, "Failed to release suite.");
    }
    ParamUtils(const ParamUtils&) = delete;
    ParamUtils& operator=(const ParamUtils&) = delete;

    [[nodiscard]] bool available() const { return suite_ != nullptr; }
    void Keep() { kept_ = true; }
    void UpdateUI(A_long index, const PF_ParamDef& def) const {
        static_cast<const PF_ParamUtilsSuite1*>(suite_)->PF_UpdateParamUI(in_data_->effect_ref, index, &def);
    }

  private:
    PF_InData* in_data_;
    PF_OutData* out_data_;
    const void* suite_ = nullptr;
    int version_ = 1;
    bool kept_ = false;
};

// deliberate: each number is tested by itself, so 13.2 is no current host
bool IsCurrentHost(const PF_InData* in_data) {
    return in_data->version.major > 11 && in_data->version.minor > 10;
}

// The user picked a layer: the id is written back whether it changed or not.
void PickReachLayer(PF_InData* in_data, PF_ParamDef* params[]) {
    const LockedHandle sequence(in_data, in_data->sequence_data);
    AEGP_LayerIDVal id = ReadReachLayerId(sequence.get());
    AddControlLightIfNeeded(in_data, kSetReachLayer, &id);
    WriteReachLayerId(sequence.get(), id);
    params[kSetReachLayer]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
}

// Older hosts do not say what changed, so the reach light is looked after on every call. True when there is a
// new id.
bool RefreshReachLayer(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[]) {
    const LockedHandle sequence(in_data, in_data->sequence_data);
    const AEGP_LayerIDVal before = ReadReachLayerId(sequence.get());
    AEGP_LayerIDVal id = before;
    AddControlLightIfNeeded(in_data, kSetReachLayer, &id);
    if (id == before || id == 0) return false;
    WriteReachLayerId(sequence.get(), id);
    params[kSetReachLayer]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
    out_data->out_flags |= PF_OutFlag_REFRESH_UI;
    return true;
}

// What the greying goes by.
struct Choices {
    PointModel point;
    SpotModel spot;
    Look look;
    bool layer_reach;
};

Choices ReadChoices(PF_ParamDef* const params[]) {
    return {PointModel{ChoiceValue(params, kPointLightModel)},
            SpotModel{ChoiceValue(params, kSpotLightModel)}, Look{ChoiceValue(params, kLook)},
            BoxValue(params, kReachCompLayer)};
}

// Tells the host of every control that can be greyed, changed or not, in this order.
void GreyControls(const ParamUtils& utils, PF_ParamDef* params[], const Choices& choices) {
    const PointModel point = choices.point;
    const bool layer_reach = choices.layer_reach;
    const bool no_points = point == PointModel::off;
    const bool no_spots = choices.spot == SpotModel::off;
    const bool no_glow = no_points || point == PointModel::source;
    const bool no_radius = point != PointModel::radius && point != PointModel::radius_source;
    const bool no_source = point != PointModel::radius_source && point != PointModel::source;
    const bool no_gamma = choices.look < Look::adjustable_linear;

    const struct {
        ControlIndex index;
        bool disabled;
    } rows[] = {
        {kPointIntensity, no_glow},
        {kPointUseLightsIntensity, no_points},
        {kRadius, no_radius},
        {kSoftness, no_glow},
        {kIndividualRadius, no_radius},
        {kSourceIntensity, no_source},
        {kSourceRadius, no_source},
        {kSpotIntensity, no_spots},
        {kIndividualReach, no_spots || layer_reach},
        {kReach, no_spots || layer_reach},
        {kReachCompLayer, no_spots},
        {kSetReachLayer, no_spots || !layer_reach},
        {kReachBothSides, no_spots || !layer_reach},
        {kSpotUseLightsIntensity, no_spots},
        {kStartDistance, no_spots},
        {kGamma, no_gamma},
    };
    for (const auto& row : rows) {
        PF_ParamDef def = *params[row.index];
        def.ui_flags = row.disabled ? PF_PUI_DISABLED : PF_PUI_NONE;
        utils.UpdateUI(row.index, def);
    }
}

}  // namespace

void UpdateECW(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], bool userChanged,
               PF_UserChangedParamExtra* extra) {
    const Choices choices = ReadChoices(params);
    ParamUtils utils(in_data, out_data);
    if (!utils.available()) return;
    if (IsCurrentHost(in_data)) {
        if (userChanged) {
            if (extra && extra->param_index == kSetReachLayer) PickReachLayer(in_data, params);
            out_data->out_flags |= PF_OutFlag_REFRESH_UI;
        }
    } else if (choices.layer_reach && RefreshReachLayer(in_data, out_data, params)) {
        utils.Keep();  // deliberate: on this path alone the suite is not released; the greying follows on the
                       // next call
        return;
    }
    GreyControls(utils, params, choices);
    out_data->out_flags |= PF_OutFlag_REFRESH_UI;
}

}  // namespace zam
