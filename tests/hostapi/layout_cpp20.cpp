// The interface declarations as C++20.
#define FACT_ASSERT(condition, text) static_assert(condition, text)
#define FACT_ALIGNOF(type) alignof(type)
#define FACT_SIZEOF_FIELD(type, field) sizeof(type::field)
#include "tests/hostapi/layout.inc"
