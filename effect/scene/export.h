#pragma once
// Marks what the plug-in exports under its plain name; effect/exports.map lists the same names.
#ifdef _WIN32
#define ZAM_EXPORT extern "C" __declspec(dllexport)
#else
#define ZAM_EXPORT extern "C" __attribute__((visibility("default")))
#endif
