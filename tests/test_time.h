// A moment as the stores keep it, for the tests' sample entries.
#ifndef QUILLORA_TESTS_TEST_TIME_H_
#define QUILLORA_TESTS_TEST_TIME_H_

#include "platform/clock.h"

namespace quillora::testing {

// The FILETIME of a local date and time; 0 for a date that does not exist.
inline FileTime At(int year, int month, int day, int hour = 0, int minute = 0,
                   int second = 0) {
  FileTime t = 0;
  SystemTimeToFileTime(MakeSystemTime(year, month, day, hour, minute, second), &t);
  return t;
}

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_TEST_TIME_H_
