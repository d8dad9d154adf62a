// Makes a data folder holding N time entries for the scale benchmarks:
//   quillora_make_store DIR N
// The entries are spread evenly over the ten years 2016-2025 (so a week, a
// month and a year hold N/520, N/120 and N/10 of them), 20 clients with 7
// projects each, one entry in ten with a two-line note. The clients and
// their projects are in the catalogue, as the editor would have left them.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/locale.h"
#include "store/catalogue.h"
#include "store/client_store.h"
#include "store/data_context.h"
#include "store/note_text.h"
#include "store/time_entry.h"

namespace quillora {
namespace {

std::u16string ClientName(long n) {
  return u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + n % 20));
}

TimeEntry SampleEntry(long n, long count, FileTime first, FileTime span) {
  TimeEntry e;
  // Evenly over the span, at a working hour of the day.
  const FileTime at = first + static_cast<FileTime>(static_cast<double>(span) * n / count);
  e.start = at - at % kTicksPerDay + kTicksPerHour * (8 + n % 10);
  e.client = ClientName(n);
  e.project = u"Project " + std::u16string(1, static_cast<char16_t>(u'a' + n % 7));
  e.phase = u"Build";
  e.task = u"Development";
  e.duration = static_cast<std::uint32_t>(25 + n % 400);
  e.rate = 9500;
  e.billable = n % 3 != 0;
  e.paid = n % 5 == 0;
  e.currency = u"USD";
  e.billTo = u"Accounts Payable";
  e.custom1 = u"PO-" + std::u16string(1, static_cast<char16_t>(u'0' + n % 10));
  if (n % 10 == 0) {
    const auto note =
        NoteBlobFromText(u"Met with the team about the release plan.\nFollow up.");
    SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
  }
  return e;
}

int Main(int argc, char** argv) {
  char* end = nullptr;
  const long count = argc == 3 ? std::strtol(argv[2], &end, 10) : 0;
  if (count <= 0 || *end != '\0') {
    std::fprintf(stderr, "usage: %s DIR N\n", argv[0]);
    return 2;
  }
  DataContext data;
  std::string error;
  if (!OpenDataContext(argv[1], &data, &error) || !OpenCatalogue(&data)) {
    std::fprintf(stderr, "%s: %s\n", argv[1], error.c_str());
    return 1;
  }
  EntryStore entries(*data.volume);
  if (!entries.Open()) return 1;
  Catalogue& catalogue = *data.catalogue;
  const std::unique_ptr<Locale> locale = Locale::UsEnglish();
  if (!data.volume->BeginBatch()) return 1;
  for (long n = 0; n < 20L * 7; ++n) {
    // The catalogue as the editor leaves it: each client with its projects.
    if (n < 20) AddClient(catalogue.clients, ClientName(n));
    TimeEntry sample = SampleEntry(n, count, 0, 0);
    sample.project = u"Project " + std::u16string(1, static_cast<char16_t>(u'a' + n / 20));
    GrowCatalogue(catalogue, *locale, sample);
  }
  FileTime first = 0, last = 0;
  SystemTimeToFileTime(MakeSystemTime(2016, 1, 1), &first);
  SystemTimeToFileTime(MakeSystemTime(2026, 1, 1), &last);
  for (long n = 0; n < count; ++n) {
    if (!AddEntry(entries, SampleEntry(n, count, first, last - first))) {
      std::fprintf(stderr, "entry %ld cannot be added\n", n);
      return 1;
    }
    // Commits every 50,000 so that the write-ahead log stays small.
    if (n % 50'000 == 49'999 && !(data.volume->CommitBatch() && data.volume->BeginBatch()))
      return 1;
  }
  return data.volume->CommitBatch() ? 0 : 1;
}

}  // namespace
}  // namespace quillora

int main(int argc, char** argv) { return quillora::Main(argc, argv); }
