--- schedule of a loan for its grid
SELECT SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt,CapitalPayment,FIntAmt,InterestPayment,Payment,LoanBal,Payableamt-Payment as [Balance],PayExtra,LateInt,IntChargeAmt,IntAmt,DragInt,DragIntPaid,IntDate FROM SchMast WHERE LoanID='AB0012-001' ORDER BY SchID
;;
--- payments of a loan for its grid
Select PayID,SchID,PayDate,PayAmt,IntAmt,Memo5,DiscAmt,TopUpAmt,NewLoanBal,Memo1,ChargeAmt,ReceiptNo,CapPay,IntPay from PaymentMast where LoanID='AB0012-001' order by PayID
;;
--- post-dated cheques of a loan
SELECT * FROM ChqMast WHERE LoanID='AB0012-001' ORDER BY SeqNo
;;
--- check list of a customer
SELECT CheckListDesc,Detail,Checked,Remarks,Detail FROM CheckListTrans WHERE CheckListType = 'CL' AND CustID='AB0012' ORDER BY CheckListSeq
;;
--- check list for a customer who has none
SELECT CheckListDesc,'' as [Detail],'2' as [Checked],'' as [Remarks] FROM CheckListMast WHERE CheckListType = 'CL' ORDER BY CheckListSeq
;;
--- loan by its old code in a company
SELECT LoanID FROM LoanMast WHERE OldLoanCode='L-77' AND CompCode='AB'
;;
--- a loan
SELECT * FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- customer by the old code of a loan
Select CustID from LoanMast where OldLoanCode = 'L-77' and CompCode='AB'
;;
--- customer by new IC, no blank behind the text
Select CustID from CustMast where CustNIC = '800131-10-5555'and CompCode='AB'
;;
--- customer of a loan
SELECT CustStatus,CustName,CustNIC,ATMCardNo,ATMPinNo,BankAccNo,BankTransferName,BankCagaran,CreditLimit,CreditLimitType,CompCode FROM CustMast WHERE CustID='AB0012'
;;
--- bank details of the customer's latest other loan
SELECT TOP 1 ATMCardNo,ATMPinNo,Bank,BankBranch FROM LoanMast WHERE CustID='AB0012' AND LoanID <>'AB0012-002' ORDER BY LoanID DESC
;;
--- another loan with the same alternate code
SELECT a.LoanID, b.CustName FROM LoanMast as a inner join CustMast as b on a.CustID=b.CustID WHERE a.LoanID <> 'AB0012-001' and a.OldLoanCode='L-77' AND a.CompCode = 'AB'
;;
--- a loan whose code is the alternate code
SELECT l.LoanID,c.CustName FROM LoanMast as l INNER JOIN CustMast as c ON l.CustID=c.CustID WHERE l.LoanID='L-77' AND l.CompCode = 'AB'
;;
--- a customer whose code is the alternate code
SELECT CustID,CustName FROM CustMast WHERE CustID='L-77' AND CompCode = 'AB'
;;
--- first guarantor of the latest loan, by identity number
SELECT TOP 1 GuarantorName,GuarantorNIC,GuarantorOIC,GuarantorOthIC,GuarantorRelationship,GuarantorComp,GuarantorCompBiz,GuarantorCompPos,GuarantorCompIncome,GuarantorCompAdd1,GuarantorCompAdd2,GuarantorCompAdd3,GuarantorCompPostCode,GuarantorCompCity,GuarantorCompState,GuarantorRace,GuarantorGender,GuarantorCompTel1,GuarantorCompFax1,GuarantorHP1,GuarantorMN,LoanID FROM LoanMast WHERE GuarantorNIC='800131-10-5555' AND LoanID <> 'AB0012-002' ORDER BY LoanID DESC
;;
--- first guarantor of the latest loan, by name
SELECT TOP 1 GuarantorName,GuarantorNIC,GuarantorOIC,GuarantorOthIC,GuarantorRelationship,GuarantorComp,GuarantorCompBiz,GuarantorCompPos,GuarantorCompIncome,GuarantorCompAdd1,GuarantorCompAdd2,GuarantorCompAdd3,GuarantorCompPostCode,GuarantorCompCity,GuarantorCompState,GuarantorRace,GuarantorGender,GuarantorCompTel1,GuarantorCompFax1,GuarantorHP1,GuarantorMN,LoanID FROM LoanMast WHERE GuarantorName='LEE AH MENG' AND LoanID <> 'AB0012-002' ORDER BY LoanID DESC
;;
--- second guarantor of the latest loan, by identity number
SELECT TOP 1 GuarantorName2,GuarantorNIC2,GuarantorOIC2,GuarantorOthIC2,GuarantorRelationship2,GuarantorComp2,GuarantorCompBiz2,GuarantorCompPos2,GuarantorCompIncome2,GuarantorCompAdd12,GuarantorCompAdd22,GuarantorCompAdd32,GuarantorCompPostCode2,GuarantorCompCity2,GuarantorCompState2,GuarantorRace2,GuarantorGender2,GuarantorCompTel12,GuarantorCompFax12,GuarantorHP12,GuarantorMN2,LoanID FROM LoanMast WHERE GuarantorNIC2='800131-10-5555' AND LoanID <> 'AB0012-002' ORDER BY LoanID DESC
;;
--- second guarantor of the latest loan, by name
SELECT TOP 1 GuarantorName2,GuarantorNIC2,GuarantorOIC2,GuarantorOthIC2,GuarantorRelationship2,GuarantorComp2,GuarantorCompBiz2,GuarantorCompPos2,GuarantorCompIncome2,GuarantorCompAdd12,GuarantorCompAdd22,GuarantorCompAdd32,GuarantorCompPostCode2,GuarantorCompCity2,GuarantorCompState2,GuarantorRace2,GuarantorGender2,GuarantorCompTel12,GuarantorCompFax12,GuarantorHP12,GuarantorMN2,LoanID FROM LoanMast WHERE GuarantorName2='LEE AH MENG' AND LoanID <> 'AB0012-002' ORDER BY LoanID DESC
;;
--- race of a guarantor's card that the table lacks
INSERT INTO CustRaceMast (CustRaceID,CustRaceDesc) VALUES ('KADAZAN','KADAZAN')
;;
--- repayment text of a loan, two lines
UPDATE LoanMast SET Memo3='RM 983.33 X 11
RM 983.37 X 1' WHERE LoanID='AB0012-001'
;;
--- previous loan
SELECT TOP 1 LoanID FROM LoanMast WHERE LoanID < 'AB0012-001' ORDER BY LoanID DESC
;;
--- next loan
SELECT TOP 1 LoanID FROM LoanMast WHERE LoanID > 'AB0012-001' ORDER BY LoanID ASC
;;
--- a payment is deleted on the loan screen, no FROM
DELETE PaymentMast WHERE PayID='AB0012-001-007'
;;
--- loan counter of the customer of a new loan
SELECT LoanNo FROM NumberMast WHERE CustID='AB0022'
;;
--- loan counter of the customer is raised
Update NumberMast set LoanNo='003' where CustID='AB0022'
;;
--- payment counter of a new loan
Insert into NumberMast values ('AB0022-002','001','001')
;;
--- a new loan's row
Insert into LoanMast (LoanID,CompCode,CustID,TrxDate,LoanAmt,LoanAmt2,TopUpAmt,InsRate,PayOutAmt,DepositAmt,LoanTerm,ProcessFee,LoanTypeID,FirstPayment,InstallmentAmt,LastPayment,IntType,LateChargePerDay,NextDueDate,OfferDays,GuarantorName,GuarantorNIC,GuarantorOIC,GuarantorOthIC,GuarantorRelationship,GuarantorComp,GuarantorCompBiz,GuarantorCompPos,GuarantorCompIncome,GuarantorCompAdd1,GuarantorCompAdd2,GuarantorCompAdd3,GuarantorCompPostCode,GuarantorCompCity,GuarantorCompState,GuarantorRace,GuarantorGender,GuarantorCompTel1,GuarantorCompFax1,GuarantorHP1,GuarantorMN,GuarantorName2,GuarantorNIC2,GuarantorOIC2,GuarantorOthIC2,GuarantorRelationship2,GuarantorComp2,GuarantorCompBiz2,GuarantorCompPos2,GuarantorCompIncome2,GuarantorCompAdd12,GuarantorCompAdd22,GuarantorCompAdd32,GuarantorCompPostCode2,GuarantorCompCity2,GuarantorCompState2,GuarantorRace2,GuarantorGender2,GuarantorCompTel12,GuarantorCompFax12,GuarantorHP12,GuarantorMN2,SalesmanID,SalesmanComm,AdvertiseID,LoanStatus,LoanGroupID,TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,LoanBal,Bank,BankBranch,Memo1,Memo2,Memo4,Memo5,LoanPurpose,LastPaymentNo,LastPaymentDate,UserID,Introducer,IntroducerAmt,CloseBal,DragLoan,LoanDuration,OldLoanCode,AgreementNo,AgreementPrint,NumberToText,BankBook,ATMCardNo,ATMPinNo,NextCall,SchChanged,LoanType,DragIntType,StampingDate,Pic1,Pic2,DateCreated,CollateralID,LoanTerm2,InstallmentAmt2,LastPayment2,PayOutAmt2,InsRate2,TermInt,OathsAmt,LegalFee,MiscAmt,DepositAmt2,PayExtra,SchAmt,SIBank,SIBankBranch,SIBankContactPerson,SIBankContactNo,SIBankNo,SIBankAmt,SIBankDate,ForceSalesAmt,ValuerName,IntDate,ValuerFrom,ValuationDate,PropertyStatus,PropertyAdd1,PropertyType,BuiltUpArea,LandArea,LandStatus,LeaseHoldExpDate,ExpectRental,TitleType,TitleNo,Mukim,LotNoPTNo,District,SectionNo,State,PurchasePrice,PropertyLand,BumiPrice,Construction,InsuranceComp,SumInsured,ReminderDate,ReminderDate2,MRTA,CustID2,CustName2,CustNIC2,CustAdd12,TotLoanInt,LoanTerm3,SpecialSch,LastDueDate,EndTermIntDate,StopInt,CreditLimit,OwnerName,Memo3) Values ('AB0022-002','AB','AB0022','2024-01-05',10000.00,10000.00,0,18,0,0,'12',300.00,'MONTH',983.33,983.33,983.37,'$',18,'2024-01-31',0,'LEE AH MENG','800131-10-5555','','','','','','',0,'','','','','','','','','','','','','','','','','','','','',0,'','','','','','','','','','','','','NIL',0,'NIL','ACTIVE','PINJAMAN SEMASA',0,0,0,0,0,11800.00,'CASH','','prefers Mondays','',0,'A-12','FLAT','',null,'CLERK1','',0,0,0,null,'','','0','','','','','2024-01-31','0','Unsecured','Interest Pay First',null,'','','2024-01-31 14:05:09','NIL','0',983.33,983.37,0,18,0,0,0,0,0,0,0,'','','','','',0,null,0,'',null,'',null,'','','','','','',null,0,'','','','','','','',0,'',0,'','',0,null,null,'','','','','',0,'12','0',null,null,null,0,'','')
;;
--- a new loan's row with its reason for exceeding the cash threshold
Insert into LoanMast (LoanID,CompCode,CustID,TrxDate,LoanAmt,LoanAmt2,TopUpAmt,InsRate,PayOutAmt,DepositAmt,LoanTerm,ProcessFee,LoanTypeID,FirstPayment,InstallmentAmt,LastPayment,IntType,LateChargePerDay,NextDueDate,OfferDays,GuarantorName,GuarantorNIC,GuarantorOIC,GuarantorOthIC,GuarantorRelationship,GuarantorComp,GuarantorCompBiz,GuarantorCompPos,GuarantorCompIncome,GuarantorCompAdd1,GuarantorCompAdd2,GuarantorCompAdd3,GuarantorCompPostCode,GuarantorCompCity,GuarantorCompState,GuarantorRace,GuarantorGender,GuarantorCompTel1,GuarantorCompFax1,GuarantorHP1,GuarantorMN,GuarantorName2,GuarantorNIC2,GuarantorOIC2,GuarantorOthIC2,GuarantorRelationship2,GuarantorComp2,GuarantorCompBiz2,GuarantorCompPos2,GuarantorCompIncome2,GuarantorCompAdd12,GuarantorCompAdd22,GuarantorCompAdd32,GuarantorCompPostCode2,GuarantorCompCity2,GuarantorCompState2,GuarantorRace2,GuarantorGender2,GuarantorCompTel12,GuarantorCompFax12,GuarantorHP12,GuarantorMN2,SalesmanID,SalesmanComm,AdvertiseID,LoanStatus,LoanGroupID,TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,LoanBal,Bank,BankBranch,Memo1,Memo2,Memo4,Memo5,LoanPurpose,LastPaymentNo,LastPaymentDate,UserID,Introducer,IntroducerAmt,CloseBal,DragLoan,LoanDuration,OldLoanCode,AgreementNo,AgreementPrint,NumberToText,BankBook,ATMCardNo,ATMPinNo,NextCall,SchChanged,LoanType,DragIntType,StampingDate,Pic1,Pic2,DateCreated,CollateralID,LoanTerm2,InstallmentAmt2,LastPayment2,PayOutAmt2,InsRate2,TermInt,OathsAmt,LegalFee,MiscAmt,DepositAmt2,PayExtra,SchAmt,SIBank,SIBankBranch,SIBankContactPerson,SIBankContactNo,SIBankNo,SIBankAmt,SIBankDate,ForceSalesAmt,ValuerName,IntDate,ValuerFrom,ValuationDate,PropertyStatus,PropertyAdd1,PropertyType,BuiltUpArea,LandArea,LandStatus,LeaseHoldExpDate,ExpectRental,TitleType,TitleNo,Mukim,LotNoPTNo,District,SectionNo,State,PurchasePrice,PropertyLand,BumiPrice,Construction,InsuranceComp,SumInsured,ReminderDate,ReminderDate2,MRTA,CustID2,CustName2,CustNIC2,CustAdd12,TotLoanInt,LoanTerm3,SpecialSch,LastDueDate,EndTermIntDate,StopInt,CreditLimit,OwnerName,Memo3,AMLACode,AMLADesc,AMLAID) Values ('AB0022-003','AB','AB0022','2024-01-05',10000.00,10000.00,0,18,0,0,'12',300.00,'MONTH',983.33,983.33,983.37,'$',18,'2024-01-31',0,'LEE AH MENG','800131-10-5555','','','','','','',0,'','','','','','','','','','','','','','','','','','','','',0,'','','','','','','','','','','','','NIL',0,'NIL','ACTIVE','PINJAMAN SEMASA',0,0,0,0,0,11800.00,'CASH','','prefers Mondays','',0,'A-12','FLAT','',null,'CLERK1','',0,0,1,null,'','','0','','','','','2024-01-31','0','Unsecured','Interest Pay First',null,'','','2024-01-31 14:05:09','NIL','0',983.33,983.37,0,18,0,0,0,0,0,0,0,'','','','','',0,null,0,'',null,'',null,'','','','','','',null,0,'','','','','','','',0,'',0,'','',0,null,null,'','','','','',0,'12','0',null,null,null,0,'','','Business capital','','')
;;
--- a changed loan's row
Update LoanMast set CustID='AB0022',CompCode='AB',TrxDate='2024-01-05',LoanAmt=10000.00,LoanAmt2=10000.00,TopUpAmt=0,InsRate=18,PayOutAmt=0,DepositAmt=0,LoanTerm='12',ProcessFee=300.00,LoanTypeID='MONTH',FirstPayment=983.33,InstallmentAmt=983.33,LastPayment=983.37,IntType='$',LateChargePerDay=18,NextDueDate='2024-01-31',OfferDays=0,GuarantorName='LEE AH MENG',GuarantorNIC='800131-10-5555',GuarantorOIC='',GuarantorOthIC='',GuarantorRelationship='',GuarantorComp='',GuarantorCompBiz='',GuarantorCompPos='',GuarantorCompIncome=0,GuarantorCompAdd1='',GuarantorCompAdd2='',GuarantorCompAdd3='',GuarantorCompPostCode='',GuarantorCompCity='',GuarantorCompState='',GuarantorRace='',GuarantorGender='',GuarantorCompTel1='',GuarantorCompFax1='',GuarantorHP1='',GuarantorMN='',GuarantorName2='',GuarantorNIC2='',GuarantorOIC2='',GuarantorOthIC2='',GuarantorRelationship2='',GuarantorComp2='',GuarantorCompBiz2='',GuarantorCompPos2='',GuarantorCompIncome2=0,GuarantorCompAdd12='',GuarantorCompAdd22='',GuarantorCompAdd32='',GuarantorCompPostCode2='',GuarantorCompCity2='',GuarantorCompState2='',GuarantorRace2='',GuarantorGender2='',GuarantorCompTel12='',GuarantorCompFax12='',GuarantorHP12='',GuarantorMN2='',SalesmanID='NIL',SalesmanComm=0,AdvertiseID='NIL',LoanStatus='ACTIVE',LoanGroupID='PINJAMAN SEMASA',LoanBal=11800.00,Bank='CASH',BankBranch='',Memo1='prefers Mondays',Memo2='',Memo4=0,Memo5='A-12',LoanPurpose='FLAT',Introducer='',IntroducerAmt=0,DragLoan=0,LoanDuration=null,OldLoanCode='',AgreementNo='',AgreementPrint='0',NumberToText='',BankBook='',ATMCardNo='',ATMPinNo='',NextCall='2024-01-31',SchChanged='0',LoanType='Unsecured',DragIntType='Interest Pay First',StampingDate=null,Pic1='',Pic2='',CollateralID='NIL',LoanTerm2='0',InstallmentAmt2=983.33,LastPayment2=983.37,PayOutAmt2=0,InsRate2=18,TermInt=0,OathsAmt=0,LegalFee=0,MiscAmt=0,DepositAmt2=0,PayExtra=0,SchAmt=0,SIBank='',SIBankBranch='',SIBankContactPerson='',SIBankContactNo='',SIBankNo='',SIBankAmt=0,SIBankDate=null,ForceSalesAmt=0,ValuerName='',IntDate=null,ValuerFrom='',ValuationDate=null,PropertyStatus='',PropertyAdd1='',PropertyType='',BuiltUpArea='',LandArea='',LandStatus='',LeaseHoldExpDate=null,ExpectRental=0,TitleType='',TitleNo='',Mukim='',LotNoPTNo='',District='',SectionNo='',State='',PurchasePrice=0,PropertyLand='',BumiPrice=0,Construction='',InsuranceComp='',SumInsured=0,ReminderDate=null,ReminderDate2=null,MRTA='',CustID2='',CustName2='',CustNIC2='',CustAdd12='',TotLoanInt=0,LoanTerm3='12',SpecialSch='0',LastDueDate=null,EndTermIntDate=null,StopInt=null,CreditLimit=0,OwnerName='',Memo3=''  Where LoanID='AB0022-002'
;;
--- a changed loan's row with its reason for exceeding the cash threshold
Update LoanMast set CustID='AB0022',CompCode='AB',TrxDate='2024-01-05',LoanAmt=10000.00,LoanAmt2=10000.00,TopUpAmt=0,InsRate=18,PayOutAmt=0,DepositAmt=0,LoanTerm='12',ProcessFee=300.00,LoanTypeID='MONTH',FirstPayment=983.33,InstallmentAmt=983.33,LastPayment=983.37,IntType='$',LateChargePerDay=18,NextDueDate='2024-01-31',OfferDays=0,GuarantorName='LEE AH MENG',GuarantorNIC='800131-10-5555',GuarantorOIC='',GuarantorOthIC='',GuarantorRelationship='',GuarantorComp='',GuarantorCompBiz='',GuarantorCompPos='',GuarantorCompIncome=0,GuarantorCompAdd1='',GuarantorCompAdd2='',GuarantorCompAdd3='',GuarantorCompPostCode='',GuarantorCompCity='',GuarantorCompState='',GuarantorRace='',GuarantorGender='',GuarantorCompTel1='',GuarantorCompFax1='',GuarantorHP1='',GuarantorMN='',GuarantorName2='',GuarantorNIC2='',GuarantorOIC2='',GuarantorOthIC2='',GuarantorRelationship2='',GuarantorComp2='',GuarantorCompBiz2='',GuarantorCompPos2='',GuarantorCompIncome2=0,GuarantorCompAdd12='',GuarantorCompAdd22='',GuarantorCompAdd32='',GuarantorCompPostCode2='',GuarantorCompCity2='',GuarantorCompState2='',GuarantorRace2='',GuarantorGender2='',GuarantorCompTel12='',GuarantorCompFax12='',GuarantorHP12='',GuarantorMN2='',SalesmanID='NIL',SalesmanComm=0,AdvertiseID='NIL',LoanStatus='ACTIVE',LoanGroupID='PINJAMAN SEMASA',LoanBal=11800.00,Bank='CASH',BankBranch='',Memo1='prefers Mondays',Memo2='',Memo4=0,Memo5='A-12',LoanPurpose='FLAT',Introducer='',IntroducerAmt=0,DragLoan=0,LoanDuration=null,OldLoanCode='',AgreementNo='',AgreementPrint='0',NumberToText='',BankBook='',ATMCardNo='',ATMPinNo='',NextCall='2024-01-31',SchChanged='0',LoanType='Unsecured',DragIntType='Interest Pay First',StampingDate=null,Pic1='',Pic2='',CollateralID='NIL',LoanTerm2='0',InstallmentAmt2=983.33,LastPayment2=983.37,PayOutAmt2=0,InsRate2=18,TermInt=0,OathsAmt=0,LegalFee=0,MiscAmt=0,DepositAmt2=0,PayExtra=0,SchAmt=0,SIBank='',SIBankBranch='',SIBankContactPerson='',SIBankContactNo='',SIBankNo='',SIBankAmt=0,SIBankDate=null,ForceSalesAmt=0,ValuerName='',IntDate=null,ValuerFrom='',ValuationDate=null,PropertyStatus='',PropertyAdd1='',PropertyType='',BuiltUpArea='',LandArea='',LandStatus='',LeaseHoldExpDate=null,ExpectRental=0,TitleType='',TitleNo='',Mukim='',LotNoPTNo='',District='',SectionNo='',State='',PurchasePrice=0,PropertyLand='',BumiPrice=0,Construction='',InsuranceComp='',SumInsured=0,ReminderDate=null,ReminderDate2=null,MRTA='',CustID2='',CustName2='',CustNIC2='',CustAdd12='',TotLoanInt=0,LoanTerm3='12',SpecialSch='0',LastDueDate=null,EndTermIntDate=null,StopInt=null,CreditLimit=0,OwnerName='',Memo3='',AMLACode='Business capital',AMLADesc='',AMLAID=''  Where LoanID='AB0022-003'
;;
--- customer's totals before the old figures of a loan are taken out
SELECT TotLoan,TotLoanAmt2,TotLoanBal,TotTopUpAmt FROM CustMast WHERE CustID='AB0022'
;;
--- old figures of a loan are taken out of the customer's totals
UPDATE CustMast SET TotLoan=0,TotLoanBal=-11800.00,TotLoanAmt2=10000.00,TotTopUpAmt=0 WHERE CustID='AB0022'
;;
--- commission total of a salesman
SELECT TotAccComm FROM SalesmanMast WHERE SalesmanID='NIL'
;;
--- commission of a loan is taken out of or added to the salesman's total
UPDATE SalesmanMast SET TotAccComm=150.00 WHERE SalesmanID='NIL'
;;
--- customer's totals before the new figures of a loan are added
SELECT TotLoan,TotLoanBal,TotTopUpAmt FROM CustMast WHERE CustID='AB0022'
;;
--- new figures of a loan are added to the customer's totals
UPDATE CustMast SET TotLoan=10000.00,TotLoanBal=11800.00,TotTopUpAmt=0 WHERE CustID='AB0022'
;;
--- credit limit of the customer
SELECT CreditLimit,CreditLimitType FROM CustMast WHERE CustID='AB0022'
;;
--- credit used by the whole capital of the other open loans
SELECT SUM(s.CapitalAmt) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0022' AND l.LoanBal > 0 and l.LoanID <> 'AB0022-002'
;;
--- credit used by unpaid capital of the other loans
SELECT SUM(s.CapitalAmt-s.CapitalPayment) FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.CustID='AB0022' AND l.LoanID <> 'AB0022-002'
;;
--- accounts of a loan's documents that are not set up
SELECT COUNT(*) FROM LinkAccMast WHERE LinkID in ('HP','TL','MRTA','Stamp','Fire','Legal','Process','Misc') AND LinkAccCode=''
;;
--- the application that became this loan
UPDATE AppMast SET LoanID='AB0022-002' WHERE AppID='AP0001' AND LoanID=''
