#include "platform/sql/odbc/postgresql_functions.h"

namespace kaunter::sql {

std::string_view PostgresTextFunctions() {
  static constexpr std::string_view kText = R"sql(-- text
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
CREATE OR REPLACE FUNCTION kaunter_sql.k_replace_words(x bpchar, from_text bpchar, to_text bpchar)
  RETURNS bpchar LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE COST 1 AS $$
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
-- Signs and figures have no case: the server's own function does. Not STRICT, and cheap by
-- declaration: only so does the server put it into the statement, which it must for a search.
CREATE OR REPLACE FUNCTION kaunter_sql.k_replace(x bpchar, from_text bpchar, to_text bpchar)
  RETURNS bpchar LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN kaunter_sql.k_raw(from_text) COLLATE "C" ~ '^[ -@]+$'
    THEN replace(kaunter_sql.k_raw(x) COLLATE "C", kaunter_sql.k_raw(from_text), kaunter_sql.k_raw(to_text))::bpchar
    ELSE kaunter_sql.k_replace_words(x, from_text, to_text) END $$;
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
-- Trailing blanks of the text are ignored, and yet a pattern that wants them finds them: one with a
-- letter behind its last blank, "_" or set cannot want any. Not STRICT: only so does the server put it into the statement, where a pattern that is known leaves
-- one comparison over, which an index may answer.
CREATE OR REPLACE FUNCTION kaunter_sql.k_like(x bpchar, p bpchar) RETURNS boolean
  LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN strpos(kaunter_sql.k_raw(p) COLLATE "C", '[') = 0
    THEN kaunter_sql.k_fold(x::text) COLLATE "C" LIKE kaunter_sql.k_fold(kaunter_sql.k_raw(p)) ESCAPE ''
    ELSE kaunter_sql.k_fold(x::text) COLLATE "C" ~ kaunter_sql.k_pattern(kaunter_sql.k_raw(p), '') END
  OR (kaunter_sql.k_raw(p) COLLATE "C" ~ '[][ _]%*$' AND octet_length(x) <> octet_length(x::text) AND
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

)sql";
  return kText;
}

}  // namespace kaunter::sql
