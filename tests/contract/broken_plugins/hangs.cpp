// Does not come back from its first command.
#include <chrono>
#include <thread>

#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_GLOBAL_SETUP) {
    for (;;) std::this_thread::sleep_for(std::chrono::milliseconds(10));
}
