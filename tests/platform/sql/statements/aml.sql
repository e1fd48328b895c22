--- money-laundering settings of a company
SELECT AMLA,AMLACheckIC,AMLALoan,AMLAPayment,AMLAWarning,DisableSTR FROM CompMast WHERE CompCode='AB'
;;
--- watch list by IC @conn=AMLA
SELECT RefNo,Name,NRIC,OtherInformation FROM AMLAMast WHERE NRIC='800131-10-5555'
;;
--- watch list by passport @conn=AMLA
SELECT RefNo,Name,PassportNo,OtherInformation FROM AMLAMast WHERE PassportNo='A1234567'
;;
--- reason codes of loans
select distinct(a.code) from (select distinct(amlacode) as [Code] from LoanMast where amlacode <> '' union all select distinct(amladesc) as [Code] from amladesc where sid= 'LOAN') as a
;;
--- reason codes of payments
select distinct(a.code) from (select distinct(amlacode) as [Code] from PaymentMast where amlacode <> '' union all select distinct(amladesc) as [Code] from amladesc where sid= 'PAYMENT') as a
;;
--- a customer found on the watch list
UPDATE CustMast SET CustStatus='AMLA' where CustID='AB0012'
;;
--- reason codes are replaced: old ones go
DELETE FROM AMLADesc
;;
--- reason codes are replaced: one code
INSERT INTO AMLADesc (SID,AMLADesc) VALUES ('LOAN','Business capital')
;;
--- reason codes of one kind
SELECT AMLADesc FROM AMLADesc WHERE SID='LOAN' ORDER BY AMLADesc
