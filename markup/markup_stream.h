// A long markup document written as it is built. Its outer elements stay
// open while their content arrives element by element, each element built on
// its own with MarkupDocument's writer; the text is handed on in pieces, so
// an output of any length needs memory for one element at a time.
//
// The text is exactly what MarkupDocument's writer gives for the same
// document built in one piece: a start tag closed on its own line once
// content follows, "<name/>" and a line break for an element left empty, an
// end tag and a line break otherwise.
#ifndef QUILLORA_MARKUP_MARKUP_STREAM_H_
#define QUILLORA_MARKUP_MARKUP_STREAM_H_

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "markup/markup_document.h"

namespace quillora {

class MarkupStream {
 public:
  // Takes the next piece of text; false when it could not be written.
  using Sink = std::function<bool(std::u16string_view piece)>;

  // Pieces of about `piece_size` characters go to `sink`, each ending behind
  // a whole element or tag.
  explicit MarkupStream(Sink sink, std::size_t piece_size = 64 * 1024);

  // Opens an element inside the innermost open one (at the top level when
  // none is open). False for a second top-level element.
  bool Open(std::u16string_view name);
  // Writes name="value" into the start tag of the innermost open element.
  // False when none is open or it has content already.
  bool Attribute(std::u16string_view name, std::u16string_view value);
  // Writes a finished element, the text of `element`, inside the innermost
  // open element.
  void Add(const MarkupDocument& element) { Add(element.DocumentText()); }
  // The same for the text of an element built earlier.
  void Add(std::u16string_view element_text);
  // Closes the innermost open element; false when none is open.
  bool Close();
  // Closes every open element and hands on the rest of the text. False when
  // the sink refused a piece (nothing more was handed to it after that).
  bool Finish();

  bool ok() const { return ok_; }

 private:
  struct OpenElement {
    std::u16string name;
    bool has_content = false;
  };

  // Ends the start tag of the innermost open element before its first content.
  void StartContent();
  void FlushIfFull();
  void Flush();

  Sink sink_;
  std::size_t piece_size_;
  std::u16string buffer_;
  std::vector<OpenElement> open_;
  bool top_level_written_ = false;
  bool ok_ = true;
};

}  // namespace quillora

#endif  // QUILLORA_MARKUP_MARKUP_STREAM_H_
