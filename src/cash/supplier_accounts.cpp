#include "cash/supplier_accounts.h"

#include <fmt/format.h>

#include <exception>

#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "links/accounting_link.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

bool Link(Session& session, Desk& desk, const SupplierDocument& one) {
  const std::string text = fmt::format("{} - {}", one.TransType, one.TransDesc);
  if (SameText(one.TransType, "Payment")) {
    return LinkAPPayment(session, desk,
                         {one.TransID, one.TrxDate, one.SuppID, text, "CASH", "", -one.TransAmt});
  }
  const bool credit = SameText(one.TransType, "Credit Note");
  const std::string account = LinkAccount(session.Main(), credit ? "APCN" : "APINV");
  if (credit) {
    return LinkAPCN(session, desk,
                    {one.TransID, one.TrxDate, one.SuppID, text, account, "", -one.TransAmt});
  }
  return LinkAPInvoice(session, desk, {one.TransID, one.TrxDate, one.SuppID, one.TransAmt}) &&
         LinkAPInvoiceLine(session, desk, {one.TransID, account, text, one.TransAmt});
}

}  // namespace

Caption TypeCaption(std::string_view type) {
  return {std::string(type), SameText(type, "Payment")       ? "付款"
                             : SameText(type, "Credit Note") ? "贷项通知"
                                                             : "发票"};
}

void LinkSupplierDocument(Session& session, Screen& screen, const SupplierDocument& document) {
  if (!LinkIsOn(session)) return;
  try {
    if (Link(session, screen.desk(), document)) return;
  } catch (const std::exception& failure) {  // the account could not be read
    LogRollback(session, "Link " + document.TransID, failure);
  }
  const Caption type = TypeCaption(document.TransType);
  screen.desk().Message(
      MessageKind::warning, "Alert !!",
      session.In(
          {fmt::format("{} {} {} {} not linked", type.english, document.TransID,
                       SameText(document.TransType, "Payment") ? "to" : "from", document.SuppName),
           fmt::format("{} {}（{}）未能连接会计系统", type.chinese, document.TransID,
                       document.SuppName)}));
}

void TellLeftInAccounts(Session& session, Screen& screen, const Caption& what) {
  if (!LinkIsOn(session)) return;
  Tell(session, screen, MessageKind::information,
       {fmt::format("The accounting system still has {}: take it out there", what.english),
        fmt::format("会计系统内仍有{}：请在该系统内删除", what.In(true))});
}

}  // namespace kaunter
