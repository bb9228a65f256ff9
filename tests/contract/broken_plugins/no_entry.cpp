// Exports something, but no entry point.
#include "tests/contract/broken_plugins/well_behaved.h"

ZAM_EXPORT int EntryPoint() { return 0; }
