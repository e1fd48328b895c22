// The entries of the watch list, found by a customer: by a number that is equal, and by what is
// similar to a number or the name.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "compliance/name_index.h"
#include "compliance/watch_list.h"

namespace kaunter {

struct ScreenedCustomer {
  std::string CustID;
  std::string CompCode;
  std::string CustName;
  std::string CustNIC;
  std::string CustOIC;
  std::string CustOthIC;
};

struct WatchFind {
  std::size_t entry;       // position in the list
  bool by_number = false;  // a number is equal, as at the counter; else it is similar
  Caption reason;
};

class WatchIndex {
 public:
  explicit WatchIndex(const std::vector<WatchEntry>& entries);

  // Each entry once, by position. Numbers are equal as at the counter: the new IC among the list's
  // NRIC, the two others among its passports. Similar is one that has the same letters and digits,
  // six at least, in either column.
  std::vector<WatchFind> Find(const ScreenedCustomer& customer) const;

 private:
  using Numbers = std::unordered_map<std::string, std::vector<std::uint32_t>>;

  NameIndex names_;
  Numbers nric_;
  Numbers passport_;
  Numbers plain_;                        // either, letters and digits alone
  std::vector<std::string> listed_ics_;  // of each entry, in the same way
};

}  // namespace kaunter
