// The JSON that `timew export` prints: an array of intervals, each an object
// with "id", "start" and "end" ("YYYYMMDDTHHMMSSZ", UTC), optional "tags"
// (an array of texts) and "annotation".
//
// An interval becomes an entry at the local time of its start (the system's
// time zone rules), with its start marked as entered, its length in seconds
// x 1/3600 hours through SetDurationFromHours, and its tags:
// "client:NAME", "project:NAME", "phase:NAME" and "task:NAME" fill those
// fields (the first of each kind wins); the other tags, joined by one blank
// in their order, become the task when no "task:" tag is there, else
// Custom 1. The annotation becomes the note.
#ifndef QUILLORA_INTERCHANGE_TIMEWARRIOR_EXPORT_H_
#define QUILLORA_INTERCHANGE_TIMEWARRIOR_EXPORT_H_

#include <string_view>

#include "interchange/imported_entry.h"
#include "store/settings.h"

namespace quillora {

// Reads a Timewarrior export. A text that is not JSON, not an array of
// objects, or has a start, end, tags or annotation of the wrong shape is
// refused as a whole (`error` set). An interval without an end (still
// running), or longer than an entry holds, or without client or task after
// `defaults`, is kept with its skip reason.
ImportedFile ReadTimewarriorExport(std::string_view bytes, const Settings& settings,
                                   const ImportDefaults& defaults);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_TIMEWARRIOR_EXPORT_H_
