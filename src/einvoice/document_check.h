// What the service would refuse of the parts that every document has: who is named in it, its texts
// and its codes. It is told before anything is sent and stops nobody: the office may know better,
// and the service has the last word.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "einvoice/tax_identity.h"
#include "screen/caption.h"

namespace kaunter {

// A party of a document, as it goes out.
struct DocumentParty {
  std::string tin, id_no, id_type, name, phone, email, address, postcode, city, state, country;
};

class DocumentCheck {
 public:
  // Hears what is wrong: "phone", "must begin with +6".
  using Tell = std::function<void(const Caption& field, const Caption& what)>;
  using Codes = std::set<std::string, std::less<>>;

  // Reads the authority's codes; a table without rows is not asked.
  explicit DocumentCheck(Connection& main);

  static void Missing(const Caption& field, const Tell& tell);
  // Nothing is escaped: a text with a quote, a backslash or a control sign breaks the document.
  static void Text(const Caption& field, std::string_view text, bool required, const Tell& tell);
  // A text that is one of the codes.
  static void Code(const Caption& field, std::string_view code, const Codes& codes,
                   const Tell& tell);
  void Party(const DocumentParty& party, const Tell& tell) const;
  // The tax identity that a company goes out with; that it has none is told when it is chosen.
  void Company(Connection& main, std::string_view comp_code, const Tell& tell) const;

  const Codes& taxes() const { return taxes_; }
  const Codes& classes() const { return classes_; }
  const Codes& business() const { return business_; }

 private:
  Codes states_, countries_, taxes_, classes_, business_;
};

}  // namespace kaunter
