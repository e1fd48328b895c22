#include "core/staged_rows.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {
namespace {

constexpr std::size_t kTogether = 64 * 1024;  // bytes of statements that are sent at once

}  // namespace

void DropStagedRows(Connection& main, std::string_view pcname, std::string_view report_name) {
  main.Execute(fmt::format("DELETE FROM MasterReport WHERE pcname={} AND reportname={}",
                           QuoteStr(pcname), QuoteStr(report_name)));
}

std::string StagedFormula(std::string_view pcname, std::string_view report_name) {
  return fmt::format("{{MasterReport.pcname}}={} And {{MasterReport.ReportName}} = {}",
                     QuoteStr(pcname), QuoteStr(report_name));
}

void Batch::Send(Connection& connection) {
  if (!text_.empty()) connection.Execute(text_);
  text_.clear();
}

void Batch::SendWhenFull(Connection& connection) {
  if (text_.size() > kTogether) Send(connection);
}

}  // namespace kaunter
