#include "einvoice/check_list.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/session.h"
#include "core/values.h"
#include "platform/sql/text.h"

namespace kaunter {

using namespace einvoice_column;

namespace {

// A quote ends the text it stands in, a backslash begins a sign, a control sign may not stand
// there.
bool BreaksTheBody(std::string_view text) {
  return std::ranges::any_of(
      text, [](char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' '; });
}

Caption Header(std::string_view english, std::string_view chinese) {
  return {std::string(english), std::string(chinese)};
}

// The longest texts that the record of a sent document takes.
constexpr std::array<std::pair<int, std::size_t>, 8> kWidths = {{{kID, 50},
                                                                 {kCustID, 50},
                                                                 {kLoanID, 50},
                                                                 {kSchID, 50},
                                                                 {kInvType, 50},
                                                                 {kTaxCode, 50},
                                                                 {kDescription, 200},
                                                                 {kTin, 50}}};

}  // namespace

class CheckList::Faults {
 public:
  explicit Faults(const Session& session) : session_(session) {}
  void Add(const Caption& fault) {
    if (!text_.empty()) text_ += session_.In({"; ", "；"});
    text_ += session_.In(fault);
  }
  void Missing(const Caption& what) { Add({what.english + " is missing", "缺" + what.chinese}); }
  void Breaks(const Caption& what) {
    Add({what.english + " has a sign that makes the document invalid (\" \\ or a line end)",
         what.chinese + "含有使文件无效的符号（\" \\ 或换行）"});
  }
  std::string text() const { return text_; }

