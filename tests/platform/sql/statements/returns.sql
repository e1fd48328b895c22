--- yearly return: the row of an earlier run goes
Delete from YearlyLoanMast
;;
--- yearly return: loans with interest
Select SUM(lm.LoanAmt+lm.TotLoanInt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- yearly return: loans without interest
Select SUM(lm.LoanAmt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- yearly return: collections of the period
Select Sum(pm.PayAmt+pm.ChargeAmt-pm.DiscAmt) from (Paymentmast as pm inner join LoanMast as lm on pm.loanid = lm.loanid) inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and pm.PayDate >= { ts '2024-01-01 00:00:00' } and pm.PayDate <= { ts '2024-12-31 00:00:00' } 
;;
--- yearly return: collections of the period on loans of the period
Select Sum(pm.PayAmt+pm.ChargeAmt-pm.DiscAmt) from (Paymentmast as pm inner join LoanMast as lm on pm.loanid = lm.loanid) inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and pm.PayDate >= { ts '2024-01-01 00:00:00' } and pm.PayDate <= { ts '2024-12-31 00:00:00' }  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- yearly return: collections of the period on earlier loans
Select Sum(pm.PayAmt+pm.ChargeAmt-pm.DiscAmt) from (Paymentmast as pm inner join LoanMast as lm on pm.loanid = lm.loanid) inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and pm.PayDate >= { ts '2024-01-01 00:00:00' } and pm.PayDate <= { ts '2024-12-31 00:00:00' }  and lm.TrxDate < { ts '2024-01-01 00:00:00' } 
;;
--- yearly return: number of secured loans
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND LoanType='Secured'
;;
--- yearly return: number of unsecured loans
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND LoanType='Unsecured'
;;
--- yearly return: number of all loans
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- yearly return: amount lent to persons, with interest
Select SUM(lm.LoanAmt+lm.TotLoanInt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL'
;;
--- yearly return: amount lent to companies, without interest
Select SUM(lm.LoanAmt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='COMPANY'
;;
--- yearly return: loans of government servants
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and employer = 'Government'
;;
--- yearly return: loans of the unemployed and students
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and (employer = 'Unemployment' or employer = 'Student')
;;
--- yearly return: loans of a race by either name
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and (cm.CustRace = 'MELAYU' or cm.CustRace = 'MALAY')
;;
--- yearly return: loans of all other races
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and not cm.CustRace in ('MELAYU','MALAY','CINA','CHINESE','INDIA','INDIAN','BUMIPUTERA (SABAH/SARAWAK)','BUKAN WARGANEGARA')
;;
--- yearly return: loans of a race with brackets in its name
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and (cm.CustRace = 'BUMIPUTERA (SABAH/SARAWAK)')
;;
--- yearly return: amount lent to a race by either name, with interest
Select SUM(lm.LoanAmt+lm.TotLoanInt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and (cm.CustRace = 'CINA' or cm.CustRace = 'CHINESE')
;;
--- yearly return: amount lent to all other races, without interest
Select SUM(lm.LoanAmt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and not cm.CustRace in ('MELAYU','MALAY','CINA','CHINESE','INDIA','INDIAN','BUMIPUTERA (SABAH/SARAWAK)','BUKAN WARGANEGARA')
;;
--- yearly return: amount lent to foreigners, with interest
Select SUM(lm.LoanAmt+lm.TotLoanInt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and (cm.CustRace = 'BUKAN WARGANEGARA')
;;
--- yearly return: loans by income, first band
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and cm.CustCompIncome >= 0 and cm.CustCompIncome <= 500
;;
--- yearly return: loans by income, a middle band
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and cm.CustCompIncome >= 500.01 and cm.CustCompIncome <= 1000
;;
--- yearly return: loans by income, last band
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  AND cm.AreaCode='PERSONAL' and cm.CustCompIncome >= 10000.01
;;
--- yearly return: loans by size, first band, with interest in the size
Select Count(lm.LoanID) from LoanMast as lm left outer join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  and lm.LoanAmt+lm.totloanint <= 1000
;;
--- yearly return: loans by size, a middle band, with interest in the size
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  and lm.LoanAmt+lm.totloanint >= 1000.01 and lm.LoanAmt+lm.totloanint <= 5000
;;
--- yearly return: loans by size, last band
Select Count(lm.LoanID) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  and lm.LoanAmt >= 1000000.01
;;
--- yearly return: amount lent to a kind of company, with interest
Select SUM(lm.LoanAmt+lm.TotLoanInt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  and cm.AreaCode ='COMPANY' and cm.OldCode='Bumi'
;;
--- yearly return: amount lent to a kind of company, without interest
Select SUM(lm.LoanAmt) from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  and cm.AreaCode ='COMPANY' and cm.OldCode='Non Bumi'
;;
--- yearly return: loans of a kind of company
Select lm.loanid from LoanMast as lm inner join CustMast as cm on lm.custid=cm.custid where (lm.CompCode in ('AB','CD') )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' }  and cm.AreaCode ='COMPANY' and cm.OldCode='Foreigner'
;;
--- yearly return: its one row
Insert into YearlyLoanMast (CompCode,year,FromDate,ToDate,field01,field02,field03,field04,field05,field06,field07,field08,field09,field10,field11,field12,field13,field14,field15,field16,field17,field18,field19,field20,field21,field22,field23,field24,field25,field26,field27,field28,field29,field30,field31,field32,field33,field34,field35,field36) values ('AB,CD','2024','2024-01-01','2024-12-31','1,240,000.00','1,240,000.00','1,240,000.00','1,240,000.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00','12','0.00')
;;
--- yearly return: the row for its report
SELECT * FROM YearlyLoanMast
;;
--- new Lampiran: an empty band of a month
INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,c2,c1) VALUES ('PC-01','NewLampiran.rpt','2024011','202401','1','AB',0,0)
;;
--- new Lampiran: loans of the period
Select lm.LoanID,lm.TrxDate,lm.LoanAmt,lm.CompCode,cm.CustCompIncome from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode = 'AB' )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- new Lampiran: one loan
INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,c2,c1) VALUES ('PC-01','NewLampiran.rpt','AB0012-001','202401','3','AB',1,10000.00)
;;
--- new Lampiran: instalments of all loans of the period
Select sum(case when LoanTerm='1' then FirstPayment else case when LoanTerm='2' then FirstPayment + LastPayment else (FirstPayment + LastPayment) + ((LoanTerm-2)*InstallmentAmt) end end) as aa from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode = 'AB' )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- new Lampiran: instalments of each loan of the period
Select lm.LoanID,case when LoanTerm='1' then FirstPayment else case when LoanTerm='2' then FirstPayment + LastPayment else (FirstPayment + LastPayment) + ((LoanTerm-2)*InstallmentAmt) end end as aa from LoanMast as lm inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode = 'AB' )  and lm.TrxDate >= { ts '2024-01-01 00:00:00' } and lm.TrxDate <= { ts '2024-12-31 00:00:00' } 
;;
--- Lampiran B1: loans of a company between two dates
SELECT l.LoanID,l.TrxDate,c.custname,l.loanamt,l.agreementprint from loanmast as l inner join custmast as c on l.custid=c.custid  where l.trxdate >= '2024-01-01' and l.TrxDate <= '2024-01-31' and l.CompCode='AB' order by l.trxdate
;;
--- Lampiran B1: a loan is ticked
Update LoanMast SET AgreementPrint=1 where LoanID='AB0012-001'
;;
--- non-performing loans by year
SELECT year(TrxDate),Count(*),sum(LoanBal) FROM LoanMast WHERE CompCode='AB' AND TrxDate >= '2015-01-01' and TrxDate <= '2020-12-31' AND LoanGroupID in ('DALAM PROSES DAPAT BALIK','DALAM TINDAKAN MAHKAMAH') Group by year(TrxDate)
;;
--- overdue loans that never paid change their group
UPDATE LoanMast SET LoanGroupID='DALAM PROSES DAPAT BALIK' WHERE LoanBal>0 AND LoanGroupID ='PINJAMAN SEMASA' and CompCode='AB' and NextDueDate <='2023-10-31' AND LastPaymentDate is null
;;
--- overdue loans that paid last before the cut-off change their group
UPDATE LoanMast SET LoanGroupID='DALAM PROSES DAPAT BALIK' WHERE LoanBal>0 AND LoanGroupID ='PINJAMAN SEMASA' and CompCode='AB' and NextDueDate <='2023-10-31' and LastPaymentDate <='2023-10-31' AND not LastPaymentDate is null
;;
