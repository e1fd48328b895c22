#include "links/link_documents.h"

#include <fmt/format.h>

#include <map>

#include "core/amounts.h"
#include "core/company_access.h"
#include "core/session.h"
#include "core/values.h"
#include "links/accounting_link.h"

namespace kaunter {
namespace {

std::string Column(const Recordset& row, std::string_view column) {
  return NullToEmpty(row.Field(column));
}

LinkedDocument Begin(LinkKind kind, LinkSide side, const std::string& number,
                     const std::string& date, const std::string& party, Money amount) {
  LinkedDocument document;
  document.kind = kind;
  document.side = side;
  document.DocNo = number;
  document.DocDate = date;
  document.Party = party;
  document.Amount = amount;
  return document;
}

LinkedDocument Invoice(LinkSide side, const std::string& number, const std::string& date,
                       const std::string& party, Money amount, const std::string& account,
                       const std::string& text) {
  LinkedDocument invoice = Begin(LinkKind::invoice, side, number, date, party, amount);
  invoice.lines.push_back({number, account, text, amount});
  return invoice;
}

LinkedDocument CreditNote(LinkSide side, const std::string& number, const std::string& date,
                          const std::string& party, Money amount, const std::string& account,
                          const std::string& text) {
  LinkedDocument note = Begin(LinkKind::credit_note, side, number, date, party, amount);
  note.Description = text;
  note.AccNo = account;
  return note;
}

// --- from a row of each source

using Documents = std::vector<LinkedDocument>;

Documents FromCustomer(const Recordset& row, const LinkAccounts&) {
  const std::string id = Column(row, "CustID");
  LinkedDocument debtor = Begin(LinkKind::party, LinkSide::receivable, id, "", id, Money());
  debtor.person = {.AccNo = id,
                   .CompanyName = Column(row, "CustName"),
                   .Desc2 = Column(row, "CustNickName"),
                   .IC = Column(row, "CustNIC"),
                   .Address1 = Column(row, "CustAdd1"),
                   .Address2 = Column(row, "CustAdd2"),
                   .Address3 = Column(row, "CustAdd3"),
                   .Address4 = Column(row, "CustCity"),
                   .Phone1 = Column(row, "CustTel1"),
                   .Phone2 = Column(row, "CustHP1"),
                   .Fax1 = Column(row, "CustFax"),
                   .EmailAddress = Column(row, "email")};
  return {debtor};
}

Documents FromSupplier(const Recordset& row, const LinkAccounts&) {
  const std::string id = Column(row, "SuppID");
  LinkedDocument creditor = Begin(LinkKind::party, LinkSide::payable, id, "", id, Money());
  creditor.person = {.AccNo = id,
                     .CompanyName = Column(row, "Name"),
                     .Desc2 = "",
                     .IC = "",
                     .Address1 = Column(row, "Add1"),
                     .Address2 = Column(row, "Add2"),
                     .Address3 = Column(row, "Add3"),
                     .Address4 = Column(row, "Add4"),
                     .Phone1 = Column(row, "Tel1"),
                     .Phone2 = Column(row, "Tel2"),
                     .Fax1 = "",
                     .EmailAddress = ""};
  return {creditor};
}

Documents FromLoan(const Recordset& row, const LinkAccounts& accounts) {
  const auto two =
      DocumentsOf(LoanToLink{Column(row, "LoanID"),
                             ShowDate(row.Field("TrxDate")),
                             Column(row, "CustID"),
                             Column(row, "Name"),
                             Column(row, "Bank"),
                             Column(row, "DragLoan") == "1",
                             {Sen(row, "TermInt"), Sen(row, "DepositAmt"), Sen(row, "OathsAmt"),
                              Sen(row, "LegalFee"), Sen(row, "ProcessFee"), Sen(row, "MiscAmt")}},
                  accounts);
  return {two.begin(), two.end()};
}

Documents FromDrawdown(const Recordset& row, const LinkAccounts& accounts) {
  return {Invoice(LinkSide::receivable, Column(row, "SID"), ShowDate(row.Field("TrxDate")),
                  Column(row, "CustID"), Sen(row, "DrawDownAmt"),
                  accounts(Column(row, "DragLoan") == "0" ? "HP" : "TL"),
                  "Invoice for loan drawdown")};
}

Documents FromPayment(const Recordset& row, const LinkAccounts& accounts) {
  const auto two = DocumentsOf(
      PaymentToLink{Column(row, "PayID"), ShowDate(row.Field("PayDate")), Column(row, "CustID"),
                    Column(row, "Name"), Column(row, "Bank"), Column(row, "ChqNo"),
                    Sen(row, "PayAmt") + Sen(row, "IntAmt") + Sen(row, "CollectorAmt") +
                        Sen(row, "ChargeAmt"),
                    Sen(row, "DiscAmt")},
      accounts);
  return {two.begin(), two.end()};
}

// What lowers a debt is negative in the ledger and positive in the accounts.
Documents FromCharge(const Recordset& row, const LinkAccounts& accounts) {
  const std::string id = Column(row, "ChargeID");
  const std::string date = ShowDate(row.Field("TrxDate"));
  const std::string customer = Column(row, "CustID");
  if (SameText(Column(row, "PType"), "Credit Note")) {
    return {CreditNote(LinkSide::receivable, id, date, customer, -Sen(row, "ChargeAmt"),
                       accounts("ARCN"), "Credit Note - " + Column(row, "ChargeDesc"))};
  }
  return {Invoice(LinkSide::receivable, id, date, customer, Sen(row, "ChargeAmt"),
                  accounts("ARINV"), "Invoice for " + Column(row, "Name"))};
}

Documents FromSupplierDocument(const Recordset& row, const LinkAccounts& accounts) {
  const std::string id = Column(row, "TransID");
  const std::string date = ShowDate(row.Field("TrxDate"));
  const std::string supplier = Column(row, "SuppID");
  const std::string type = Column(row, "TransType");
  const std::string text = fmt::format("{} - {}", type, Column(row, "TransDesc"));
  const Money amount = Sen(row, "TransAmt");
  if (SameText(type, "Credit Note")) {
    return {CreditNote(LinkSide::payable, id, date, supplier, -amount, accounts("APCN"), text)};
  }
  if (!SameText(type, "Payment")) {
    return {Invoice(LinkSide::payable, id, date, supplier, amount, accounts("APINV"), text)};
  }
  LinkedDocument paid = Begin(LinkKind::payment, LinkSide::payable, id, date, supplier, -amount);
  paid.Description = text;
  paid.PaymentMethod = "CASH";
  return {paid};
}

struct Stored {
  Caption name;
  const char* select;  // the table of the record is r; Name is that of its party
  const char* key;
  const char* date;
  const char* ours;  // leaves out what was moved in: the old books have its documents
  Documents (*documents)(const Recordset& row, const LinkAccounts& accounts);
};

constexpr const char* kLoanNotMoved =
    " AND r.LoanID NOT IN (SELECT NewID FROM MoveInMast WHERE Kind='loans' AND NewID is not null)";
constexpr const char* kPaymentNotMoved =
    " AND r.PayID NOT IN (SELECT NewID FROM MoveInMast WHERE Kind='payments' AND NewID is not "
    "null)";
// What came with a loan bears the moment of its moving in.
constexpr const char* kNotMovedWithLoan =
    " AND NOT (r.LoanID IN (SELECT NewID FROM MoveInMast WHERE Kind='loans') AND r.DateCreated IN "
    "(SELECT DateCreated FROM MoveInMast WHERE Kind='loans'))";

const Stored& StoredOf(LinkSource source) {
  static const Stored all[] = {
      {{"Customer", "顾客"},
       "SELECT r.*,r.CustName as Name FROM CustMast as r WHERE 1=1",
       "r.CustID",
       "r.TrxDate",
       "",
       FromCustomer},
      {{"Supplier", "供应商"},
       "SELECT r.*,r.SuppName as Name FROM SupplierMast as r WHERE 1=1",
       "r.SuppID",
       "r.TrxDate",
       "",
       FromSupplier},
      {{"Loan", "贷款"},
       "SELECT r.LoanID,r.TrxDate,r.CustID,r.CompCode,r.Bank,r.DragLoan,r.TermInt,r.DepositAmt,"
       "r.OathsAmt,r.LegalFee,r.ProcessFee,r.MiscAmt,c.CustName as Name FROM LoanMast as r LEFT "
       "JOIN CustMast as c on c.CustID=r.CustID WHERE 1=1",
       "r.LoanID",
       "r.TrxDate",
       kLoanNotMoved,
       FromLoan},
      {{"Drawdown", "发放"},
       "SELECT r.SID,r.TrxDate,r.CustID,r.CompCode,r.DrawDownAmt,l.DragLoan,c.CustName as Name "
       "FROM (DrawDownMast as r LEFT JOIN LoanMast as l on l.LoanID=r.LoanID) LEFT JOIN CustMast "
       "as c on c.CustID=r.CustID WHERE 1=1",
       "r.SID",
       "r.TrxDate",
       kNotMovedWithLoan,
       FromDrawdown},
      {{"Payment", "付款"},
       "SELECT r.PayID,r.PayDate,r.CustID,r.CompCode,r.Bank,r.ChqNo,r.PayAmt,r.IntAmt,"
       "r.CollectorAmt,r.ChargeAmt,r.DiscAmt,c.CustName as Name FROM PaymentMast as r LEFT JOIN "
       "CustMast as c on c.CustID=r.CustID WHERE r.PaymentStatus='ACTIVE'",
       "r.PayID",
       "r.PayDate",
       kPaymentNotMoved,
       FromPayment},
      {{"Charge", "收费"},
       "SELECT r.ChargeID,r.TrxDate,r.CustID,r.CompCode,r.PType,r.ChargeAmt,r.ChargeDesc,"
       "c.CustName as Name FROM ChargeMast as r LEFT JOIN CustMast as c on c.CustID=r.CustID WHERE "
       "r.PType in ('Invoice','Credit Note')",
       "r.ChargeID",
       "r.TrxDate",
       kNotMovedWithLoan,
       FromCharge},
      {{"Supplier Document", "供应商单据"},
       "SELECT r.TransID,r.TrxDate,r.SuppID,r.CompCode,r.TransType,r.TransDesc,r.TransAmt,"
       "s.SuppName as Name FROM SupplierTrans as r LEFT JOIN SupplierMast as s on "
       "s.SuppID=r.SuppID WHERE 1=1",
       "r.TransID",
       "r.TrxDate",
       "",
       FromSupplierDocument}};
  return all[static_cast<std::size_t>(source)];
}

// Each account is read once.
class Accounts {
 public:
  explicit Accounts(Connection& main) : main_(main) {}
  std::string operator()(std::string_view id) {
    const auto [found, is_new] = known_.try_emplace(std::string(id));
    if (is_new) found->second = LinkAccount(main_, id);
    return found->second;
  }

