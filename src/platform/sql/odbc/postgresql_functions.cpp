#include "platform/sql/odbc/postgresql_functions.h"

namespace kaunter::sql {

// A text as bpchar loses its trailing blanks when it becomes another type of text; k_raw keeps
// them. The collation of statements knows no search in texts, hence "PLAIN" where one is done.
std::string_view PostgresFunctions() {
  static constexpr std::string_view kText = R"sql(
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

-- numbers
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x bpchar) RETURNS bigint
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE t text COLLATE "C" := btrim(kaunter_sql.k_raw(x) COLLATE "C");
BEGIN
  IF t = '' THEN RETURN 0; END IF;
  IF t !~ '^[+-]?[0-9]+$' THEN
    PERFORM kaunter_sql.k_fail(245, 'Conversion failed when converting the nvarchar value ''' || t ||
                           ''' to data type int.');
  END IF;
  IF t::numeric NOT BETWEEN -9223372036854775808 AND 9223372036854775807 THEN
    PERFORM kaunter_sql.k_fail(248, 'The conversion of the nvarchar value ''' || t ||
                           ''' overflowed an int column.');
  END IF;
  RETURN t::bigint;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x numeric) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT trunc(x)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_int(x float8) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT trunc(x)::bigint';
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

-- text
CREATE OR REPLACE FUNCTION kaunter_sql.k_text(x float8) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  m text COLLATE "C";
  e int;
BEGIN
  -- six significant digits, and an exponent of three digits where the number is large or small
  IF x = 0 THEN RETURN '0'; END IF;
  m := to_char(x, '9.99999EEEE');
  e := substr(m, strpos(m, 'e') + 1)::int;
  IF e < -4 OR e >= 6 THEN
    RETURN rtrim(rtrim(btrim(split_part(m, 'e', 1)), '0'), '.') || 'e' ||
      CASE WHEN e < 0 THEN '-' ELSE '+' END || lpad(abs(e)::text, 3, '0');
  END IF;
  m := round(x::numeric, 5 - e)::text;
  IF strpos(m, '.') > 0 THEN m := rtrim(rtrim(m, '0'), '.'); END IF;
  RETURN m;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_text(x date) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$ SELECT to_char(x, 'YYYY-MM-DD')::bpchar $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_money_text(x numeric, style bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF style = 0 THEN RETURN round(x, 2)::text::bpchar; END IF;
  IF style = 1 THEN
    RETURN to_char(round(x, 2), 'FM999,999,999,999,999,999,990.00')::bpchar;
  END IF;
  IF style IN (2, 126) THEN RETURN round(x, 4)::text::bpchar; END IF;
  PERFORM kaunter_sql.k_fail(281, style || ' is not a valid style number when converting from '
                             'money to a character string.');
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_check_text(x bpchar, width bigint, col text) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF char_length(x) > width THEN
    PERFORM kaunter_sql.k_fail(2628, 'String or binary data would be truncated in column ''' || col ||
      '''. It takes ' || width || ' characters. Truncated value: ''' ||
      left(kaunter_sql.k_raw(x), width::int) || '''.');
  END IF;
  RETURN left(kaunter_sql.k_raw(x), width::int)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_concat(a bpchar, b bpchar) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT (kaunter_sql.k_raw(a) || kaunter_sql.k_raw(b))::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_len(x bpchar) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT char_length(x)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_upper(x bpchar) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT upper(kaunter_sql.k_raw(x) COLLATE kaunter_sql."PLAIN")::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_lower(x bpchar) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT kaunter_sql.k_fold(kaunter_sql.k_raw(x))::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_ltrim(x bpchar) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT ltrim(kaunter_sql.k_raw(x) COLLATE "C")::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_rtrim(x bpchar) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT x::text::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_substring(x bpchar, start bigint, n bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF n < 0 THEN
    PERFORM kaunter_sql.k_fail(537, 'Invalid length parameter passed to the substring function.');
  END IF;
  RETURN substr(kaunter_sql.k_raw(x), greatest(least(start, 1000000000), -1000000000)::int,
                least(n, 1000000000)::int)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_left(x bpchar, n bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF n < 0 THEN
    PERFORM kaunter_sql.k_fail(536, 'Invalid length parameter passed to the left function.');
  END IF;
  RETURN left(kaunter_sql.k_raw(x), least(n, 1000000000)::int)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_right(x bpchar, n bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF n < 0 THEN
    PERFORM kaunter_sql.k_fail(536, 'Invalid length parameter passed to the right function.');
  END IF;
  RETURN right(kaunter_sql.k_raw(x), least(n, 1000000000)::int)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_charindex(needle bpchar, hay bpchar, start bigint DEFAULT 1)
  RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  n text COLLATE "C" := kaunter_sql.k_fold(kaunter_sql.k_raw(needle));
  h text COLLATE "C" := kaunter_sql.k_fold(kaunter_sql.k_raw(hay));
  first int := greatest(least(start, 1000000000), 1)::int;
  found int;
BEGIN
  IF n = '' THEN RETURN 0; END IF;
  found := strpos(substr(h, first), n);
  RETURN CASE WHEN found = 0 THEN 0 ELSE found + first - 1 END;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_replace(x bpchar, from_text bpchar, to_text bpchar)
  RETURNS bpchar LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  t text COLLATE "C" := kaunter_sql.k_raw(x);
  f text COLLATE "C" := kaunter_sql.k_fold(t);
  n text COLLATE "C" := kaunter_sql.k_fold(kaunter_sql.k_raw(from_text));
  result text COLLATE "C" := '';
  at int;
BEGIN
  IF n = '' THEN RETURN x; END IF;
  LOOP
    at := strpos(f, n);
    EXIT WHEN at = 0;
    result := result || left(t, at - 1) || kaunter_sql.k_raw(to_text);
    t := substr(t, at + char_length(n));
    f := substr(f, at + char_length(n));
  END LOOP;
  RETURN (result || t)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_stuff(x bpchar, start bigint, n bigint, new_text bpchar)
  RETURNS bpchar LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE WHEN start < 1 OR start > char_length(kaunter_sql.k_raw(x)) OR n < 0 THEN NULL
    ELSE (left(kaunter_sql.k_raw(x), start::int - 1) || kaunter_sql.k_raw(new_text) ||
          substr(kaunter_sql.k_raw(x), (start + least(n, 1000000000))::int))::bpchar END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_reverse(x bpchar) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT reverse(kaunter_sql.k_raw(x))::bpchar';
CREATE OR REPLACE FUNCTION kaunter_sql.k_replicate(x bpchar, n bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF n < 0 THEN RETURN NULL; END IF;
  IF n * greatest(char_length(kaunter_sql.k_raw(x)), 1) > 1000000 THEN
    PERFORM kaunter_sql.k_fail(8115, 'Arithmetic overflow error converting expression to data type '
                           'nvarchar.');
  END IF;
  RETURN repeat(kaunter_sql.k_raw(x), n::int)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_space(n bigint) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$ SELECT kaunter_sql.k_replicate(' '::bpchar, n) $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_str(x numeric, length bigint, decimals bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  t text COLLATE "C";
BEGIN
  IF length < 0 OR length > 8000 THEN RETURN NULL; END IF;
  FOR d IN REVERSE least(greatest(decimals, 0), 10)::int .. 0 LOOP
    t := round(x, d)::text;
    IF char_length(t) <= length THEN RETURN lpad(t, length::int)::bpchar; END IF;
  END LOOP;
  RETURN repeat('*', length::int)::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_str(x float8, length bigint, decimals bigint) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT kaunter_sql.k_str(x::numeric, length, decimals)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_ascii(x bpchar) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT nullif(ascii(kaunter_sql.k_raw(x)), 0)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_unicode(x bpchar) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT nullif(ascii(kaunter_sql.k_raw(x)), 0)::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_char(x bigint) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT CASE WHEN x BETWEEN 1 AND 55295 THEN chr(x::int)::bpchar END';

-- A LIKE pattern as a regular expression over folded text. A set that is never closed, like an
-- empty one, matches nothing.
CREATE OR REPLACE FUNCTION kaunter_sql.k_pattern(pattern text, escape text) RETURNS text
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  p text COLLATE "C" := kaunter_sql.k_fold(pattern);
  esc text COLLATE "C" := kaunter_sql.k_fold(escape);
  r text COLLATE "C" := '^';
  c text COLLATE "C";
  body text COLLATE "C";
  i int := 1;
  n int := char_length(p);
  negated boolean;
BEGIN
  WHILE i <= n LOOP
    c := substr(p, i, 1);
    IF c = esc AND i < n THEN
      i := i + 1;
      r := r || regexp_replace(substr(p, i, 1), '([^[:alnum:]])', '\\\1');
    ELSIF c = '%' THEN
      r := r || '.*';
    ELSIF c = '_' THEN
      r := r || '.';
    ELSIF c = '[' THEN
      i := i + 1;
      negated := substr(p, i, 1) = '^';
      IF negated THEN i := i + 1; END IF;
      body := '';
      WHILE i <= n AND substr(p, i, 1) <> ']' LOOP
        c := substr(p, i, 1);
        IF c = esc AND i < n THEN
          i := i + 1;
          c := '\' || substr(p, i, 1);
        ELSIF c = '-' AND body <> '' AND i < n AND substr(p, i + 1, 1) <> ']' THEN
          c := '-';
        ELSIF c !~ '[[:alnum:]]' THEN
          c := '\' || c;
        END IF;
        body := body || c;
        i := i + 1;
      END LOOP;
      IF i > n THEN
        RETURN '$.^';
      ELSIF body = '' THEN
        r := r || CASE WHEN negated THEN '.' ELSE '$.^' END;
      ELSE
        r := r || CASE WHEN negated THEN '[^' ELSE '[' END || body || ']';
      END IF;
    ELSE
      r := r || CASE WHEN c ~ '[[:alnum:]]' OR ascii(c) > 127 THEN c ELSE '\' || c END;
    END IF;
    i := i + 1;
  END LOOP;
  RETURN r || '$';
END $$;
-- Trailing blanks of the text are ignored, and yet a pattern that wants them finds them.
CREATE OR REPLACE FUNCTION kaunter_sql.k_like(x bpchar, p bpchar) RETURNS boolean
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE WHEN strpos(kaunter_sql.k_raw(p) COLLATE "C", '[') = 0
    THEN kaunter_sql.k_fold(x::text) COLLATE "C" LIKE kaunter_sql.k_fold(kaunter_sql.k_raw(p)) ESCAPE ''
    ELSE kaunter_sql.k_fold(x::text) COLLATE "C" ~ kaunter_sql.k_pattern(kaunter_sql.k_raw(p), '') END
  OR (octet_length(x) <> octet_length(x::text) AND
      kaunter_sql.k_fold(kaunter_sql.k_raw(x)) COLLATE "C" ~ kaunter_sql.k_pattern(kaunter_sql.k_raw(p), '')) $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_like(x bpchar, p bpchar, esc bpchar) RETURNS boolean
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF char_length(kaunter_sql.k_raw(esc)) <> 1 THEN
    PERFORM kaunter_sql.k_fail(506, 'The invalid escape character "' || kaunter_sql.k_raw(esc) ||
                           '" was specified in a LIKE predicate.');
  END IF;
  RETURN kaunter_sql.k_fold(x::text) COLLATE "C" ~ kaunter_sql.k_pattern(kaunter_sql.k_raw(p), kaunter_sql.k_raw(esc))
    OR kaunter_sql.k_fold(kaunter_sql.k_raw(x)) COLLATE "C" ~ kaunter_sql.k_pattern(kaunter_sql.k_raw(p), kaunter_sql.k_raw(esc));
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_patindex(p bpchar, x bpchar) RETURNS bigint
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  t text COLLATE "C" := kaunter_sql.k_fold(kaunter_sql.k_raw(x));
  pattern text COLLATE "C" := kaunter_sql.k_raw(p);
  r text COLLATE "C";
BEGIN
  IF left(pattern, 1) <> '%' THEN
    RETURN (rtrim(t) ~ kaunter_sql.k_pattern(pattern, ''))::int;
  END IF;
  r := kaunter_sql.k_pattern(substr(pattern, 2), '');
  FOR i IN 1 .. char_length(t) + 1 LOOP
    IF rtrim(substr(t, i)) ~ r THEN RETURN i; END IF;
  END LOOP;
  RETURN 0;
END $$;

-- dates
CREATE OR REPLACE FUNCTION kaunter_sql.k_now() RETURNS timestamp LANGUAGE sql STABLE AS $$
  SELECT coalesce(nullif(current_setting('kaunter.now', true), '')::timestamp,
                  date_trunc('second', statement_timestamp()::timestamp)) $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_no_date(t text) RETURNS void LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  PERFORM kaunter_sql.k_fail(241, 'Conversion failed when converting date and/or time from character '
                         'string: ''' || t || '''.');
END $$;
-- h:mm[:ss[.fff]] [AM|PM]; Null when it is no time.
CREATE OR REPLACE FUNCTION kaunter_sql.k_read_time(t text) RETURNS interval
  LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
DECLARE
  m text[] := regexp_match(btrim(t COLLATE "C"),
    '^(\d{1,2}):(\d{1,2})(?::(\d{1,2})(?:[.:]\d{1,9})?)?\s*(am|pm)?$', 'i');
  hour int;
BEGIN
  IF m IS NULL THEN RETURN NULL; END IF;
  hour := m[1]::int;
  IF m[4] IS NOT NULL THEN
    IF hour < 1 OR hour > 12 THEN hour := 24; END IF;
    IF hour < 24 THEN hour := hour % 12 + CASE WHEN upper(m[4]) = 'PM' THEN 12 ELSE 0 END; END IF;
  END IF;
  IF hour > 23 OR m[2]::int > 59 OR coalesce(m[3], '0')::int > 59 THEN
    PERFORM kaunter_sql.k_fail(242, 'The conversion of a nvarchar data type to a datetime data type '
                           'resulted in an out-of-range value.');
  END IF;
  RETURN make_interval(hours => hour, mins => m[2]::int, secs => coalesce(m[3], '0')::int);
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_put_date(y int, m int, d int, rest text) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
DECLARE
  time interval := '0';
BEGIN
  IF btrim(coalesce(rest, '')) <> '' THEN
    time := kaunter_sql.k_read_time(rest);
    IF time IS NULL THEN PERFORM kaunter_sql.k_no_date(rest); END IF;
  END IF;
  IF y < 1 OR m NOT BETWEEN 1 AND 12 OR d < 1 OR
     d > extract(day FROM make_date(y, m, 1) + interval '1 month' - interval '1 day') THEN
    PERFORM kaunter_sql.k_fail(242, 'The conversion of a nvarchar data type to a datetime data type '
                           'resulted in an out-of-range value.');
  END IF;
  RETURN make_date(y, m, d) + time;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_month(name text) RETURNS int
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT n::int FROM unnest(ARRAY['january','february','march','april','may','june','july',
    'august','september','october','november','december']) WITH ORDINALITY AS months(long, n)
  WHERE lower(name COLLATE "C") IN (long, left(long, 3)) $$;
-- `named`: a month by its name may stand first (1) or behind the day (2).
CREATE OR REPLACE FUNCTION kaunter_sql.k_read_date(x bpchar, ymd boolean, dmy boolean, mdy boolean,
    short_year boolean, named int, time_alone boolean) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
DECLARE
  t text COLLATE "C" := btrim(kaunter_sql.k_raw(x) COLLATE "C");
  m text[];
  y int;
  year text COLLATE "C" := CASE WHEN short_year THEN '(\d{2})' ELSE '(\d{4})' END;
  rest text COLLATE "C" := '(?:(?:T| +)(.*))?$';
BEGIN
  IF x IS NULL THEN RETURN NULL; END IF;
  IF t = '' THEN RETURN '1900-01-01'; END IF;
  m := regexp_match(t, '^(\d{4})(\d{2})(\d{2})' || rest);
  IF m IS NOT NULL THEN RETURN kaunter_sql.k_put_date(m[1]::int, m[2]::int, m[3]::int, m[4]); END IF;
  IF ymd THEN
    m := regexp_match(t, '^' || year || '([-/.])(\d{1,2})\2(\d{1,2})' || rest);
    IF m IS NOT NULL THEN m := ARRAY[m[1], m[3], m[4], m[5]]; END IF;
  ELSIF dmy THEN
    m := regexp_match(t, '^(\d{1,2})([-/.])(\d{1,2})\2' || year || rest);
    IF m IS NOT NULL THEN m := ARRAY[m[4], m[3], m[1], m[5]]; END IF;
  ELSIF mdy THEN
    m := regexp_match(t, '^(\d{1,2})([-/.])(\d{1,2})\2' || year || rest);
    IF m IS NOT NULL THEN m := ARRAY[m[4], m[1], m[3], m[5]]; END IF;
  END IF;
  IF m IS NULL AND time_alone AND kaunter_sql.k_read_time(t) IS NOT NULL THEN
    RETURN timestamp '1900-01-01' + kaunter_sql.k_read_time(t);
  END IF;
  IF m IS NULL AND named = 1 THEN
    m := regexp_match(t, '^([A-Za-z]+) *(\d{1,2}),? *(\d{4})' || rest);
    IF m IS NOT NULL THEN m := ARRAY[m[3], kaunter_sql.k_month(m[1])::text, m[2], m[4]]; END IF;
  ELSIF m IS NULL AND named = 2 THEN
    m := regexp_match(t, '^(\d{1,2}) *([A-Za-z]+),? *(\d{4})' || rest);
    IF m IS NOT NULL THEN m := ARRAY[m[3], kaunter_sql.k_month(m[2])::text, m[1], m[4]]; END IF;
  END IF;
  IF m IS NULL OR m[2] IS NULL THEN PERFORM kaunter_sql.k_no_date(t); END IF;
  y := m[1]::int;
  IF short_year THEN y := y + CASE WHEN y < 50 THEN 2000 ELSE 1900 END; END IF;
  RETURN kaunter_sql.k_put_date(y, m[2]::int, m[3]::int, m[4]);
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_datetime(x bpchar) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  result timestamp := kaunter_sql.k_read_date(x, true, false, false, false, 1, true);
BEGIN
  IF result < '1753-01-01' THEN
    PERFORM kaunter_sql.k_fail(242, 'The conversion of a nvarchar data type to a datetime data type '
                           'resulted in an out-of-range value.');
  END IF;
  RETURN result;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_datetime(x numeric) RETURNS timestamp
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT timestamp '1900-01-01' + make_interval(secs => round(x * 86400)::float8) $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_datetime(x float8) RETURNS timestamp
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT kaunter_sql.k_to_datetime(x::numeric)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_datetime(x timestamp) RETURNS timestamp
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT x';
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_date(x bpchar) RETURNS date
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS
  'SELECT kaunter_sql.k_read_date(x, true, false, false, false, 1, true)::date';
CREATE OR REPLACE FUNCTION kaunter_sql.k_to_date(x timestamp) RETURNS date
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT x::date';
CREATE OR REPLACE FUNCTION kaunter_sql.k_isdate(x bpchar) RETURNS bigint
  LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
BEGIN
  IF x IS NULL OR x = '' THEN RETURN 0; END IF;
  PERFORM kaunter_sql.k_to_datetime(x);
  RETURN 1;
EXCEPTION WHEN OTHERS THEN
  RETURN 0;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_isdate(x timestamp) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS 'SELECT (x IS NOT NULL)::int::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_isdate(x numeric) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS 'SELECT 0::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_isdate(x float8) RETURNS bigint
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS 'SELECT 0::bigint';
CREATE OR REPLACE FUNCTION kaunter_sql.k_no_style(style bigint) RETURNS void
  LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  PERFORM kaunter_sql.k_fail(281, style || ' is not a valid style number when converting from '
                         'datetime to a character string.');
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_parse_date(x bpchar, style bigint) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF style IN (2, 11, 12, 20, 21, 23, 102, 111, 112, 120, 121, 126) THEN
    RETURN kaunter_sql.k_read_date(x, true, false, false, style IN (2, 11, 12), 0, false);
  ELSIF style IN (3, 4, 5, 103, 104, 105) THEN
    RETURN kaunter_sql.k_read_date(x, false, true, false, style < 100, 0, false);
  ELSIF style IN (1, 10, 101, 110) THEN
    RETURN kaunter_sql.k_read_date(x, false, false, true, style < 100, 0, false);
  ELSIF style IN (8, 14, 108, 114) THEN
    RETURN kaunter_sql.k_read_date(x, false, false, false, false, 0, true);
  ELSIF style IN (6, 13, 106, 113) THEN
    RETURN kaunter_sql.k_read_date(x, false, false, false, false, 2, false);
  ELSIF style IN (0, 7, 100, 107) THEN
    RETURN kaunter_sql.k_read_date(x, false, false, false, false, 1, false);
  END IF;
  PERFORM kaunter_sql.k_no_style(style);
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_convert(x timestamp, style bigint) RETURNS bpchar
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  format text COLLATE "C" := CASE style
    WHEN 1 THEN 'MM/DD/YY' WHEN 2 THEN 'YY.MM.DD' WHEN 3 THEN 'DD/MM/YY' WHEN 4 THEN 'DD.MM.YY'
    WHEN 5 THEN 'DD-MM-YY' WHEN 6 THEN 'DD Mon YY' WHEN 7 THEN 'Mon DD, YY'
    WHEN 8 THEN 'HH24:MI:SS' WHEN 10 THEN 'MM-DD-YY' WHEN 11 THEN 'YY/MM/DD' WHEN 12 THEN 'YYMMDD'
    WHEN 13 THEN 'DD Mon YYYY HH24:MI:SS:MS' WHEN 14 THEN 'HH24:MI:SS:MS'
    WHEN 20 THEN 'YYYY-MM-DD HH24:MI:SS' WHEN 21 THEN 'YYYY-MM-DD HH24:MI:SS.MS'
    WHEN 23 THEN 'YYYY-MM-DD' WHEN 101 THEN 'MM/DD/YYYY' WHEN 102 THEN 'YYYY.MM.DD'
    WHEN 103 THEN 'DD/MM/YYYY' WHEN 104 THEN 'DD.MM.YYYY' WHEN 105 THEN 'DD-MM-YYYY'
    WHEN 106 THEN 'DD Mon YYYY' WHEN 107 THEN 'Mon DD, YYYY' WHEN 108 THEN 'HH24:MI:SS'
    WHEN 110 THEN 'MM-DD-YYYY' WHEN 111 THEN 'YYYY/MM/DD' WHEN 112 THEN 'YYYYMMDD'
    WHEN 113 THEN 'DD Mon YYYY HH24:MI:SS:MS' WHEN 114 THEN 'HH24:MI:SS:MS'
    WHEN 120 THEN 'YYYY-MM-DD HH24:MI:SS' WHEN 121 THEN 'YYYY-MM-DD HH24:MI:SS.MS'
    WHEN 126 THEN 'YYYY-MM-DD"T"HH24:MI:SS' END;
BEGIN
  IF format IS NOT NULL THEN RETURN to_char(x, format)::bpchar; END IF;
  IF style NOT IN (0, 100) THEN PERFORM kaunter_sql.k_no_style(style); END IF;
  RETURN (to_char(x, 'Mon ') || lpad(to_char(x, 'FMDD'), 2) || to_char(x, ' YYYY ') ||
          lpad(to_char(x, 'FMHH12'), 2) || to_char(x, ':MIAM'))::bpchar;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_datepart(part text, x timestamp) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE part COLLATE "C"
    WHEN 'year' THEN extract(year FROM x) WHEN 'quarter' THEN extract(quarter FROM x)
    WHEN 'month' THEN extract(month FROM x) WHEN 'dayofyear' THEN extract(doy FROM x)
    WHEN 'day' THEN extract(day FROM x)
    WHEN 'week' THEN div(extract(doy FROM x) - 1 + extract(dow FROM date_trunc('year', x)), 7) + 1
    WHEN 'iso_week' THEN extract(week FROM x) WHEN 'weekday' THEN extract(dow FROM x) + 1
    WHEN 'hour' THEN extract(hour FROM x) WHEN 'minute' THEN extract(minute FROM x)
    WHEN 'second' THEN trunc(extract(second FROM x)) ELSE 0 END::bigint $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_datename(part text, x timestamp) RETURNS bpchar
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE part COLLATE "C" WHEN 'month' THEN to_char(x, 'FMMonth')
    WHEN 'weekday' THEN to_char(x, 'FMDay')
    ELSE kaunter_sql.k_datepart(part, x)::text END::bpchar $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_in_calendar(x timestamp) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF x < '1753-01-01' OR x >= '10000-01-01' THEN
    PERFORM kaunter_sql.k_fail(517, 'Adding a value to a ''datetime'' column caused an overflow.');
  END IF;
  RETURN x;
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_dateadd(part text, n bigint, x timestamp) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  p text COLLATE "C" := part;
BEGIN
  IF abs(n) > 400000000000 OR (p IN ('year', 'quarter', 'month') AND abs(n) > 120000) OR
     (p IN ('day', 'dayofyear', 'weekday', 'week') AND abs(n) > 4000000) THEN
    PERFORM kaunter_sql.k_fail(517, 'Adding a value to a ''datetime'' column caused an overflow.');
  END IF;
  RETURN kaunter_sql.k_in_calendar(x + CASE p
    WHEN 'year' THEN make_interval(years => n::int)
    WHEN 'quarter' THEN make_interval(months => 3 * n::int)
    WHEN 'month' THEN make_interval(months => n::int)
    WHEN 'week' THEN make_interval(days => 7 * n::int)
    WHEN 'hour' THEN make_interval(secs => n * 3600.0)
    WHEN 'minute' THEN make_interval(secs => n * 60.0)
    WHEN 'second' THEN make_interval(secs => n)
    WHEN 'millisecond' THEN make_interval(secs => floor(n / 1000.0))
    ELSE make_interval(days => n::int) END);
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_datediff(part text, a timestamp, b timestamp) RETURNS bigint
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE part COLLATE "C"
    WHEN 'year' THEN extract(year FROM b) - extract(year FROM a)
    WHEN 'quarter' THEN (extract(year FROM b) - extract(year FROM a)) * 4 +
      extract(quarter FROM b) - extract(quarter FROM a)
    WHEN 'month' THEN (extract(year FROM b) - extract(year FROM a)) * 12 +
      extract(month FROM b) - extract(month FROM a)
    WHEN 'week' THEN floor((b::date - date '1899-12-31') / 7.0) -
      floor((a::date - date '1899-12-31') / 7.0)
    WHEN 'hour' THEN floor(extract(epoch FROM b) / 3600) - floor(extract(epoch FROM a) / 3600)
    WHEN 'minute' THEN floor(extract(epoch FROM b) / 60) - floor(extract(epoch FROM a) / 60)
    WHEN 'second' THEN floor(extract(epoch FROM b)) - floor(extract(epoch FROM a))
    WHEN 'millisecond' THEN (floor(extract(epoch FROM b)) - floor(extract(epoch FROM a))) * 1000
    ELSE b::date - a::date END::bigint $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_date_plus(x timestamp, days numeric) RETURNS timestamp
  LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF abs(days) > 4000000 THEN
    PERFORM kaunter_sql.k_fail(517, 'Adding a value to a ''datetime'' column caused an overflow.');
  END IF;
  RETURN kaunter_sql.k_in_calendar(x + make_interval(secs => round(days * 86400)::float8));
END $$;
CREATE OR REPLACE FUNCTION kaunter_sql.k_date_plus(x timestamp, days float8) RETURNS timestamp
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS 'SELECT kaunter_sql.k_date_plus(x, days::numeric)';
CREATE OR REPLACE FUNCTION kaunter_sql.k_eomonth(x timestamp, months bigint) RETURNS timestamp
  LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT kaunter_sql.k_dateadd('day', -1, kaunter_sql.k_dateadd('month', months + 1,
                                                        date_trunc('month', x))) $$;

-- the session
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

-- The catalogue. The number before the colon of a check's name is the width of a text, or the
-- digits of a bit (1) and a tinyint (3).
CREATE OR REPLACE VIEW kaunter_sql.declared AS
  SELECT c.relname, a.attnum, a.attname, c.oid AS relid, c.relkind,
    CASE t.typname
      WHEN 'bpchar' THEN CASE WHEN w.width > 0 THEN 'nvarchar(' || w.width || ')'
        WHEN a.atttypmod > 4 THEN 'nchar(' || a.atttypmod - 4 || ')' ELSE 'nvarchar(max)' END
      WHEN 'varchar' THEN
        CASE WHEN a.atttypmod > 4 THEN 'nvarchar(' || a.atttypmod - 4 || ')' ELSE 'nvarchar(max)' END
      WHEN 'text' THEN 'nvarchar(max)'
      WHEN 'name' THEN 'nvarchar(64)'
      WHEN 'uuid' THEN 'uniqueidentifier'
      WHEN 'numeric' THEN CASE WHEN a.atttypmod < 4 THEN 'decimal(38, 10)'
        ELSE 'decimal(' || ((a.atttypmod - 4) >> 16) || ', ' || ((a.atttypmod - 4) & 2047) || ')' END
      WHEN 'int2' THEN CASE w.width WHEN 1 THEN 'bit' WHEN 3 THEN 'tinyint' ELSE 'smallint' END
      WHEN 'int4' THEN 'int'
      WHEN 'int8' THEN 'bigint'
      WHEN 'float4' THEN 'real'
      WHEN 'float8' THEN 'float'
      WHEN 'date' THEN 'date'
      WHEN 'timestamp' THEN 'datetime'
      WHEN 'timestamptz' THEN 'datetime'
      WHEN 'bytea' THEN 'varbinary(max)'
      ELSE t.typname::text END AS declared,
    a.attnotnull, a.atthasdef, a.attidentity <> '' AS identity, a.attgenerated <> '' AS computed
  FROM pg_class c
  JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped
  JOIN pg_type t ON t.oid = a.atttypid
  LEFT JOIN LATERAL (
    SELECT substring(k.conname::text FROM '^([0-9]+):')::int AS width FROM pg_constraint k
    WHERE k.conrelid = c.oid AND k.contype = 'c' AND k.conkey = ARRAY[a.attnum] AND
          k.conname::text ~ '^[0-9]{1,5}:' LIMIT 1) w ON true
  WHERE c.relnamespace = current_schema()::regnamespace AND c.relkind IN ('r', 'p', 'v', 'm', 'f');
CREATE OR REPLACE VIEW kaunter_sql."TABLES" AS
  SELECT current_database()::text::bpchar COLLATE kaunter_sql."KAUNTER1" AS "TABLE_CATALOG",
    'dbo'::bpchar COLLATE kaunter_sql."KAUNTER1" AS "TABLE_SCHEMA",
    relname::text::bpchar COLLATE kaunter_sql."KAUNTER1" AS "TABLE_NAME",
    CASE WHEN relkind IN ('v', 'm') THEN 'VIEW' ELSE 'BASE TABLE' END::bpchar
      COLLATE kaunter_sql."KAUNTER1" AS "TABLE_TYPE"
  FROM pg_class
  WHERE relnamespace = current_schema()::regnamespace AND relkind IN ('r', 'p', 'v', 'm', 'f');
CREATE OR REPLACE VIEW kaunter_sql."COLUMNS" AS
  SELECT current_database()::text::bpchar COLLATE kaunter_sql."KAUNTER1" AS "TABLE_CATALOG",
    'dbo'::bpchar COLLATE kaunter_sql."KAUNTER1" AS "TABLE_SCHEMA",
    relname::text::bpchar COLLATE kaunter_sql."KAUNTER1" AS "TABLE_NAME",
    attname::text::bpchar COLLATE kaunter_sql."KAUNTER1" AS "COLUMN_NAME",
    pg_get_expr(d.adbin, d.adrelid)::bpchar COLLATE kaunter_sql."KAUNTER1" AS "COLUMN_DEFAULT",
    CASE WHEN attnotnull THEN 'NO' ELSE 'YES' END::bpchar COLLATE kaunter_sql."KAUNTER1"
      AS "IS_NULLABLE",
    split_part(declared, '(', 1)::bpchar COLLATE kaunter_sql."KAUNTER1" AS "DATA_TYPE",
    attnum::bigint AS "ORDINAL_POSITION"
  FROM kaunter_sql.declared LEFT JOIN pg_attrdef d ON d.adrelid = relid AND d.adnum = attnum;
-- One table for the binder: its name, then a line a column.
CREATE OR REPLACE FUNCTION kaunter_sql.k_table(wanted text) RETURNS text LANGUAGE sql STABLE AS $$
  SELECT relname || E'\n' || string_agg(
    concat_ws(E'\t', attname, declared, attnotnull::int, atthasdef::int, identity::int,
              computed::int, coalesce(array_position(
                (SELECT conkey FROM pg_constraint WHERE conrelid = relid AND contype = 'p'), attnum),
                0)), E'\n' ORDER BY attnum)
  FROM kaunter_sql.declared WHERE lower(relname::text) = lower(wanted)
  GROUP BY relname, relid ORDER BY relname = wanted DESC, relname LIMIT 1 $$;
)sql";
  return kText;
}

}  // namespace kaunter::sql
