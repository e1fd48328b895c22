-- Statements that the central database hands to the offices.
--
-- The monthly upload to the housing ministry: a line a loan of the company, every field in quotes.
INSERT INTO DataExport (SID,FromDate,ToDate,ExportHeader,Quote,SQLStatement) VALUES
('IDEAL UPLOAD','1','1','1','1',
N'SELECT m.LicenseNo AS [Licence], l.LoanID AS [Loan], c.CustName AS [Borrower],
 case when c.CustNIC <> '''' then c.CustNIC when c.CustOIC <> '''' then c.CustOIC else c.CustOthIC end AS [Identity],
 c.AreaCode AS [Kind], l.LoanType AS [Collateral], l.TrxDate AS [Agreed on], l.LoanAmt AS [Principal],
 l.InsRate AS [Rate], l.LoanTerm AS [Terms], l.TotLoanInt AS [Interest], l.LoanBal AS [Balance]
FROM (LoanMast AS l INNER JOIN CustMast AS c ON l.CustID = c.CustID) INNER JOIN CompMast AS m ON l.CompCode = m.CompCode
WHERE l.CompCode = @CompCode AND l.TrxDate >= @FromDate AND l.TrxDate <= @ToDate
ORDER BY l.TrxDate, l.LoanID');
