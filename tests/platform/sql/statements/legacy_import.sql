--- the database is cleared: CashBookCat @alone
Delete from CashBookCat
;;
--- the database is cleared: CollectInfoMast @alone
Delete from CollectInfoMast
;;
--- the database is cleared: CompMast @alone
Delete from CompMast
;;
--- the database is cleared: CustMast @alone
Delete from CustMast
;;
--- the database is cleared: CustRaceMast @alone
Delete from CustRaceMast
;;
--- the database is cleared: LoanGroupMast @alone
Delete from LoanGroupMast
;;
--- the database is cleared: LoanMast @alone
Delete from LoanMast
;;
--- the database is cleared: LoanTypeMast @alone
Delete from LoanTypeMast
;;
--- the database is cleared: NumberMast @alone
Delete from NumberMast
;;
--- the database is cleared: PaymentMast @alone
Delete from PaymentMast
;;
--- the database is cleared: PersonalExp @alone
Delete from PersonalExp
;;
--- the database is cleared: RefererMast @alone
Delete from RefererMast
;;
--- the database is cleared: SchMast @alone
Delete from SchMast
;;
--- the database is cleared: AdvertiseMast @alone
Delete from AdvertiseMast
;;
--- the database is cleared: AppHist @alone
Delete from AppHist
;;
--- the database is cleared: AppMast @alone
Delete from AppMast
;;
--- the database is cleared: AppMastLink @alone
Delete from AppMastLink
;;
--- the database is cleared: ChargeMast @alone
Delete from ChargeMast
;;
--- the database is cleared: CheckListTrans @alone
Delete from CheckListTrans
;;
--- the database is cleared: ChqMast @alone
Delete from ChqMast
;;
--- the database is cleared: DocumentMast @alone
Delete from DocumentMast
;;
--- the database is cleared: DrawDownMast @alone
Delete from DrawDownMast
;;
--- the database is cleared: FollowUpMast @alone
Delete from FollowUpMast
;;
--- the database is cleared: LoanCollateral @alone
Delete from LoanCollateral
;;
--- the database is cleared: MasterReport @alone
Delete from MasterReport
;;
--- the database is cleared: MonthlyMast @alone
Delete from MonthlyMast
;;
--- the database is cleared: MRTAMast @alone
Delete from MRTAMast
;;
--- the database is cleared: OwnerMast @alone
Delete from OwnerMast
;;
--- the database is cleared: PaymentList @alone
Delete from PaymentList
;;
--- the database is cleared: SchMast2 @alone
Delete from SchMast2
;;
--- the database is cleared: SupplierMast @alone
Delete from SupplierMast
;;
--- the database is cleared: SupplierTrans @alone
Delete from SupplierTrans
;;
--- the database is cleared: YearlyLoanMast @alone
Delete from YearlyLoanMast
;;
--- expenses of the company go before they are copied anew
DELETE FROM PersonalExp WHERE CompCode='ZZ'
;;
--- copied loans that are to be replayed
SELECT LoanID,CustID FROM LoanMast WHERE CompCode='ZZ'
;;
--- the user who copied belongs to the new company
UPDATE UserMast SET CompCode='ZZ' WHERE UserID='OWL'
;;
