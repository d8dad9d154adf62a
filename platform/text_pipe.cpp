#include "platform/text_pipe.h"

#include <utility>

namespace quillora {

TextPipe::TextPipe(Sink sink, std::size_t depth)
    : sink_(std::move(sink)),
      depth_(depth == 0 ? 1 : depth),
      thread_([this] { Run(); }) {}

TextPipe::~TextPipe() { Finish(); }

bool TextPipe::Put(std::u16string_view piece) {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [&] { return !ok_ || queue_.size() < depth_; });
  if (!ok_ || closing_) return false;
  std::u16string text;
  if (!spare_.empty()) {
    text = std::move(spare_.back());
    spare_.pop_back();
  }
  text.assign(piece);
  queue_.push_back(std::move(text));
  changed_.notify_all();
  return true;
}

bool TextPipe::Finish() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (finished_) return ok_;
    closing_ = true;
    finished_ = true;
  }
  changed_.notify_all();
  thread_.join();
  return ok_;
}

void TextPipe::Run() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return closing_ || !queue_.empty(); });
    if (queue_.empty()) return;
    std::u16string piece = std::move(queue_.front());
    queue_.pop_front();
    const bool pass = ok_;
    lock.unlock();
    const bool written = pass && sink_(piece);
    lock.lock();
    if (pass && !written) ok_ = false;
    piece.clear();
    spare_.push_back(std::move(piece));
    changed_.notify_all();
  }
}

}  // namespace quillora
