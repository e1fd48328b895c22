#include "compliance/rescreening.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "core/audit.h"
#include "core/company_access.h"
#include "core/record.h"
#include "core/session.h"
#include "core/staged_rows.h"
#include "core/values.h"
#include "platform/sql/retry.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr std::string_view kHit = "HIT";
constexpr std::string_view kNoHit = "NO HIT";
constexpr std::size_t kBetweenProgress = 2000;

// A decision with both sides as they stood.
struct KeptDecision {
  WatchDecision decision;
  std::vector<std::string> customer;
  WatchEntry entry;
};
using Kept = std::unordered_map<std::string, std::vector<KeptDecision>>;  // of a customer, oldest
                                                                          // first

std::vector<std::string> SideOf(const ScreenedCustomer& customer) {
  return {customer.CustName, customer.CustNIC, customer.CustOIC, customer.CustOthIC};
}

std::string KeyOf(std::string_view cust_id) { return Upper(Trim(cust_id)); }

Kept ReadDecisions(Connection& main, const std::string& where) {
  Kept kept;
  Recordset rows = main.Query(
      "SELECT CustID,SeqNo,CustName,CustNIC,CustOIC,CustOthIC,RefNo,ListName,ListNRIC,"
      "ListPassportNo,ListOther,Decision,Remark,UserID,DateCreated FROM AMLADecision " +
      where + " ORDER BY CustID,SeqNo");
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto text = [&rows](std::string_view column) { return NullToEmpty(rows.Field(column)); };
    kept[KeyOf(text("CustID"))].push_back(
        {{CLng(text("SeqNo")), text("Decision") == kHit, text("Remark"), text("UserID"),
          *rows.Field("DateCreated").AsDate()},
         {text("CustName"), text("CustNIC"), text("CustOIC"), text("CustOthIC")},
         {text("RefNo"), text("ListName"), text("ListNRIC"), text("ListPassportNo"),
          text("ListOther")}});
  }
  return kept;
}

// The same entry before it changed: one reference may stand for several names.
bool SameEntry(const WatchEntry& a, const WatchEntry& b) {
  return (!a.RefNo.empty() && a.RefNo == b.RefNo) || (!a.Name.empty() && a.Name == b.Name);
}

void TakeDecision(WatchHit& hit, const Kept& kept) {
  const auto mine = kept.find(KeyOf(hit.customer.CustID));
  if (mine == kept.end()) return;
  hit.seen = mine->second.back().decision.SeqNo;
  const auto side = SideOf(hit.customer);
  for (const KeptDecision& each : mine->second) {
    if (each.entry == hit.entry && each.customer == side) {
      hit.decision = each.decision;
    } else if (SameEntry(each.entry, hit.entry)) {
      hit.before_change = each.decision;
    }
  }
  if (hit.decision) hit.before_change.reset();
}

void KeepRun(const Session& session, const WatchCopy& copy, const Rescreening& run) {
  Connection& main = session.Main();
  Transaction transaction(main);
  main.Execute(fmt::format(
      "INSERT INTO AMLARun (RunID,RunDate,CopyDate,Companies,Customers,Hits,Undecided,UserID) "
      "VALUES ({},{},{},{},{},{},{},{})",
      CLng(ScalarQuery(main, "SELECT isnull(MAX(RunID),0)+1 FROM AMLARun")),
      SqlDateTime(ServerTime(main)), SqlDateTime(copy.CopyDate), QuoteStr(CompanyLiterals(session)),
      run.customers, run.hits.size(), CountUndecided(run.hits), QuoteStr(session.CurrentUserID)));
  transaction.Commit();
}

}  // namespace

std::size_t CountUndecided(const std::vector<WatchHit>& hits) {
  return static_cast<std::size_t>(
      std::ranges::count_if(hits, [](const WatchHit& hit) { return !hit.decision; }));
}

std::optional<Rescreening> ScreenAllCustomers(Session& session, const WatchCopy& copy,
                                              const GoOn& go_on) {
  Connection& main = session.Main();
  Rescreening run;
  const std::vector<WatchEntry> entries = ReadCopy(session, copy);
  const WatchIndex index(entries);
  Recordset rows = main.Query(
      "SELECT CustID,CompCode,CustName,CustNIC,CustOIC,CustOthIC FROM "
      "CustMast " +
      CompanyFilter(session, "CompCode") + "ORDER BY CustID");
  const Kept kept = ReadDecisions(main, "");
  const int total = static_cast<int>(rows.RowCount());
  for (; !rows.Eof(); rows.MoveNext()) {
    if (run.customers % kBetweenProgress == 0 && !go_on(static_cast<int>(run.customers), total)) {
      return std::nullopt;
    }
    ++run.customers;
    ScreenedCustomer customer{NullToEmpty(rows.Field(0)), NullToEmpty(rows.Field(1)),
                              NullToEmpty(rows.Field(2)), NullToEmpty(rows.Field(3)),
                              NullToEmpty(rows.Field(4)), NullToEmpty(rows.Field(5))};
    for (WatchFind& find : index.Find(customer)) {
      WatchHit hit{.customer = customer,
                   .entry = entries[find.entry],
                   .by_number = find.by_number,
                   .reason = std::move(find.reason),
                   .decision = {},
                   .before_change = {}};
      TakeDecision(hit, kept);
      run.hits.push_back(std::move(hit));
    }
  }
  std::stable_partition(run.hits.begin(), run.hits.end(), std::mem_fn(&WatchHit::by_number));
  KeepRun(session, copy, run);
  return run;
}

