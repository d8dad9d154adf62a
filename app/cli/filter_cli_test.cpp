// The filter command end to end: the binary on a fresh data folder.
#include <gtest/gtest.h>

#include "tests/cli_fixture.h"

namespace quillora {
namespace {

constexpr char kEverything[] =
    "client=\nproject=\nphase=\ntask=\nbill-to=\ncurrency=\nrate-type=-1\n"
    "unpaid=yes\npaid=yes\nnon-billable=yes\n";

using FilterCliTest = testing::CliFixture;

// The registry values of a saved filter are pinned in periods/entry_filter_test.cpp;
// here each `filter show` runs in a new process, so it shows what was saved.
TEST_F(FilterCliTest, ShowSetAndResetKeepTheSavedFilter) {
  auto r = Run({"filter", "show"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, kEverything);

  r = Run({"filter", "set", "--client", "Acme \xc3\x89t\xc3\xa9", "--paid", "no",
           "--rate-type", "Fixed", "--task", "Design"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "client=Acme \xc3\x89t\xc3\xa9\nproject=\nphase=\ntask=Design\nbill-to=\n"
            "currency=\nrate-type=3\nunpaid=yes\npaid=no\nnon-billable=yes\n");
  EXPECT_EQ(Run({"filter", "show"}).out, r.out);

  // Only the options given change; an empty text clears its criterion.
  r = Run({"filter", "set", "--task", "", "--non-billable", "no", "--rate-type", "-1"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(
      r.out,
      "client=Acme \xc3\x89t\xc3\xa9\nproject=\nphase=\ntask=\nbill-to=\ncurrency=\n"
      "rate-type=-1\nunpaid=yes\npaid=no\nnon-billable=no\n");

  r = Run({"filter", "reset"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, kEverything);
  EXPECT_EQ(Run({"filter", "show"}).out, kEverything);
}

TEST_F(FilterCliTest, WrongUsageAndOverlongCriteriaChangeNothing) {
  ASSERT_EQ(Run({"filter", "set", "--currency", "EUR"}).status, 0);
  const std::string saved = Run({"filter", "show"}).out;
  for (const std::vector<std::string>& bad :
       std::vector<std::vector<std::string>>{{"filter"},
                                             {"filter", "set"},
                                             {"filter", "set", "--paid", "maybe"},
                                             {"filter", "set", "--rate-type", "5"},
                                             {"filter", "set", "--client"},
                                             {"filter", "set", "--bogus", "x"},
                                             {"filter", "set", "extra", "--paid", "no"},
                                             {"filter", "show", "extra"},
                                             {"filter", "clear"}}) {
    const auto r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad.back();
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << bad.back();
  }
  auto r = Run({"filter", "set", "--project", std::string(129, 'p')});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: --project takes at most 128 characters.\n");
  EXPECT_EQ(Run({"filter", "show"}).out, saved);

  r = Run({"filter", "set", "--project", std::string(128, 'p')});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("\nproject=" + std::string(128, 'p') + "\n"), std::string::npos);
  EXPECT_NE(r.out.find("\ncurrency=EUR\n"), std::string::npos);
}

}  // namespace
}  // namespace quillora
