// A server that has fallen silent with its lines open: its processes stand still, behind a disk
// that hangs, and its machine answers for them; or nothing comes through any more. No limit of a
// driver ends such a wait.
#pragma once

#include <string>

#include "platform/sql/odbc/odbc_session.h"

namespace kaunter::sql {

// Asks on connections of its own whether a server of PostgreSQL still answers.
class ServerWatch {
 public:
  // `server` is what is expected; "" for whichever answers first.
  explicit ServerWatch(std::string odbc_string, std::string server = {});
  // Asks now, and takes some seconds where nobody answers. False where another server leads than
  // before, or where again and again nobody has answered. A server that only takes long answers.
  bool Heard();

 private:
  std::string odbc_string_;
  std::string server_;  // which one, since which start of it
  int unheard_ = 0;
};

// Asks while a statement of one session runs long, and cuts the session's line where its server is
// not heard any more: the statement then fails as behind any loss.
class OdbcSilence {
 public:
  // `session` is one with PostgreSQL, made of `odbc_string`.
  OdbcSilence(OdbcSession& session, const std::string& odbc_string);
  void Ask();

 private:
  int server_port_ = 0;
  int own_port_ = 0;
  int called_port_ = 0;
  ServerWatch watch_;
};

}  // namespace kaunter::sql
