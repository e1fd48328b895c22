#include "platform/sql/odbc/postgresql_functions.h"

namespace kaunter::sql {

std::string_view PostgresCatalogueViews() {
  static constexpr std::string_view kText =
      R"sql(-- The catalogue. The number before the colon of a check's name is the width of a text, or the
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
