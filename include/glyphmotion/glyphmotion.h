/* SPDX-License-Identifier: MIT */
/* Glyphmotion in plain C: a line of text becomes an animation in a file, in memory, or frame by frame.
 *
 *   glyphmotion_job* job = glyphmotion_job_new();
 *   glyphmotion_job_set(job, "text", "Hello");
 *   glyphmotion_job_set(job, "effect", "vortex");
 *   if (glyphmotion_render_to_file(job, "hello.gif") != GLYPHMOTION_OK) puts(glyphmotion_job_error(job));
 *   glyphmotion_job_free(job);
 *
 * Options have the long names of the program's without their dashes, and take the same values as text: "size" takes
 * "72", "fill" takes "texture:Marble", "delay" takes "80ms". A flag takes "1" or "0". `glyphmotion help` and the manual
 * page say what each does; glyphmotion_options() names all of them. The text itself is the option "text".
 *
 * Text and paths are UTF-8. A function with a status returns GLYPHMOTION_OK or the kind of failure, and
 * glyphmotion_job_error() then says in one sentence what is wrong and what is allowed.
 *
 * Threads: one job belongs to one thread at a time, except for glyphmotion_job_cancel(). Different jobs may be rendered
 * in any number of threads at once, with the same bytes as alone. Callbacks come on the thread that called
 * glyphmotion_render_..., and may render other jobs; they must not use the job that calls them, except to cancel it.
 *
 * Stability: a program that was built with this header runs with every later library of the same SONAME. Names and
 * values of options follow the program's.
 */
#ifndef GLYPHMOTION_GLYPHMOTION_H
#define GLYPHMOTION_GLYPHMOTION_H

#include <stddef.h>
#include <stdint.h>

#include "glyphmotion/export.h"
#include "glyphmotion/version.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef enum glyphmotion_status {
  GLYPHMOTION_OK = 0,
  GLYPHMOTION_BAD_OPTION = 1, /* there is no such option, a value is not allowed, or two options exclude each other */
  GLYPHMOTION_FAILED = 2,     /* the run failed: a file cannot be read or written, the effect makes no picture */
  GLYPHMOTION_CANCELLED = 3,  /* a callback or glyphmotion_job_cancel() ended the run */
  GLYPHMOTION_OUT_OF_MEMORY = 4
} glyphmotion_status;

/* "0.1.0": the version of the library that runs. */
GLYPHMOTION_EXPORT const char* glyphmotion_version(void);

/* Names, each list ending with a null pointer, valid as long as the process: the options, the effects as the option
 * "effect" takes them, the looks that are installed at the first call for "look", which takes TOML files as well, and
 * the formats of glyphmotion_render_to_memory(). Null when out of memory. */
GLYPHMOTION_EXPORT const char* const* glyphmotion_options(void);
GLYPHMOTION_EXPORT const char* const* glyphmotion_effects(void);
GLYPHMOTION_EXPORT const char* const* glyphmotion_looks(void);
GLYPHMOTION_EXPORT const char* const* glyphmotion_formats(void);

/* ---- Jobs: what to render. */

typedef struct glyphmotion_job glyphmotion_job;

/* A new job without options; null when out of memory. Free it with glyphmotion_job_free(). All functions take a null
 * job as well: those with a status return GLYPHMOTION_OUT_OF_MEMORY, the others do nothing. */
GLYPHMOTION_EXPORT glyphmotion_job* glyphmotion_job_new(void);
/* A new job with the options of another one, but not its callback; null when out of memory. */
GLYPHMOTION_EXPORT glyphmotion_job* glyphmotion_job_copy(const glyphmotion_job* job);
GLYPHMOTION_EXPORT void glyphmotion_job_free(glyphmotion_job* job);

/* Sets an option, in the place of an earlier value; "set" ("KEY=VALUE") adds to the earlier ones instead. A null value
 * takes the option back. A value that can be judged alone is checked at once, the others when the job is rendered. */
