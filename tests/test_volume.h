// An object store volume in a fresh temporary folder, for tests of the logic.
#ifndef QUILLORA_TESTS_TEST_VOLUME_H_
#define QUILLORA_TESTS_TEST_VOLUME_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/object_store.h"
#include "tests/temp_dir.h"

namespace quillora::testing {

class TestVolume {
 public:
  TestVolume() { Reopen(); }
  // Closes and opens the volume again, as a new process would.
  void Reopen() {
    store_.reset();
    std::string error;
    store_ = OpenSqliteObjectStore(dir_.File("quillora.db"), &error);
    EXPECT_NE(store_, nullptr) << error;
  }
  ObjectStore& store() { return *store_; }
  const TempDir& dir() const { return dir_; }

 private:
  TempDir dir_;
  std::unique_ptr<ObjectStore> store_;
};

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_TEST_VOLUME_H_
