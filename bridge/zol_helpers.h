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

/* --- Does an assembly fit the library? --- */

/* The version of the library: 2.1.0 is 0x020100. */
ZOL_HELPER unsigned ZOL_CALL zol_version(void);
/* A number that is another one whenever a class, a row or a function is: of the tables that the
 * library was generated from. An assembly that was generated with another one does not fit. */
ZOL_HELPER unsigned ZOL_CALL zol_model(void);

/* --- Objects, of whatever class --- */

/* The number of the class that the object was made as, whatever handle it goes by. */
ZOL_HELPER unsigned ZOL_CALL zol_type_of(void* object);
/* By the name of the class; -1 if there is none. */
ZOL_HELPER int ZOL_CALL zol_type(const char* name);
/* What the object and everything in it takes from the heap, in bytes, for the accounts of a
 * collector: what its blocks were asked for, and the heads of the blocks. */
ZOL_HELPER unsigned long long ZOL_CALL zol_memory(void* object);
/* The client's; null without memory, or for a number that no class has. */
ZOL_HELPER void* ZOL_CALL zol_new(unsigned type);
ZOL_HELPER void* ZOL_CALL zol_copy(void* object);
/* Objects of every class of the model; null is ignored. */
ZOL_HELPER void ZOL_CALL zol_delete(void* object);
/* What `from` holds, nil or not, for what `to` held: 0. 7 if they are of different types, and one
 * would be cut to the other; 1000 without memory. An element and its type are alike. */
ZOL_HELPER int ZOL_CALL zol_assign(void* to, void* from);
/* Of a nillable class; 0 for others. zol_set_nil gives whether the class is one. */
ZOL_HELPER unsigned ZOL_CALL zol_is_nil(void* object);
ZOL_HELPER unsigned ZOL_CALL zol_set_nil(void* object, unsigned is_nil);
/* Where the object stands below the root, as "Zol/Color[3]/ColorSpaceCIELab", and the row in it if
 * that is not -1. Searches the tree. Null if it is not there. */
ZOL_HELPER char* ZOL_CALL zol_path(void* root, void* object, int row, unsigned index);

/* --- Rows, of whatever class ---
 *
 * A row is named by one number, which zol_row gives: -1 if there is none of that name in the class
 * itself; those of a base belong to the base. The object of a call must have the row. Holders of
 * one of several elements are looked through: a row of holders has the elements that they hold.
 *
 * Nothing is made or marked by asking. What a setter refuses is as it was; it judges as a reader of
 * documents does, so that what was stored can be written and read again: code 0 or that of the
 * facet. `index` counts in a list; for a single row it is 0. */
ZOL_HELPER int ZOL_CALL zol_row(const char* type, const char* row);
/* In words, as "0 to 150" or "one of Sphere_Included, Sphere_Excluded"; null if anything may. */
ZOL_HELPER char* ZOL_CALL zol_expected(unsigned row);

/* The entries of a list; of a single row whether it is set, or chosen: 1 or 0. */
ZOL_HELPER unsigned ZOL_CALL zol_count(void* self, unsigned row);
/* Takes away what is optional with all it holds, every entry of a list, the alternative of a
 * choice; 0, with nothing done, for a single row that is required. */
ZOL_HELPER unsigned ZOL_CALL zol_unset(void* self, unsigned row);
/* An entry of a list; 0 past its end. */
ZOL_HELPER unsigned ZOL_CALL zol_remove(void* self, unsigned row, unsigned index);
/* The row that a choice holds; -1 for none. */
ZOL_HELPER int ZOL_CALL zol_chosen(void* self);

/* Numbers: a double; an integer, a truth value as 0 or 1, or an enumerated text by its number (0
 * for one that is not in the enumeration). The getters give whether the row is set, and the default
 * if it is not. */
