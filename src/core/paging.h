// A list that the server cuts into pages: the statement of a page, and the controls that turn it.
//
// Three nested selects cut it: the innermost takes the first `limit_from` rows in order, the middle
// one the last `page_size` of these, the outer one puts them back in order. Where fewer than
// `page_size` rows are left, the last page repeats rows of the page before; so it does when
// `limit_from` lies past the end. That is how the method works.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

class ComboBox;
class Label;
class Session;

// `rows` begins with the columns and ends before the order, which must part any two rows: else a
// page could repeat some and leave others out for ever.
std::string PageStatement(std::string_view rows, const std::vector<std::string>& sort,
                          bool descending, int page_size, int limit_from);
// "ORDER BY a desc,b desc"
std::string OrderBy(const std::vector<std::string>& columns, std::string_view direction);

// Which page is shown, and of how many rows.
class PageTurner {
 public:
  // `show` reads and shows the page that ends with row `limit_from`, and calls Shown when it could.
  PageTurner(Session& session, ComboBox& size, Label& position,
             std::function<void(int limit_from)> show);
  void Start();  // the first page, of the usual size
  void First();
  void Next();
  void Previous();
  void Again();
  void Shown(int limit_from);
  int size() const { return page_size_; }

 private:
  void TakeSize();

  Session& session_;
  ComboBox& size_;
  Label& position_;
  std::function<void(int limit_from)> show_;
  int page_size_ = 0;
  int limit_from_ = 0;
};

}  // namespace kaunter
