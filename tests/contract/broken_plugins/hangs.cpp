// Does not come back from its first command.
#include <chrono>
#include <thread>

#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    while (cmd == PF_Cmd_GLOBAL_SETUP) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return broken::answer(cmd, in, out, output);
}
