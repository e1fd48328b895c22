// A server that has fallen silent with its lines open: its processes stand still, behind a disk
// that hangs, and its machine answers for them. No limit of a driver ends such a wait.
#pragma once

#include <string>

#include "platform/sql/odbc/odbc_session.h"

namespace kaunter::sql {

// Asks, while a statement of one session runs long, who leads now, on a connection of its own.
// Where that is another server than the session's, or again and again nobody, the session's line is
// cut: the statement then fails as behind any loss. A server that only takes long is left in peace.
class OdbcSilence {
 public:
  // `session` is one with PostgreSQL, made of `odbc_string`.
  OdbcSilence(OdbcSession& session, std::string odbc_string, int login_seconds);
  void Ask();

 private:
  std::string odbc_string_;
  int login_seconds_;
  std::string server_;  // which one, since which start of it; "" where it cannot be told
  int server_port_ = 0;
  int own_port_ = 0;
  int unheard_ = 0;
};

}  // namespace kaunter::sql