 private:
  const Session& session_;
  std::string text_;
};

// Who is named in a document.
struct CheckList::Party {
  std::string tin, id_no, id_type, name, phone, email, address, postcode, city, state, country;
};

CheckList::CheckList(Session& session)
    : session_(session),
      states_(Read("eState", "StateCode")),
      countries_(Read("eCountry", "CountryCode")),
      taxes_(Read("eTax", "TaxCode")),
      classes_(Read("eClass", "ClassCode")) {}

CheckList::Codes CheckList::Read(std::string_view table, std::string_view column) const {
  Codes codes;
  for (Recordset rows = session_.Main().Query(fmt::format("SELECT {} FROM {}", column, table));
       !rows.Eof(); rows.MoveNext()) {
    codes.insert(NullToEmpty(rows.Field(0)));
  }
  return codes;
}

void CheckList::CheckCode(const Codes& codes, const std::string& code, const Caption& what,
                          Faults& faults) const {
  if (codes.empty() || codes.contains(code)) return;
  faults.Add({fmt::format("{} {} is not in the table", what.english, code),
              fmt::format("{} {} 不在代码表中", what.chinese, code)});
}

void CheckList::CheckParty(const Party& party, Faults& faults) const {
  const struct {
    const std::string& text;
    Caption what;
    bool required;
  } texts[] = {{party.tin, Header("TIN", "税号"), true},
               {party.id_no, Header("identity number", "身份号码"), true},
               {party.id_type, Header("identity type", "身份类别"), true},
               {party.name, Header("name", "姓名"), true},
               {party.phone, Header("phone", "电话"), true},
               {party.email, Header("e-mail", "电邮"), false},
               {party.address, Header("address", "地址"), true},
               {party.postcode, Header("postcode", "邮编"), true},
               {party.city, Header("city", "城市"), true},
               {party.state, Header("state", "州"), true},
               {party.country, Header("country", "国家"), true}};
  for (const auto& one : texts) {
    if (one.text.empty() && one.required) faults.Missing(one.what);
    if (BreaksTheBody(one.text)) faults.Breaks(one.what);
  }
  const bool known =
      party.id_type == "NRIC" || party.id_type == "PASSPORT" || party.id_type == "BRN";
  if (!party.id_type.empty() && !known) {
    faults.Add(
        {"identity type must be NRIC, PASSPORT or BRN", "身份类别必须是 NRIC、PASSPORT 或 BRN"});
  }
  if (!party.phone.empty() && !party.phone.starts_with("+6")) {
    faults.Add({"phone must begin with +6", "电话必须以 +6 开头"});
  }
  if (!party.email.empty() && party.email.find('@') == std::string::npos) {
    faults.Add({"e-mail has no @", "电邮没有 @"});
  }
  if (!party.state.empty()) CheckCode(states_, party.state, Header("state", "州"), faults);
  if (!party.country.empty())
    CheckCode(countries_, party.country, Header("country", "国家"), faults);
}

void CheckList::CheckDocument(const InvoiceLine& line, Faults& faults) const {
  const InvoiceRow& row = line.cells;
  const struct {
    int column;
    Caption what;
  } texts[] = {{kID, Header("document number", "单据编号")},
               {kDescription, Header("description", "说明")},
               {kTaxCode, Header("tax code", "税码")}};
  for (const auto& one : texts) {
    const std::string& text = row[static_cast<std::size_t>(one.column)];
    if (text.empty()) faults.Missing(one.what);
    if (BreaksTheBody(text)) faults.Breaks(one.what);
  }
  if (!row[kTaxCode].empty()) {
    CheckCode(taxes_, row[kTaxCode], Header("tax code", "税码"), faults);
  }
  CheckCode(classes_, NamesCustomer(row) ? "016" : "004", Header("classification code", "分类代码"),
            faults);
  const auto quantity = Money::TryText(row[kQty]);
  if (!quantity || *quantity <= Money()) {
    faults.Add({"quantity must be above 0", "数量必须大于 0"});
  }
  if (AmountOf(row).IsZero()) faults.Add({"amount is 0", "金额为 0"});
  if (line.Credit() && row[kUuid].empty()) {
    faults.Add({"column 27, which a credit note gives as its reference number, is empty",
                "第 27 栏为空，贷项通知以它为参考编号"});
  }
  if (line.Credit() && row[kOldUuid].empty()) {
    faults.Add({"the document that it takes back has no uuid", "被冲销的单据没有 uuid"});
  }
  for (const auto& [column, width] : kWidths) {
    if (sql::CountChars(row[static_cast<std::size_t>(column)]) <= width) continue;
    faults.Add(
        {fmt::format("column {} has more than {} characters and cannot be recorded", column, width),
         fmt::format("第 {} 栏超过 {} 个字，无法记录", column, width)});
  }
}

void CheckList::Check(std::vector<InvoiceLine>& lines, SendMode mode,
                      std::string_view comp_code) const {
  std::map<std::string, int, std::less<>> numbers;
  for (const InvoiceLine& line : lines) ++numbers[line.id()];
  for (InvoiceLine& line : lines) {
    Faults faults(session_);
    if (!SameText(line.cells[kCompCode], comp_code)) {
      faults.Add({fmt::format("it is a document of company {}", line.cells[kCompCode]),
                  fmt::format("这是公司 {} 的单据", line.cells[kCompCode])});
    }
    if (mode == SendMode::cancel) {
      if (line.uuid().empty()) faults.Missing(Header("uuid", "uuid"));
    } else {
      CheckDocument(line, faults);
      const InvoiceRow& row = line.cells;
      if (NamesCustomer(row)) {
        CheckParty(
            {row[kTin], row[kCustTypeID], row[kCustType], row[kTaxName], row[kPhone], row[kEmail],
             row[kAddress], row[kPostcode], row[kCity], row[kState], row[kCountry]},
            faults);
      }
      if (numbers[line.id()] > 1) {
        faults.Add({"the number stands in more than one row: the record keeps the last uuid",
                    "编号出现在多行：记录只保留最后一个 uuid"});
      }
    }
    line.faults = faults.text();
  }
}

std::string CheckList::OfCompany(const std::string& comp_code) const {
  const Recordset row =
      session_.Main().Query("SELECT * FROM ECustMast WHERE CustID=" + QuoteStr(comp_code));
  if (row.Eof()) return {};
  const auto field = [&row](std::string_view name) { return NullToEmpty(row.Field(name)); };
  Faults faults(session_);
  std::string address = field("Address");  // its line ends become blanks
  std::erase_if(address, [](char c) { return c == '\r' || c == '\n'; });
  CheckParty(
      {field("TIN"), field("CustTypeID"), field("CustType"), field("CustName"), field("Phone"),
       field("Email"), address, field("Postcode"), field("City"), field("State"), field("Country")},
      faults);
  if (field("MISCCode").empty()) faults.Missing(Header("business code", "行业代码"));
  return faults.text();
}

}  // namespace kaunter
