/* What __builtin_cpu_supports asks on Intel processors, for compilers whose runtime library lacks it: the features
   that the effect's rows go by, at the places where compilers look for them. */
#include <cpuid.h>

enum { AVX2 = 10, FMA = 14, AVX512F = 15, AVX512VL = 20, AVX512DQ = 22 };

struct {
    unsigned vendor, type, subtype, features[1];
} __cpu_model;

/* Registers that the system saves; it takes up those of AVX-512 with the first use and does not show them before. */
static int saves_avx(void) {
    unsigned low, high;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    (void)high;
    return (low & 6) == 6;
}

int __cpu_indicator_init(void) {
    unsigned a, b, c, d, found = 0;
    if (!__get_cpuid(1, &a, &b, &c, &d) || !(c & bit_OSXSAVE) || !(c & bit_AVX) || !saves_avx()) return 0;
    if (c & bit_FMA) found |= 1u << FMA;
    if (__get_cpuid_count(7, 0, &a, &b, &c, &d)) {
        if (b & bit_AVX2) found |= 1u << AVX2;
        if (b & bit_AVX512F) found |= 1u << AVX512F;
        if (b & bit_AVX512VL) found |= 1u << AVX512VL;
        if (b & bit_AVX512DQ) found |= 1u << AVX512DQ;
    }
    __cpu_model.features[0] = found;
    return 0;
}