 private:
  Connection& main_;
  std::map<std::string, std::string> known_;
};

Documents Read(Session& session, LinkSource source, const std::string& condition) {
  const Stored& stored = StoredOf(source);
  Accounts accounts(session.Main());
  Documents all;
  for (Recordset row =
           session.Main().Query(fmt::format("{}{}{} ORDER BY {},{}", stored.select, stored.ours,
                                            condition, stored.date, stored.key));
       !row.Eof(); row.MoveNext()) {
    for (LinkedDocument& document : stored.documents(row, std::ref(accounts))) {
      document.source = source;
      document.Name = Column(row, "Name");
      document.CompCode = Column(row, "CompCode");
      all.push_back(std::move(document));
    }
  }
  return all;
}

}  // namespace

std::array<LinkedDocument, 2> DocumentsOf(const LoanToLink& loan, const LinkAccounts& accounts) {
  static constexpr const char* kCharges[][2] = {
      {"MRTA", "MRTA"},       {"Stamp", "Stamp Fee"},        {"Fire", "Fire Insurance"},
      {"Legal", "Legal Fee"}, {"Process", "Processing Fee"}, {"Misc", "Misc Charges"}};
  Money total;
  for (const Money charge : loan.charges) total += charge;
  LinkedDocument invoice =
      Invoice(LinkSide::receivable, loan.LoanID, loan.TrxDate, loan.CustID, Money(),
              accounts(loan.flexi ? "TL" : "HP"), "Loan for " + loan.CustName);
  invoice.Amount = total;
  for (std::size_t i = 0; i < loan.charges.size(); ++i) {
    invoice.lines.push_back({loan.LoanID, accounts(kCharges[i][0]),
                             fmt::format("{} for {}", kCharges[i][1], loan.CustName),
                             loan.charges[i]});
  }
  LinkedDocument paid =
      Begin(LinkKind::payment, LinkSide::receivable, loan.LoanID, loan.TrxDate, loan.CustID, total);
  paid.Description = "Loan Charges for " + loan.CustName;
  paid.PaymentMethod = loan.Bank;
  return {invoice, paid};
}

std::array<LinkedDocument, 2> DocumentsOf(const PaymentToLink& payment,
                                          const LinkAccounts& accounts) {
  LinkedDocument paid = Begin(LinkKind::payment, LinkSide::receivable, payment.PayID,
                              payment.PayDate, payment.CustID, payment.received);
  paid.Description = "Installment Payment From " + payment.CustName;
  paid.PaymentMethod = payment.Bank;
  paid.ChequeNo = payment.ChqNo;
  LinkedDocument discount =
      CreditNote(LinkSide::receivable, payment.PayID, payment.PayDate, payment.CustID,
                 payment.DiscAmt, accounts("PD"), "Discount on Interest");
  discount.optional = payment.DiscAmt <= Money();
  return {paid, discount};
}

LinkedInvoice InvoiceOf(const LinkedDocument& document) {
  return {document.DocNo, document.DocDate, document.Party, document.Amount};
}

LinkedPayment PaymentOf(const LinkedDocument& document) {
  return {document.DocNo,         document.DocDate,  document.Party, document.Description,
          document.PaymentMethod, document.ChequeNo, document.Amount};
}

LinkedCreditNote CreditNoteOf(const LinkedDocument& document) {
  return {document.DocNo,       document.DocDate, document.Party,
          document.Description, document.AccNo,   "",
          document.Amount};
}

void PutDocument(Connection& aed, const LinkedDocument& document) {
  switch (document.kind) {
    case LinkKind::party:
      PutParty(aed, document.side, document.person);
      break;
    case LinkKind::invoice:
      PutInvoice(aed, document.side, InvoiceOf(document));
      for (const LinkedInvoiceLine& line : document.lines) {
        AddInvoiceLine(aed, document.side, line);
      }
      break;
    case LinkKind::payment:
      PutPayment(aed, document.side, PaymentOf(document));
      break;
    case LinkKind::credit_note:
      PutCreditNote(aed, document.side, CreditNoteOf(document));
      break;
  }
}

Caption NameOf(LinkSource source) { return StoredOf(source).name; }

Documents ReadDocuments(Session& session, LinkSource source, const std::string& from,
                        const std::string& to, const std::string& company) {
  const Stored& stored = StoredOf(source);
  std::string condition = fmt::format(" AND {0} >= {1} AND {0} < {2}", stored.date, SqlDate(from),
                                      SqlDate(DateTime::FromDisplay(to).value().AddDays(1)));
  if (!company.empty()) condition += " AND r.CompCode=" + QuoteStr(company);
  return Read(session, source, condition + AndCompany(session, "r.CompCode"));
}

Documents ReadDocuments(Session& session, LinkSource source, const std::vector<std::string>& keys) {
  std::string list;
  for (const std::string& key : keys) list += (list.empty() ? "" : ",") + QuoteStr(key);
  if (list.empty()) return {};
  return Read(session, source, fmt::format(" AND {} IN ({})", StoredOf(source).key, list));
}

}  // namespace kaunter