ZOL_HELPER unsigned ZOL_CALL zol_get_number(void* self, unsigned row, double* value);
ZOL_HELPER unsigned ZOL_CALL zol_get_integer(void* self, unsigned row, long long* value);
ZOL_HELPER int ZOL_CALL zol_set_number(void* self, unsigned row, double value);
ZOL_HELPER int ZOL_CALL zol_set_integer(void* self, unsigned row, long long value);

/* A text where it stands, or a copy of it. */
typedef struct zol_text_view {
  const char* utf8; /* as it was read, good until the text is changed; null if there is none */
  char16_t* wide;   /* if utf8 is null: the client's */
  unsigned long long size; /* in bytes */
} zol_text_view;

/* Gives whether the row is set, or the entry there. */
ZOL_HELPER unsigned ZOL_CALL zol_get_text(void* self, unsigned row, unsigned index,
                                          zol_text_view* view);
/* `utf8` need not end in a zero, and must not have one in it: 6. zol_insert_text makes an entry of
 * a list, at the end if `index` is past it. */
ZOL_HELPER int ZOL_CALL zol_set_text(void* self, unsigned row, unsigned index, const char* utf8,
                                     unsigned size);
ZOL_HELPER int ZOL_CALL zol_insert_text(void* self, unsigned row, unsigned index, const char* utf8,
                                        unsigned size);
/* All texts of a list at once, in UTF-8, with a zero byte behind each. */
ZOL_HELPER char* ZOL_CALL zol_texts(void* self, unsigned row);

/* The numbers of a date and time, as they are written: no calendar, and the zone takes no part. */
typedef struct zol_moment {
  int year;        /* may be negative */
  unsigned month;  /* from 1 */
  unsigned day;    /* from 1 */
  unsigned hours;  /* from 0 */
  unsigned mins;   /* from 0 */
  float secs;      /* from 0, with decimals */
  int offset_mins; /* east of UTC */
  unsigned is_utc; /* written as "Z" */
} zol_moment;

/* Gives whether the row is set, or the entry there. */
ZOL_HELPER unsigned ZOL_CALL zol_get_moment(void* self, unsigned row, unsigned index,
                                            zol_moment* value);
/* 35 for what no document can hold, such as a month of 13. */
ZOL_HELPER int ZOL_CALL zol_set_moment(void* self, unsigned row, unsigned index,
                                       const zol_moment* value);
ZOL_HELPER int ZOL_CALL zol_insert_moment(void* self, unsigned row, unsigned index,
                                          const zol_moment* value);
/* All of a list at once: the first `max`. Gives how many there are. */
ZOL_HELPER unsigned ZOL_CALL zol_moments(void* self, unsigned row, zol_moment* values,
                                         unsigned max);
/* Of a c_datetime. */
ZOL_HELPER void ZOL_CALL zol_datetime_get(void* datetime, zol_moment* value);
ZOL_HELPER int ZOL_CALL zol_datetime_set(void* datetime, const zol_moment* value);

/* Where the bytes stand; good until they are changed. Null for none. */
ZOL_HELPER const unsigned char* ZOL_CALL zol_get_bytes(void* self, unsigned row, unsigned* size);
ZOL_HELPER int ZOL_CALL zol_set_bytes(void* self, unsigned row, const unsigned char* bytes,
                                      unsigned size);
/* Of a c_binary: copies the first `max`. Gives how many there are. */
ZOL_HELPER unsigned ZOL_CALL zol_binary_bytes(void* binary, unsigned char* bytes, unsigned max);

/* A foreign element: its text, null if there is no such entry. The names may be null; what they are
 * given is the client's. */
ZOL_HELPER char* ZOL_CALL zol_any_text(void* revision, unsigned index, char** full_name,
                                       char** namespace_uri);

/* The child that a row, a list or a holder has, and its class; null if there is none, or if the row
 * is not set. */
