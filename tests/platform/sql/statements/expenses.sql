--- whether an expense is there already
SELECT TrxID FROM PersonalExp WHERE TrxID=12
;;
--- whether an expense is there already, blank number as text
SELECT TrxID FROM PersonalExp WHERE TrxID=''
;;
--- a new expense
INSERT INTO PersonalExp (CompCode,UserID,TrxDate,TrxDesc,DebitAmt,CreditAmt,CreatedDate,CBCat,Bank,ChqNo) VALUES ('AB','CLERK1','2024-01-31','Rental, January',0,1200.00,'2024-01-31 14:05:09','LOAN','CASH','')
;;
--- number of the new expense
SELECT MAX(TrxID) FROM PersonalExp
;;
--- a changed expense
UPDATE PersonalExp SET TrxDate='2024-01-31',TrxDesc='Rental, January',DebitAmt=0,CreditAmt=1250.00,ModifiedDate='2024-02-01 09:00:00',ModifiedBy='BOSS',CompCode='AB',CBCat='LOAN',Bank='PBB',ChqNo='000777' WHERE TrxID=1
;;
--- one expense
SELECT * FROM PersonalExp WHERE TrxID=1
;;
--- an expense is deleted, no FROM
DELETE PersonalExp WHERE TrxID=1
;;
--- a changed cheque
UPDATE ChqMast SET ChqDate='2024-03-01',ChqBank='MBB',ChqAmt=983.33,PayID='',ChqStatus='NEW' WHERE LoanID = 'AB0012-001' and ChqNo = '000123'
;;
--- a cheque is removed
DELETE FROM ChqMast WHERE LoanID = 'AB0012-001' and ChqNo = '000123'
;;
