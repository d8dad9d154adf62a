// Bulk edits: commands that change many records at once. Find and replace
// renames a catalogue value and every time entry that carries it; "mark all
// as paid" sets the paid flag of the entries the current view shows; delete
// data removes the entries of a date range or of chosen clients.
#ifndef QUILLORA_TIMEKEEPING_BULK_EDITS_H_
#define QUILLORA_TIMEKEEPING_BULK_EDITS_H_

#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"
#include "store/time_entry.h"

namespace quillora {

// The "Type:" list of find and replace, in its order.
enum class ReplaceType : int {
  kClient = 0,
  kProject,
  kPhase,
  kTask,
  kCurrency,
  kBillTo,
  kCustom1,
  kCustom2,
  kCustom3,
  kProjectTask,  // the tasks of projects; compares and replaces the entry's task
};
inline constexpr int kReplaceTypeCount = 10;

// "Client", "Project", "Phase", "Task", "Currency", "Bill To", "Custom 1",
// "Custom 2", "Custom 3", "Project-Task".
const std::u16string& ReplaceTypeName(ReplaceType type);

// The entry's field that a type names.
std::u16string& ReplaceField(TimeEntry& entry, ReplaceType type);

// The "Find:" list of a type: an empty first item (choosing it counts as
// choosing nothing), then the distinct values of that type's catalogue in
// the locale's order with case ignored.
std::vector<std::u16string> FindChoices(Catalogue& catalogue, const Locale& locale,
                                        ReplaceType type);

// The longest replacement the "Replace With:" box takes.
inline constexpr std::size_t kReplaceTextLimit = 127;

// The checks on OK, in order: index 0 of "Find:" shows "Please select a
// string to search for.", an empty replacement "Please enter a string to
// replace with." (both with the exclamation icon); then the question "Are you
// sure to replace the text? ..." (Yes/No, No the default). True when the run
// may start.
bool ConfirmFindAndReplace(UserPrompt& prompt, int find_index,
                           const std::u16string& replacement);

struct ReplaceCounts {
  int catalogue_renamed = 0;  // catalogue records and list items renamed
  int entries_changed = 0;
  int entries_failed = 0;  // entries whose write failed; the run went on
};

// The run, after ConfirmFindAndReplace. First the catalogue: the client named
// `find` (one), every project record named `find` (projects), every task
// record named `find` (tasks), every project task named `find`
// (project-tasks), or the first contact or list item equal to `find` (the
// other types) is renamed. Then every entry that was in the store when the
// run began, in store order: a field equal to `find` as a whole,
// case-sensitively, becomes `replacement`. Progress "Updating Records.
// Please Wait..." over the entries + 1. The five catalogue stores and
// `entries` must be open.
ReplaceCounts FindAndReplace(EntryStore& entries, Catalogue& catalogue,
                             const Locale& locale, UserPrompt& prompt, ReplaceType type,
                             const std::u16string& find,
                             const std::u16string& replacement);

enum class BulkOutcome { kDeclined, kDone, kFailed };

// "Mark all as paid": asks "Do you want to mark all entries paid using the
// filter from the current view?" (Yes/No, No the default); on Yes sets the
// paid flag of every entry from `start` to `end` (both included) that
// `selects` (the current view's filter) keeps and that is not paid yet.
// kFailed when a write failed (the others are still made). `marked` (may be
// null) gets the number of entries changed.
BulkOutcome MarkAllPaid(EntryStore& entries, UserPrompt& prompt, FileTime start,
                        FileTime end,
                        const std::function<bool(const TimeEntry&)>& selects,
                        int* marked);

// The criteria of "delete data": a date range, or the clients named.
struct DeleteCriteria {
  bool by_clients = false;
  FileTime start = 0;  // both included
  FileTime end = 0;
  std::vector<std::u16string> clients;  // compared whole, case-sensitively
};

// "Delete data": asks "All data within the selected criteria will be
// permanently deleted.  Click OK to delete or Cancel to cancel the operation."
// (OK/Cancel, Cancel the default); on OK deletes the entries of the range, or
// the entries of the clients. The catalogue is not touched. kFailed when a
// deletion failed (the others are still made). `deleted` (may be null) gets
// the number deleted.
BulkOutcome DeleteDataByCriteria(EntryStore& entries, const Locale& locale,
                                 UserPrompt& prompt, const DeleteCriteria& criteria,
                                 int* deleted);

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_BULK_EDITS_H_
