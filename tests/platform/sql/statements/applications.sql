--- applications still in use
SELECT AppID FROM AppMast WHERE NOT AppID Like '%*%'
;;
--- approved applications that are no loan yet
SELECT AppID FROM AppMast WHERE NOT AppID Like '%*%' AND AppStatus='Approved' AND AppStatus2='Approved' AND LoanID='' 
;;
--- a new application
INSERT INTO AppMast (AppID,LoanID,CustID,TrxDate,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,LoanTypeID,LoanType,DragLoan,LoanPurpose,InsRate,LoanTerm,InstallmentAmt,LastPayment,TermInt,LoanBal,LoanTerm3,FirstPayment,CollateralID,Memo2,Memo4,ForceSalesAmt,ValuerName,ValuerFrom,ValuationDate,PropertyStatus,PropertyAdd1,PropertyType,BuiltUpArea,LandArea,LandStatus,LeaseHoldExpDate,ExpectRental,TitleType,TitleNo,Mukim,LotNoPTNo,District,SectionNo,State,PurchasePrice,PropertyLand,BumiPrice,Construction,InsuranceComp,SumInsured,MRTA,CompCode,AppStatus,AppStatus2,ApprovedUser,ApprovedUser2,ApprovalDate,ApprovalDate2,UserID,DateCreated,OtherCond,Opt1,Opt2,Opt3,Opt4,Opt5) VALUES ('AP0002','','AB0012','2024-01-31','2024-02-29',300000.00,0,250000.00,'MONTH','Secured',1,'REDUCING',12,'120',3586.77,0,0,250000.00,'6',0,'NIL','Shop lot',400000.00,0,'','',null,'','','','','','',null,0,'','','','','','','',0,'',0,'','',0,'','AB','Pending','','','',null,null,'CLERK1','2024-01-31 14:05:09','Fire policy
to be endorsed','1','0','0','0','0')
;;
--- a changed application, no blank before WHERE
UPDATE AppMast SET TrxDate='2024-01-31',NextDueDate='2024-02-29',LoanAmt2=300000.00,TopUpAmt=0,LoanAmt=250000.00,LoanTypeID='MONTH',LoanType='Secured',DragLoan=1,LoanPurpose='REDUCING',InsRate=12,LoanTerm='120',InstallmentAmt=3586.77,LastPayment=0,TermInt=0,LoanBal=250000.00,LoanTerm3='6',FirstPayment=0,CollateralID='NIL',Memo2='Shop lot',Memo4=400000.00,ForceSalesAmt=0,ValuerName='',ValuerFrom='',ValuationDate=null,PropertyStatus='',PropertyAdd1='',PropertyType='',BuiltUpArea='',LandArea='',LandStatus='',LeaseHoldExpDate=null,ExpectRental=0,TitleType='',TitleNo='',Mukim='',LotNoPTNo='',District='',SectionNo='',State='',PurchasePrice=0,PropertyLand='',BumiPrice=0,Construction='',InsuranceComp='',SumInsured=0,MRTA='',CompCode='AB',AppStatus='Approved',AppStatus2='',ApprovedUser='SUP1',ApprovedUser2='',ApprovalDate='2024-02-01',ApprovalDate2=null,OtherCond='Fire policy
to be endorsed',Opt1='1',Opt2='0',Opt3='0',Opt4='0',Opt5='0'WHERE AppID='AP0002'
;;
