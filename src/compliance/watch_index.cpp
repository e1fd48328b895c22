#include "compliance/watch_index.h"

#include <algorithm>
#include <cctype>

#include "core/texts.h"

namespace kaunter {
namespace {

constexpr std::size_t kShortestSimilar = 6;

std::vector<std::string> NamesOf(const std::vector<WatchEntry>& entries) {
  std::vector<std::string> names;
  names.reserve(entries.size());
  for (const WatchEntry& entry : entries) names.push_back(entry.Name);
  return names;
}

// "" for a number that is too short to tell.
std::string LettersAndDigits(const std::string& number) {
  std::string plain;
  bool digit = false;
  for (const char c : Upper(number)) {
    const auto byte = static_cast<unsigned char>(c);
    if (!std::isalnum(byte) && byte < 0x80) continue;
    digit = digit || std::isdigit(byte);
    plain += c;
  }
  return digit && plain.size() >= kShortestSimilar ? plain : std::string();
}

const Caption kSameNumber[] = {{"same new IC", "新身份证相同"},
                               {"old IC is a listed passport", "旧身份证与名单护照相同"},
                               {"other IC is a listed passport", "其他证件与名单护照相同"}};

}  // namespace

WatchIndex::WatchIndex(const std::vector<WatchEntry>& entries) : names_(NamesOf(entries)) {
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    const auto add = [i](Numbers& numbers, const std::string& number) {
      if (!number.empty()) numbers[number].push_back(i);
    };
    add(nric_, Upper(entries[i].NRIC));
    add(passport_, Upper(entries[i].PassportNo));
    listed_ics_.push_back(LettersAndDigits(entries[i].NRIC));
    add(plain_, listed_ics_.back());
    add(plain_, LettersAndDigits(entries[i].PassportNo));
  }
}

std::vector<WatchFind> WatchIndex::Find(const ScreenedCustomer& customer) const {
  std::vector<WatchFind> finds;
  const auto find = [&finds](std::size_t entry) -> WatchFind& {
    const auto known = std::ranges::find(finds, entry, &WatchFind::entry);
    return known != finds.end() ? *known : finds.emplace_back(WatchFind{entry, false, {}});
  };
  const struct {
    const std::string& number;
    const Numbers& listed;
    const Caption& same;
  } numbers[] = {{customer.CustNIC, nric_, kSameNumber[0]},
                 {customer.CustOIC, passport_, kSameNumber[1]},
                 {customer.CustOthIC, passport_, kSameNumber[2]}};
  for (const auto& each : numbers) {
    const auto equal = each.listed.find(Upper(Trim(each.number)));
    if (each.number.empty() || equal == each.listed.end()) continue;
    for (const std::uint32_t entry : equal->second) {
      find(entry).by_number = true;
      AddReason(find(entry).reason, each.same);
    }
  }
  for (const auto& each : numbers) {
    const std::string plain = LettersAndDigits(each.number);
    const auto similar = plain.empty() ? plain_.end() : plain_.find(plain);
    if (similar == plain_.end()) continue;
    for (const std::uint32_t entry : similar->second) {
      if (!find(entry).reason.english.empty()) continue;
      find(entry).reason = {"number written otherwise, or of another kind: " + each.number,
                            "号码写法或种类不同：" + each.number};
    }
  }
  const std::string ic = LettersAndDigits(customer.CustNIC);
  for (const NameHit& hit : names_.Find(customer.CustName)) {
    WatchFind& found = find(hit.entry);
    const bool by_name_alone = found.reason.english.empty();
    AddReason(found.reason, hit.reason);
    const std::string& listed = listed_ics_[hit.entry];
    if (by_name_alone && !ic.empty() && !listed.empty() && ic != listed) {
      AddReason(found.reason, {"but another IC", "但身份证不同"});
    }
  }
  std::ranges::sort(finds, {}, &WatchFind::entry);
  return finds;
}

}  // namespace kaunter
