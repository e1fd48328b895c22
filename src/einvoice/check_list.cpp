#include "einvoice/check_list.h"

#include <fmt/format.h>

#include <array>
#include <map>
#include <utility>

#include "core/session.h"
#include "core/values.h"
#include "einvoice/invoice_service.h"
#include "platform/sql/text.h"

namespace kaunter {

using namespace einvoice_column;

namespace {

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
  DocumentCheck::Tell Hears() {
    return [this](const Caption& field, const Caption& what) {
      Add({field.english + " " + what.english, field.chinese + what.chinese});
    };
  }
  std::string text() const { return text_; }

 private:
  const Session& session_;
  std::string text_;
};

CheckList::CheckList(Session& session) : session_(session), check_(session.Main()) {}

void CheckList::CheckDocument(const InvoiceLine& line, Faults& faults) const {
  const InvoiceRow& row = line.cells;
  const DocumentCheck::Tell tell = faults.Hears();
  DocumentCheck::Text(Header("document number", "单据编号"), row[kID], true, tell);
  DocumentCheck::Text(Header("description", "说明"), row[kDescription], true, tell);
  DocumentCheck::Code(Header("tax code", "税码"), row[kTaxCode], check_.taxes(), tell);
  DocumentCheck::Code(Header("classification code", "分类代码"), NamesCustomer(row) ? "016" : "004",
                      check_.classes(), tell);
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
      if (line.uuid().empty()) DocumentCheck::Missing(Header("uuid", "uuid"), faults.Hears());
    } else {
      CheckDocument(line, faults);
      const InvoiceRow& row = line.cells;
      if (NamesCustomer(row)) {
        check_.Party(
            {row[kTin], row[kCustTypeID], row[kCustType], row[kTaxName], row[kPhone], row[kEmail],
             row[kAddress], row[kPostcode], row[kCity], row[kState], row[kCountry]},
            faults.Hears());
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
  Faults faults(session_);
  check_.Company(session_.Main(), comp_code, faults.Hears());
  return faults.text();
}

}  // namespace kaunter
