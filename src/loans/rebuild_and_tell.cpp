#include "loans/rebuild_and_tell.h"

#include <fmt/format.h>

#include <exception>

#include "core/log.h"
#include "core/session.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

void TellFailure(const Session& session, Desk& desk, std::string_view id, const Rebuilt& rebuilt) {
  if (!rebuilt.error) return;
  try {
    std::rethrow_exception(rebuilt.error);
  } catch (const std::exception& error) {
    LogRollback(session, fmt::format("{} {}", rebuilt.title.english, id), error);
  }
  desk.Message(MessageKind::critical, session.In(rebuilt.title), session.In(rebuilt.failure));
}

Rebuilt RebuildInTransaction(Connection& main, std::string_view loan_id) {
  Rebuilt rebuilt;
  try {
    Transaction transaction(main);
    LockLoan(main, loan_id);
    rebuilt = RebuildLoan(main, loan_id);
    transaction.Commit();
  } catch (const SqlError& error) {
    // The server may have ended the transaction with the failure that the rebuild tells already.
    if (rebuilt.failure.english.empty()) {
      rebuilt = {false, {"Rebuild Loan", "重算贷款"}, {error.what()}, std::current_exception()};
    }
  }
  return rebuilt;
}

}  // namespace

void RebuildAndTell(const Session& session, Desk& desk, std::string_view loan_id,
                    std::string_view cust_id) {
  TellFailure(session, desk, loan_id, RebuildInTransaction(session.Main(), loan_id));
  RebuildCustomerAndTell(session, desk, cust_id);
}

void RebuildCustomerAndTell(const Session& session, Desk& desk, std::string_view cust_id) {
  TellFailure(session, desk, cust_id, RebuildCustomer(session.Main(), cust_id));
}

}  // namespace kaunter
