--- a new customer's row
INSERT INTO CustMast (CustID,CompCode,TrxDate,CustName,CustNickName,CustNIC,CustOIC,CustOthIC,CustGender,CustRace,AreaCode,TotLoan,TotLoanBal,CustAdd1,CustAdd2,CustAdd3,CustPostCode,CustState,CustCity,CustTel1,CustTel2,CustFax,CustHP1,CustHP2,CustStatus,CustComp,CustCompBiz,CustCompPos,CustCompIncome,CustCompAdd1,CustCompAdd2,CustCompAdd3,CustCompPostCode,CustCompTel1,CustCompTel2,CustCompFax,CustCompName2,CustCompPos2,CustCompWork2,CustSpouseName,CustSpouseNIC,CustSpouseOIC,CustSpouseComp,CustSpouseCompBiz,CustSpouseCompPos,CustSpouseCompIncome,CustSpouseCompAdd1,CustSpouseCompAdd2,CustSpouseCompAdd3,CustSpouseCompPostCode,CustSpouseCompState,CustSpouseCompCity,CustSpouseCompTel1,CustSpouseCompFax1,CustSpouseHP1,CustSpouseRace,CustSpouseDOB,CustSpouseGender,CustSpouseemail,Pic1,Pic2,Pic3,Pic4,Pic5,Pic6,CustVehicleNo,CustVehicleModel,CustChild,UserID,Employer,CompCatCode,OldCode,DOB,HouseStatus,ATMCardNo,ATMPinNo,BankAccNo,BankTransferName,BankCagaran,Remark,TotLoanAmt2,JobType,StartWorkDate,EndWorkDate,SalaryDate,TotTopUpAmt,DateCreated,MaritalStatus,WargaNegara,MotherName,CompNo,email,PreLanguage,AppID,Academic,HouseLiving,CreditLimit,CreditLimitType) VALUES ('AB0012','AB','2024-01-31','Tan Ah Kow @ O''Brien','','800131-10-5555','','','MALE','CINA','PERSONAL',0,0,'1, Jalan Satu','','','','JOHOR','','','','','012-3456789','','ACTIVE','','','',3500.00,'','','','','','','','','','','','','','','','',0,'','','','','','','','','','',null,'','','','','','','','','','',2,'CLERK1','','NIL','','1980-01-31','','','','','','','陈亚九',0,'Private',null,null,'28',0,'2024-01-31 14:05:09','','','','','','','','','',20000.00,'Full Settled')
;;
--- a changed customer's row
UPDATE CustMast SET CompCode='AB',TrxDate='2024-01-31',CustName='Tan Ah Kow @ O''Brien',CustNickName='',CustNIC='800131-10-5555',CustOIC='',CustOthIC='',CustGender='MALE',CustRace='CINA',AreaCode='PERSONAL',CustAdd1='1, Jalan Satu',CustAdd2='',CustAdd3='',CustPostCode='',CustState='JOHOR',CustCity='',CustTel1='',CustTel2='',CustFax='',CustHP1='012-3456789',CustHP2='',CustStatus='ACTIVE',CustComp='',CustCompBiz='',CustCompPos='',CustCompIncome=3500.00,CustCompAdd1='',CustCompAdd2='',CustCompAdd3='',CustCompPostCode='',CustCompTel1='',CustCompTel2='',CustCompFax='',CustCompName2='',CustCompPos2='',CustCompWork2='',CustSpouseName='',CustSpouseNIC='',CustSpouseOIC='',CustSpouseComp='',CustSpouseCompBiz='',CustSpouseCompPos='',CustSpouseCompIncome=0,CustSpouseCompAdd1='',CustSpouseCompAdd2='',CustSpouseCompAdd3='',CustSpouseCompPostCode='',CustSpouseCompState='',CustSpouseCompCity='',CustSpouseCompTel1='',CustSpouseCompFax1='',CustSpouseHP1='',CustSpouseRace='',CustSpouseDOB=null,CustSpouseGender='',CustSpouseemail='',Pic1='',Pic2='',Pic3='',Pic4='',Pic5='',Pic6='',CustVehicleNo='',CustVehicleModel='',CustChild=2,Employer='',CompCatCode='NIL',OldCode='',DOB='1980-01-31',HouseStatus='',ATMCardNo='',ATMPinNo='',BankAccNo='',BankTransferName='',BankCagaran='',Remark='陈亚九',JobType='Private',StartWorkDate=null,EndWorkDate=null,SalaryDate='28',MaritalStatus='',WargaNegara='',MotherName='',CompNo='',email='',PreLanguage='',AppID='',Academic='',HouseLiving='',CreditLimit=20000.00,CreditLimitType='Full Settled' Where CustID='AB0012'
;;
--- a customer found on the watch list
UPDATE CustMast SET CustStatus='AMLA' where CustID='AB0012'
;;
--- customer by old code and identity number
SELECT CustID FROM CustMast WHERE CompCode='AB' AND OldCode='C77' and (CustNIC='C77' Or CustOIC='C77' OR CustOthIC='C77')
;;
--- credit used by unpaid capital
SELECT SUM(s.CapitalAmt-s.CapitalPayment) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012'
;;
--- credit used by the whole capital of the other open loans
SELECT SUM(s.CapitalAmt) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012' AND l.LoanBal > 0 and l.LoanID <> 'AB0012-001'
;;
--- credit used by unpaid capital of the other loans
SELECT SUM(s.CapitalAmt-s.CapitalPayment) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0012' AND l.LoanID <> 'AB0012-001'
;;
--- another customer with the same old IC
SELECT CustID,CustName,CompCode FROM CustMast WHERE CustOIC='A1234567' AND CustID<>'AB0012' and CompCode = 'AB'
;;
--- the customer's documents are replaced: one row
INSERT INTO DocumentMast (CustID,DocNo,CompCode,DocDesc,DocName,UserID,DateCreated) VALUES ('AB0012','AB#D0001','AB','Payslip','AB#D0001.jpg','CLERK1','2024-01-31 14:05:09')
;;
--- open loans of a customer in the home company
Select CompCode,LoanID,OldLoanCode,LoanTerm,firstpayment,TrxDate,LoanAmt as [LoanAmt3],PayOutAmt as [PayOutAmt3],TotPay,LoanBal,LoanTerm,FirstPayment,LoanGroupID,TotInt,TotCollectorAmt,LoanStatus,(TotPay+PayExtra)-TotDiscAmt as TotPay2 from LoanMast where CustID = 'AB0012' and CompCode='AB' AND LoanBal <> 0 order by LoanID
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
--- applications of a customer that are still in use
SELECT a.AppID,a.TrxDate,a.LoanAmt,a.AppStatus,a.AppStatus2,l.AppType,l.Relationship FROM AppMast as a INNER JOIN AppMastLink as l on a.AppID=l.AppID WHERE l.CustID='AB0012' AND a.AppID not like '%*'
;;
--- previous customer
SELECT TOP 1 CustID FROM CustMast WHERE CustID < 'AB0012' ORDER BY CustID DESC
;;
