--- stored figures of a loan for the audit remark
SELECT LoanAmt,PayOutAmt,TrxDate FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- stored figures of a payment for the audit remark
SELECT PayAmt,CollectorAmt,IntAmt,DiscAmt,PayDate FROM PaymentMast WHERE PayID='AB0012-001-001'
;;
--- stored identity of a customer for the audit remark
SELECT CustName,CustNIC,CustOIC,CustOthIC,TrxDate FROM CustMast WHERE CustID='AB0012'
;;
--- stored figures of an expense for the audit remark
SELECT TrxDesc,DebitAmt,CreditAmt,TrxDate FROM PersonalExp WHERE TrxID='12'
;;
--- stored figures of a gold purchase for the audit remark
SELECT TotEstAmt,TotAmt,OtherAmt,PayAmt,TrxDate FROM GoldTransMast WHERE LoanID='B0001'
;;
--- stored figures of a drawdown for the audit remark
SELECT TrxDate,DrawDownAmt,Payee FROM DrawDownMast WHERE SID='DL0001'
;;
--- stored figures of a charge for the audit remark
SELECT TrxDate,ChargeAmt FROM ChargeMast WHERE ChargeID='INV0001'
;;
--- clock of the audit database @conn=LogsConn
SELECT CURRENT_TIMESTAMP
;;
--- one audit record @conn=LogsConn
INSERT INTO TransLogs (TrxDate,UserID,UserName,ConmpCode,Type,Module,TrxID,Remarks) VALUES ('2024-01-31 14:05:09','CLERK1','','AB','Modify','Customer','AB0012','Date 31-01-2024/31-01-2024, Customer Name O''Brien/O''Brien, New IC 800131-10-5555/800131-10-5555, Old IC /, Other IC /')
