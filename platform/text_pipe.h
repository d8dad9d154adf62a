// A text sink run on a thread of its own: the pieces handed to Put are passed
// on in order while the caller goes on building the next ones, so building a
// long document and converting and writing it overlap. At most a few pieces
// wait at a time, so memory stays bounded.
#ifndef QUILLORA_PLATFORM_TEXT_PIPE_H_
#define QUILLORA_PLATFORM_TEXT_PIPE_H_

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace quillora {

class TextPipe {
 public:
  // Takes the next piece; false when it could not be written.
  using Sink = std::function<bool(std::u16string_view piece)>;

  explicit TextPipe(Sink sink, std::size_t depth = 4);
  // Finishes: every queued piece is passed on first.
  ~TextPipe();
  TextPipe(const TextPipe&) = delete;
  TextPipe& operator=(const TextPipe&) = delete;

  // Queues a copy of `piece`, waiting while the queue is full. False once the
  // sink has refused a piece: nothing more is passed on after that.
  bool Put(std::u16string_view piece);
  // Waits until every queued piece has been passed on and stops the thread.
  // False when the sink refused a piece.
  bool Finish();

 private:
  void Run();

  Sink sink_;
  std::size_t depth_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::u16string> queue_;
  // Emptied pieces kept for reuse, so a long run allocates nothing.
  std::vector<std::u16string> spare_;
  bool ok_ = true;
  bool closing_ = false;
  bool finished_ = false;
  std::thread thread_;
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_TEXT_PIPE_H_
