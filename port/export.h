// The macros that mark what the shared library shows to its clients.
#pragma once

// ZOL_BUILDING is for the sources of the library, ZOL_STATIC for programs that link the objects of
// its rooms instead of it.
#if defined(_WIN32)
#if defined(ZOL_BUILDING)
#define ZOL_API __declspec(dllexport)
#elif defined(ZOL_STATIC)
#define ZOL_API
#else
#define ZOL_API __declspec(dllimport)
#endif
#else
// Stands before each class and function that clients may use.
#define ZOL_API __attribute__((visibility("default")))
#endif

#if !defined(_WIN32)
// Declares an instance of a class template that the library makes. A Windows client makes its
// inline members by itself: the library shows those alone that are marked one by one.
#define ZOL_INSTANCE(...) extern template class ZOL_API __VA_ARGS__
#elif defined(ZOL_BUILDING)
#define ZOL_INSTANCE(...) extern template class __VA_ARGS__
#else
#define ZOL_INSTANCE(...) static_assert(true, "")
#endif
