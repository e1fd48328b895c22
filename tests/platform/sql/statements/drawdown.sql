--- account of a personal loan
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='HP'
;;
--- account of a flexi loan
SELECT LinkAccCode FROM LinkAccMast WHERE LinkID='TL'
;;
