#pragma once
// The basic suite, through which every other suite is fetched by name and exact version.

#include "hostapi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// AcquireSuite: 0 and a table on success. Acquiring counts references per (name, version); every successful
// acquire wants one release with the same pair.
typedef struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char*, int32, const void**);
    SPErr (*ReleaseSuite)(const char*, int32);
    SPBoolean (*IsEqual)(const char*, const char*);
    SPErr (*AllocateBlock)(size_t, void**);
    SPErr (*FreeBlock)(void*);
    SPErr (*ReallocateBlock)(void*, size_t, void**);
    SPErr (*Undefined)(void);
} SPBasicSuite;

#ifdef __cplusplus
}  // extern "C"
#endif
