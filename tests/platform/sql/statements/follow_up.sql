--- calls due, all companies
SELECT * FROM (SELECT TOP 50 * FROM (Select TOP 50 ln.NextCall as 'NextCall', ln.NextDueDate as 'NextDueDate', ln.LoanID as 'LoanID',ln.CompCode as 'CompCode',cm.CustName as 'CustName' from LoanMast as ln LEFT OUTER JOIN CustMast as cm on ln.CustID = cm.CustID where ln.NextCall <= '2024-01-31' and ln.LoanBal > 0  order by ln.NextCall DESC) as a ORDER BY a.NextCall ASC) as b ORDER BY b.NextCall DESC
;;
--- calls due, home company only, second page
SELECT * FROM (SELECT TOP 50 * FROM (Select TOP 100 ln.NextCall as 'NextCall', ln.NextDueDate as 'NextDueDate', ln.LoanID as 'LoanID',ln.CompCode as 'CompCode',cm.CustName as 'CustName' from LoanMast as ln LEFT OUTER JOIN CustMast as cm on ln.CustID = cm.CustID where ln.NextCall <= '2024-01-31' and ln.LoanBal > 0  and ln.CompCode='AB' order by ln.NextCall DESC) as a ORDER BY a.NextCall ASC) as b ORDER BY b.NextCall DESC
;;
--- calls due, the companies allowed to the user
SELECT * FROM (SELECT TOP 50 * FROM (Select TOP 50 ln.NextCall as 'NextCall', ln.NextDueDate as 'NextDueDate', ln.LoanID as 'LoanID',ln.CompCode as 'CompCode',cm.CustName as 'CustName' from LoanMast as ln LEFT OUTER JOIN CustMast as cm on ln.CustID = cm.CustID where ln.NextCall <= '2024-01-31' and ln.LoanBal > 0  and ln.CompCode in ('AB','CD') order by ln.NextCall DESC) as a ORDER BY a.NextCall ASC) as b ORDER BY b.NextCall DESC
;;
--- loan by its customer's new IC
SELECT l.LoanID FROM CustMast as c INNER JOIN LoanMast as l ON c.CustID=l.CustID WHERE c.CustNIC='800131-10-5555'
;;
--- customer by the old code of a loan
SELECT c.CustID FROM CustMast as c INNER JOIN LoanMast as l ON c.CustID=l.CustID WHERE l.OldLoanCode='L-77'
;;
--- customer by new IC
SELECT CustID FROM CustMast WHERE CustNIC='800131-10-5555'
;;
--- due dates of a customer's loan between two dates, home company
SELECT h.duedate,l.LoanID,l.OldLoanCode,l.CustID,c.CustName,h.PayableAmt,h.Payment,h.PayableAmt-h.Payment as Balance FROM (SchMast as h INNER JOIN LoanMast as l on l.LoanID=h.LoanID) INNER JOIN CustMast as c on h.CustID=c.CustID  WHERE h.PayableAmt-h.Payment > 0  AND h.CustID='AB0012' AND h.LoanID='AB0012-001' AND h.DueDate >= '2024-01-01' AND h.DueDate <= '2024-12-31' AND l.CompCode='AB' ORDER BY h.DueDate DESC
;;
--- due dates of one customer, all companies
SELECT h.duedate,l.LoanID,l.OldLoanCode,l.CustID,c.CustName,h.PayableAmt,h.Payment,h.PayableAmt-h.Payment as Balance FROM (SchMast as h INNER JOIN LoanMast as l on l.LoanID=h.LoanID) INNER JOIN CustMast as c on h.CustID=c.CustID  WHERE h.PayableAmt-h.Payment > 0  AND h.CustID='AB0012' ORDER BY h.DueDate DESC
;;
