#include "links/link_recount.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "core/amounts.h"
#include "core/session.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

// Documents that are looked for by one statement.
constexpr std::size_t kTogether = 200;

// What the bridge holds under a number; numbers are told without regard to case.
struct Held {
  int rows = 0;
  std::string date;
  std::string party;
  Money amount;
  Money lines;
};
using HeldByNumber = std::map<std::string, Held>;

struct Place {
  LinkKind kind;
  LinkSide side;
  auto operator<=>(const Place&) const = default;
};

HeldByNumber ReadHeld(Connection& aed, const Place& place, const std::string& numbers) {
  const BridgeNames& names = NamesOf(place.side);
  HeldByNumber held;
  if (place.kind == LinkKind::party) {
    for (Recordset row = aed.Query(
             fmt::format("SELECT AccNo FROM {} WHERE AccNo IN ({})", names.party, numbers));
         !row.Eof(); row.MoveNext()) {
      ++held[Lower(NullToEmpty(row.Field(0)))].rows;
    }
    return held;
  }
  const auto [table, amount] = place.kind == LinkKind::invoice ? std::pair{names.invoice, "Total"}
                               : place.kind == LinkKind::payment
                                   ? std::pair{names.payment, "PaymentAmount"}
                                   : std::pair{names.credit_note, "Amount"};
  for (Recordset row =
           aed.Query(fmt::format("SELECT DocNo,DocDate,{},{} FROM {} WHERE DocNo IN ({})",
                                 names.party_column, amount, table, numbers));
       !row.Eof(); row.MoveNext()) {
    Held& one = held[Lower(NullToEmpty(row.Field(0)))];
    ++one.rows;
    one.date = ShowDate(row.Field(1));
    one.party = NullToEmpty(row.Field(2));
    one.amount += Sen(row.Field(3));
  }
  if (place.kind != LinkKind::invoice) return held;
  for (Recordset row = aed.Query(fmt::format("SELECT DocNo,Amount FROM {} WHERE DocNo IN ({})",
                                             names.invoice_lines, numbers));
       !row.Eof(); row.MoveNext()) {
    held[Lower(NullToEmpty(row.Field(0)))].lines += Sen(row.Field(1));
  }
  return held;
}

// What is wrong; nothing when all is well.
std::optional<Caption> Compare(const LinkedDocument& document, const Held& held) {
  if (held.rows == 0) {
    if (document.optional) return std::nullopt;
    return Caption{"Missing", "缺少"};
  }
  if (held.rows > 1) return Caption{"There twice", "重复"};
  if (document.kind == LinkKind::party) return std::nullopt;
  if (held.amount != document.Amount) return Caption{"Another amount", "金额不同"};
  Money lines;
  for (const LinkedInvoiceLine& line : document.lines) lines += line.Amount;
  if (document.kind == LinkKind::invoice && held.lines != lines) {
    return Caption{"Lines missing or wrong", "明细缺少或不符"};
  }
  if (!SameText(held.party, document.Party)) return Caption{"Another party", "对象不同"};
  if (held.date != document.DocDate) return Caption{"Another date", "日期不同"};
  return std::nullopt;
}

// Who stands in the documents and is not among them himself.
void AddPersons(Session& session, std::vector<LinkedDocument>& documents) {
  std::set<std::string> there[2];
  for (const LinkedDocument& one : documents) {
    if (one.kind == LinkKind::party) there[static_cast<int>(one.side)].insert(Lower(one.Party));
  }
  std::vector<LinkedDocument> persons;
  for (const LinkSide side : {LinkSide::receivable, LinkSide::payable}) {
    std::set<std::string>& known = there[static_cast<int>(side)];
    std::vector<std::string> keys;
    const auto read = [&] {
      const LinkSource source =
          side == LinkSide::receivable ? LinkSource::customer : LinkSource::supplier;
      for (LinkedDocument& person : ReadDocuments(session, source, keys)) {
        persons.push_back(std::move(person));
      }
      keys.clear();
    };
    for (const LinkedDocument& one : documents) {
      if (one.side != side || one.Party.empty() || !known.insert(Lower(one.Party)).second) continue;
      keys.push_back(one.Party);
      if (keys.size() == kTogether) read();
    }
    read();
  }
  documents.insert(documents.begin(), std::make_move_iterator(persons.begin()),
                   std::make_move_iterator(persons.end()));
}

}  // namespace

std::vector<LinkDifference> CompareWithBridge(Connection& aed,
                                              const std::vector<LinkedDocument>& documents) {
  std::map<Place, std::string> numbers;
  for (const LinkedDocument& one : documents) {
    std::string& list = numbers[{one.kind, one.side}];
    list += (list.empty() ? "" : ",") + QuoteStr(one.DocNo);
  }
  std::map<Place, HeldByNumber> held;
  for (const auto& [place, list] : numbers) held[place] = ReadHeld(aed, place, list);
  std::vector<LinkDifference> differences;
  for (const LinkedDocument& one : documents) {
    const Held& there = held[{one.kind, one.side}][Lower(one.DocNo)];
    const std::optional<Caption> what = Compare(one, there);
    if (!what) continue;
    const bool shown = there.rows > 0 && one.kind != LinkKind::party;
    differences.push_back({one, shown ? Format(there.amount, "#,##0.00") : "", *what});
  }
  return differences;
}

LinkRecount Recount(Session& session, Connection& aed, const std::string& from,
                    const std::string& to, const std::string& company,
                    const LinkProgress& progress) {
  std::vector<LinkedDocument> documents;
  for (int i = static_cast<int>(LinkSource::first); i <= static_cast<int>(LinkSource::last); ++i) {
    for (LinkedDocument& one :
         ReadDocuments(session, static_cast<LinkSource>(i), from, to, company)) {
      documents.push_back(std::move(one));
    }
  }
  AddPersons(session, documents);
  LinkRecount recount;
  for (std::size_t at = 0; at < documents.size(); at += kTogether) {
    if (!progress(at, documents.size())) {
      recount.complete = false;
      break;
    }
    const auto first = documents.begin() + static_cast<std::ptrdiff_t>(at);
    const std::size_t count = std::min(kTogether, documents.size() - at);
    recount.documents += static_cast<std::size_t>(
        std::count_if(first, first + static_cast<std::ptrdiff_t>(count),
                      [](const LinkedDocument& one) { return !one.optional; }));
    for (LinkDifference& one :
         CompareWithBridge(aed, {first, first + static_cast<std::ptrdiff_t>(count)})) {
      recount.differences.push_back(std::move(one));
    }
  }
  return recount;
}

Resent Resend(Session& session, Connection& aed, const LinkedDocument& document) {
  for (const LinkedDocument& now :
       ReadDocuments(session, document.source, std::vector{document.DocNo})) {
    if (now.kind != document.kind || now.side != document.side) continue;
    Transaction transaction(aed);
    if (CompareWithBridge(aed, {now}).empty()) return Resent::sound;
    PutDocument(aed, now);
    transaction.Commit();
    return Resent::sent;
  }
  return Resent::gone;
}

}  // namespace kaunter
