--- receipt counters of a company are dropped @alone
DELETE NumberMast WHERE CustID like 'AB#%' or CustID like 'AB#R%'
;;
--- last number of the running receipt series before a date
SELECT MAX(ReceiptNo) FROM PaymentMast WHERE CompCode='AB' and ReceiptNo like 'R%' and PayDate < '2024-01-01'
;;
--- payments whose receipts are to be numbered anew, two blanks before WHERE
SELECT PayID,PayDate FROM PaymentMast  WHERE CompCode='AB' AND PayDate >= '2024-01-01' ORDER BY PayDate,DateCreated
;;
