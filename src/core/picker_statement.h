// The statement of one page of a picker.
#pragma once

#include <string>
#include <string_view>

#include "core/pickers.h"

namespace kaunter {

class Session;

// What the person has asked for. Empty fields narrow nothing; a field that the picker does not
// offer is left out.
struct PickerFilter {
  std::string search = {};  // wildcards of LIKE (% _ [ ]) work in it
  std::string extra = {};   // PickerExtra
  std::string comp_code = {};
  std::string area_code = {};
  std::string loan_group_id = {};
  std::string loan_type_id = {};
  std::string collect_info_id = {};
  bool hide_settled = false;
  std::size_t sort = 0;        // position among the picker's sorts
  bool texts_indexed = false;  // see AreTextsIndexed
};

// `limit_from` is the last row of the page; both numbers mean nothing to a picker without pages.
std::string PickerStatement(const Session& session, const Picker& picker,
                            const PickerFilter& filter, int page_size, int limit_from);

// A text that looks like no code of this picker and is none: without a figure, or the number of an
// identity card or a telephone. A look into the database parts such codes from the rest.
bool IsNoCode(Session& session, std::string_view picker_name, std::string_view text);

}  // namespace kaunter
