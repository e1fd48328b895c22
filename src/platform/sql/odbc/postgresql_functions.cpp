#include "platform/sql/odbc/postgresql_functions.h"

#include <fmt/format.h>

namespace kaunter::sql {
namespace {

constexpr std::string_view kBasics = R"sql(
CREATE SCHEMA IF NOT EXISTS kaunter_sql;
CREATE COLLATION IF NOT EXISTS kaunter_sql."KAUNTER1"
  (provider = icu, locale = 'und-u-ks-level2', deterministic = false);
CREATE COLLATION IF NOT EXISTS kaunter_sql."PLAIN" (provider = icu, locale = 'und');

CREATE OR REPLACE FUNCTION kaunter_sql.k_raw(x bpchar) RETURNS text
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT textin(bpcharout(x))';
CREATE OR REPLACE FUNCTION kaunter_sql.k_fold(x text) RETURNS text
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT lower(x COLLATE kaunter_sql."PLAIN")';
CREATE OR REPLACE FUNCTION kaunter_sql.k_fail(number int, words text) RETURNS void
  LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  RAISE EXCEPTION USING ERRCODE = 'K' || lpad(number::text, 4, '0'), MESSAGE = words;
END $$;

)sql";

constexpr std::string_view kSession = R"sql(-- the session
CREATE OR REPLACE FUNCTION kaunter_sql.k_newid() RETURNS bpchar LANGUAGE sql VOLATILE AS
  'SELECT upper(gen_random_uuid()::text COLLATE "C")::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_identity() RETURNS bigint LANGUAGE plpgsql VOLATILE AS $$
BEGIN
  RETURN lastval();
EXCEPTION WHEN object_not_in_prerequisite_state THEN
  RETURN NULL;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_rowcount() RETURNS bigint LANGUAGE sql STABLE AS $$
  SELECT coalesce(nullif(current_setting('kaunter.rowcount', true), ''), '0')::bigint $$;

)sql";

}  // namespace

// The parts stand on those before them: the order is that in which the server can take them.
std::string PostgresFunctions() {
  return fmt::format("{}{}{}{}{}{}", kBasics, PostgresNumberFunctions(), PostgresTextFunctions(),
                     PostgresDateFunctions(), kSession, PostgresCatalogueViews());
}

}  // namespace kaunter::sql
