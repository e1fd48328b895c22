#include "reporting/staging.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {

namespace {

bool Told(Session& session, Desk& desk, std::string_view text, const FailureLog& log,
          const std::function<void()>& computation) {
  try {
    const Hourglass hourglass(desk);
    computation();
    return true;
  } catch (const std::exception& failure) {
    log(session, failure);
    desk.Message(MessageKind::critical, session.MsgTitle,
                 session.In(Failed(std::string(text), failure)));
    return false;
  }
}

void ReplaceRows(Connection& main, const StagedRun& run,
                 const std::function<void(Connection& main)>& work) {
  Transaction transaction(main);
  DropStagedRows(main, run.pcname, run.report_name);
  work(main);
  transaction.Commit();
}

void LogUsual(const Session& session, const std::exception& failure) {
  LogRollback(session, session.MsgTitle, failure);
}

}  // namespace

bool Stage(Session& session, Desk& desk, const StagedRun& run, std::string_view text,
           const std::function<void(Connection& main)>& work, const FailureLog& log) {
  return Told(session, desk, text, log, [&] { ReplaceRows(session.Main(), run, work); });
}

bool Stage(Session& session, Desk& desk, const StagedRun& run, std::string_view text,
           const std::function<void(Connection& main)>& work) {
  return Stage(session, desk, run, text, work, LogUsual);
}

bool Stage(Session& session, Desk& desk, const StagedRun& run, std::string_view text,
           const std::function<void(Connection& main)>& read, const std::function<void()>& compose,
           const std::function<void(Connection& main)>& write) {
  return Told(session, desk, text, LogUsual, [&] {
    {
      Transaction transaction(session.Main());
      read(session.Main());
      transaction.Commit();
    }
    compose();
    ReplaceRows(session.Main(), run, write);
  });
}

DateTime NeededDate(std::string_view text, std::string_view name) {
  const std::optional<DateTime> date = DateTime::FromDisplay(Trim(text));
  if (!date) throw std::invalid_argument(fmt::format("{}: \"{}\" is no date", name, text));
  return *date;
}

std::string AmountLiteral(const Value& amount) { return StripCommaOrZero(ShowMoney(amount)); }

std::optional<DateTime> DateOf(const Value& field) {
  if (const DateTime* date = field.AsDate()) return *date;
  return DateTime::FromCanonical(field.ToText());  // what a MAX of dates may come as
}

std::string DateLiteral(const Value& date) {
  const std::optional<DateTime> day = DateOf(date);
  return day ? SqlDate(*day) : "null";
}

std::string TextLiteral(const Value& text) { return QuoteStr(NullToEmpty(text)); }

std::string OfRow(const StagedRun& run, std::string_view record_id) {
  return fmt::format(" WHERE pcname={} AND reportname={} AND recordID={}", QuoteStr(run.pcname),
                     QuoteStr(run.report_name), QuoteStr(record_id));
}

}  // namespace kaunter
