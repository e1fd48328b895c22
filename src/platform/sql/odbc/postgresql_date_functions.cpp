#include "platform/sql/odbc/postgresql_functions.h"

namespace kaunter::sql {

std::string_view PostgresDateFunctions() {
  static constexpr std::string_view kText = R"sql(-- dates
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

)sql";
  return kText;
}

}  // namespace kaunter::sql
