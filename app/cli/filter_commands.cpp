// The filter command: show, reset and change the saved entry filter that
// `list`, `summary`, `export` and the window apply.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "periods/entry_filter.h"
#include "platform/text.h"

namespace quillora {
namespace {

struct TextOption {
  const char* name;
  std::u16string EntryFilter::*field;
};
constexpr TextOption kTextOptions[] = {
    {"--client", &EntryFilter::client},   {"--project", &EntryFilter::project},
    {"--phase", &EntryFilter::phase},     {"--task", &EntryFilter::task},
    {"--bill-to", &EntryFilter::bill_to}, {"--currency", &EntryFilter::currency},
};

struct SwitchOption {
  const char* name;
  bool EntryFilter::*field;
};
constexpr SwitchOption kSwitchOptions[] = {
    {"--unpaid", &EntryFilter::show_unpaid},
    {"--paid", &EntryFilter::show_paid},
    {"--non-billable", &EntryFilter::show_non_billable},
};

const char* const kRateTypeNames[] = {"Normal", "Overtime", "Weekend", "Fixed",
                                      "Discount"};

// -1..4, or a rate type's short name; false for anything else.
bool ParseRateType(const std::string& text, std::int32_t* rate_type) {
  if (text == "-1") {
    *rate_type = kAnyRateType;
    return true;
  }
  for (std::int32_t i = 0; i < 5; ++i) {
    if (text == std::to_string(i) || text == kRateTypeNames[i]) {
      *rate_type = i;
      return true;
    }
  }
  return false;
}

void PrintFilter(const EntryFilter& f) {
  for (const TextOption& o : kTextOptions) {
    std::printf("%s=%s\n", o.name + 2, ToUtf8(f.*o.field).c_str());
  }
  std::printf("rate-type=%d\n", static_cast<int>(f.rate_type));
  for (const SwitchOption& o : kSwitchOptions) {
    std::printf("%s=%s\n", o.name + 2, f.*o.field ? "yes" : "no");
  }
}

// The saved filter as the window loads it at start.
bool LoadSaved(CliContext& context, EntryFilter* filter) {
  filter->Reset();
  return LoadFilter(*context.data.registry, filter);
}

int SaveAndPrint(CliContext& context, const EntryFilter& filter) {
  if (!SaveFilter(*context.data.registry, filter)) {
    return context.Fail(u"The filter could not be saved.");
  }
  PrintFilter(filter);
  return kExitDone;
}

int Set(CliContext& context, Arguments& args) {
  // Every option is taken before anything is opened, so that a usage error
  // changes nothing.
  std::vector<std::pair<const TextOption*, std::string>> texts;
  for (const TextOption& o : kTextOptions) {
    if (auto value = args.Value(o.name)) texts.emplace_back(&o, *value);
  }
  std::vector<std::pair<const SwitchOption*, bool>> switches;
  for (const SwitchOption& o : kSwitchOptions) {
    auto value = args.Value(o.name);
    if (!value) continue;
    if (*value != "yes" && *value != "no") {
      return UsageError(std::string(o.name) + " takes yes or no, not " + *value);
    }
    switches.emplace_back(&o, *value == "yes");
  }
  std::optional<std::int32_t> rate_type;
  if (auto value = args.Value("--rate-type")) {
    std::int32_t parsed = 0;
    if (!ParseRateType(*value, &parsed)) {
      return UsageError("--rate-type takes -1 (any), 0..4 or " +
                        std::string("Normal|Overtime|Weekend|Fixed|Discount, not ") +
                        *value);
    }
    rate_type = parsed;
  }
  const auto extra = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (extra.size() != 1) return UsageError("filter set takes options only");
  if (texts.empty() && switches.empty() && !rate_type) {
    return UsageError("filter set needs at least one option");
  }

  if (!context.OpenData()) return kExitFailed;
  EntryFilter filter;
  if (!LoadSaved(context, &filter)) return context.Fail(kFilterNotRead);
  for (const auto& [option, text] : texts) {
    std::u16string wide = FromUtf8(text);
    if (wide.size() > kFilterCriterionChars) {
      return context.Fail(WidenAscii(option->name) + u" takes at most " +
                          WidenAscii(std::to_string(kFilterCriterionChars)) +
                          u" characters.");
    }
    filter.*option->field = std::move(wide);
  }
  for (const auto& [option, on] : switches) filter.*option->field = on;
  if (rate_type) filter.rate_type = *rate_type;
  return SaveAndPrint(context, filter);
}

int RunFilter(CliContext& context, Arguments& args) {
  // A look at the first word on a copy leaves the options for `set`.
  Arguments probe = args;
  const auto first = probe.Positionals();
  if (!first.empty() && first[0] == "set") return Set(context, args);

  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.empty()) return UsageError("filter needs show, reset or set");
  if (words.size() != 1) return UsageError("filter " + words[0] + " takes no arguments");
  if (words[0] == "show") {
    if (!context.OpenData()) return kExitFailed;
    EntryFilter filter;
    if (!LoadSaved(context, &filter)) {
      return context.Fail(kFilterNotRead);
    }
    PrintFilter(filter);
    return kExitDone;
  }
  if (words[0] == "reset") {
    if (!context.OpenData()) return kExitFailed;
    return SaveAndPrint(context, EntryFilter());
  }
  return UsageError("unknown filter command " + words[0]);
}

}  // namespace

const Command kFilterCommand = {
    "filter", "filter show | reset | set [OPTIONS]", "show or change the entry filter",
    "The saved entry filter decides which entries list, summary, export, report\n"
    "and the window show. filter show prints it, filter reset shows everything\n"
    "again, filter set changes only the criteria given:\n"
    "  --client T  --project T  --phase T  --task T  --bill-to T  --currency T\n"
    "              keep only entries whose field is exactly T (letter case\n"
    "              counts); an empty T clears the criterion; at most 128\n"
    "              characters\n"
    "  --rate-type -1..4|Normal|Overtime|Weekend|Fixed|Discount   (-1: any)\n"
    "  --unpaid yes|no  --paid yes|no  --non-billable yes|no\n"
    "              whether billable unpaid, billable paid and non-billable\n"
    "              entries are shown",
    RunFilter};

}  // namespace quillora
