// The macro that marks what the colorimetric library shows to its clients.
#pragma once

#if defined(_WIN32)
#if defined(ZOL_BUILDING_COLORIMETRY)
#define ZOL_COLORIMETRY_API __declspec(dllexport)
#else
#define ZOL_COLORIMETRY_API __declspec(dllimport)
#endif
#else
// Stands before each class and function that clients may use.
#define ZOL_COLORIMETRY_API __attribute__((visibility("default")))
#endif
