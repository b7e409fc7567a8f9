/* How the flat interface talks, for C and C++.
 *
 * Handles. An object crosses as its address. There is no table of handles: a stale one is not
 * noticed, and 0 as the object of a call (`self`) faults. What _CSharp_new_..., clone, factory and
 * writeString give belongs to the client, who ends it with the matching _CSharp_delete_...; 0 is
 * ignored there. What get_, append_, insert_ and back_ give belongs to the object it came from, and
 * dies with it and with any delete_, clear_, reset, unset_ or swap there. assign_ and set_ copy
 * their argument.
 *
 * Null. A null handle for a reference, and a null narrow string, call the registered
 * argument-exception callback of kind 1 with a message and no parameter name; the function then
 * gives 0 without calling the library. A null wide string is an empty one, and a null array of
 * bytes has none.
 *
 * Text. Wide text is UTF-16 that ends in a zero unit, narrow text UTF-8 that ends in a zero byte. A
 * text that comes out is a block of its own in the layout of a BSTR: the count of its bytes in the
 * four bytes before it, a zero unit behind it. The client frees it with zol_text_free (on Windows
 * it is a BSTR, and SysFreeString does the same). Identities (getid, id_get) are borrowed addresses
 * that compare by address and are not freed.
 *
 * Numbers have 32 bits. A bool is an unsigned that goes out as 0 or 1; a byte is an unsigned too.
 *
 * Exceptions of the library pass through, and one that reaches a managed frame ends the process on
 * most platforms. zol_helpers.h has the file operations that never throw.
 *
 * Names have an underscore in front on every platform; a 32-bit Windows build adds the stdcall
 * decoration through zol.def. The callbacks are registered once, before any other call. */
#pragma once

#ifndef __cplusplus
#include <uchar.h>
#endif

#if defined(_WIN32)
#define ZOL_CALL __stdcall
#if !defined(ZOL_BUILDING)
#define ZOL_VISIBLE __declspec(dllimport)
#elif defined(_WIN64)
#define ZOL_VISIBLE __declspec(dllexport)
#else
#define ZOL_VISIBLE
#endif
#else
/* The calling convention: stdcall on Windows, and the only one elsewhere. */
#define ZOL_CALL
/* What the system wants to hear of a function that a library shows. */
#define ZOL_VISIBLE __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define ZOL_EXPORT extern "C" ZOL_VISIBLE
#else
/* Stands before each function of zol_exports.h. */
#define ZOL_EXPORT extern ZOL_VISIBLE
#endif

#if defined(ZOL_BUILDING) && defined(_WIN32) && !defined(_WIN64)
#define ZOL_HELPER ZOL_EXPORT __declspec(dllexport)
#else
/* Stands before each function of zol_helpers.h, which zol.def lists under other names. */
#define ZOL_HELPER ZOL_EXPORT
#endif

/* Called with a message in UTF-8, borrowed for the call; it must return. No function of the library
 * raises one of these kinds. */
typedef void(ZOL_CALL* ExceptionCallback)(const char* message);
/* The same for a faulty argument. `parameter` is null. */
typedef void(ZOL_CALL* ArgumentCallback)(const char* message, const char* parameter);
/* For texts of the client's own kind. No function of the library calls it. */
typedef char*(ZOL_CALL* StringCallback)(const char* text);
