#include "platform/sql/odbc/postgresql_functions.h"

namespace kaunter::sql {

std::string_view PostgresNumberFunctions() {
  static constexpr std::string_view kText = R"sql(-- numbers
CREATE OR REPLACE FUNCTION kaunter_sql.k_fits(x numeric, digits bigint) RETURNS boolean
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE digits WHEN 3 THEN x BETWEEN 0 AND 255 WHEN 5 THEN x BETWEEN -32768 AND 32767
    WHEN 10 THEN x BETWEEN -2147483648 AND 2147483647
    ELSE x BETWEEN -9223372036854775808 AND 9223372036854775807 END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x bpchar, digits bigint DEFAULT 19) RETURNS bigint
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE t text COLLATE "C" := btrim(kaunter_sql.k_raw(x) COLLATE "C");
BEGIN
  IF t = '' THEN RETURN 0; END IF;
  IF t !~ '^[+-]?[0-9]+$' THEN
    PERFORM kaunter_sql.k_fail(245, 'Conversion failed when converting the nvarchar value ''' || t ||
                           ''' to data type int.');
  END IF;
  IF NOT kaunter_sql.k_fits(t::numeric, digits) THEN
    PERFORM kaunter_sql.k_fail(248, 'The conversion of the nvarchar value ''' || t ||
                           ''' overflowed an int column.');
  END IF;
  RETURN CASE WHEN digits = 1 THEN (t::numeric <> 0)::int ELSE t::bigint END;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x numeric, digits bigint DEFAULT 19) RETURNS bigint
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF digits = 1 THEN RETURN (x <> 0)::int; END IF;
  IF NOT kaunter_sql.k_fits(trunc(x), digits) THEN
    PERFORM kaunter_sql.k_fail(8115,
        'Arithmetic overflow error converting expression to data type int.');
  END IF;
  RETURN trunc(x)::bigint;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x bigint, digits bigint DEFAULT 19) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT kaunter_sql.k_to_int(x::numeric, digits)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x float8, digits bigint DEFAULT 19) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT kaunter_sql.k_to_int(x::numeric, digits)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_dec(x bpchar, scale int) RETURNS numeric
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE t text COLLATE "C" := btrim(kaunter_sql.k_raw(x) COLLATE "C");
BEGIN
  IF t !~ '^[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)$' THEN
    PERFORM kaunter_sql.k_fail(8114, 'Error converting data type nvarchar to numeric.');
  END IF;
  RETURN round(t::numeric, scale);
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_float(x bpchar) RETURNS float8
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE t text COLLATE "C" := btrim(kaunter_sql.k_raw(x) COLLATE "C");
BEGIN
  IF t = '' THEN RETURN 0; END IF;
  IF t !~* '^[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)(e[+-]?[0-9]+)?$' THEN
    PERFORM kaunter_sql.k_fail(8114, 'Error converting data type nvarchar to float.');
  END IF;
  RETURN t::float8;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_round_tsql(x numeric, places bigint, cut bigint DEFAULT 0)
  RETURNS numeric LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT CASE WHEN cut = 0 THEN round(x, places::int) ELSE trunc(x, places::int) END';
CREATE OR REPLACE FUNCTION kaunter_sql.k_round_tsql(x float8, places bigint, cut bigint DEFAULT 0)
  RETURNS float8 LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT kaunter_sql.k_round_tsql(x::numeric, places, cut)::float8';
CREATE OR REPLACE FUNCTION kaunter_sql.k_round_tsql(x bigint, places bigint, cut bigint DEFAULT 0)
  RETURNS bigint LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT kaunter_sql.k_round_tsql(x::numeric, places, cut)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_floor(x bigint) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT x';
CREATE OR REPLACE FUNCTION kaunter_sql.k_floor(x numeric) RETURNS numeric
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT floor(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_floor(x float8) RETURNS float8
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT floor(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_ceiling(x bigint) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT x';
CREATE OR REPLACE FUNCTION kaunter_sql.k_ceiling(x numeric) RETURNS numeric
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT ceil(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_ceiling(x float8) RETURNS float8
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT ceil(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_abs(x bigint) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT abs(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_abs(x numeric) RETURNS numeric
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT abs(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_abs(x float8) RETURNS float8
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT abs(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_sign(x numeric) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT sign(x)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_sign(x float8) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT sign(x)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_power(x bigint, y bigint) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT trunc(power(x::numeric, y::numeric))::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_power(x numeric, y numeric) RETURNS numeric
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT power(x, y)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_power(x float8, y float8) RETURNS float8
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT power(x, y)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_sqrt(x float8) RETURNS float8
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT sqrt(x)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_isnumeric(x bpchar) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN replace(btrim(kaunter_sql.k_raw(x) COLLATE "C"), ',', '') ~*
    '^[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)(e[+-]?[0-9]+)?$' THEN 1 ELSE 0 END::bigint $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_isnumeric(x numeric) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS 'SELECT (x IS NOT NULL)::int::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_isnumeric(x float8) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS 'SELECT (x IS NOT NULL)::int::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_isnumeric(x timestamp) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS 'SELECT 0::bigint';

)sql";
  return kText;
}

}  // namespace kaunter::sql
