#include "loans/rebuild_and_tell.h"

#include <fmt/format.h>

#include <exception>

#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

// The action's own transaction is committed by then.
const Caption kStaysSaved{
    "What was saved before stays saved, only the balances are behind. Mend the cause, then "
    "choose Recalculate Loan Balance: it lists what is behind and rebuilds it. Do not enter it "
    "again.",
    "先前储存的内容已保留，只是余额尚未更新。请先排除原因，再用“重算贷款结余”：它会列出并重算。请"
    "勿重复输入。"};

void TellFailure(const Session& session, Desk& desk, std::string_view id, const Rebuilt& rebuilt,
                 bool saved_before) {
  if (!rebuilt.error) return;
  std::string told = session.In(rebuilt.failure);
  try {
    std::rethrow_exception(rebuilt.error);
  } catch (const std::exception& error) {
    LogRollback(session, fmt::format("{} {}", rebuilt.title.english, id), error);
    told = saved_before ? fmt::format("{}\n{}", told, session.In(kStaysSaved))
                        : session.In(Failed(rebuilt.failure, error));
  }
  desk.Message(MessageKind::critical, session.In(rebuilt.title), told);
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

// Its server was lost, others were first on the one that leads now, and nothing of it is stored: a
// rebuild reads all it needs anew.
bool MayPassNow(const Rebuilt& rebuilt) {
  if (!rebuilt.error) return false;
  try {
    std::rethrow_exception(rebuilt.error);
  } catch (const ServerLost& lost) {
    return lost.stored() == ServerLost::Stored::nothing;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

bool RebuildAndTell(const Session& session, Desk& desk, std::string_view loan_id,
                    std::string_view cust_id, bool saved_before) {
  Rebuilt rebuilt = RebuildInTransaction(session.Main(), loan_id);
  if (MayPassNow(rebuilt)) rebuilt = RebuildInTransaction(session.Main(), loan_id);
  TellFailure(session, desk, loan_id, rebuilt, saved_before);
  return RebuildCustomerAndTell(session, desk, cust_id, saved_before) && !rebuilt.error;
}

bool RebuildCustomerAndTell(const Session& session, Desk& desk, std::string_view cust_id,
                            bool saved_before) {
  Rebuilt rebuilt = RebuildCustomer(session.Main(), cust_id);
  if (MayPassNow(rebuilt)) rebuilt = RebuildCustomer(session.Main(), cust_id);
  TellFailure(session, desk, cust_id, rebuilt, saved_before);
  return !rebuilt.error;
}

}  // namespace kaunter
