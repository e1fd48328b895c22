--- chart of accounts @conn=AED
SELECT AccNo, Description FROM GLMast order by AccNo
;;
--- a debtor: an earlier row goes @conn=AED
DELETE FROM TM_Debtor WHERE AccNo='AB0012'
;;
--- a debtor: the new row @conn=AED
INSERT INTO TM_Debtor (AccNo,CompanyName,Desc2,IC,Address1,Address2,Address3,Address4,Phone1,Phone2,Fax1,EmailAddress) VALUES ('AB0012','Tan Ah Kow','','800131-10-5555','1, Jalan Satu','','','Johor Bahru','07-1234567','60123456789','','tan@example.com')
;;
--- a debtor's credit note: an earlier row goes @conn=AED
DELETE FROM TM_ARCN WHERE DocNO='AB0012-001-001'
;;
--- a debtor's credit note: the new row @conn=AED
INSERT INTO TM_ARCN (DocNo,DocDate,DebtorCode,Description,DebitAccNo,ProjNo,Amount) VALUES ('AB0012-001-001','2024-02-05','AB0012','Discount on Interest','500-0001','',20.00)
;;
--- a debtor's payment: an earlier row goes @conn=AED
DELETE FROM TM_ARPayment WHERE DocNO='AB0012-001-001'
;;
--- a debtor's payment: the new row @conn=AED
INSERT INTO TM_ARPayment (DocNo,DocDate,DebtorCode,Description,PaymentMethod,ChequeNo,PaymentAmount) VALUES ('AB0012-001-001','2024-02-05','AB0012','Installment Payment From Tan Ah Kow','CASH','',983.33)
;;
--- a debtor's invoice: an earlier head goes @conn=AED
DELETE FROM TM_ARInvoice WHERE DocNO='AB0012-001'
;;
--- a debtor's invoice: its earlier lines go @conn=AED
DELETE FROM TM_ARInvoiceDTL WHERE DocNO='AB0012-001'
;;
--- a debtor's invoice: the new head @conn=AED
INSERT INTO TM_ARInvoice (DocNo,DocDate,DebtorCode,Total) VALUES ('AB0012-001','2024-01-31','AB0012',350.00)
;;
--- a debtor's invoice: one line @conn=AED
INSERT INTO TM_ARInvoiceDTL (DocNo,SalesAccountNo,Description,Amount) VALUES ('AB0012-001','500-0002','Processing Fee for Tan Ah Kow',300.00)
;;
--- a creditor: an earlier row goes @conn=AED
DELETE FROM TM_Creditor WHERE AccNo='S0001'
;;
--- a creditor: the new row @conn=AED
INSERT INTO TM_Creditor (AccNo,CompanyName,Desc2,IC,Address1,Address2,Address3,Address4,Phone1,Phone2,Fax1,EmailAddress) VALUES ('S0001','Kedai Emas Wah','','','1, Jalan Satu','','','','03-12345678','','','')
;;
--- a creditor's payment: an earlier row goes @conn=AED
DELETE FROM TM_APPayment WHERE DocNO='T0001'
;;
--- a creditor's payment: the new row @conn=AED
INSERT INTO TM_APPayment (DocNo,DocDate,CreditorCode,Description,PaymentMethod,ChequeNo,PaymentAmount) VALUES ('T0001','2024-01-31','S0001','Payment - Valuation','CASH','',100.00)
;;
--- a creditor's invoice: an earlier head goes @conn=AED
DELETE FROM TM_APInvoice WHERE DocNO='T0002'
;;
--- a creditor's invoice: its earlier lines go @conn=AED
DELETE FROM TM_APInvoiceDTL WHERE DocNO='T0002'
;;
--- a creditor's invoice: the new head @conn=AED
INSERT INTO TM_APInvoice (DocNo,DocDate,CreditorCode,Total) VALUES ('T0002','2024-01-31','S0001',100.00)
;;
--- a creditor's invoice: one line @conn=AED
INSERT INTO TM_APInvoiceDTL (DocNo,PurchaseAccountNo,Description,Amount) VALUES ('T0002','600-0001','Invoice - Valuation',100.00)
;;
--- a creditor's credit note: an earlier row goes @conn=AED
DELETE FROM TM_APCN WHERE DocNO='T0003'
;;
--- a creditor's credit note: the new row @conn=AED
INSERT INTO TM_APCN (DocNo,DocDate,CreditorCode,Description,CreditAccNo,ProjNo,Amount) VALUES ('T0003','2024-01-31','S0001','Credit Note - Valuation','600-0002','',-100.00)
;;
--- accounts of the office
SELECT * FROM LinkAccMast ORDER BY SeqNo
;;
--- accounts that are not set up
SELECT COUNT(*) FROM LinkAccMast WHERE LinkID in ('HP','TL') AND LinkAccCode=''
;;
--- account of a kind of money
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='MRTA'
;;
--- accounts are replaced whole, one batch @alone
DELETE FROM LinkAccMast;INSERT INTO LinkAccMast (SeqNo,LinkID,LinkDesc,LinkAccCode,LinkAccDesc) VALUES (1,'HP','Personal Loan (HP)','500-0001','HP DEBTORS; A~B');INSERT INTO LinkAccMast (SeqNo,LinkID,LinkDesc,LinkAccCode,LinkAccDesc) VALUES (2,'TL','Flexi Loan (TL)','','');
;;
--- the customers of a month, to be held against the bridge
SELECT r.*,r.CustName as Name FROM CustMast as r WHERE 1=1 AND r.TrxDate >= '2024-01-01' AND r.TrxDate < '2024-02-01' ORDER BY r.TrxDate,r.CustID
;;
--- the suppliers of some documents
SELECT r.*,r.SuppName as Name FROM SupplierMast as r WHERE 1=1 AND r.SuppID IN ('S0001','S0002') ORDER BY r.TrxDate,r.SuppID
;;
--- the charges of a month's loans
SELECT r.LoanID,r.TrxDate,r.CustID,r.CompCode,r.Bank,r.DragLoan,r.TermInt,r.DepositAmt,r.OathsAmt,r.LegalFee,r.ProcessFee,r.MiscAmt,c.CustName as Name FROM LoanMast as r LEFT JOIN CustMast as c on c.CustID=r.CustID WHERE 1=1 AND r.TrxDate >= '2024-01-01' AND r.TrxDate < '2024-02-01' AND r.CompCode='AB' ORDER BY r.TrxDate,r.LoanID
;;
--- the drawdowns of a month
SELECT r.SID,r.TrxDate,r.CustID,r.CompCode,r.DrawDownAmt,l.DragLoan,c.CustName as Name FROM (DrawDownMast as r LEFT JOIN LoanMast as l on l.LoanID=r.LoanID) LEFT JOIN CustMast as c on c.CustID=r.CustID WHERE 1=1 AND r.TrxDate >= '2024-01-01' AND r.TrxDate < '2024-02-01' AND r.CompCode in ('AB','CD') ORDER BY r.TrxDate,r.SID
;;
--- the payments of a month
SELECT r.PayID,r.PayDate,r.CustID,r.CompCode,r.Bank,r.ChqNo,r.PayAmt,r.IntAmt,r.CollectorAmt,r.ChargeAmt,r.DiscAmt,c.CustName as Name FROM PaymentMast as r LEFT JOIN CustMast as c on c.CustID=r.CustID WHERE r.PaymentStatus='ACTIVE' AND r.PayDate >= '2024-01-01' AND r.PayDate < '2024-02-01' ORDER BY r.PayDate,r.PayID
;;
--- the invoices and credit notes of a month
SELECT r.ChargeID,r.TrxDate,r.CustID,r.CompCode,r.PType,r.ChargeAmt,r.ChargeDesc,c.CustName as Name FROM ChargeMast as r LEFT JOIN CustMast as c on c.CustID=r.CustID WHERE r.PType in ('Invoice','Credit Note') AND r.TrxDate >= '2024-01-01' AND r.TrxDate < '2024-02-01' ORDER BY r.TrxDate,r.ChargeID
;;
--- one document of a supplier
SELECT r.TransID,r.TrxDate,r.SuppID,r.CompCode,r.TransType,r.TransDesc,r.TransAmt,s.SuppName as Name FROM SupplierTrans as r LEFT JOIN SupplierMast as s on s.SuppID=r.SuppID WHERE 1=1 AND r.TransID IN ('T0001') ORDER BY r.TrxDate,r.TransID
;;
--- debtors that the bridge holds @conn=AED
SELECT AccNo FROM TM_Debtor WHERE AccNo IN ('AB0012','AB0013')
;;
--- payments that the bridge holds @conn=AED
SELECT DocNo,DocDate,DebtorCode,PaymentAmount FROM TM_ARPayment WHERE DocNo IN ('AB0012-001-001','AB0012-001-002')
;;
--- lines that the bridge holds @conn=AED
SELECT DocNo,Amount FROM TM_ARInvoiceDTL WHERE DocNo IN ('AB0012-001')
