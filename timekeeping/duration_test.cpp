#include "timekeeping/duration.h"

#include <gtest/gtest.h>

namespace quillora {
namespace {

TEST(EntryAmountTest, ExactBinary64Results) {
  struct Case {
    std::uint32_t duration, rate;
    std::uint16_t rate_type;
    std::uint32_t bits;
    double amount;
  } cases[] = {
      {17, 6000, kRateNormal, kOptionPreciseCalculation, 10.0},
      {83, 6000, kRateNormal, kOptionPreciseCalculation, 49.800000000000004},
      {117, 6000, kRateNormal, kOptionPreciseCalculation, 70.19999999999999},
      {33, 6000, kRateOvertime, kOptionPreciseCalculation, 0.3333333333333333 * 60.0},
      {67, 6000, kRateDiscount, kOptionPreciseCalculation, 0.6666666666666666 * 60.0},
      {17, 6000, kRateNormal, 0, 0.17 * 60.0},
      {250, 10000, kRateFixed, kOptionPreciseCalculation, 100.0},
      {0, 10000, kRateFixed, 0, 100.0},
      {150, 1250, kRateWeekend, 0, 12.5 * 1.5},
  };
  for (const auto& c : cases) {
    TimeEntry e;
    e.duration = c.duration;
    e.rate = c.rate;
    e.rateType = c.rate_type;
    Settings settings;
    settings.option_bits = c.bits;
    EXPECT_EQ(EntryAmount(e, settings), c.amount)
        << c.duration << " x " << c.rate << " type " << c.rate_type << " bits " << c.bits;
  }
}

}  // namespace
}  // namespace quillora
