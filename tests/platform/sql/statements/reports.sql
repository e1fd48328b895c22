--- filter list of companies
SELECT CompCode FROM CompMast ORDER BY CompCode
;;
--- filter list of races
SELECT CustRaceID FROM CustRaceMast ORDER BY CustRaceID
;;
--- filter list of kinds of customer
SELECT AreaCode FROM AreaMast ORDER BY AreaCode
;;
--- filter list of repayment codes
SELECT LoanTypeID FROM LoanTypeMast ORDER BY LoanTypeID
;;
--- filter list of loan groups
SELECT LoanGroupID FROM LoanGroupMast ORDER BY LoanGroupID
;;
--- filter list of company categories
SELECT CompCatCode FROM CampanyCategory ORDER BY CompCatCode
;;
--- filter list of advertisements
SELECT AdvertiseID FROM AdvertiseMast ORDER BY AdvertiseID
;;
--- filter list of collateral types
SELECT CollateralID FROM CollateralMast ORDER BY CollateralID
;;
--- filter list of users
SELECT UserID FROM UserMast ORDER BY UserID
;;
--- filter list of banks
SELECT BankCode FROM BankMast ORDER BY BankCode
;;
--- filter list of salesmen
SELECT SalesmanID FROM SalesmanMast ORDER BY SalesmanID
;;
--- filter list of collection types
SELECT CollectInfoID FROM CollectInfoMast ORDER BY CollectInfoID
;;
--- filter list of cash book categories
SELECT CatCode FROM CashBookCat ORDER BY CatCode
;;
--- filter list of follow-up statuses
SELECT HisStatusID FROM HisStatusMast ORDER BY HisStatusID
;;
--- date of the selected loan
SELECT TrxDate FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- picture of the customer in a listing
SELECT Pic1 FROM CustMast WHERE CustID='AB0012'
;;
--- whether a loan's agreement is for a secured loan
SELECT LoanType FROM LoanMast WHERE LoanID='AB0012-001'
;;
--- receipt file of this office
SELECT [Value] FROM Systemast WHERE Param='OR'
;;
--- the report screen closes: its rows of this PC go
DELETE FROM MasterReport WHERE pcname='PC-01' AND reportname='LoanMastList.rpt'
