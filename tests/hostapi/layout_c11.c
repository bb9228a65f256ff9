// The interface declarations as C11.
#include <stdalign.h>
#define FACT_ASSERT(condition, text) _Static_assert(condition, text)
#define FACT_ALIGNOF(type) alignof(type)
#define FACT_SIZEOF_FIELD(type, field) sizeof(((type*)0)->field)
#include "tests/hostapi/layout.inc"
