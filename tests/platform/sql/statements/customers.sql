--- a new customer's row
INSERT INTO CustMast (CustID,CompCode,TrxDate,CustName,CustNickName,CustNIC,CustOIC,CustOthIC,CustGender,CustRace,AreaCode,TotLoan,TotLoanBal,CustAdd1,CustAdd2,CustAdd3,CustPostCode,CustState,CustCity,CustTel1,CustTel2,CustFax,CustHP1,CustHP2,CustStatus,CustComp,CustCompBiz,CustCompPos,CustCompIncome,CustCompAdd1,CustCompAdd2,CustCompAdd3,CustCompPostCode,CustCompTel1,CustCompTel2,CustCompFax,CustCompName2,CustCompPos2,CustCompWork2,CustSpouseName,CustSpouseNIC,CustSpouseOIC,CustSpouseComp,CustSpouseCompBiz,CustSpouseCompPos,CustSpouseCompIncome,CustSpouseCompAdd1,CustSpouseCompAdd2,CustSpouseCompAdd3,CustSpouseCompPostCode,CustSpouseCompState,CustSpouseCompCity,CustSpouseCompTel1,CustSpouseCompFax1,CustSpouseHP1,CustSpouseRace,CustSpouseDOB,CustSpouseGender,CustSpouseemail,Pic1,Pic2,Pic3,Pic4,Pic5,Pic6,CustVehicleNo,CustVehicleModel,CustChild,UserID,Employer,CompCatCode,OldCode,DOB,HouseStatus,ATMCardNo,ATMPinNo,BankAccNo,BankTransferName,BankCagaran,Remark,TotLoanAmt2,JobType,StartWorkDate,EndWorkDate,SalaryDate,TotTopUpAmt,DateCreated,MaritalStatus,WargaNegara,MotherName,CompNo,email,PreLanguage,AppID,Academic,HouseLiving,CreditLimit,CreditLimitType) VALUES ('AB0012','AB','2024-01-31','Tan Ah Kow @ O''Brien','','800131-10-5555','','','MALE','CINA','PERSONAL',0,0,'1, Jalan Satu','','','','JOHOR','','','','','012-3456789','','ACTIVE','','','',3500.00,'','','','','','','','','','','','','','','','',0,'','','','','','','','','','',null,'','','','','','','','','','',2,'CLERK1','','NIL','','1980-01-31','','','','','','','陈亚九',0,'Private',null,null,'28',0,'2024-01-31 14:05:09','','','','','','','','','',20000.00,'Full Settled')
;;
--- a changed customer's row
UPDATE CustMast SET CompCode='AB',TrxDate='2024-01-31',CustName='Tan Ah Kow @ O''Brien',CustNickName='',CustNIC='800131-10-5555',CustOIC='',CustOthIC='',CustGender='MALE',CustRace='CINA',AreaCode='PERSONAL',CustAdd1='1, Jalan Satu',CustAdd2='',CustAdd3='',CustPostCode='',CustState='JOHOR',CustCity='',CustTel1='',CustTel2='',CustFax='',CustHP1='012-3456789',CustHP2='',CustStatus='ACTIVE',CustComp='',CustCompBiz='',CustCompPos='',CustCompIncome=3500.00,CustCompAdd1='',CustCompAdd2='',CustCompAdd3='',CustCompPostCode='',CustCompTel1='',CustCompTel2='',CustCompFax='',CustCompName2='',CustCompPos2='',CustCompWork2='',CustSpouseName='',CustSpouseNIC='',CustSpouseOIC='',CustSpouseComp='',CustSpouseCompBiz='',CustSpouseCompPos='',CustSpouseCompIncome=0,CustSpouseCompAdd1='',CustSpouseCompAdd2='',CustSpouseCompAdd3='',CustSpouseCompPostCode='',CustSpouseCompState='',CustSpouseCompCity='',CustSpouseCompTel1='',CustSpouseCompFax1='',CustSpouseHP1='',CustSpouseRace='',CustSpouseDOB=null,CustSpouseGender='',CustSpouseemail='',Pic1='',Pic2='',Pic3='',Pic4='',Pic5='',Pic6='',CustVehicleNo='',CustVehicleModel='',CustChild=2,Employer='',CompCatCode='NIL',OldCode='',DOB='1980-01-31',HouseStatus='',ATMCardNo='',ATMPinNo='',BankAccNo='',BankTransferName='',BankCagaran='',Remark='陈亚九',JobType='Private',StartWorkDate=null,EndWorkDate=null,SalaryDate='28',MaritalStatus='',WargaNegara='',MotherName='',CompNo='',email='',PreLanguage='',AppID='',Academic='',HouseLiving='',CreditLimit=20000.00,CreditLimitType='Full Settled' Where CustID='AB0012'
;;
--- a customer found on the watch list
UPDATE CustMast SET CustStatus='AMLA' where CustID='AB0012'
;;
--- a customer
SELECT * FROM CustMast WHERE CustID='AB0012'
;;
--- customer by the old code of a loan
SELECT CustID FROM LoanMast WHERE OldLoanCode='L-77' AND CompCode='AB'
;;
--- customer by old code and identity number
SELECT CustID FROM CustMast WHERE CompCode='AB' AND OldCode='C77' and (CustNIC='C77' Or CustOIC='C77' OR CustOthIC='C77')
;;
--- credit used by the whole capital of open loans
SELECT SUM(s.CapitalAmt) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012' AND l.LoanBal > 0
;;
--- credit used by unpaid capital
SELECT SUM(s.CapitalAmt-s.CapitalPayment) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012'
;;
--- credit limit of a customer
SELECT CreditLimit,CreditLimitType FROM CustMast WHERE CustID='AB0012'
;;
--- credit used by the whole capital of the other open loans
SELECT SUM(s.CapitalAmt) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012' AND l.LoanBal > 0 and l.LoanID <> 'AB0012-001'
;;
--- credit used by unpaid capital of the other loans
SELECT SUM(s.CapitalAmt-s.CapitalPayment) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012' AND l.LoanID <> 'AB0012-001'
;;
--- another customer with the same new IC
SELECT CustID,CustName,CompCode FROM CustMast WHERE CustNIC='800131-10-5555' AND CustID<>'AB0012' and CompCode = 'AB'
;;
--- another customer with the same old IC
SELECT CustID,CustName,CompCode FROM CustMast WHERE CustOIC='A1234567' AND CustID<>'AB0012' and CompCode = 'AB'
;;
--- another customer with the same other identity number
SELECT CustID,CustName,CompCode FROM CustMast WHERE CustOthIC='P7654321' AND CustID<>'' and CompCode = 'AB'
;;
--- the customer's referrers are replaced: old ones go
Delete from RefererMast where CustID = 'AB0012'
;;
--- the customer's referrers are replaced: one row
INSERT INTO RefererMast (CustID,RefererName,RefererNIC,RefererOIC,RefererRelationship,RefererComp,RefererCompBiz,RefererCompPos,RefererCompIncome,RefererCompAdd1,RefererCompAdd2,RefererCompAdd3,RefererCompTel1,RefererCompFax1,RefererHP1,Refereremail) VALUES ('AB0012','Lee Ah Meng','','','Friend','','','',0,'','','','','','016-7654321','')
;;
--- the customer's documents are replaced: old ones go
Delete from DocumentMast where CustID = 'AB0012'
;;
--- the customer's documents are replaced: one row
INSERT INTO DocumentMast (CustID,DocNo,CompCode,DocDesc,DocName,UserID,DateCreated) VALUES ('AB0012','AB#D0001','AB','Payslip','AB#D0001.jpg','CLERK1','2024-01-31 14:05:09')
;;
--- the customer's check list is replaced: old lines go
DELETE FROM CheckListTrans WHERE CheckListType = 'CL' AND CustID='AB0012'
;;
--- the customer's check list is replaced: one line
INSERT INTO CheckListTrans (CheckListType,CustID,CheckListSeq,CheckListDesc,Detail,Checked,Remarks) VALUES ('CL','AB0012',1,'Copy of IC','','2','')
;;
--- referrers of a customer
Select * from RefererMast where CustID = 'AB0012' order by RefererName
;;
--- loans of a customer, all companies
Select CompCode,LoanID,OldLoanCode,LoanTerm,firstpayment,TrxDate,LoanAmt as [LoanAmt3],PayOutAmt as [PayOutAmt3],TotPay,LoanBal,LoanTerm,FirstPayment,LoanGroupID,TotInt,TotCollectorAmt,LoanStatus,(TotPay+PayExtra)-TotDiscAmt as TotPay2 from LoanMast where CustID = 'AB0012' order by LoanID
;;
--- open loans of a customer in the home company
Select CompCode,LoanID,OldLoanCode,LoanTerm,firstpayment,TrxDate,LoanAmt as [LoanAmt3],PayOutAmt as [PayOutAmt3],TotPay,LoanBal,LoanTerm,FirstPayment,LoanGroupID,TotInt,TotCollectorAmt,LoanStatus,(TotPay+PayExtra)-TotDiscAmt as TotPay2 from LoanMast where CustID = 'AB0012' and CompCode='AB' AND LoanBal <> 0 order by LoanID
;;
--- loans of a customer in the allowed companies
Select CompCode,LoanID,OldLoanCode,LoanTerm,firstpayment,TrxDate,LoanAmt as [LoanAmt3],PayOutAmt as [PayOutAmt3],TotPay,LoanBal,LoanTerm,FirstPayment,LoanGroupID,TotInt,TotCollectorAmt,LoanStatus,(TotPay+PayExtra)-TotDiscAmt as TotPay2 from LoanMast where CustID = 'AB0012' and CompCode in ('AB','CD') order by LoanID
;;
--- summary of a customer's loans
SELECT SUM(((TotPay+PayExtra+TotInt+TotCharge+TotCollectorAmt)-TotDiscAmt)-PayOutAmt),SUM(LoanAmt),SUM(LoanBal),SUM(PayOutAmt),sum(TopUpAmt) FROM LoanMast WHERE CustID='AB0012'
;;
--- a customer of the linked database @conn=LinkDB
SELECT CustName,CustNickName,CustNIC,CustOIC,CustOthIC,CustAdd1,CustAdd2,CustAdd3,CustPostCode,CustCity,CustState,CustGender,CustRace,CustTel1,CustTel2,CustFax,CustHP1,CustHP2,CustCompTel1,CustCompTel2,CustCompFax,CustComp,CustCompBiz,CustCompPos,CustCompIncome FROM CustMast WHERE CustID='ZZ0007'
;;
--- whether the imported customer's new IC is there already
SELECT CustID FROM CustMast WHERE CustNIC='800131-10-5555' and CustNIC <> '' and CompCode='AB'
;;
--- whether the imported customer's old IC is there already
SELECT CustID FROM CustMast WHERE CustOIC='A1234567' and CustOIC <> '' and CompCode='AB'
;;
--- whether the imported customer's other identity number is there already
SELECT CustID FROM CustMast WHERE CustOthIC='P7654321' and CustOthIC <> '' and CompCode='AB'
;;
--- the link of a customer to an application is replaced: the old one goes
DELETE FROM AppMastLink WHERE AppID='AP0001' AND CustID='AB0012'
;;
--- the link of a customer to an application is replaced: the new one
Insert INTO AppMastLink (AppID,CustID,AppType,Relationship) VALUES ('AP0001','AB0012','Applicant','')
;;
--- applications of a customer that are still in use
SELECT a.AppID,a.TrxDate,a.LoanAmt,a.AppStatus,a.AppStatus2,l.AppType,l.Relationship FROM AppMast as a INNER JOIN AppMastLink as l on a.AppID=l.AppID WHERE l.CustID='AB0012' AND a.AppID not like '%*'
;;
--- next customer
SELECT TOP 1 CustID FROM CustMast WHERE CustID > 'AB0012' ORDER BY CustID ASC
;;
--- previous customer
SELECT TOP 1 CustID FROM CustMast WHERE CustID < 'AB0012' ORDER BY CustID DESC
;;
--- a deleted customer's row goes
Delete from CustMast where CustID='AB0012'
;;
--- a deleted customer's referrers go
Delete from RefererMast where CustID='AB0012'
;;
--- a deleted customer's documents go
Delete from DocumentMast where CustID='AB0012'
;;
--- a deleted customer's schedules go
Delete s from SchMast as s inner join LoanMast as l on s.LoanID=l.LoanID where l.CustID='AB0012'
;;
--- a deleted customer's planned payments go
Delete p from PaymentList as p inner join LoanMast as l on p.LoanID=l.LoanID where l.CustID='AB0012'
;;
--- a deleted customer's loans go
Delete from LoanMast where CustID='AB0012'
;;
--- a deleted customer's payments go
Delete from PaymentMast where CustID='AB0012'
;;
--- a deleted customer's charges go
DELETE FROM ChargeMast WHERE CustID='AB0012'
;;
--- a deleted customer's drawdowns go
DELETE FROM DrawDownMast WHERE CustID='AB0012'
