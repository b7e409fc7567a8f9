/* What the flat interface has beside the functions of zol_exports.h, by the same conventions. */
#pragma once

#include "bridge/conventions.h"

/* Of a text that a function gave: its bytes without the terminator (0 for null), and its end. */
ZOL_HELPER unsigned ZOL_CALL zol_text_bytes(const void* text);
ZOL_HELPER void ZOL_CALL zol_text_free(void* text);

/* How a file operation ended. Texts are the client's; null means none. */
typedef struct zol_report {
  int code;          /* as the function gave it */
  int line;          /* where reading stopped; 0 if no text was read */
  int archive_cause; /* the number of the archive's failure, if there was one */
  char16_t* item;    /* the element or attribute concerned */
  char16_t* message; /* for people; null if all is well */
} zol_report;

/* Frees the texts of a report and makes it all zero. */
ZOL_HELPER void ZOL_CALL zol_report_clear(zol_report* report);

/* File operations that nothing is thrown through. `zol` is the handle of a Zol; `report` may be
 * null, and what was in it is overwritten, not freed.
 *
 * zol_open_file and zol_save_file are the ones to use: an opened document is what the file holds
 * or, after a failure, what it was before; a saved file takes the place of the older one only when
 * it is complete. zol_load_file and zol_write_file do what _CSharp_Zol_loadFile and writeFile do,
 * and know neither line nor item; where those let an exception out, they give 1000. */
ZOL_HELPER int ZOL_CALL zol_open_file(void* zol, const char16_t* path, zol_report* report);
ZOL_HELPER int ZOL_CALL zol_save_file(void* zol, const char16_t* path, zol_report* report);
ZOL_HELPER int ZOL_CALL zol_load_file(void* zol, const char16_t* path, zol_report* report);
ZOL_HELPER int ZOL_CALL zol_write_file(void* zol, const char16_t* path, zol_report* report);
