--- a document of a customer is stored
INSERT INTO DocumentMast (CustID,DocNo,CompCode,DocDesc,DocName,UserID,DateCreated) VALUES ('AB0013','AB#D0007','AB','IC (front & back)','AB#D0007.pdf','CLERK1','2024-01-31 14:05:09')
;;
--- the first photo of a customer
UPDATE CustMast SET Pic1='cust1.jpg' WHERE CustID='AB0012'
;;
