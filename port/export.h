// The one macro that marks what the shared library shows to its clients.
#pragma once

#if defined(_WIN32)
#if defined(ZOL_BUILDING)
#define ZOL_API __declspec(dllexport)
#else
#define ZOL_API __declspec(dllimport)
#endif
#else
#define ZOL_API __attribute__((visibility("default")))
#endif