GLYPHMOTION_EXPORT glyphmotion_status glyphmotion_job_set(glyphmotion_job* job, const char* option, const char* value);
/* The same for numbers and for flags (on: nonzero). */
GLYPHMOTION_EXPORT glyphmotion_status glyphmotion_job_set_number(glyphmotion_job* job, const char* option, long value);
GLYPHMOTION_EXPORT glyphmotion_status glyphmotion_job_set_flag(glyphmotion_job* job, const char* option, int on);

/* What was wrong with the last call that took the job; empty after a success. Valid until the next call with the job.
 */
GLYPHMOTION_EXPORT const char* glyphmotion_job_error(const glyphmotion_job* job);
/* Where the last rendering differs from what was requested (an option without effect, a font that is missing), one
 * sentence each; null for an index that is too high. Valid like the error. */
GLYPHMOTION_EXPORT const char* glyphmotion_job_note(const glyphmotion_job* job, size_t index);

/* Called from time to time while the job is rendered, with the stage ("Building", "Quantizing", "Supercompressing",
 * "Remapping") and the position in it; a total of 0 means that it is not known. A nonzero result cancels the run.
 * `stage` is valid during the call. */
typedef int (*glyphmotion_progress)(void* user, const char* stage, int64_t position, int64_t total);
/* Sets or, with null, removes the job's callback. `user` is passed on as it is. */
GLYPHMOTION_EXPORT void glyphmotion_job_on_progress(glyphmotion_job* job, glyphmotion_progress progress, void* user);

/* Ends the current rendering of the job, or the next one if none is running, usually within 50 milliseconds; a PNG,
 * WebP, AVIF or WebM picture that is being compressed is finished first. Any thread and any signal handler may call it
 * while the job exists. */
GLYPHMOTION_EXPORT void glyphmotion_job_cancel(glyphmotion_job* job);

/* ---- Rendering. A job may be rendered any number of times. */

/* Writes a file whose format its extension names, one of glyphmotion_formats() (.png is animated). The file appears
 * whole or not at all. */
GLYPHMOTION_EXPORT glyphmotion_status glyphmotion_render_to_file(glyphmotion_job* job, const char* path);

/* Renders one of glyphmotion_formats() ("gif", "png", "webp", ...) into memory: *bytes gets a new block of *size bytes,
 * which the caller gives back to glyphmotion_free(). Null and 0 on failure. */
GLYPHMOTION_EXPORT glyphmotion_status glyphmotion_render_to_memory(glyphmotion_job* job, const char* format,
                                                                   unsigned char** bytes, size_t* size);
/* Null is fine. */
GLYPHMOTION_EXPORT void glyphmotion_free(void* bytes);

/* One frame as a viewer sees it, valid during the callback. */
typedef struct glyphmotion_frame glyphmotion_frame;
/* Pixels; the same for all frames of a run. */
GLYPHMOTION_EXPORT int glyphmotion_frame_width(const glyphmotion_frame* frame);
GLYPHMOTION_EXPORT int glyphmotion_frame_height(const glyphmotion_frame* frame);
/* From 0, and the number of frames in all. */
GLYPHMOTION_EXPORT int glyphmotion_frame_number(const glyphmotion_frame* frame);
GLYPHMOTION_EXPORT int glyphmotion_frame_count(const glyphmotion_frame* frame);
/* How long it is shown, in milliseconds. */
GLYPHMOTION_EXPORT int glyphmotion_frame_duration(const glyphmotion_frame* frame);
/* width * height times red, green, blue and straight (not premultiplied) alpha, rows from the top without gaps. */
GLYPHMOTION_EXPORT const unsigned char* glyphmotion_frame_rgba(const glyphmotion_frame* frame);

/* Takes a frame; a nonzero result cancels the run. */
typedef int (*glyphmotion_frame_sink)(void* user, const glyphmotion_frame* frame);
/* Renders in true colour (with alpha if the option "alpha" is on) and passes each frame to the sink, in order. */
GLYPHMOTION_EXPORT glyphmotion_status glyphmotion_render_frames(glyphmotion_job* job, glyphmotion_frame_sink sink,
                                                                void* user);

#ifdef __cplusplus
}
#endif
#endif
