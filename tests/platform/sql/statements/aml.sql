--- watch list by IC @conn=AMLA
SELECT RefNo,Name,NRIC,OtherInformation FROM AMLAMast WHERE NRIC='800131-10-5555'
;;
--- watch list by passport @conn=AMLA
SELECT RefNo,Name,PassportNo,OtherInformation FROM AMLAMast WHERE PassportNo='A1234567'
;;
--- a customer found on the watch list
UPDATE CustMast SET CustStatus='AMLA' where CustID='AB0012'
;;
