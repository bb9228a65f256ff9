// Maths and strings. The maths calls alone do not go through the one door: rows call them millions of times
// from several threads, and there is nothing to go wrong.
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "host/runner/callbacks.h"
#include "host/suites/serve.h"

namespace zam::host {
namespace {

constexpr std::size_t kMostBytes = PF_MAX_EFFECT_MSG_LEN + 1;

// Writes no more than the longest message of the interface, whatever the format asks for.
int32_t host_sprintf(A_char* to, const A_char* format, ...) {
    int32_t written = -1;
    va_list arguments;
    va_start(arguments, format);
    serve("Ansi.sprintf", [&](Instance&) {
        A_char& first = required(to);
        if (!format) throw Misuse{"null format", PF_Err_BAD_CALLBACK_PARAM};
        written = std::vsnprintf(&first, kMostBytes, format, arguments);
    });
    va_end(arguments);
    return written;
}

A_char* host_strcpy(A_char* to, const A_char* from) {
    serve("Ansi.strcpy", [&](Instance&) {
        A_char* next = &required(to);
        if (!from) throw Misuse{"null text", PF_Err_BAD_CALLBACK_PARAM};
        while ((*next++ = *from++) != '\0') {
        }
    });
    return to;
}

}  // namespace

PF_ANSICallbacks ansi_callbacks() {
    PF_ANSICallbacks ansi{};
    ansi.atan = [](double x) { return std::atan(x); };
    ansi.atan2 = [](double y, double x) { return std::atan2(y, x); };
    ansi.ceil = [](double x) { return std::ceil(x); };
    ansi.cos = [](double x) { return std::cos(x); };
    ansi.exp = [](double x) { return std::exp(x); };
    ansi.fabs = [](double x) { return std::fabs(x); };
    ansi.floor = [](double x) { return std::floor(x); };
    ansi.fmod = [](double x, double y) { return std::fmod(x, y); };
    ansi.hypot = [](double x, double y) { return std::hypot(x, y); };
    ansi.log = [](double x) { return std::log(x); };
    ansi.log10 = [](double x) { return std::log10(x); };
    ansi.pow = [](double x, double y) { return std::pow(x, y); };
    ansi.sin = [](double x) { return std::sin(x); };
    ansi.sqrt = [](double x) { return std::sqrt(x); };
    ansi.tan = [](double x) { return std::tan(x); };
    ansi.asin = [](double x) { return std::asin(x); };
    ansi.acos = [](double x) { return std::acos(x); };
    ansi.sprintf = host_sprintf;
    ansi.strcpy = host_strcpy;
    return ansi;
}

}  // namespace zam::host
