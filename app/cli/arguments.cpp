#include "app/cli/arguments.h"

#include "platform/text.h"

namespace quillora {

std::optional<std::vector<std::string>> Arguments::Values(const std::string& name,
                                                          std::size_t count) {
  std::optional<std::vector<std::string>> found;
  for (std::size_t i = 0; i < words_.size();) {
    if (words_[i] != name) {
      ++i;
      continue;
    }
    if (i + count >= words_.size()) {
      Fail(name + " needs " + (count == 1 ? "a value" : std::to_string(count) + " values"));
      words_.erase(words_.begin() + static_cast<long>(i), words_.end());
      return std::nullopt;
    }
    found = std::vector<std::string>(words_.begin() + static_cast<long>(i) + 1,
                                     words_.begin() + static_cast<long>(i + 1 + count));
    words_.erase(words_.begin() + static_cast<long>(i),
                 words_.begin() + static_cast<long>(i + 1 + count));
  }
  return found;
}

std::optional<std::string> Arguments::Value(const std::string& name) {
  auto values = Values(name, 1);
  if (!values) return std::nullopt;
  return (*values)[0];
}

std::vector<std::string> Arguments::AllValues(const std::string& name) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < words_.size();) {
    if (words_[i] != name) {
      ++i;
      continue;
    }
    if (i + 1 >= words_.size()) {
      Fail(name + " needs a value");
      words_.erase(words_.begin() + static_cast<long>(i));
      break;
    }
    all.push_back(words_[i + 1]);
    words_.erase(words_.begin() + static_cast<long>(i),
                 words_.begin() + static_cast<long>(i + 2));
  }
  return all;
}

std::optional<std::string> Arguments::OptionalValue(const std::string& name,
                                                    bool (*is_value)(const std::string&)) {
  std::optional<std::string> found;
  for (std::size_t i = 0; i < words_.size();) {
    if (words_[i] != name) {
      ++i;
      continue;
    }
    const bool valued = i + 1 < words_.size() && is_value(words_[i + 1]);
    found = valued ? words_[i + 1] : std::string();
    words_.erase(words_.begin() + static_cast<long>(i),
                 words_.begin() + static_cast<long>(i + (valued ? 2 : 1)));
  }
  return found;
}

bool Arguments::Flag(const std::string& name) {
  bool found = false;
  for (std::size_t i = 0; i < words_.size();) {
    if (words_[i] == name) {
      found = true;
      words_.erase(words_.begin() + static_cast<long>(i));
    } else {
      ++i;
    }
  }
  return found;
}

std::vector<std::string> Arguments::Positionals() {
  for (const std::string& w : words_) {
    if (w.size() > 2 && w.compare(0, 2, "--") == 0) Fail("unknown option " + w);
  }
  return words_;
}

bool SplitClientNames(const std::string& text, std::vector<std::u16string>* names) {
  std::size_t begin = 0;
  for (;;) {
    const std::size_t comma = text.find(',', begin);
    const std::string name = text.substr(
        begin, comma == std::string::npos ? std::string::npos : comma - begin);
    if (name.empty()) return false;
    names->push_back(FromUtf8(name));
    if (comma == std::string::npos) return true;
    begin = comma + 1;
  }
}

}  // namespace quillora
