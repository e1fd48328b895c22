// The small rules by which a database value becomes text and a text becomes a SQL literal, the
// roundings and the display formats. They stand here once; no screen rounds or formats by itself.
//
// Two roundings meet in this house: Round2, CLng and CInt take ties to even; the display formats
// take ties away from zero. A figure that passes through a display text takes that format's
// rounding.
#pragma once

#include "core/data_access.h"   // ScalarQuery, ExecSql, ServerNow, TableExists
#include "core/formats.h"       // Format
#include "core/numbers.h"       // Round, Round2, CLng, CInt, Fix, Int, CDbl, IsNumeric
#include "core/shown.h"         // ShowDate, ShowMoney ...: value to text
#include "core/sql_literals.h"  // QuoteStr, StripCommaOrZero, SqlDate ...: text to SQL
#include "core/texts.h"         // Upper, Trim, SameText, ApplyCapLock, DaysInMonth
#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/connection.h"
