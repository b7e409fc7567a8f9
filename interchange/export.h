// The macro that marks what the library of interchange shows to its clients.
#pragma once

#if defined(_WIN32)
#if defined(ZOL_BUILDING_INTERCHANGE)
#define ZOL_INTERCHANGE_API __declspec(dllexport)
#else
#define ZOL_INTERCHANGE_API __declspec(dllimport)
#endif
#else
// Stands before each class and function that clients may use.
#define ZOL_INTERCHANGE_API __attribute__((visibility("default")))
#endif
