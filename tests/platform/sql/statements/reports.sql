--- filter list of collection types
SELECT CollectInfoID FROM CollectInfoMast ORDER BY CollectInfoID
;;
--- filter list of cash book categories
SELECT CatCode FROM CashBookCat ORDER BY CatCode
;;
--- picture of the customer in a listing
SELECT Pic1 FROM CustMast WHERE CustID='AB0012'
;;
