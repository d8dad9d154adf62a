// The filter command end to end: the binary on a fresh data folder.
#include <gtest/gtest.h>

#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

constexpr char kEverything[] =
    "client=\nproject=\nphase=\ntask=\nbill-to=\ncurrency=\nrate-type=-1\n"
    "unpaid=yes\npaid=yes\nnon-billable=yes\n";

class FilterCliTest : public ::testing::Test {
 protected:
  std::string Data() const { return dir_.File("data"); }
  testing::RunResult Run(const std::vector<std::string>& args) {
    return RunQuillora(Data(), args);
  }
  // The filter values as `settings show` lists them, one line each.
  std::string SavedValues() {
    std::string values;
    std::string out = Run({"settings", "show"}).out;
    for (std::size_t at = out.find("\nf"); at != std::string::npos;
         at = out.find("\nf", at + 1)) {
      values += out.substr(at + 1, out.find('\n', at + 1) - at);
    }
    return values;
  }
  testing::TempDir dir_;
};

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
  EXPECT_EQ(SavedValues(),
            "fClient=Acme \xc3\x89t\xc3\xa9\nfProject=\nfPhase=\nfTask=Design\nfBillTo=\n"
            "fCurrency=\nfFlags=17\nfRateType=3\n");

  // Only the options given change; an empty text clears its criterion.
  r = Run({"filter", "set", "--task", "", "--non-billable", "no", "--rate-type", "-1"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(
      r.out,
      "client=Acme \xc3\x89t\xc3\xa9\nproject=\nphase=\ntask=\nbill-to=\ncurrency=\n"
      "rate-type=-1\nunpaid=yes\npaid=no\nnon-billable=no\n");
  EXPECT_NE(SavedValues().find("fFlags=1\n"), std::string::npos);

  r = Run({"filter", "reset"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, kEverything);
  EXPECT_EQ(SavedValues(),
            "fClient=\nfProject=\nfPhase=\nfTask=\nfBillTo=\nfCurrency=\nfFlags=21\n"
            "fRateType=-1\n");
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