WatchDecision Decide(Session& session, const WatchHit& hit, bool is_hit, std::string_view remark) {
  Connection& main = session.Main();
  const std::string id = QuoteStr(hit.customer.CustID);
  const Kept since = ReadDecisions(main, fmt::format("WHERE CustID={} AND SeqNo>{}", id, hit.seen));
  int last = hit.seen;
  for (const auto& [customer, decisions] : since) {
    for (const KeptDecision& each : decisions) {
      last = each.decision.SeqNo;
      if (each.entry != hit.entry) continue;
      const std::string when = ShowDateTime(each.decision.DateCreated);
      throw std::runtime_error(session.In(
          {fmt::format("{}: {} has decided {} on {} meanwhile. Screen again to see it",
                       hit.customer.CustID, each.decision.UserID,
                       each.decision.hit ? "hit" : "no hit", when),
           fmt::format("{}：{} 已于 {} 决定：{}。请重新核对后再看", hit.customer.CustID,
                       each.decision.UserID, when, each.decision.hit ? "是此人" : "不是此人")}));
    }
  }
  WatchDecision made{last + 1, is_hit, std::string(remark), session.CurrentUserID,
                     ServerTime(main)};
  const ScreenedCustomer& customer = hit.customer;
  const WatchEntry& entry = hit.entry;
  std::string texts;
  for (const std::string& text :
       {customer.CompCode, customer.CustName, customer.CustNIC, customer.CustOIC,
        customer.CustOthIC, entry.RefNo, entry.Name, entry.NRIC, entry.PassportNo,
        entry.OtherInformation, hit.reason.english, std::string(is_hit ? kHit : kNoHit),
        made.Remark, made.UserID}) {
    texts += QuoteStr(text) + ",";
  }
  try {
    main.Execute(fmt::format(
        "INSERT INTO AMLADecision (CustID,SeqNo,CompCode,CustName,CustNIC,CustOIC,CustOthIC,RefNo,"
        "ListName,ListNRIC,ListPassportNo,ListOther,Reason,Decision,Remark,UserID,DateCreated) "
        "VALUES "
        "({},{},{}{})",
        id, made.SeqNo, texts, SqlDateTime(made.DateCreated)));
  } catch (const SqlError& error) {
    if (error.number() != kDuplicateKeyNumber) throw;
    throw std::runtime_error(session.In(
        {fmt::format("{}: another desktop decides about this customer at this moment. Press again",
                     customer.CustID),
         fmt::format("{}：另一台电脑正在为此顾客作决定。请再按一次", customer.CustID)}));
  }
  if (is_hit) {
    ExecuteOnRow(main, fmt::format("UPDATE CustMast SET CustStatus='AMLA' where CustID={}", id),
                 customer.CustID);
  }
  return made;
}

void AuditDecision(Session& session, const WatchHit& hit, bool is_hit) {
  const ScreenedCustomer& customer = hit.customer;
  WriteAudit(session, "Create", "Watch List", customer.CompCode, customer.CustID, {});
  if (!is_hit) return;
  WriteAudit(session, "Modify", "Customer", customer.CompCode, customer.CustID,
             {Value(customer.CustName), Value(customer.CustNIC), Value(customer.CustOIC),
              Value(customer.CustOthIC)});
}

Caption ShownDecision(const WatchHit& hit) {
  const auto word = [](const WatchDecision& decision) {
    return decision.hit ? Caption{"Hit", "是此人"} : Caption{"No hit", "不是此人"};
  };
  if (hit.decision) return word(*hit.decision);
  if (!hit.before_change) return {"Not decided", "未决定"};
  const Caption before = word(*hit.before_change);
  return {"Changed since: " + Lower(before.english), "资料已变，前次：" + before.chinese};
}

Caption ShownKind(const WatchHit& hit) {
  return hit.by_number ? Caption{"Number", "号码"} : Caption{"Similar", "相似"};
}

void StageHits(const Session& session, std::string_view pcname, const std::vector<WatchHit>& hits) {
  Connection& main = session.Main();
  Transaction transaction(main);
  DropStagedRows(main, pcname, kHitsFile);
  Batch batch;
  int place = 0;
  for (const WatchHit& hit : hits) {
    const auto& decision = hit.decision ? hit.decision : hit.before_change;
    std::string texts;
    for (const std::string& text :
         {hit.customer.CustID, session.In(ShownKind(hit)), hit.customer.CompCode,
          hit.customer.CustName,
          fmt::format("{} {} {}", hit.customer.CustNIC, hit.customer.CustOIC,
                      hit.customer.CustOthIC),
          hit.entry.RefNo, hit.entry.Name,
          fmt::format("{} {}", hit.entry.NRIC, hit.entry.PassportNo),
          session.In(ShownDecision(hit)), decision ? decision->UserID : std::string(),
          decision ? decision->Remark : std::string()}) {
      texts += "," + QuoteStr(Trim(text));
    }
    batch.Add(fmt::format(
        "INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,s5,s6,s7,s8,s9,s10,s11,s4,"
        "c1,d1) VALUES ({},{}{},{},{},{})",
        QuoteStr(pcname), QuoteStr(kHitsFile), texts, QuoteStr(session.In(hit.reason)), ++place,
        decision ? SqlDateTime(decision->DateCreated) : "null"));
    batch.SendWhenFull(main);
  }
  batch.Send(main);
  transaction.Commit();
}

}  // namespace kaunter
