--- daily collection: loans
INSERT INTO MasterReport (pcname,reportname,recordid,s1,c1,c2,d1,s10) SELECT 'PC-01','DailyCollection.rpt',LoanID,LoanID,LoanAmt,PayOutAmt,TrxDate,CompCode FROM LoanMast  WHERE TrxDate >= '2024-01-01' AND TrxDate <= '2024-01-31'
;;
--- daily collection: loans for a special user
INSERT INTO MasterReport (pcname,reportname,recordid,s1,c1,c2,d1,s10) SELECT 'PC-01','DailyCollection.rpt',LoanID,LoanID,LoanAmt2,LoanAmt2,TrxDate,CompCode FROM LoanMast  WHERE TrxDate >= '2024-01-01' AND TrxDate <= '2024-01-31'
;;
--- daily collection: loans from a date on
INSERT INTO MasterReport (pcname,reportname,recordid,s1,c1,c2,d1,s10) SELECT 'PC-01','DailyCollection.rpt',LoanID,LoanID,LoanAmt,PayOutAmt,TrxDate,CompCode FROM LoanMast  WHERE TrxDate >= '2024-01-01'
;;
--- daily collection: payments
INSERT INTO MasterReport (pcname,reportname,recordid,s1,c3,c4,c5,d1,s10) SELECT 'PC-01','DailyCollection.rpt',PayID,LoanID,(PayAmt+IntAmt+ChargeAmt+CollectorAmt-(TopUpAmt+DiscAmt)),NewLoanBal,PayAmt,PayDate,CompCode FROM PaymentMast  WHERE PayDate >= '2024-01-01' AND PayDate <= '2024-01-31'
;;
--- transaction record: loans of two companies and one repayment
INSERT INTO MasterReport (pcname,reportname,recordid,S20,C1) SELECT 'PC-01' ,'RekodTrans.rpt',LoanID,LoanID,0 FROM LoanMast WHERE TrxDate >= '2024-01-01' AND TrxDate <= '2024-01-31' AND  (CompCode = 'AB' or CompCode = 'CD' ) and  (LoanTypeID = 'MONTH' ) 
;;
--- transaction record: loans of one company and one kind of customer
INSERT INTO MasterReport (pcname,reportname,recordid,S20,C1) SELECT 'PC-01' ,'RekodTrans.rpt',LoanID,LoanID,0 FROM LoanMast WHERE TrxDate >= '2024-01-01' AND TrxDate <= '2024-01-31' AND  (CompCode = 'AB' ) and CustID in (select CustID from CustMast where  (CompCatCode = 'NIL' ) )
;;
--- transaction record: payments up to a date, over all rows
UPDATE MasterReport SET C1=(SELECT case when SUM(Payamt-DiscAmt) is null then 0 else SUM(Payamt-DiscAmt) end FROM paymentmast WHERE LoanID = MasterReport.S20 and PayDate <='2024-01-31')
;;
--- statement: loans for the opening rows
SELECT l.LoanID,l.TrxDate,l.PayOutAmt,l.Bank,l.BankBranch,l.LoanAmt FROM LoanMast as l WHERE 1=1  AND (l.CompCode = 'AB'  or l.CompCode = 'CD' )  AND l.TrxDate <= '2024-01-31'
;;
--- statement: opening rows, one batch
INSERT INTO MasterReport (pcname,reportname,recordID,s1,s2,c1,c2,d1,d2,s10,c7,c8,c9,c10,c11,c12,c13,c14) VALUES ('PC-01','StatementList.rpt','#-AB0012-001','Balance BF','',0,0,'2023-12-31','2024-01-31','AB0012-001',0,0,0,0,0,0,0,0);INSERT INTO MasterReport (pcname,reportname,recordID,s1,s2,c1,c2,d1,d2,s10,c7,c8,c9,c10,c11,c12,c13,c14) VALUES ('PC-01','StatementList.rpt','#-AB0012-002','Balance BF','',0,0,'2023-12-31','2024-01-31','AB0012-002',0,0,0,0,0,0,0,0)
;;
--- statement: drawdowns
SELECT l.LoanID,l.TrxDate,l.DrawDownAmt as [LoanAmt],ll.OldLoanCode,ll.Memo5 FROM DrawDownMast as l INNER JOIN LoanMast as ll on l.LoanID=ll.LoanID WHERE 1=1  AND (l.CompCode = 'AB' )  AND l.TrxDate <= '2024-01-31'
;;
--- statement: a drawdown in the range and one before it, one batch
INSERT INTO MasterReport (pcname,reportname,recordID,s1,s2,c1,c2,d1,d2,s10,c7,c8,c9,c10,c11,c12,c13,c14) VALUES ('PC-01','StatementList.rpt','AB0012-001','Loan Drawdown','',10000.00,0,'2024-01-05','2024-01-31','AB0012-001',0,10000.00,0,0,0,0,0,0);UPDATE MasterReport SET c1=c1 + 5000.00,c8=c8 + 5000.00 WHERE pcname='PC-01' AND reportname='StatementList.rpt' AND recordID='#-AB0012-001';
;;
--- statement: payments
SELECT p.PayID,p.PayDate,p.LoanID,(p.PayAmt+p.IntAmt+p.ChargeAmt) as [Payment],p.Bank,p.ChqNo,p.IntPay,CapPay,p.PayExtra,p.IntAmt,p.CollectInfoID,p.DiscAmt FROM PaymentMast as p inner join LoanMast as l on l.LoanID=p.LoanID WHERE 1=1  AND (l.CompCode = 'AB'  or l.CompCode = 'CD' )  AND l.LoanID >= 'AB0012-001' AND l.LoanID <= 'AB0012-002' AND p.PayDate <= '2024-01-31'
;;
--- statement: a payment with its discount, one batch
INSERT INTO MasterReport (pcname,reportname,recordID,s1,s2,c1,c2,d1,d2,s10,c7,c8,c9,c10,c11,c12,c13,c14) VALUES ('PC-01','StatementList.rpt','AB0012-001-001','Payment','Cheque PBB 000123',0,983.33,'2024-01-31','2024-01-31','AB0012-001',0,0,150.00,833.33,0,0,0,0);INSERT INTO MasterReport (pcname,reportname,recordID,s1,s2,c1,c2,d1,d2,s10,c7,c8,c9,c10,c11,c12,c13,c14) VALUES ('PC-01','StatementList.rpt','AB0012-001-001*','Payment Discount','Cheque PBB 000123',0,20.00,'2024-01-31','2024-01-31','AB0012-001',0,0,0,0,0,0,0,20.00)
;;
--- statement: a payment before the range
UPDATE MasterReport SET c2=c2 + 983.33,c9=c9 + 150.00,c10=c10 + 833.33,c12=c12 + 0,c13=c13 + 0,c14=c14 + 20.00 WHERE pcname='PC-01' AND reportname='StatementList.rpt' AND recordID='#-AB0012-001';
;;
--- statement: whole interest of the loans
SELECT l.LoanID,l.TotLoanInt,l.TrxDate FROM LoanMast as l WHERE 1=1  AND (l.CompCode = 'AB' )  AND l.TrxDate <= '2024-01-31'
;;
--- statement: whole interest of a loan before the range
UPDATE MasterReport SET c1=c1 + 1800.00,c7=c7 + 1800.00 WHERE pcname='PC-01' AND reportname='StatementList.rpt' AND recordID='#-AB0012-001';
;;
--- statement: charges other than the daily ones
SELECT c.ChargeID,c.LoanID,c.TrxDate,c.DueDate,c.ChargeAmt,c.PType,c.ChargeDesc FROM ChargeMast as c INNER JOIN LoanMast as l on l.LoanID=c.LoanID WHERE c.PType <> 'Batch'  AND c.PType <> 'Payment'  AND (l.CompCode = 'AB' )  AND c.TrxDate <= '2024-01-31'
;;
--- statement: a charge before the range
UPDATE MasterReport SET c1=c1 + 50.00,c11=c11 + 50.00 WHERE pcname='PC-01' AND reportname='StatementList.rpt' AND recordID='#-AB0012-001';
;;
--- statement: daily charges in the range by month
SELECT DATEPART(Month,c.TrxDate) [Month], DATEPART(year,c.TrxDate) [Year],c.LoanID,MAX(c.BatchDate) [TrxDate],MIN(c.BatchDate) [MinTrxDate],MAX(c.DueDate) [DueDate],SUM(c.ChargeAmt) [ChargeAmt] FROM ChargeMast as c INNER JOIN LoanMast as l on l.LoanID=c.LoanID WHERE c.ChargeAmt > 0  AND (l.CompCode = 'AB'  or l.CompCode = 'CD' )  AND c.TrxDate <= '2024-01-31' AND c.PType = 'Batch' AND c.TrxDate >= '2024-01-01' group by DATEPART(Month,c.TrxDate) , DATEPART(year,c.TrxDate),c.LoanID
;;
--- statement: daily charges before the range
SELECT SUM(c.ChargeAmt) [ChargeAmt],c.LoanID as LoanID FROM ChargeMast as c INNER JOIN LoanMast as l on l.LoanID=c.LoanID WHERE c.ChargeAmt > 0 AND c.PType = 'Batch' AND c.TrxDate < '2024-01-01' AND (l.CompCode = 'AB' )  GROUP BY c.LoanID
;;
--- summary: loans
SELECT l.LoanID,l.LoanAmt,c.AreaCode FROM LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE 1=1  AND (l.CompCode = 'AB'  or l.CompCode = 'CD' )  AND l.TrxDate <='2024-01-31'
;;
--- summary: one loan
INSERT INTO MasterReport (pcname,reportname,recordid,s2,c1,c2,c3,c4,c5,c6,c7) VALUES ('PC-01','SummaryPnL.rpt','AB0012-001','PERSONAL',10000.00,0,0,0,0,0,0)
;;
--- summary: capital due
SELECT s.LoanID,SUM(s.CapitalAmt) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.TrxDate <= '2024-01-31' AND (l.CompCode = 'AB' )  GROUP BY s.LoanID
;;
--- summary: interest of the period or the year
SELECT s.LoanID,SUM(s.InterestAmt) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE s.DueDate >= '2024-01-01' AND s.DueDate <= '2024-01-31' AND (l.CompCode = 'AB' )  GROUP BY s.LoanID
;;
--- summary: charges of the period or the year
SELECT l.LoanID,SUM(l.ChargeAmt) FROM ChargeMast as l WHERE l.TrxDate >= '2024-01-01' AND l.TrxDate <= '2024-01-31' AND (l.CompCode = 'AB' )  AND l.PType='Batch' GROUP BY l.LoanID
;;
--- summary: capital paid
SELECT p.LoanID,SUM(p.CapPay) FROM PaymentMast as p INNER JOIN LoanMast as l on p.LoanID=l.LoanID WHERE p.PayDate <= '2024-01-31' AND (l.CompCode = 'AB' )  GROUP BY p.LoanID
;;
--- summary: one sum of a loan
UPDATE MasterReport set c6=10000.00 WHERE pcname='PC-01' AND reportname='SummaryPnL.rpt' AND recordID='AB0012-001'
;;
--- account: drawdowns, some companies and a bank
SELECT a.TrxDate,a.LoanID,a.UserID,a.CompCode,a.DrawDownAmt,0-a.DrawDownAmt as [PayOutAmt],c.CustName,l.OldLoanCode,l.LoanType,l.Memo1,a.Bank,a.ChqNo FROM DrawDownMast as a inner join LoanMast as l on a.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID WHERE (a.TrxDate >= '2024-01-01' AND a.TrxDate <= '2024-01-31') AND (a.CompCode = 'AB'  or a.CompCode = 'CD' )  AND (a.Bank = 'PBB' ) 
;;
--- account: drawdowns, all companies
SELECT a.TrxDate,a.LoanID,a.UserID,a.CompCode,a.DrawDownAmt,0-a.DrawDownAmt as [PayOutAmt],c.CustName,l.OldLoanCode,l.LoanType,l.Memo1,a.Bank,a.ChqNo FROM DrawDownMast as a inner join LoanMast as l on a.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID WHERE (a.TrxDate >= '2024-01-01' AND a.TrxDate <= '2024-01-31')
;;
--- account: a drawdown, no INTO
INSERT MasterReport (pcname,reportname,recordid,S2,S3,S4,C1,C2,C3,C4,c5,c6,c7,c8,D1,s5,s6) VALUES ('PC-01','AccountReport.rpt','AB0012-001','CLERK1','AB','Tan Ah Kow (PBB 000123) - new customer',0,10000.00,0,0,0,0,10000.00,0,'2024-01-05','Unsecured','L-77')
;;
--- account: payments
SELECT a.PayID,a.PayDate,a.UserID,a.CompCode,(a.PayAmt+a.IntAmt+a.CollectorAmt+a.ChargeAmt-a.DiscAmt) as TotAmt,0-a.TopUpAmt as [TopUpAmt],b.CustName, l.OldLoanCode,a.Memo1,a.Bank,a.ChqNo FROM PaymentMast as a INNER JOIN CustMast as b on a.CustID=b.CustID inner join loanmast as l on a.loanid=l.loanid  WHERE (a.PayDate >= '2024-01-01' AND a.PayDate <= '2024-01-31') AND (a.CompCode = 'AB' ) 
;;
--- account: expenses
SELECT a.TrxID,a.TrxDate,a.UserID,a.CompCode,(a.DebitAmt-a.CreditAmt) as TotAmt,a.TrxDesc,a.Bank,a.ChqNo FROM PersonalExp as a  WHERE (a.TrxDate >= '2024-01-01' AND a.TrxDate <= '2024-01-31') AND (a.CompCode = 'AB' ) 
;;
--- account: an expense, its number as the key
INSERT MasterReport (pcname,reportname,recordid,S2,S3,S4,C1,C2,C3,C4,c5,c6,c7,c8,D1,s5,s6) VALUES ('PC-01','AccountReport.rpt','12','CLERK1','AB','Rental, January',0,0,0,-1200.00,0,0,0,0,'2024-01-31','','')
;;
--- account: companies for the opening lines
SELECT a.CompCode FROM Compmast as a  WHERE (a.CompCode = 'AB'  or a.CompCode = 'CD' ) 
;;
--- account: all companies for the opening lines
SELECT a.CompCode FROM Compmast as a 
;;
--- account: opening line of a company
INSERT MasterReport (pcname,reportname,recordid,S2,S3,S4,C1,C2,C3,C4,c5,c6,c7,c8,D1,s5,s6) VALUES ('PC-01','AccountReport.rpt','#-AB','','AB','OPEN BALANCE',0,0,0,0,0,0,0,0,'2023-12-31','','')
;;
--- account: drawdowns before the period
SELECT a.CompCode,sum(a.DrawDownAmt) as [LoanAmt] FROM DrawDownMast as a WHERE (a.TrxDate < '2024-01-01') AND (a.CompCode = 'AB'  or a.CompCode = 'CD' )  AND (a.Bank = 'PBB' )  GROUP BY a.CompCode
;;
--- account: payments before the period
SELECT a.CompCode,sum((a.PayAmt+a.IntAmt+a.CollectorAmt+a.ChargeAmt-a.DiscAmt)) as [TotAmt],sum(0-a.TopUpAmt) as [TopUpAmt] FROM PaymentMast as a WHERE (a.PayDate < '2024-01-01') AND (a.CompCode = 'AB' )  GROUP BY a.CompCode
;;
--- account: expenses before the period
SELECT a.CompCode,sum((a.DebitAmt-a.CreditAmt)) as [TotAmt] FROM PersonalExp as a WHERE (a.TrxDate < '2024-01-01') GROUP BY a.CompCode
;;
--- account: drawdowns before the period go into the opening line
UPDATE MasterReport SET C1=0,C2=25000.00 WHERE pcname='PC-01' AND reportname='AccountReport.rpt' AND recordID='#-AB'
;;
--- account: payments before the period go into the opening line
UPDATE MasterReport SET c3=4916.65,c5=0 WHERE pcname='PC-01' AND reportname='AccountReport.rpt' AND recordID='#-AB'
;;
--- account: expenses before the period go into the opening line
UPDATE MasterReport SET c4=-3600.00 WHERE pcname='PC-01' AND reportname='AccountReport.rpt' AND recordID='#-AB'
;;
