-- Which records of an office are income documents for the tax authority, and what the offices share of its service.
--
-- Documents of a period: the interest of each instalment that falls due (of loans whose interest is worked out at the
-- beginning), what payments bring in interest of other loans and in late interest, and invoices and credit notes. A
-- customer with a tax number gets a document of his own; all others go out consolidated, without a name.
INSERT INTO DataExport (SID,FromDate,ToDate,SQLStatement)
SELECT m.SID, '1', '1', m.Head + d.Documents + m.Tail FROM (SELECT
N' SELECT s.LoanID + ''-I'' + convert(varchar(10), s.SchID) AS eInvID, s.DueDate AS TrxDate, l.CustID, l.CompCode, s.LoanID,
  convert(varchar(10), s.SchID) AS SchID, ''Interest'' AS InvType,
  ''Interest of instalment '' + convert(varchar(10), s.SchID) AS InvDesc, s.InterestAmt AS InvAmt
 FROM SchMast AS s INNER JOIN LoanMast AS l ON l.LoanID = s.LoanID
 WHERE l.DragLoan = ''0'' AND l.CompCode = @CompCode AND s.InterestAmt > 0
  AND s.DueDate >= @FromDate AND s.DueDate < dateadd(day, 1, @ToDate)
 UNION ALL
 SELECT p.PayID, p.PayDate, p.CustID, p.CompCode, p.LoanID, convert(varchar(10), p.SchID), ''Payment'',
  ''Interest and late interest paid'', p.IntAmt + p.CollectorAmt
 FROM PaymentMast AS p
 WHERE p.CompCode = @CompCode AND p.IntAmt + p.CollectorAmt <> 0 AND p.PayDate >= @FromDate AND p.PayDate < dateadd(day, 1, @ToDate)
 UNION ALL
 SELECT h.ChargeID, h.TrxDate, h.CustID, h.CompCode, h.LoanID, '''', h.PType, h.ChargeDesc, h.ChargeAmt
 FROM ChargeMast AS h
 WHERE h.PType IN (''Invoice'',''Credit Note'') AND h.CompCode = @CompCode AND h.ChargeAmt <> 0
  AND h.TrxDate >= @FromDate AND h.TrxDate < dateadd(day, 1, @ToDate)
' AS Documents) AS d CROSS JOIN (
SELECT 'VKT-Individual' AS SID,
N'SELECT d.eInvID, 1 AS SeqNo, d.TrxDate, d.CustID, c.CustName, d.CompCode, d.LoanID, d.SchID, d.InvType, ''06'' AS TaxType,
 d.InvDesc, d.InvAmt, 1 AS Qty, e.TIN AS tin, e.CustTypeID, e.CustType, e.CustName AS CustName, e.Phone, e.Email,
 e.Address, e.Postcode, e.City, e.State, e.Country
FROM (
' AS Head, N') AS d INNER JOIN CustMast AS c ON c.CustID = d.CustID INNER JOIN ECustMast AS e ON e.CustID = d.CustID
WHERE e.TIN <> ''''
ORDER BY d.TrxDate, d.eInvID' AS Tail
UNION ALL
SELECT 'VKT-Consolidated',
N'SELECT d.eInvID, 1 AS SeqNo, d.TrxDate, d.CustID, c.CustName, d.CompCode, d.LoanID, d.SchID, d.InvType, ''06'' AS TaxType,
 d.InvDesc, d.InvAmt, 1 AS Qty, '''' AS tin, '''' AS CustTypeID, '''' AS CustType, '''' AS CustName, '''' AS Phone,
 '''' AS Email, '''' AS Address, '''' AS Postcode, '''' AS City, '''' AS State, '''' AS Country
FROM (
', N') AS d LEFT JOIN CustMast AS c ON c.CustID = d.CustID LEFT JOIN ECustMast AS e ON e.CustID = d.CustID
WHERE e.TIN IS NULL OR e.TIN = ''''
ORDER BY d.TrxDate, d.eInvID') AS m;

-- What the service has and nobody cancelled.
INSERT INTO DataExport (SID,FromDate,ToDate,SQLStatement) VALUES ('VKT-Cancel','1','1',
N'SELECT i.eInvID, i.SeqNo, i.TrxDate, i.CustID, c.CustName, i.CompCode, i.LoanID, i.SchID, i.InvType,
 i.InvTaxCode AS TaxType, i.InvDesc, i.InvAmt, i.InvQty AS Qty, i.tin, e.CustTypeID, e.CustType, e.CustName AS CustName,
 e.Phone, e.Email, e.Address, e.Postcode, e.City, e.State, e.Country
FROM EInvMast AS i LEFT JOIN CustMast AS c ON c.CustID = i.CustID LEFT JOIN ECustMast AS e ON e.CustID = i.CustID
WHERE i.CompCode = @CompCode AND i.uuid <> '''' AND (i.Canceluuid IS NULL OR i.Canceluuid = '''')
 AND i.TrxDate >= @FromDate AND i.TrxDate < dateadd(day, 1, @ToDate)
ORDER BY i.TrxDate, i.eInvID, i.SeqNo');
