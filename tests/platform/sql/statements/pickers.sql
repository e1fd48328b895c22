--- customers, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when (a.TotLoan<=0) then 'NO LOAN' when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM LoanMast as l right outer join CustMast as a on l.CustID=a.CustID GROUP BY a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,a.TotLoan,a.TotLoanBal,a.Remark ORDER BY a.CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- customers, third page of the whole list sorted by name
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 300 a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when (a.TotLoan<=0) then 'NO LOAN' when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM LoanMast as l right outer join CustMast as a on l.CustID=a.CustID GROUP BY a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,a.TotLoan,a.TotLoanBal,a.Remark ORDER BY a.CustName asc,a.CustID asc) as a ORDER BY a.CustName desc,a.CustID desc) as b ORDER BY b.CustName,b.CustID
;;
--- customers of the home company or with a loan there, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when (a.TotLoan<=0) then 'NO LOAN' when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM LoanMast as l right outer join CustMast as a on l.CustID=a.CustID  WHERE (l.CompCode='AB' or (a.CompCode='AB')) AND (a.CustID like '%o''brien%' or a.CustName like '%o''brien%' or a.CustNIC like '%o''brien%' or a.CustOIC like '%o''brien%' or a.CustOthIC like '%o''brien%' or l.OldLoanCode like '%o''brien%') GROUP BY a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,a.TotLoan,a.TotLoanBal,a.Remark ORDER BY a.CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- customers of the allowed companies or with a loan there, one kind of customer
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when (a.TotLoan<=0) then 'NO LOAN' when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM LoanMast as l right outer join CustMast as a on l.CustID=a.CustID  WHERE (l.CompCode in ('AB','CD') or (a.CompCode in ('AB','CD'))) AND a.AreaCode='PERSONAL' GROUP BY a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,a.TotLoan,a.TotLoanBal,a.Remark ORDER BY a.CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- customers by search text, all companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when (a.TotLoan<=0) then 'NO LOAN' when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM LoanMast as l right outer join CustMast as a on l.CustID=a.CustID  WHERE (a.CustID like '%o''brien%' or a.CustName like '%o''brien%' or a.CustNIC like '%o''brien%' or a.CustOIC like '%o''brien%' or a.CustOthIC like '%o''brien%' or l.OldLoanCode like '%o''brien%') GROUP BY a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,a.TotLoan,a.TotLoanBal,a.Remark ORDER BY a.CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- customers by identity number
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 CustID, CustName, CustNIC, CustOIC, TrxDate, TotLoan, TotLoanBal FROM CustMast ORDER BY CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- customers by identity number, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 CustID, CustName, CustNIC, CustOIC, TrxDate, TotLoan, TotLoanBal FROM CustMast  WHERE (CustID like '%800131%' or CustName like '%800131%' or CustNIC like '%800131%' or CustOIC like '%800131%') ORDER BY CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- companies
SELECT CompCode [Company Code], CompDesc [Company Name], AreaCode [Company Type], PersonInCharge [Person Incharge] FROM CompMast order by CompCode
;;
--- users
SELECT UserID,UserName,CompCode,UserLevel FROM UserMast ORDER BY UserID
;;
--- loans, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 L.LoanID,L.CompCode,C.CustName,C.CustNIC,L.TrxDate,L.LoanAmt,convert(varchar,L.InstallmentAmt) +' X '+l.LoanTerm as [LoanTerm],L.LoanBal,case when l.DragLoan='0' then 'Personal Loan' else '' end as [LoanScheme],case when L.LoanType='Unsecured' then 'J' else 'K' end as [LoanType],l.PayOutAmt as [Drawdown],L.LoanGroupID FROM LoanMast as L inner join CustMast as C on L.CustID=C.CustID ORDER BY L.LoanID asc) as a ORDER BY a.LoanID desc) as b ORDER BY b.LoanID
;;
--- loans of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 L.LoanID,L.CompCode,C.CustName,C.CustNIC,L.TrxDate,L.LoanAmt,convert(varchar,L.InstallmentAmt) +' X '+l.LoanTerm as [LoanTerm],L.LoanBal,case when l.DragLoan='0' then 'Personal Loan' else '' end as [LoanScheme],case when L.LoanType='Unsecured' then 'J' else 'K' end as [LoanType],l.PayOutAmt as [Drawdown],L.LoanGroupID FROM LoanMast as L inner join CustMast as C on L.CustID=C.CustID  WHERE L.CompCode='AB' AND (L.LoanID like '%tan%' or L.OldLoanCode like '%tan%' or C.CustName like '%tan%' or C.CustNIC like '%tan%' or C.CustOIC like '%tan%') ORDER BY L.LoanID asc) as a ORDER BY a.LoanID desc) as b ORDER BY b.LoanID
;;
--- loans of the allowed companies, settled ones left out, one status and repayment
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 L.LoanID,L.CompCode,C.CustName,C.CustNIC,L.TrxDate,L.LoanAmt,convert(varchar,L.InstallmentAmt) +' X '+l.LoanTerm as [LoanTerm],L.LoanBal,case when l.DragLoan='0' then 'Personal Loan' else '' end as [LoanScheme],case when L.LoanType='Unsecured' then 'J' else 'K' end as [LoanType],l.PayOutAmt as [Drawdown],L.LoanGroupID FROM LoanMast as L inner join CustMast as C on L.CustID=C.CustID  WHERE L.CompCode in ('AB','CD') AND L.LoanBal > 0 AND L.LoanGroupID='PINJAMAN SEMASA' AND L.LoanTypeID='MONTH' ORDER BY L.LoanID asc) as a ORDER BY a.LoanID desc) as b ORDER BY b.LoanID
;;
--- loans by search text sorted by customer, second page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 200 L.LoanID,L.CompCode,C.CustName,C.CustNIC,L.TrxDate,L.LoanAmt,convert(varchar,L.InstallmentAmt) +' X '+l.LoanTerm as [LoanTerm],L.LoanBal,case when l.DragLoan='0' then 'Personal Loan' else '' end as [LoanScheme],case when L.LoanType='Unsecured' then 'J' else 'K' end as [LoanType],l.PayOutAmt as [Drawdown],L.LoanGroupID FROM LoanMast as L inner join CustMast as C on L.CustID=C.CustID  WHERE (L.LoanID like '%tan%' or L.OldLoanCode like '%tan%' or C.CustName like '%tan%' or C.CustNIC like '%tan%' or C.CustOIC like '%tan%') ORDER BY C.CustName asc,L.LoanID asc) as a ORDER BY a.CustName desc,a.LoanID desc) as b ORDER BY b.CustName,b.LoanID
;;
--- instalments of a loan
SELECT SchID,LoanID,DueDate,CapitalAmt,InterestAmt,PayableAmt,CapitalPayment,InterestPayment,Payment,LateInt FROM SchMast where LoanID ='AB0012-001' ORDER BY SchID
;;
--- payments, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, p.CollectorAmt, p.NextDueDate, p.PaymentStatus FROM PaymentMast as p inner join CustMast as c on p.CustID=c.CustID ORDER BY p.PayID asc) as a ORDER BY a.PayID desc) as b ORDER BY b.PayID
;;
--- payments of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, p.CollectorAmt, p.NextDueDate, p.PaymentStatus FROM PaymentMast as p inner join CustMast as c on p.CustID=c.CustID  WHERE p.CompCode='AB' AND (p.PayID like '%tan%' or p.ReceiptNo like '%tan%' or c.CustName like '%tan%' or c.CustNIC like '%tan%') ORDER BY p.PayID asc) as a ORDER BY a.PayID desc) as b ORDER BY b.PayID
;;
--- payments of the allowed companies, one collection type
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, p.CollectorAmt, p.NextDueDate, p.PaymentStatus FROM PaymentMast as p inner join CustMast as c on p.CustID=c.CustID  WHERE p.CompCode in ('AB','CD') AND p.CollectInfoID='CASH' ORDER BY p.PayID asc) as a ORDER BY a.PayID desc) as b ORDER BY b.PayID
;;
--- settlements
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, p.CollectorAmt, p.NextDueDate, p.PaymentStatus, p.Settlement FROM PaymentMast as p inner join CustMast as c on p.CustID=c.CustID  WHERE p.Settlement='1' ORDER BY p.PayID asc) as a ORDER BY a.PayID desc) as b ORDER BY b.PayID
;;
--- settlements of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, p.CollectorAmt, p.NextDueDate, p.PaymentStatus, p.Settlement FROM PaymentMast as p inner join CustMast as c on p.CustID=c.CustID  WHERE p.CompCode='AB' AND p.Settlement='1' AND (p.PayID like '%tan%' or p.ReceiptNo like '%tan%' or c.CustName like '%tan%' or c.CustNIC like '%tan%') ORDER BY p.PayID asc) as a ORDER BY a.PayID desc) as b ORDER BY b.PayID
;;
--- settlements of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, p.CollectorAmt, p.NextDueDate, p.PaymentStatus, p.Settlement FROM PaymentMast as p inner join CustMast as c on p.CustID=c.CustID  WHERE p.CompCode in ('AB','CD') AND p.Settlement='1' ORDER BY p.PayID asc) as a ORDER BY a.PayID desc) as b ORDER BY b.PayID
;;
--- gold purchases, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 L.LoanID,L.CompCode,C.CustName,L.TrxDate,L.PayAmt,C.CustNIC FROM GoldTransMast as L inner join CustMast as C on L.CustID=C.CustID ORDER BY L.LoanID asc) as a ORDER BY a.LoanID desc) as b ORDER BY b.LoanID
;;
--- gold purchases of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 L.LoanID,L.CompCode,C.CustName,L.TrxDate,L.PayAmt,C.CustNIC FROM GoldTransMast as L inner join CustMast as C on L.CustID=C.CustID  WHERE L.CompCode='AB' AND (L.LoanID like '%tan%' or C.CustName like '%tan%' or C.CustNIC like '%tan%') ORDER BY L.LoanID asc) as a ORDER BY a.LoanID desc) as b ORDER BY b.LoanID
;;
--- gold purchases of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 L.LoanID,L.CompCode,C.CustName,L.TrxDate,L.PayAmt,C.CustNIC FROM GoldTransMast as L inner join CustMast as C on L.CustID=C.CustID  WHERE L.CompCode in ('AB','CD') ORDER BY L.LoanID asc) as a ORDER BY a.LoanID desc) as b ORDER BY b.LoanID
;;
--- expenses, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TrxID,TrxDate,CompCode,TrxDesc,DebitAmt,CreditAmt,CBCat FROM PersonalExp ORDER BY TrxID asc) as a ORDER BY a.TrxID desc) as b ORDER BY b.TrxID
;;
--- expenses of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TrxID,TrxDate,CompCode,TrxDesc,DebitAmt,CreditAmt,CBCat FROM PersonalExp  WHERE PersonalExp.CompCode='AB' AND (TrxID like '%tan%' or TrxDesc like '%tan%' or CBCat like '%tan%') ORDER BY TrxID asc) as a ORDER BY a.TrxID desc) as b ORDER BY b.TrxID
;;
--- expenses of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TrxID,TrxDate,CompCode,TrxDesc,DebitAmt,CreditAmt,CBCat FROM PersonalExp  WHERE PersonalExp.CompCode in ('AB','CD') ORDER BY TrxID asc) as a ORDER BY a.TrxID desc) as b ORDER BY b.TrxID
;;
--- cash book rows entered by hand, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 DocID,CompCode,TranDate,TranAmt,TranType,TranDesc,TranMemo FROM CashBook  WHERE CBType='M' ORDER BY TranDate asc,DocID asc) as a ORDER BY a.TranDate desc,a.DocID desc) as b ORDER BY b.TranDate,b.DocID
;;
--- cash book rows entered by hand of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 DocID,CompCode,TranDate,TranAmt,TranType,TranDesc,TranMemo FROM CashBook  WHERE CashBook.CompCode='AB' AND CBType='M' AND (DocID like '%tan%' or TranDesc like '%tan%' or TranMemo like '%tan%') ORDER BY TranDate asc,DocID asc) as a ORDER BY a.TranDate desc,a.DocID desc) as b ORDER BY b.TranDate,b.DocID
;;
--- cash book rows entered by hand of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 DocID,CompCode,TranDate,TranAmt,TranType,TranDesc,TranMemo FROM CashBook  WHERE CashBook.CompCode in ('AB','CD') AND CBType='M' ORDER BY TranDate asc,DocID asc) as a ORDER BY a.TranDate desc,a.DocID desc) as b ORDER BY b.TranDate,b.DocID
;;
--- charges, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 ChargeID,TrxDate,LoanID,CompCode,ChargeAmt,ChargeDesc,PType FROM ChargeMast ORDER BY ChargeID asc) as a ORDER BY a.ChargeID desc) as b ORDER BY b.ChargeID
;;
--- charges of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 ChargeID,TrxDate,LoanID,CompCode,ChargeAmt,ChargeDesc,PType FROM ChargeMast  WHERE ChargeMast.CompCode='AB' AND (ChargeID like '%tan%' or LoanID like '%tan%' or ChargeDesc like '%tan%') ORDER BY ChargeID asc) as a ORDER BY a.ChargeID desc) as b ORDER BY b.ChargeID
;;
--- charges of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 ChargeID,TrxDate,LoanID,CompCode,ChargeAmt,ChargeDesc,PType FROM ChargeMast  WHERE ChargeMast.CompCode in ('AB','CD') ORDER BY ChargeID asc) as a ORDER BY a.ChargeID desc) as b ORDER BY b.ChargeID
;;
--- suppliers, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 SuppID,TrxDate,CompCode,SuppName,Add1,Tel1 FROM SupplierMast ORDER BY SuppID asc) as a ORDER BY a.SuppID desc) as b ORDER BY b.SuppID
;;
--- suppliers of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 SuppID,TrxDate,CompCode,SuppName,Add1,Tel1 FROM SupplierMast  WHERE SupplierMast.CompCode='AB' AND (SuppID like '%tan%' or SuppName like '%tan%') ORDER BY SuppID asc) as a ORDER BY a.SuppID desc) as b ORDER BY b.SuppID
;;
--- suppliers of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 SuppID,TrxDate,CompCode,SuppName,Add1,Tel1 FROM SupplierMast  WHERE SupplierMast.CompCode in ('AB','CD') ORDER BY SuppID asc) as a ORDER BY a.SuppID desc) as b ORDER BY b.SuppID
;;
--- supplier transactions, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TransID,TrxDate,CompCode,TransType,TransDesc,TransAmt FROM SupplierTrans ORDER BY TransID asc) as a ORDER BY a.TransID desc) as b ORDER BY b.TransID
;;
--- supplier transactions of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TransID,TrxDate,CompCode,TransType,TransDesc,TransAmt FROM SupplierTrans  WHERE SupplierTrans.CompCode='AB' AND (TransID like '%tan%' or TransDesc like '%tan%' or TransType like '%tan%') ORDER BY TransID asc) as a ORDER BY a.TransID desc) as b ORDER BY b.TransID
;;
--- supplier transactions of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TransID,TrxDate,CompCode,TransType,TransDesc,TransAmt FROM SupplierTrans  WHERE SupplierTrans.CompCode in ('AB','CD') ORDER BY TransID asc) as a ORDER BY a.TransID desc) as b ORDER BY b.TransID
;;
--- applications still in use
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 AppID,TrxDate,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,TermInt,DragLoan,InsRate,LoanTerm,InstallmentAmt,ApprovedUser,ApprovedUser2 FROM AppMast  WHERE NOT AppID Like '%*%' ORDER BY AppID asc) as a ORDER BY a.AppID desc) as b ORDER BY b.AppID
;;
--- approved applications that are no loan yet
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 AppID,TrxDate,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,TermInt,DragLoan,InsRate,LoanTerm,InstallmentAmt,ApprovedUser,ApprovedUser2 FROM AppMast  WHERE NOT AppID Like '%*%' AND AppStatus='Approved' AND AppStatus2='Approved' AND LoanID='' ORDER BY AppID asc) as a ORDER BY a.AppID desc) as b ORDER BY b.AppID
;;
--- approved applications that are no loan yet, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 AppID,TrxDate,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,TermInt,DragLoan,InsRate,LoanTerm,InstallmentAmt,ApprovedUser,ApprovedUser2 FROM AppMast  WHERE NOT AppID Like '%*%' AND AppStatus='Approved' AND AppStatus2='Approved' AND LoanID='' AND (AppID like '%AP%' or CustID like '%AP%') ORDER BY AppID asc) as a ORDER BY a.AppID desc) as b ORDER BY b.AppID
;;
--- approved applications of the home company for the loan of a customer, the own ones first
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 AppID,TrxDate,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,TermInt,DragLoan,InsRate,LoanTerm,InstallmentAmt,ApprovedUser,ApprovedUser2,CustID,(SELECT c.CustName FROM CustMast as c WHERE c.CustID=AppMast.CustID) as [CustName],case when AppMast.CustID='AB0001' or exists (SELECT k.AppID FROM AppMastLink as k WHERE k.AppID=AppMast.AppID AND k.CustID='AB0001') then 0 else 1 end as [OwnFirst] FROM AppMast  WHERE AppMast.CompCode='AB' AND NOT AppID Like '%*%' AND AppStatus='Approved' AND AppStatus2='Approved' AND LoanID='' ORDER BY OwnFirst asc,AppID asc) as a ORDER BY a.OwnFirst desc,a.AppID desc) as b ORDER BY b.OwnFirst,b.AppID
;;
--- message templates
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TID,TName,SMSContent,UserID FROM SMSMast ORDER BY TID asc) as a ORDER BY a.TID desc) as b ORDER BY b.TID
;;
--- message templates by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TID,TName,SMSContent,UserID FROM SMSMast  WHERE (TID like '%due%' or TName like '%due%' or SMSContent like '%due%') ORDER BY TID asc) as a ORDER BY a.TID desc) as b ORDER BY b.TID
;;
--- suspicious transaction reports
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 AMLATrans.TrxID,AMLATrans.TrxDate,AMLATrans.Name1,AMLATrans.Nationality,AMLATrans.NRIC FROM AMLATrans ORDER BY AMLATrans.TrxID asc) as a ORDER BY a.TrxID desc) as b ORDER BY b.TrxID
;;
--- suspicious transaction reports by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 AMLATrans.TrxID,AMLATrans.TrxDate,AMLATrans.Name1,AMLATrans.Nationality,AMLATrans.NRIC FROM AMLATrans  WHERE (AMLATrans.Name1 like '%tan%' or AMLATrans.Name2 like '%tan%' or AMLATrans.Name3 like '%tan%' or AMLATrans.NRIC like '%tan%' or AMLATrans.OldIC like '%tan%') ORDER BY AMLATrans.TrxID asc) as a ORDER BY a.TrxID desc) as b ORDER BY b.TrxID
;;
--- customers of the linked database, with and without loans @conn=LinkDB
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 CustID,CustName,CustNIC,CustOIC,CustOthIC,CompCode,TrxDate,CustStatus,AA,Remark FROM (SELECT a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM CustMast as a inner join LoanMast as l on l.CustID=a.CustID union SELECT a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,'NO LOAN' as [AA],a.Remark FROM CustMast as a left outer join LoanMast as l on l.CustID=a.CustID WHERE l.LoanID is null) as c ORDER BY CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- customers of the linked database by search text @conn=LinkDB
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 CustID,CustName,CustNIC,CustOIC,CustOthIC,CompCode,TrxDate,CustStatus,AA,Remark FROM (SELECT a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,(case when a.TotLoanBal <= 0 then 'SETTLED' else 'OWING' end) as [AA],a.Remark FROM CustMast as a inner join LoanMast as l on l.CustID=a.CustID union SELECT a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,'NO LOAN' as [AA],a.Remark FROM CustMast as a left outer join LoanMast as l on l.CustID=a.CustID WHERE l.LoanID is null) as c  WHERE (CustName like '%tan%' or CustNIC like '%tan%' or CustOIC like '%tan%' or CustOthIC like '%tan%') ORDER BY CustID asc) as a ORDER BY a.CustID desc) as b ORDER BY b.CustID
;;
--- states
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 StateCode,StateName FROM eState ORDER BY StateCode asc) as a ORDER BY a.StateCode desc) as b ORDER BY b.StateCode
;;
--- states by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 StateCode,StateName FROM eState  WHERE (StateCode like '%01%' or StateName like '%01%') ORDER BY StateCode asc) as a ORDER BY a.StateCode desc) as b ORDER BY b.StateCode
;;
--- countries
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 CountryCode,CountryName FROM eCountry ORDER BY CountryCode asc) as a ORDER BY a.CountryCode desc) as b ORDER BY b.CountryCode
;;
--- countries by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 CountryCode,CountryName FROM eCountry  WHERE (CountryCode like '%01%' or CountryName like '%01%') ORDER BY CountryCode asc) as a ORDER BY a.CountryCode desc) as b ORDER BY b.CountryCode
;;
--- business codes
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 MiscCode,MiscName FROM eMiscCode ORDER BY MiscCode asc) as a ORDER BY a.MiscCode desc) as b ORDER BY b.MiscCode
;;
--- business codes by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 MiscCode,MiscName FROM eMiscCode  WHERE (MiscCode like '%01%' or MiscName like '%01%') ORDER BY MiscCode asc) as a ORDER BY a.MiscCode desc) as b ORDER BY b.MiscCode
;;
--- classification codes
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 ClassCode,ClassName FROM eClass ORDER BY ClassCode asc) as a ORDER BY a.ClassCode desc) as b ORDER BY b.ClassCode
;;
--- classification codes by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 ClassCode,ClassName FROM eClass  WHERE (ClassCode like '%01%' or ClassName like '%01%') ORDER BY ClassCode asc) as a ORDER BY a.ClassCode desc) as b ORDER BY b.ClassCode
;;
--- tax codes
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TaxCode,TaxName FROM eTax ORDER BY TaxCode asc) as a ORDER BY a.TaxCode desc) as b ORDER BY b.TaxCode
;;
--- tax codes by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 TaxCode,TaxName FROM eTax  WHERE (TaxCode like '%01%' or TaxName like '%01%') ORDER BY TaxCode asc) as a ORDER BY a.TaxCode desc) as b ORDER BY b.TaxCode
;;
--- e-invoices, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 eInvID,eInvMast.TrxDate,CustMast.CustName,InvDesc,InvAmt,uuid,LHDNStatus MiscName FROM EInvMast left Outer join  CustMast on EinvMast.CustID=CustMast.CustID ORDER BY eInvID asc) as a ORDER BY a.eInvID desc) as b ORDER BY b.eInvID
;;
--- e-invoices of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 eInvID,eInvMast.TrxDate,CustMast.CustName,InvDesc,InvAmt,uuid,LHDNStatus MiscName FROM EInvMast left Outer join  CustMast on EinvMast.CustID=CustMast.CustID  WHERE eInvMast.CompCode='AB' AND (eInvID like '%tan%' or CustMast.CustName like '%tan%' or InvDesc like '%tan%') ORDER BY eInvID asc) as a ORDER BY a.eInvID desc) as b ORDER BY b.eInvID
;;
--- e-invoices of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 eInvID,eInvMast.TrxDate,CustMast.CustName,InvDesc,InvAmt,uuid,LHDNStatus MiscName FROM EInvMast left Outer join  CustMast on EinvMast.CustID=CustMast.CustID  WHERE eInvMast.CompCode in ('AB','CD') ORDER BY eInvID asc) as a ORDER BY a.eInvID desc) as b ORDER BY b.eInvID
;;
--- self-billed invoices, first page
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 SID,InvoiceNo,TrxDate,SuppName,SelfBillTaxAmt,SelfBillAmt,SelfBillStatus,SuppTin,uuid FROM SelfBillMast ORDER BY SID asc) as a ORDER BY a.SID desc) as b ORDER BY b.SID
;;
--- self-billed invoices of the home company, by search text
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 SID,InvoiceNo,TrxDate,SuppName,SelfBillTaxAmt,SelfBillAmt,SelfBillStatus,SuppTin,uuid FROM SelfBillMast  WHERE SelfBillMast.CompCode='AB' AND (SID like '%tan%' or InvoiceNo like '%tan%' or SuppName like '%tan%' or SuppTin like '%tan%') ORDER BY SID asc) as a ORDER BY a.SID desc) as b ORDER BY b.SID
;;
--- self-billed invoices of the allowed companies
SELECT * FROM (SELECT TOP 100 * FROM (SELECT TOP 100 SID,InvoiceNo,TrxDate,SuppName,SelfBillTaxAmt,SelfBillAmt,SelfBillStatus,SuppTin,uuid FROM SelfBillMast  WHERE SelfBillMast.CompCode in ('AB','CD') ORDER BY SID asc) as a ORDER BY a.SID desc) as b ORDER BY b.SID
