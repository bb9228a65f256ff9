#pragma once
// Names are recognised up to the end of the shorter one.

namespace zam {

// True when both agree over their common length, so that either may be the beginning of the other.
inline bool AgreeOverCommonLength(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b) {
        if (*a != *b) return false;
    }
    return true;
}

}  // namespace zam
