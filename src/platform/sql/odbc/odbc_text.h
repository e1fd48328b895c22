// Texts on their way to and from ODBC drivers: UTF-8 here, UTF-16 or bytes there.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/sql/odbc/odbc_api.h"

namespace kaunter::sql {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "the driver manager speaks UTF-16");

inline SQLWCHAR* AsWide(char16_t* text) { return reinterpret_cast<SQLWCHAR*>(text); }
inline SQLCHAR* AsNarrow(char* text) { return reinterpret_cast<SQLCHAR*>(text); }

// Broken sequences become U+FFFD: a text is shown damaged rather than lost.
std::u16string ToUtf16(std::string_view utf8);
std::string ToUtf8(std::u16string_view utf16);

// T-SQL with an N before every text that has non-ASCII characters and no N yet. Without it the
// server passes the text through the code page of its database, and Chinese may be lost.
std::string MarkUnicodeTexts(std::string_view sql);

// The statement with what `append` puts in the place of each parameter, which is `mark` and a
// number from 1. Quoted texts and names stay as they are.
std::string WithParameters(std::string_view sql, char mark,
                           const std::function<void(std::size_t number, std::string& out)>& append);

}  // namespace kaunter::sql
