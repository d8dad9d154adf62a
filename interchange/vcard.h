// The vCard reader of the contacts import: what a contacts application files
// a person as, and the company, read from the cards of a .vcf file.
//
// Versions 3.0 and 4.0 (RFC 2426, RFC 6350) as UTF-8 text: folded lines are
// unfolded, property names are matched without regard to letter case and
// may carry a group ("item1.ORG"), parameters are skipped (quoted values
// included), and the escapes \\ \, \; \n \N are undone. Unknown properties
// are ignored; a card without END:VCARD, or with nothing to file it as, is
// skipped. Other versions are read by the same rules.
#ifndef QUILLORA_INTERCHANGE_VCARD_H_
#define QUILLORA_INTERCHANGE_VCARD_H_

#include <string>
#include <string_view>
#include <vector>

namespace quillora {

struct VCard {
  std::u16string file_as;  // never empty
  std::u16string company;  // the organization name of ORG, or empty
  friend bool operator==(const VCard&, const VCard&) = default;
};

// The "file as" name of a card, as a contacts application files it by
// default: "Family, Given" from N; the family or the given name alone when
// only one is there; else the formatted name FN; else the company. Empty
// when there is none of them.
std::u16string FileAsName(std::u16string_view family, std::u16string_view given,
                          std::u16string_view formatted, std::u16string_view company);

// The cards of a file's bytes, in file order. Never fails: damaged input
// gives the cards that could be read (possibly none). A UTF-8 byte order
// mark is skipped; invalid UTF-8 becomes U+FFFD.
std::vector<VCard> ReadVCards(std::string_view bytes);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_VCARD_H_
