// The report engine's own small markup document: one wide-character text and
// an index of where every element's start tag, content and end tag lie.
//
// The same index serves a reader (SetDocument checks a text's element
// structure and records the positions; the Find/Into/Out calls walk them) and
// a writer (AddElement, AddChildElement and the attribute calls insert text and
// keep every offset of the index exact), so the two may be mixed. The XML
// export and the HTML report build their output with the writer, one element
// at a time, and hand the texts to a MarkupStream. Nothing here touches a
// file.
#ifndef QUILLORA_MARKUP_MARKUP_DOCUMENT_H_
#define QUILLORA_MARKUP_MARKUP_DOCUMENT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillora {

// Where one element lies in the document text. Every field is a character
// offset into the text except the last three, which are record indexes into
// the position table (0 = none; record 0 is the document record).
struct ElementPosition {
  // The '<' that opens the start tag.
  std::int32_t start_left = 0;
  // The '>' that closes the start tag.
  std::int32_t start_right = 0;
  // The '<' of the end tag; for an empty element (<name/>) its '/'. While the
  // reader parses the element's children it is where the next child is sought.
  std::int32_t end_left = 0;
  // The '>' that closes the end tag (start_right for an empty element).
  std::int32_t end_right = 0;
  // Where the writer inserts a sibling written behind this element: end_right
  // for an element the reader closed, end_right + 3 (past the line break) for
  // one the writer wrote.
  std::int32_t following = 0;
  std::int32_t parent = 0;
  std::int32_t first_child = 0;
  std::int32_t next_sibling = 0;

  friend bool operator==(const ElementPosition&, const ElementPosition&) = default;
};

// Which characters EscapeMarkup replaces.
enum class MarkupEscapeMode {
  kData,       // '<', '&', '>'
  kAttribute,  // those and the apostrophe and the double quote
};

// The text with "&lt;", "&amp;", "&gt;" (and in attribute mode "&apos;",
// "&quot;") put in place of those characters; everything else is copied.
std::u16string EscapeMarkup(std::u16string_view text, MarkupEscapeMode mode);
// The same, appended to `out`.
void AppendEscapedMarkup(std::u16string* out, std::u16string_view text,
                         MarkupEscapeMode mode);

class MarkupDocument {
 public:
  MarkupDocument() = default;

  // --- Reader ---

  // Replaces the document text and rebuilds the index from it. Current
  // element, current child and level go back to 0. The first top-level
  // element is parsed (anything before its '<' and after its end is ignored;
  // processing instructions, comments, CDATA sections and declarations are
  // skipped wherever they stand). Returns true when the text held a
  // well-formed element; otherwise the index is empty, ErrorText() says why
  // (empty for an empty text) and false is returned.
  bool SetDocument(std::u16string_view text);

  // Moves the current element to the next sibling whose tag name equals
  // `name` exactly (the first sibling when `name` is empty). With no current
  // element the search starts at the top-level element. On success the
  // current child is cleared; on failure nothing changes.
  bool FindElement(std::u16string_view name = {});

  // Moves the current child to the next child of the current element whose
  // tag name equals `name` (the first when `name` is empty), finding the
  // top-level element first when there is no current element. False when the
  // current element is empty or no such child follows.
  bool FindChildElement(std::u16string_view name = {});

  // Makes the current child (the first child when there is none) the current
  // element, one level deeper. False when there is no child.
  bool IntoElement();

  // Makes the current element the current child of its parent, one level up.
  // False at the top level or without a current element.
  bool OutOfElement();

  // The element name of a record: the first token behind its '<'. Empty for
  // record 0 and for an index the table does not hold.
  std::u16string TagName(int index) const;

  // --- Writer ---

  // Adds an element behind the current element, at the same level, and makes
  // it the current element (current child cleared). Without a current element
  // the new element is the top-level element: that fails when the document is
  // already well-formed, otherwise the document text is emptied first. Empty
  // data writes <name/>. Returns false only for a second top-level element.
  bool AddElement(std::u16string_view name, std::u16string_view data = {});

  // Adds a child of the current element behind the current child (behind the
  // last child when there is no current child) and makes it the current
  // child. An empty current element is opened into a start and end tag.
  // False without a current element.
  bool AddChildElement(std::u16string_view name, std::u16string_view data = {});

  // Writes name="value" at the end of the start tag of the current element
  // (AddAttribute) or the current child (AddChildAttribute). Attributes are
  // never looked up: the same name added twice is written twice. False when
  // that element does not exist.
  bool AddAttribute(std::u16string_view name, std::u16string_view value);
  bool AddChildAttribute(std::u16string_view name, std::u16string_view value);

  // Empties the document for the next one: no text, no element, nothing
  // current. The text and the position table keep their room, so a document
  // built again and again (one element of a long output at a time) allocates
  // nothing once it has grown.
  void Clear();

  // --- State ---

  const std::u16string& DocumentText() const { return text_; }
  // The message of the last failed SetDocument; empty when it succeeded.
  const std::u16string& ErrorText() const { return error_; }
  // True when the table exists and the document record has a first child.
  bool IsWellFormed() const;
  int CurrentLevel() const { return level_; }
  int CurrentElement() const { return current_; }
  int CurrentChild() const { return child_; }
  // The first unused record of the position table (1 when it holds nothing).
  int NextFreeIndex() const { return next_free_; }
  // A copy of one record; an all-zero record for an index not in use.
  ElementPosition Position(int index) const;

 private:
  struct Token {
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t next = 0;
    bool is_string = false;
  };

  // Reader (markup_reader.cpp).
  bool FindToken(Token& token) const;
  bool FindChar(std::int32_t& offset, char16_t c) const;
  std::u16string TokenText(const Token& token) const;
  bool TokenIs(const Token& token, std::u16string_view text) const;
  std::int32_t FindString(std::int32_t from, std::u16string_view what) const;
  int ParseElement(int parent);
  int ParseStartTag(int parent, bool* complete);
  bool ParseEndTag(int index);
  int ParseError(std::u16string_view message, std::u16string_view name = {});

  // Position table.
  void EnsureTable(std::size_t records);
  int TakeFreeRecord();
  void GiveBackRecord();
  void ClearDocumentRecord();
  bool IsEmptyElement(int index) const;
  bool TagNameIs(int index, std::u16string_view name) const;

  // Writer (markup_writer.cpp).
  int AddElementUnder(int parent, int before, std::u16string_view name,
                      std::u16string_view data);
  bool SetAttribute(int index, std::u16string_view name, std::u16string_view value);
  void WriteElement(char16_t* at, std::u16string_view name, std::u16string_view data,
                    std::size_t extra);
  char16_t* MakeRoom(std::int32_t offset, std::int32_t replaced, std::int32_t length);
  void ShiftIndex(int from, std::int32_t delta);

  std::u16string text_;
  std::int32_t level_ = 0;
  std::u16string error_;
  // Its size is the allocated count; next_free_ is the used count.
  std::vector<ElementPosition> positions_;
  int current_ = 0;
  int child_ = 0;
  int next_free_ = 1;
};

}  // namespace quillora

#endif  // QUILLORA_MARKUP_MARKUP_DOCUMENT_H_
