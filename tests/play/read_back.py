"""Reads back, with readers that are not ours, what tests/play/read_back.cmake has had written: the files of the Data
Exporter against what was put in, and each printed list's CSV against its workbook, cell by cell."""
import csv
import datetime
import decimal
import pathlib
import sys

try:
    import openpyxl
except ImportError:
    sys.exit("no openpyxl to read workbooks with (Debian's python3-openpyxl)")

DAY, MONEY = datetime.datetime, decimal.Decimal
# In the order of LoanID: what the script has put in.
ROWS = [
    ("L1", "=1+1", DAY(2024, 2, 29), MONEY("1234567.89"), MONEY("0.0625"), 3),
    ("L2", "0012345", DAY(1957, 8, 31), MONEY("-0.05"), MONEY("18"), 0),
    ("L3", '陈大文 "ABC", Sdn Bhd', DAY(1899, 12, 31), MONEY("0"), None, -1),
    ("L4", "O'Brien\nline two, end", DAY(2024, 1, 31, 23, 59, 59), MONEY("9999999999999.99"), MONEY("1.5"), None),
    ("L5", "-5", None, None, MONEY("0.1"), 2147483647),
    ("L6", "", DAY(2024, 1, 31), MONEY("0.10"), MONEY("12.3456"), 7),
    ("L7", "+60123456789", DAY(2000, 12, 31), MONEY("100"), MONEY("1"), 1),
]
HEADINGS = ["Loan", "Name, \"full\"", "Day", "Amount", "Rate", "Number"]
faults = []


def same(what, found, wanted):
    if found != wanted:
        faults.append(f"{what}: {found!r}, not {wanted!r}")


def shown_day(day):
    return "" if day is None else day.strftime("%d-%m-%Y %H:%M:%S" if day.hour else "%d-%m-%Y")


def export_csv(path, quoted):
    raw = path.read_bytes()
    same(f"{path.name}, ends of lines", raw.count(b"\n"), len(ROWS) + 1)
    same(f"{path.name}, pairs of them", raw.count(b"\r\n"), len(ROWS) + 1)
    lines = list(csv.reader(raw.decode("utf-8").split("\r\n")[:-1]))
    keep = (lambda text: text) if quoted else (lambda text: text.replace(",", ""))
    same(f"{path.name}, headings", lines[0], [keep(heading) for heading in HEADINGS])
    same(f"{path.name}, rows", len(lines) - 1, len(ROWS))
    for line, (loan, name, day, amount, rate, number) in zip(lines[1:], ROWS):
        where = f"{path.name} {loan}"
        same(where + " text", line[1], keep(name.replace("\n", " ")))
        same(where + " date", line[2], shown_day(day))
        same(where + " money", line[3], "" if amount is None else keep(f"{amount:,.2f}"))
        same(where + " rate", None if line[4] == "" else MONEY(line[4]), rate)
        same(where + " number", line[5], "" if number is None else str(number))


def export_workbook(path):
    sheet = openpyxl.load_workbook(path).active
    same("sheet", sheet.title, "Read back")
    rows = list(sheet.iter_rows())
    same("headings", [cell.value for cell in rows[0]], HEADINGS)
    for cells, (loan, name, day, amount, rate, number) in zip(rows[1:], ROWS):
        if name:
            same(f"{loan} text", cells[1].value, name)
            same(f"{loan} kind of text", cells[1].data_type, "s")
        else:
            same(f"{loan} no text", cells[1].value, None)
        if day is None:
            same(f"{loan} no date", cells[2].value, None)
        elif day.hour or day.year < 1900:  # a day of a workbook has no time and begins with 1900
            same(f"{loan} date as text", cells[2].value, shown_day(day))
        else:
            same(f"{loan} date", cells[2].value, day)
            same(f"{loan} form of dates", cells[2].number_format, "dd-mm-yyyy")
        for what, cell, wanted in (("money", cells[3], amount), ("rate", cells[4], rate)):
            same(f"{loan} {what}", None if cell.value is None else MONEY(repr(cell.value)), wanted)
            if wanted is not None:
                same(f"{loan} kind of {what}", cell.data_type, "n")
        if amount is not None:
            same(f"{loan} form of money", cells[3].number_format, "#,##0.00")
        same(f"{loan} number", cells[5].value, number)


def as_text(cell):
    if cell.value is None:
        return ""
    if cell.is_date:
        return cell.value.strftime("%d-%m-%Y")
    return cell.value if cell.data_type == "s" else MONEY(repr(cell.value))


def list_of_a_report(path):
    lines = list(csv.reader(path.read_text("utf-8-sig").splitlines(keepends=True)))
    rows = list(openpyxl.load_workbook(path.with_suffix(".xlsx")).active.iter_rows())
    same(f"{path.stem}, rows", len(rows), len(lines))
    for number, (line, cells) in enumerate(zip(lines, rows)):
        for column, (text, cell) in enumerate(zip(line, cells)):
            where, found = f"{path.stem}, row {number}, column {column}", as_text(cell)
            if isinstance(found, MONEY):
                same(where, MONEY(text), found)
            elif text.startswith("'") and text[1:2] in "=+-@":  # else a spreadsheet would reckon it
                same(where, found, text[1:])
            else:
                same(where, found.replace("\r\n", "\n"), text.replace("\r\n", "\n"))
    return len(lines) - 1


folder, lists = pathlib.Path(sys.argv[1]), 0
export_csv(folder / "files/Read back-090000.csv", False)
export_csv(folder / "files/Read back-090100.csv", True)
export_workbook(folder / "files/Read back-090000.xlsx")
for paper in sorted((folder / "paper").glob("*.csv")):
    lists += list_of_a_report(paper)
if lists < 10:
    faults.append(f"only {lists} rows of lists were read")
print("\n".join(faults) or f"{len(ROWS)} rows of exports and {lists} of lists are what was put in")
sys.exit(1 if faults else 0)
