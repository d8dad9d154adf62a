// The words of one command after its name: options are taken out by name,
// what is left are the positional arguments.
#ifndef QUILLORA_APP_CLI_ARGUMENTS_H_
#define QUILLORA_APP_CLI_ARGUMENTS_H_

#include <optional>
#include <string>
#include <vector>

namespace quillora {

class Arguments {
 public:
  explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

  // Takes "--name VALUE" (the last one given wins). A "--name" with nothing
  // behind it is a usage error.
  std::optional<std::string> Value(const std::string& name);
  // Takes "--name V1 V2 ..." with `count` values.
  std::optional<std::vector<std::string>> Values(const std::string& name, std::size_t count);
  // Takes every "--name VALUE", in order.
  std::vector<std::string> AllValues(const std::string& name);
  // Takes "--name" and, when the word behind it passes `is_value`, that word
  // as well (the last "--name" given wins). Nothing when "--name" is absent;
  // an empty text when it has no value behind it.
  std::optional<std::string> OptionalValue(const std::string& name,
                                           bool (*is_value)(const std::string& word));
  // Takes "--name"; true when it was there.
  bool Flag(const std::string& name);

  // What is left once the options are taken; an unknown "--option" among them
  // is a usage error.
  std::vector<std::string> Positionals();

  // The first usage error met, empty when none.
  const std::string& error() const { return error_; }
  void Fail(const std::string& message) {
    if (error_.empty()) error_ = message;
  }

 private:
  std::vector<std::string> words_;
  std::string error_;
};

// "A,B,C" as the names A, B and C (UTF-8 words to wide text); false when a
// name among them is empty.
bool SplitClientNames(const std::string& text, std::vector<std::u16string>* names);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_ARGUMENTS_H_
