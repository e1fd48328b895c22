// The SMS database, a queue that a gateway program outside the office reads and marks. An office
// names it in the setting SMSServer, which is a data source of the PC's settings or a server;
// account and password stand in SMSID and SMSPassword.
//
// It is opened at the start. One that is away keeps nobody from his work: it is opened when it is
// next asked for.
#pragma once

#include "platform/sql/connection.h"

namespace kaunter {

class Session;

// Opens it when it is not open yet. Throws SqlError: the office names none, or it is away.
Connection& SmsDatabase(Session& session);

}  // namespace kaunter