ZOL_HELPER void* ZOL_CALL zol_child(void* self, unsigned row, unsigned index, unsigned* type);
/* The child of a single row as an object of the type, which is made if the row has none of that
 * type. zol_insert_child makes an entry of a list, at the end if `index` is past it. Null if the
 * type cannot stand there, and without memory. */
ZOL_HELPER void* ZOL_CALL zol_make_child(void* self, unsigned row, unsigned type);
ZOL_HELPER void* ZOL_CALL zol_insert_child(void* self, unsigned row, unsigned index, unsigned type);
/* The same with a copy of an object of the client's, as the type that it is of. */
ZOL_HELPER void* ZOL_CALL zol_insert_copy(void* self, unsigned row, unsigned index, void* value);
/* The owning form of assign_: the row or alternative holds a copy of the value as the type that it
 * is of, which may be derived where the element can name it. 7 if that type cannot stand there. */
ZOL_HELPER int ZOL_CALL zol_put_child(void* self, unsigned row, void* value);

/* The points of a ColorSpaceSpectralType or ColorSpaceEmissiveSpectralType at once, in the order of
 * the document: wavelengths in nm, and values; the first `max`. Either array may be null. Gives how
 * many there are. zol_set_spectrum puts points in the place of those that were there; after a code
 * other than 0 they are as they were, and `*wrong` is the index of the point that was refused. */
ZOL_HELPER unsigned ZOL_CALL zol_spectrum_points(void* spectrum, double* wavelengths,
                                                 double* values, unsigned max);
ZOL_HELPER int ZOL_CALL zol_set_spectrum(void* spectrum, const double* wavelengths,
                                         const double* values, unsigned count, unsigned* wrong);

/* --- Whole documents, with all that is wrong with them --- */

/* One thing that is wrong. Texts are UTF-8 and null where there is nothing to say. */
typedef struct zol_fault {
  int code;                  /* as the reader gives it; 0 for a warning */
  unsigned is_warning;       /* lawful, and seldom meant */
  unsigned long long line;   /* from 1; 0: not known */
  unsigned long long column; /* from 1, in characters; 0: not known */
  unsigned long long offset; /* of what is concerned, in bytes from 0 */
  unsigned long long length; /* in bytes */
  const char* rule;          /* what was wrong, for programs: "above-bound" */
  const char* path;          /* "Zol/Color[12]/ColorSpaceCIELab/L" */
  const char* item;          /* the element or attribute concerned */
  const char* found;         /* the value as it stood */
  const char* expected;      /* in words */
  const char* message;       /* one sentence */
} zol_fault;

/* How an operation on a whole document ended. What it points to goes with it. */
typedef struct zol_outcome {
  int code;                       /* 0, or that of the first fault */
  int archive_cause;              /* the number of the archive's failure, if there was one */
  const zol_fault* faults;        /* all that is wrong, in the order of the document */
  unsigned long long fault_count; /* of the faults that are there */
  const char* message;            /* for people; null if all is well */
  const char* bytes;              /* of zol_save without a path: the document */
  unsigned long long size;        /* of the bytes */
} zol_outcome;

/* As openFile, or if `path` is null as openText of the bytes, which may be an archive too: a
 * document that could not be opened is what it was before. */
ZOL_HELPER zol_outcome* ZOL_CALL zol_open(void* zol, const char16_t* path, const void* bytes,
                                          unsigned long long size);
/* As saveFile; if `path` is null the text of the document is in the outcome, in UTF-8. */
ZOL_HELPER zol_outcome* ZOL_CALL zol_save(void* zol, const char16_t* path);
/* Judges an object as check does: what could not be written, what would not come back, and as
 * warnings what is seldom meant. The code is that of the first fault that is no warning. */
ZOL_HELPER zol_outcome* ZOL_CALL zol_check(void* object);
/* Outcomes are the client's, and null only without memory; null is ignored. */
ZOL_HELPER void ZOL_CALL zol_outcome_free(zol_outcome* outcome);
